#include "editors/sampler/Sampler.h"

#include "core/EditorLogger.h"
#include "editors/AllKinds.h"
#include "interfaces/kinds/KindEntry.h"
#include "interfaces/preview/PreviewRow.h"

#include <vlGraphics/ComparisonFunctionUtils.h>
#include <vlGraphics/FilterUtils.h>
#include <vlGraphics/TextureAddressModeUtils.h>

#include <fmt/format.h>

namespace vlEditor {
namespace {

using Comparisons = vlGraphics::ComparisonFunctionUtils;
using Filters = vlGraphics::FilterUtils;
using Addresses = vlGraphics::TextureAddressModeUtils;
using vlGraphics::Sampler;

constexpr std::array addressModes{
        &SamplerRecord::addressModeU, &SamplerRecord::addressModeV, &SamplerRecord::addressModeW};
constexpr std::array addressSetters{
        &Sampler::setAddressModeU, &Sampler::setAddressModeV, &Sampler::setAddressModeW};

/// What graphics cards offer; the engine takes any whole number up to the last.
std::vector<Choice> anisotropies() {
    std::vector<Choice> all;
    for (std::uint32_t samples = 1; samples <= 16; samples *= 2)
        all.push_back({std::to_string(samples), samples});
    return all;
}

vlCommon::Result<> namesNothing(const Sampler& sampler, const char* what, const std::string& text) {
    return vlCommon::fail(fmt::format("{}: there is no {} '{}'",
                                      thingNamed(SamplerKind::texts, sampler.getName()),
                                      what,
                                      text));
}

} // namespace

vlCommon::Result<> SamplerFiltering::applyTo(Sampler& sampler) const {
    const std::uint32_t number = Filters::fromString(value);
    if (number == vlGraphics::StructToString::pastTheLast)
        return namesNothing(sampler, "filter", value);
    sampler.setFilter(static_cast<vlGraphics::FILTER>(number));
    return {};
}

void SamplerFiltering::readFrom(const SamplerRecord& record) {
    value = Filters::toString(record.filter);
}

vlCommon::Result<> SamplerAddress::applyTo(Sampler& sampler) const {
    if (axis >= addressSetters.size()) return {};
    const std::uint32_t number = Addresses::fromString(value);
    if (number == vlGraphics::StructToString::pastTheLast)
        return namesNothing(sampler, "address mode", value);
    std::invoke(
            addressSetters[axis], sampler, static_cast<vlGraphics::TEXTURE_ADDRESS_MODE>(number));
    return {};
}

void SamplerAddress::readFrom(const SamplerRecord& record) {
    if (axis < addressModes.size()) value = Addresses::toString(record.*addressModes[axis]);
}

vlCommon::Result<> SamplerComparison::applyTo(Sampler& sampler) const {
    if (!sampler.setComparisonFuncFromString(value))
        return namesNothing(sampler, "comparison function", value);
    return {};
}

void SamplerComparison::readFrom(const SamplerRecord& record) {
    value = Comparisons::toString(record.comparisonFunction);
}

vlCommon::Result<> SamplerLodLevels::applyTo(Sampler& sampler) const {
    if (minimum > maximum) {
        return vlCommon::fail(fmt::format("{}: the minimum LOD {} is above the maximum {}",
                                          thingNamed(SamplerKind::texts, sampler.getName()),
                                          minimum,
                                          maximum));
    }
    sampler.setLodRange(minimum, maximum);
    return {};
}

void SamplerLodLevels::readFrom(const SamplerRecord& record) {
    minimum = record.minimumLod;
    maximum = record.maximumLod;
}

void SamplerBorderColor::applyTo(Sampler& sampler) const {
    sampler.setBorderColor(red, green, blue, alpha);
}

void SamplerBorderColor::readFrom(const SamplerRecord& record) {
    red = record.borderColour[0];
    green = record.borderColour[1];
    blue = record.borderColour[2];
    alpha = record.borderColour[3];
}

std::string SamplerKind::savePath(std::string chosen) {
    const std::string path = withExtension(texts, std::move(chosen));
    EditorLogger::getInstance().log("Saving Sampler file : " + path, "Save");
    return path;
}

void SamplerKind::bind(Bindings<SamplerKind>& window) {
    const auto addresses = choices(&Addresses::fromIndex, &Addresses::toString);
    const auto comparisons = choices(&Comparisons::fromIndex, &Comparisons::toString);
    window.combo(
            "_FILTER_COMBO", SamplerFiltering{}, choices(&Filters::fromIndex, &Filters::toString));
    window.combo("_ADDRESS_COMBO_U", SamplerAddress{{}, 0}, addresses);
    window.combo("_ADDRESS_COMBO_V", SamplerAddress{{}, 1}, addresses);
    window.combo("_ADDRESS_COMBO_W", SamplerAddress{{}, 2}, addresses);
    window.numbers("_LOD_LEVELS_OK",
                   SamplerLodLevels{},
                   NumberBox{"_LOD_LEVELS_MIN_EDIT", &SamplerLodLevels::minimum},
                   NumberBox{"_LOD_LEVELS_MAX_EDIT", &SamplerLodLevels::maximum});
    window.number("_LOD_BIAS_EDIT", "_LOD_BIAS_OK", SamplerBias{});
    window.combo("_LOD_ANI_COMBO", SamplerAnisotropy{}, anisotropies());
    window.combo("_COMP_COMBO", SamplerComparison{}, comparisons);
    window.numbers("_BORDER_OK",
                   SamplerBorderColor{},
                   NumberBox{"_BORDER_EDIT_R", &SamplerBorderColor::red},
                   NumberBox{"_BORDER_EDIT_G", &SamplerBorderColor::green},
                   NumberBox{"_BORDER_EDIT_B", &SamplerBorderColor::blue},
                   NumberBox{"_BORDER_EDIT_A", &SamplerBorderColor::alpha});
    const auto preview =
            std::make_shared<PreviewRow>(window.getBase() + "_PREVIEW", PreviewKind::sampler);
    window.keep(preview);
    // Drawn anew with every change of it.
    window.row<SamplerRecord>(
            [](const SamplerRecord& record) { return record; },
            [preview](const SamplerRecord* shown, bool isMixed) {
                if (shown == nullptr || isMixed)
                    preview->show({}, isMixed ? "Several are selected" : "Nothing is selected");
                else
                    preview->show(shown->name);
            });
}

const AnyKind& samplerKind() {
    static const KindEntry<SamplerKind,
                           SamplerFiltering,
                           SamplerAddress,
                           SamplerComparison,
                           SamplerAnisotropy,
                           SamplerBias,
                           SamplerLodLevels,
                           SamplerBorderColor>
            kind;
    return kind;
}

} // namespace vlEditor
