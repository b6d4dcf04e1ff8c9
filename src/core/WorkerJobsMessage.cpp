#include "core/WorkerJobsMessage.h"

#include "core/WorkerPool.h"

namespace vlEditor {

void WorkerJobsMessage::runOnUiThread() {
    if (WorkerPool::hasInstance()) WorkerPool::getInstance().tellJobs();
}

} // namespace vlEditor
