#pragma once
#include "core/Members.h"
#include "core/Message.h"

namespace vlEditor {

/** Tells the UI thread that the worker's jobs have come on, begun or ended. The WorkerPool posts
 *  another one only when the last was run, however often a job reports. */
class WorkerJobsMessage final : public Message {
public:
    void runOnUiThread() override;
    void runOnGraphicsThread() override {}

    static constexpr auto members() { return std::tuple{}; }
};

} // namespace vlEditor
