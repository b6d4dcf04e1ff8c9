#include "app/LeaveMessage.h"

#include "app/ClosePath.h"

namespace vlEditor {

void LeaveMessage::runOnUiThread() {
    ClosePath::leave();
}

} // namespace vlEditor
