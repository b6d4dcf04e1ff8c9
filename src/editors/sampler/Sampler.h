#pragma once
#include "interfaces/ContainerType.h"
#include "interfaces/kinds/ResourceInterface.h"

#include <vlGraphics/Sampler.h>

#include <algorithm>

namespace vlEditor {

struct SamplerKind;

/** What the UI knows of a sampler, enumerations as the engine's numbers. */
struct SamplerRecord {
    std::string name;
    std::uint32_t filter = 0;
    std::uint32_t addressModeU = 0;
    std::uint32_t addressModeV = 0;
    std::uint32_t addressModeW = 0;
    std::uint32_t anisotropy = 0;
    float lodBias = 0;
    float minimumLod = 0;
    float maximumLod = 0;
    std::uint32_t comparisonFunction = 0;
    std::array<float, 4> borderColour{}; ///< red, green, blue, alpha

    template <class K = SamplerKind> static constexpr auto members() {
        return membersOfFields<K>();
    }
    friend bool operator==(const SamplerRecord&, const SamplerRecord&) = default;
};

struct SamplerKind {
    using Record = SamplerRecord;
    using Engine = vlGraphics::Sampler;
    using Manager = vlGraphics::SamplerManager;

    /// With the kind's extension, and a line in the log.
    static std::string savePath(std::string chosen);

    static constexpr ContainerType containerType = ContainerType::sampler;
    static constexpr KindTexts texts{
            .kind = "Sampler",
            .title = "Samplers",
            .prefix = "EDITOR_SAMPLER_",
            .creation = "SAMPLER_CREATION",
            .creationTitle = "Sampler Creation",
            .explorer = "EDITOR_SAMPLER_EXPLO",
            .filterLabel = "Sampler Decl Files",
            .extension = "vlsa",
            .pickLists = {{{"SAMPLER_POP_UP_LIST"}}},
            .subject = "Sampler",
            .deleteStart = "Deleting sampler ",
            .deleteEnd = ".\nAre you sure ?",
            .renameButton = "_NAME_BUTTON",
            .saveButton = "_SAVE_BUTTON",
    };
    static constexpr KindHooks<Engine> hooks{
            .load = &vlGraphics::ContentLoader::loadSamplerDeclaration, .savePath = &savePath};
    static constexpr std::tuple fields{
            VL_FIELD(filter, getFilter, setFilter),
            VL_FIELD(addressModeU, getAddressModeU, setAddressModeU),
            VL_FIELD(addressModeV, getAddressModeV, setAddressModeV),
            VL_FIELD(addressModeW, getAddressModeW, setAddressModeW),
            VL_FIELD(anisotropy, getAnisotropy, setAnisotropy),
            VL_FIELD(lodBias, getLodBias, setLodBias),
            // The engine takes both at once and no range upside down: each pushes the other along.
            Field{"minimumLod",
                  &Record::minimumLod,
                  &Engine::getMinLod,
                  [](Engine& sampler, float level) {
                      sampler.setLodRange(level, std::max(level, sampler.getMaxLod()));
                  }},
            Field{"maximumLod",
                  &Record::maximumLod,
                  &Engine::getMaxLod,
                  [](Engine& sampler, float level) {
                      sampler.setLodRange(std::min(level, sampler.getMinLod()), level);
                  }},
            VL_FIELD(comparisonFunction, getComparisonFunc, setComparisonFunc),
            Field{"borderColour",
                  &Record::borderColour,
                  &Engine::getBorderColor,
                  [](Engine& sampler, const std::array<float, 4>& colour) {
                      sampler.setBorderColor(colour[0], colour[1], colour[2], colour[3]);
                  }},
    };
    static KindLayout layout() { return {"sampler.json", {}}; }
    static void bind(Bindings<SamplerKind>& window);
};

VL_RESOURCE_KIND_NAMES(Sampler);

// Values that the engine has names for travel by them. A text that names none changes nothing.

struct SamplerFiltering {
    using Kind = SamplerKind;
    std::string value;

    static constexpr auto members() {
        return std::tuple{Member{"value", &SamplerFiltering::value}};
    }
    vlCommon::Result<> applyTo(vlGraphics::Sampler& sampler) const;
    void readFrom(const SamplerRecord& record);
};

struct SamplerAddress {
    using Kind = SamplerKind;
    std::string value;
    std::uint32_t axis = 0; ///< 0 to 2 for U, V and W; any other changes nothing

    static constexpr auto members() {
        return std::tuple{Member{"value", &SamplerAddress::value},
                          Member{"axis", &SamplerAddress::axis}};
    }
    vlCommon::Result<> applyTo(vlGraphics::Sampler& sampler) const;
    void readFrom(const SamplerRecord& record);
};

struct SamplerComparison {
    using Kind = SamplerKind;
    std::string value;

    static constexpr auto members() {
        return std::tuple{Member{"value", &SamplerComparison::value}};
    }
    vlCommon::Result<> applyTo(vlGraphics::Sampler& sampler) const;
    void readFrom(const SamplerRecord& record);
};

VL_FIELD_EDIT(Sampler, Anisotropy, anisotropy);
VL_FIELD_EDIT(Sampler, Bias, lodBias);

/** Levels upside down change nothing. */
struct SamplerLodLevels {
    using Kind = SamplerKind;
    float minimum = 0;
    float maximum = 0;

    static constexpr auto members() {
        return std::tuple{Member{"minimum", &SamplerLodLevels::minimum},
                          Member{"maximum", &SamplerLodLevels::maximum}};
    }
    vlCommon::Result<> applyTo(vlGraphics::Sampler& sampler) const;
    void readFrom(const SamplerRecord& record);
};

struct SamplerBorderColor {
    using Kind = SamplerKind;
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 0;

    static constexpr auto members() {
        return std::tuple{Member{"red", &SamplerBorderColor::red},
                          Member{"green", &SamplerBorderColor::green},
                          Member{"blue", &SamplerBorderColor::blue},
                          Member{"alpha", &SamplerBorderColor::alpha}};
    }
    void applyTo(vlGraphics::Sampler& sampler) const;
    void readFrom(const SamplerRecord& record);
};

using SamplerFilteringMessage = ResourceEditMessage<SamplerFiltering>;
using SamplerAddressMessage = ResourceEditMessage<SamplerAddress>;
using SamplerComparisonMessage = ResourceEditMessage<SamplerComparison>;
using SamplerLodLevelsMessage = ResourceEditMessage<SamplerLodLevels>;
using SamplerBorderColorMessage = ResourceEditMessage<SamplerBorderColor>;

} // namespace vlEditor
