#include "resources/EnumTexts.h"

#include <vlGraphics/Sampler.h>

#include <algorithm>
#include <cmath>

namespace vlGraphics {

namespace {

constexpr std::uint32_t mostAnisotropy = 16;

template <class Enum> bool replaceEnum(Enum& held, Enum value) {
    if (held == value || !isKnownValue(value)) return false;
    held = value;
    return true;
}

} // namespace

void Sampler::setFilter(FILTER value) {
    if (replaceEnum(settings_.filter, value)) markChanged();
}
void Sampler::setAddressModeU(TEXTURE_ADDRESS_MODE value) {
    if (replaceEnum(settings_.addressU, value)) markChanged();
}
void Sampler::setAddressModeV(TEXTURE_ADDRESS_MODE value) {
    if (replaceEnum(settings_.addressV, value)) markChanged();
}
void Sampler::setAddressModeW(TEXTURE_ADDRESS_MODE value) {
    if (replaceEnum(settings_.addressW, value)) markChanged();
}
void Sampler::setComparisonFunc(COMPARISON_FUNCTION value) {
    if (replaceEnum(settings_.comparison, value)) markChanged();
}

bool Sampler::setComparisonFuncFromString(vlMemory::StringView text) {
    const auto value = enumValue<COMPARISON_FUNCTION>(text);
    if (value) setComparisonFunc(*value);
    return value.has_value();
}

void Sampler::setSettings(const Settings& settings) {
    setFilter(settings.filter);
    setAddressModeU(settings.addressU);
    setAddressModeV(settings.addressV);
    setAddressModeW(settings.addressW);
    setAnisotropy(settings.anisotropy);
    setLodBias(settings.lodBias);
    setLodRange(settings.minLod, settings.maxLod);
    setComparisonFunc(settings.comparison);
    const auto& border = settings.borderColor;
    setBorderColor(border[0], border[1], border[2], border[3]);
}

void Sampler::setAnisotropy(std::uint32_t value) {
    const std::uint32_t wanted = std::clamp(value, 1U, mostAnisotropy);
    if (settings_.anisotropy == wanted) return;
    settings_.anisotropy = wanted;
    markChanged();
}

void Sampler::setLodBias(float value) {
    if (settings_.lodBias == value || !std::isfinite(value)) return;
    settings_.lodBias = value;
    markChanged();
}

void Sampler::setLodRange(float minimum, float maximum) {
    if (!std::isfinite(minimum) || !std::isfinite(maximum) || minimum > maximum) return;
    if (settings_.minLod == minimum && settings_.maxLod == maximum) return;
    settings_.minLod = minimum;
    settings_.maxLod = maximum;
    markChanged();
}

void Sampler::setBorderColor(float red, float green, float blue, float alpha) {
    const std::array color{red, green, blue, alpha};
    const bool finite = std::all_of(
            color.begin(), color.end(), [](float value) { return std::isfinite(value); });
    if (!finite || settings_.borderColor == color) return;
    settings_.borderColor = color;
    markChanged();
}

} // namespace vlGraphics
