#include "vulkan/XcbConnection.h"

#include <cstdlib>

namespace vlGraphics::vulkan {

XcbConnection::~XcbConnection() {
    if (connection_ != nullptr) xcb_disconnect(connection_);
}

xcb_connection_t* XcbConnection::get() {
    if (connection_ == nullptr) connection_ = xcb_connect(nullptr, nullptr);
    return xcb_connection_has_error(connection_) == 0 ? connection_ : nullptr;
}

void XcbConnection::drain() {
    if (connection_ == nullptr) return;
    while (xcb_generic_event_t* event = xcb_poll_for_event(connection_))
        std::free(event);
}

} // namespace vlGraphics::vulkan
