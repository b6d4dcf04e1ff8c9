#pragma once
#include <vlGraphics/Pass.h>
#include <vlMaths/Vector.h>

namespace vlGraphics {

/** Sets targets to a value: one colour target of the operation, its depth target
 * (stencil included), or both. */
class ClearTargetsPass final : public Pass {
public:
    PASS_TYPE getType() const override { return PASS_TYPE::CLEAR_TARGETS; }
    std::unique_ptr<Pass> clone() const override;
    void record(PassRecorder& recorder) const override;

    bool getShouldClearColor() const { return clearsColor_; }
    void setShouldClearColor(bool value);
    bool getShouldClearDepth() const { return clearsDepth_; }
    void setShouldClearDepth(bool value);
    /// Red, green, blue, alpha; linear.
    const vlMaths::Vector& getClearColor() const { return color_; }
    void setClearColor(const vlMaths::Vector& color);
    float getClearDepth() const { return depth_; }
    void setClearDepth(float depth);
    /// The stencil is cleared with the depth, to the low eight bits.
    std::uint32_t getClearStencil() const { return stencil_; }
    void setClearStencil(std::uint32_t stencil);
    /// Which colour target of the operation; one past the last clears none.
    std::uint32_t getColorTargetIndex() const { return colorTargetIndex_; }
    void setColorTargetIndex(std::uint32_t index);

private:
    bool clearsColor_ = true;
    bool clearsDepth_ = true;
    vlMaths::Vector color_{0, 0, 0, 1};
    float depth_ = 1;
    std::uint32_t stencil_ = 0;
    std::uint32_t colorTargetIndex_ = 0;
};

} // namespace vlGraphics
