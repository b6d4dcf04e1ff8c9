#pragma once
#include <vlGraphics/Enumerations.h>
#include <vlGraphics/ResourceManager.h>

#include <array>
#include <memory>

namespace vlGraphics {

/** How a shader reads a texture. Starts trilinear, wrapping, without anisotropy. */
class Sampler final : public Resource {
public:
    static constexpr vlMemory::StringView kindName = "sampler";

    struct Settings {
        FILTER filter = FILTER::MIN_MAG_MIP_LINEAR;
        TEXTURE_ADDRESS_MODE addressU = TEXTURE_ADDRESS_MODE::WRAP;
        TEXTURE_ADDRESS_MODE addressV = TEXTURE_ADDRESS_MODE::WRAP;
        TEXTURE_ADDRESS_MODE addressW = TEXTURE_ADDRESS_MODE::WRAP;
        std::uint32_t anisotropy = 1; ///< 1 to 16; the device's limit is applied on load
        float lodBias = 0;
        float minLod = 0;
        float maxLod = 1000;
        COMPARISON_FUNCTION comparison = COMPARISON_FUNCTION::NEVER;
        std::array<float, 4> borderColor{0, 0, 0, 0};
        friend bool operator==(const Settings&, const Settings&) = default;
    };

    Sampler();
    ~Sampler() override;

    // What the device lacks (mirroring once, a border colour other than transparent black, opaque
    // black and opaque white, a larger anisotropy or LOD bias) is replaced by the nearest that it
    // has on load, with a line to the log.
    //
    // Values that are not finite, no value of their enumeration, or a range upside down are
    // ignored; the anisotropy is brought to its range.
    const Settings& getSettings() const { return settings_; }
    /// Each setting as by its own setter.
    void setSettings(const Settings& settings);
    FILTER getFilter() const { return settings_.filter; }
    TEXTURE_ADDRESS_MODE getAddressModeU() const { return settings_.addressU; }
    TEXTURE_ADDRESS_MODE getAddressModeV() const { return settings_.addressV; }
    TEXTURE_ADDRESS_MODE getAddressModeW() const { return settings_.addressW; }
    std::uint32_t getAnisotropy() const { return settings_.anisotropy; }
    float getLodBias() const { return settings_.lodBias; }
    float getMinLod() const { return settings_.minLod; }
    float getMaxLod() const { return settings_.maxLod; }
    COMPARISON_FUNCTION getComparisonFunc() const { return settings_.comparison; }
    const std::array<float, 4>& getBorderColor() const { return settings_.borderColor; }

    void setFilter(FILTER value);
    void setAddressModeU(TEXTURE_ADDRESS_MODE value);
    void setAddressModeV(TEXTURE_ADDRESS_MODE value);
    void setAddressModeW(TEXTURE_ADDRESS_MODE value);
    void setAnisotropy(std::uint32_t value);
    void setLodBias(float value);
    void setLodRange(float minimum, float maximum);
    void setComparisonFunc(COMPARISON_FUNCTION value);
    /// False, nothing changed, for a text that names no function.
    bool setComparisonFuncFromString(vlMemory::StringView text);
    void setBorderColor(float red, float green, float blue, float alpha);

    vlCommon::Result<> load() override;
    void unload() override;

    struct Gpu; ///< the back end's side
    Gpu* gpu() const { return gpu_.get(); }

private:
    Settings settings_;
    std::unique_ptr<Gpu> gpu_;
};

class SamplerManager final : public ResourceManager<Sampler>,
                             public vlCommon::MaybeSingletonClass<SamplerManager> {};

} // namespace vlGraphics
