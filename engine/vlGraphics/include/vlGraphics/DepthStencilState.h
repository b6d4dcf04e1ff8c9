#pragma once
#include <vlGraphics/Enumerations.h>
#include <vlGraphics/ResourceManager.h>

namespace vlGraphics {

/** Depth and stencil test of a pass. Starts with the depth test on (less), writing, stencil off.
 *  Depth runs from 0 (near) to 1. Setters ignore numbers of no enumeration.
 *
 *  What the stencil is compared with, and REPLACE writes, is the pass's to say. The engine's own
 *  depth buffer has stencil, and of textures those with a format that has it; with another depth
 *  target the stencil test passes, with a line to the log. */
class DepthStencilState final : public Resource {
public:
    static constexpr vlMemory::StringView kindName = "depth stencil state";

    struct Face {
        STENCIL_OP fail = STENCIL_OP::KEEP;      ///< the stencil test fails
        STENCIL_OP depthFail = STENCIL_OP::KEEP; ///< the stencil test passes, the depth test fails
        STENCIL_OP pass = STENCIL_OP::KEEP;      ///< both pass
        COMPARISON_FUNCTION function = COMPARISON_FUNCTION::ALWAYS;
        friend bool operator==(const Face&, const Face&) = default;
    };
    struct Settings {
        bool depthEnabled = true;
        DEPTH_WRITE_MASK depthWriteMask = DEPTH_WRITE_MASK::ALL;
        COMPARISON_FUNCTION depthFunction = COMPARISON_FUNCTION::LESS;
        bool stencilEnabled = false;
        std::uint8_t stencilReadMask = 255;
        std::uint8_t stencilWriteMask = 255;
        Face front;
        Face back;
        friend bool operator==(const Settings&, const Settings&) = default;
    };

    bool getDepthEnabled() const { return settings_.depthEnabled; }
    DEPTH_WRITE_MASK getDepthWriteMask() const { return settings_.depthWriteMask; }
    COMPARISON_FUNCTION getDepthFunction() const { return settings_.depthFunction; }
    bool getStencilEnabled() const { return settings_.stencilEnabled; }
    std::uint8_t getStencilReadMask() const { return settings_.stencilReadMask; }
    std::uint8_t getStencilWriteMask() const { return settings_.stencilWriteMask; }
    const Face& getFront() const { return settings_.front; }
    const Face& getBack() const { return settings_.back; }
    const Settings& getSettings() const { return settings_; }
    /// Each setting as by its own setter.
    void setSettings(const Settings& settings);

    void setDepthEnabled(bool value);
    void setDepthWriteMask(DEPTH_WRITE_MASK value);
    void setDepthFunction(COMPARISON_FUNCTION value);
    void setStencilEnabled(bool value);
    void setStencilReadMask(std::uint8_t value);
    void setStencilWriteMask(std::uint8_t value);
    void setFrontFail(STENCIL_OP value);
    void setFrontDepthFail(STENCIL_OP value);
    void setFrontPass(STENCIL_OP value);
    void setFrontFunction(COMPARISON_FUNCTION value);
    void setBackFail(STENCIL_OP value);
    void setBackDepthFail(STENCIL_OP value);
    void setBackPass(STENCIL_OP value);
    void setBackFunction(COMPARISON_FUNCTION value);

private:
    Settings settings_;
};

class DepthStencilStateManager final
    : public ResourceManager<DepthStencilState>,
      public vlCommon::MaybeSingletonClass<DepthStencilStateManager> {};

} // namespace vlGraphics
