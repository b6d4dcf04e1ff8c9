#pragma once
#include <cstdint>

namespace vlWinUi {

/** How the pictures of a Surface get onto the screen. Plain values, which any thread may hold. */
struct SurfaceHandle {
    enum class Kind {
        Xcb,     ///< drawn into the X window by whoever holds the handle
        Picture, ///< handed to Surface::presentPicture() on the UI thread
    };

    Kind kind = Kind::Picture;
    std::uint32_t window = 0; ///< X window id; 0 for Kind::Picture

    friend bool operator==(const SurfaceHandle&, const SurfaceHandle&) = default;
};

} // namespace vlWinUi
