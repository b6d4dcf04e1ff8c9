#pragma once

namespace vlGraphics {
class Camera;
}

namespace vlEditor {

/** Where a camera starts that nobody has placed: above and behind the origin, looking at it. */
class DefaultView {
public:
    DefaultView() = delete;
    static void apply(vlGraphics::Camera& camera);
};

} // namespace vlEditor
