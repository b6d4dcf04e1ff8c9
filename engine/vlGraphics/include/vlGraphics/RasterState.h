#pragma once
#include <vlGraphics/Enumerations.h>
#include <vlGraphics/ResourceManager.h>

namespace vlGraphics {

/** How a pass turns primitives into pixels. Starts solid, culling back faces, clockwise front
 * faces, depth clip on. Setters ignore numbers of no enumeration and floats that are not finite.
 * What the device lacks (wire frames, a limit of the bias, unclipped depth) is left out with a line
 * to the log when it is first drawn with. */
class RasterState final : public Resource {
public:
    static constexpr vlMemory::StringView kindName = "raster state";

    struct Settings {
        FILL_MODE fillMode = FILL_MODE::SOLID;
        CULL_MODE cullMode = CULL_MODE::BACK;
        bool frontCounterClockwise = false;
        std::int32_t depthBias = 0; ///< in units of the depth buffer's smallest step
        float depthBiasClamp = 0;   ///< the most of the whole bias, by its sign; 0: no limit
        float slopeScaledDepthBias = 0;
        bool depthClip = true; ///< off: what lies before or behind is drawn at the nearest depth
        /// Cuts to the pixels of the pass's viewport what reaches over its edge by its width:
        /// lines.
        bool scissor = false;
        bool multiSampling = false; ///< kept; targets have one sample a pixel
        /// Coverage goes to the alpha of lines, so that blending shows it. Without effect where the
        /// device lacks it, and with alpha to coverage.
        bool lineAntiAliasing = false;
        friend bool operator==(const Settings&, const Settings&) = default;
    };

    FILL_MODE getFillMode() const { return settings_.fillMode; }
    CULL_MODE getCullMode() const { return settings_.cullMode; }
    bool getFrontCounterClockwise() const { return settings_.frontCounterClockwise; }
    std::int32_t getDepthBias() const { return settings_.depthBias; }
    float getDepthBiasClamp() const { return settings_.depthBiasClamp; }
    float getSlopeScaledDepthBias() const { return settings_.slopeScaledDepthBias; }
    bool getDepthClip() const { return settings_.depthClip; }
    bool getScissor() const { return settings_.scissor; }
    bool getMultiSampling() const { return settings_.multiSampling; }
    bool getLineAntiAliasing() const { return settings_.lineAntiAliasing; }
    const Settings& getSettings() const { return settings_; }
    /// Each setting as by its own setter.
    void setSettings(const Settings& settings);

    void setFillMode(FILL_MODE value);
    void setCullMode(CULL_MODE value);
    void setFrontCounterClockwise(bool value);
    void setDepthBias(std::int32_t value);
    void setDepthBiasClamp(float value);
    void setSlopeScaledDepthBias(float value);
    void setDepthClip(bool value);
    void setScissor(bool value);
    void setMultiSampling(bool value);
    void setLineAntiAliasing(bool value);

private:
    Settings settings_;
};

class RasterStateManager final : public ResourceManager<RasterState>,
                                 public vlCommon::MaybeSingletonClass<RasterStateManager> {};

} // namespace vlGraphics
