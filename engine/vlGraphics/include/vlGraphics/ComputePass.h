#pragma once
#include <vlGraphics/Pass.h>
#include <vlGraphics/Shader.h>

namespace vlGraphics {

/** Runs a compute shader over groups of threads; the size of a group stands in the shader. Renders
 *  nothing, so that an operation of compute passes alone needs no targets; the operation's targets
 *  can be read. Does nothing without a shader whose program computes. What it writes to buffers is
 *  there for the passes after it. */
class ComputePass final : public Pass {
public:
    /// Of one pass, all axes together; more would keep the device for longer than anybody waits.
    static constexpr std::uint32_t maxGroups = 1U << 24U;

    PASS_TYPE getType() const override { return PASS_TYPE::COMPUTE; }
    std::unique_ptr<Pass> clone() const override;
    void record(PassRecorder& recorder) const override;

    Handle<Shader> getShader() const { return shader_; }
    void setShader(Handle<Shader> shader);
    // Groups along each axis. 0 runs nothing; more than the device takes are cut off, with one line
    // to the log.
    std::uint32_t getX() const { return x_; }
    void setX(std::uint32_t groups);
    std::uint32_t getY() const { return y_; }
    void setY(std::uint32_t groups);
    std::uint32_t getZ() const { return z_; }
    void setZ(std::uint32_t groups);

private:
    Handle<Shader> shader_;
    std::uint32_t x_ = 1;
    std::uint32_t y_ = 1;
    std::uint32_t z_ = 1;
};

} // namespace vlGraphics
