#pragma once
#include <vlCommon/SingletonClass.h>

#include <xcb/xcb.h>

namespace vlGraphics::vulkan {

/** The engine's own connection to the X server, made when the first window is presented to. It
 *  outlives the device and every surface made from it. Graphics thread only. */
class XcbConnection final : public vlCommon::MaybeSingletonClass<XcbConnection> {
public:
    XcbConnection() = default;
    ~XcbConnection();

    /// Null when there is no X server.
    xcb_connection_t* get();
    /// Takes the events and errors that have arrived, which nobody here needs, off the queue.
    void drain();

private:
    xcb_connection_t* connection_ = nullptr;
};

} // namespace vlGraphics::vulkan
