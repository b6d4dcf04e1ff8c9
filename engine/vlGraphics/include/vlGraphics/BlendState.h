#pragma once
#include <vlGraphics/Enumerations.h>
#include <vlGraphics/ResourceManager.h>

#include <array>

namespace vlGraphics {

/** How a pass combines its colours with those of up to eight targets. Starts opaque: factors one
 * and zero, operation add, all channels written, blending off. A target index past 7 is ignored by
 * setters and reads as target 0; setters ignore numbers of no enumeration.
 *
 * The constant of BLEND_FACTOR is one. MIN and MAX heed no factors. The factors SRC1 read the
 * second output of the pixel stage (SV_TARGET1) and need a single colour target; where the program,
 * the targets or the device have no room for it, the first output takes its place with a line to
 * the log. Targets whose format cannot be blended (integers) are written as without blending. */
class BlendState final : public Resource {
public:
    static constexpr vlMemory::StringView kindName = "blend state";
    static constexpr std::uint32_t targetCount = 8;

    struct Target {
        BLEND src = BLEND::ONE;
        BLEND dest = BLEND::ZERO;
        BLEND_OP op = BLEND_OP::ADD;
        BLEND srcAlpha = BLEND::ONE;
        BLEND destAlpha = BLEND::ZERO;
        BLEND_OP opAlpha = BLEND_OP::ADD;
        COLOR_WRITE_ENABLE writeMask = COLOR_WRITE_ENABLE::ALL;
        bool enabled = false;
        friend bool operator==(const Target&, const Target&) = default;
    };

    /// Acts where output 0 of the program has an alpha channel.
    bool getAlphaToCoverage() const { return alphaToCoverage_; }
    void setAlphaToCoverage(bool value);
    /// Off, or where the device cannot: every target uses the settings of target 0.
    bool getIndependentBlend() const { return independentBlend_; }
    void setIndependentBlend(bool value);

    /// All settings of a target at once; a value of no enumeration is passed over.
    const Target& getTarget(std::uint32_t target) const { return at(target); }
    void setTarget(const Target& settings, std::uint32_t target);

    bool getBlendEnabled(std::uint32_t target) const { return at(target).enabled; }
    BLEND getSrcBlend(std::uint32_t target) const { return at(target).src; }
    BLEND getDestBlend(std::uint32_t target) const { return at(target).dest; }
    BLEND_OP getBlendOp(std::uint32_t target) const { return at(target).op; }
    BLEND getSrcAlphaBlend(std::uint32_t target) const { return at(target).srcAlpha; }
    BLEND getDestAlphaBlend(std::uint32_t target) const { return at(target).destAlpha; }
    BLEND_OP getBlendOpAlpha(std::uint32_t target) const { return at(target).opAlpha; }
    COLOR_WRITE_ENABLE getWriteMask(std::uint32_t target) const { return at(target).writeMask; }

    void setBlendEnabled(bool value, std::uint32_t target);
    void setSrcBlend(BLEND value, std::uint32_t target);
    void setDestBlend(BLEND value, std::uint32_t target);
    void setBlendOp(BLEND_OP value, std::uint32_t target);
    void setSrcAlphaBlend(BLEND value, std::uint32_t target);
    void setDestAlphaBlend(BLEND value, std::uint32_t target);
    void setBlendOpAlpha(BLEND_OP value, std::uint32_t target);
    void setWriteMask(COLOR_WRITE_ENABLE value, std::uint32_t target);

private:
    const Target& at(std::uint32_t target) const {
        return targets_[target < targetCount ? target : 0];
    }
    template <class Value> void set(Value Target::*member, Value value, std::uint32_t target);

    std::array<Target, targetCount> targets_;
    bool alphaToCoverage_ = false;
    bool independentBlend_ = false;
};

class BlendStateManager final : public ResourceManager<BlendState>,
                                public vlCommon::MaybeSingletonClass<BlendStateManager> {};

} // namespace vlGraphics
