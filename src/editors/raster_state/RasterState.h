#pragma once
#include "interfaces/ContainerType.h"
#include "interfaces/kinds/ResourceInterface.h"

#include <vlGraphics/RasterState.h>

namespace vlEditor {

struct RasterStateKind;

/** What the UI knows of a raster state, enumerations as the engine's numbers. */
struct RasterStateRecord {
    std::string name;
    std::uint32_t fillMode = 3;
    std::uint32_t cullMode = 3;
    std::int32_t depthBias = 1;
    float depthBiasClamp = 0;
    float slopeScaledDepthBias = 0;
    bool frontCounterClockwise = false;
    bool depthClip = false;
    bool scissorEnabled = false;
    bool multiSamplingEnabled = false;
    bool lineAntiAliasingEnabled = false;

    template <class K = RasterStateKind> static constexpr auto members() {
        return membersOfFields<K>();
    }
    friend bool operator==(const RasterStateRecord&, const RasterStateRecord&) = default;
};

struct RasterStateKind {
    using Record = RasterStateRecord;
    using Engine = vlGraphics::RasterState;
    using Manager = vlGraphics::RasterStateManager;

    static constexpr ContainerType containerType = ContainerType::rasterState;
    static constexpr KindTexts texts{
            .kind = "RasterState",
            .title = "Raster States",
            .prefix = "EDITOR_RASTER_",
            .creation = "RASTER_CREATION",
            .creationTitle = "Raster State Creation",
            .explorer = "EDITOR_RASTER_EXPLO",
            .filterLabel = "Raster State Declaration Files",
            .extension = "vlrs",
            .pickLists = {{{"RASTER_POP_UP_LIST"}}},
            .subject = "Raster state",
            .deleteStart = "Deleting Raster State '",
    };
    static constexpr KindHooks<Engine> hooks{
            .load = &vlGraphics::ContentLoader::loadRasterStateDeclaration};
    // In the order in which the engine is set.
    static constexpr std::tuple fields{
            Field{"fillMode", &Record::fillMode, &Engine::getFillMode, &Engine::setFillMode},
            Field{"cullMode", &Record::cullMode, &Engine::getCullMode, &Engine::setCullMode},
            Field{"frontCounterClockwise",
                  &Record::frontCounterClockwise,
                  &Engine::getFrontCounterClockwise,
                  &Engine::setFrontCounterClockwise},
            Field{"depthBias", &Record::depthBias, &Engine::getDepthBias, &Engine::setDepthBias},
            Field{"depthBiasClamp",
                  &Record::depthBiasClamp,
                  &Engine::getDepthBiasClamp,
                  &Engine::setDepthBiasClamp},
            Field{"slopeScaledDepthBias",
                  &Record::slopeScaledDepthBias,
                  &Engine::getSlopeScaledDepthBias,
                  &Engine::setSlopeScaledDepthBias},
            Field{"depthClip", &Record::depthClip, &Engine::getDepthClip, &Engine::setDepthClip},
            Field{"scissorEnabled",
                  &Record::scissorEnabled,
                  &Engine::getScissor,
                  &Engine::setScissor},
            Field{"multiSamplingEnabled",
                  &Record::multiSamplingEnabled,
                  &Engine::getMultiSampling,
                  &Engine::setMultiSampling},
            Field{"lineAntiAliasingEnabled",
                  &Record::lineAntiAliasingEnabled,
                  &Engine::getLineAntiAliasing,
                  &Engine::setLineAntiAliasing},
    };
    static KindLayout layout() { return {"raster_state.json", {}}; }
    static void bind(Bindings<RasterStateKind>& window);
};

VL_RESOURCE_KIND_NAMES(RasterState);

template <auto member> using SetRaster = SetField<RasterStateKind, member>;
using RasterRecord = RasterStateRecord;
struct RasterStateFill : SetRaster<&RasterRecord::fillMode> {};
struct RasterStateCull : SetRaster<&RasterRecord::cullMode> {};
struct RasterStateCcw : SetRaster<&RasterRecord::frontCounterClockwise> {};
struct RasterStateDepthClip : SetRaster<&RasterRecord::depthClip> {};
struct RasterStateScissor : SetRaster<&RasterRecord::scissorEnabled> {};
struct RasterStateMs : SetRaster<&RasterRecord::multiSamplingEnabled> {};
struct RasterStateAa : SetRaster<&RasterRecord::lineAntiAliasingEnabled> {};
struct RasterStateBias : SetRaster<&RasterRecord::depthBias> {};
struct RasterStateBiasClamp : SetRaster<&RasterRecord::depthBiasClamp> {};
struct RasterStateSlopeScale : SetRaster<&RasterRecord::slopeScaledDepthBias> {};

using RasterStateFillMessage = ResourceEditMessage<RasterStateFill>;
using RasterStateCullMessage = ResourceEditMessage<RasterStateCull>;
using RasterStateCcwMessage = ResourceEditMessage<RasterStateCcw>;
using RasterStateDepthClipMessage = ResourceEditMessage<RasterStateDepthClip>;
using RasterStateScissorMessage = ResourceEditMessage<RasterStateScissor>;
using RasterStateMsMessage = ResourceEditMessage<RasterStateMs>;
using RasterStateAaMessage = ResourceEditMessage<RasterStateAa>;
using RasterStateBiasMessage = ResourceEditMessage<RasterStateBias>;
using RasterStateBiasClampMessage = ResourceEditMessage<RasterStateBiasClamp>;
using RasterStateSlopeScaleMessage = ResourceEditMessage<RasterStateSlopeScale>;

} // namespace vlEditor
