#pragma once
#include <vlGraphics/PresentSurface.h>

namespace vlEditor {

/** Gives a render context its size while its pictures stay in the back buffer. */
class HeadlessSurface final : public vlGraphics::PresentSurface {
public:
    explicit HeadlessSurface(Size size) : size_(size) {}

    Kind getKind() const override { return Kind::none; }
    Size getSize() const override { return size_; }
    bool isExposed() const override { return true; }

private:
    Size size_;
};

} // namespace vlEditor
