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
            VL_FIELD(fillMode, getFillMode, setFillMode),
            VL_FIELD(cullMode, getCullMode, setCullMode),
            VL_FIELD(frontCounterClockwise, getFrontCounterClockwise, setFrontCounterClockwise),
            VL_FIELD(depthBias, getDepthBias, setDepthBias),
            VL_FIELD(depthBiasClamp, getDepthBiasClamp, setDepthBiasClamp),
            VL_FIELD(slopeScaledDepthBias, getSlopeScaledDepthBias, setSlopeScaledDepthBias),
            VL_FIELD(depthClip, getDepthClip, setDepthClip),
            VL_FIELD(scissorEnabled, getScissor, setScissor),
            VL_FIELD(multiSamplingEnabled, getMultiSampling, setMultiSampling),
            VL_FIELD(lineAntiAliasingEnabled, getLineAntiAliasing, setLineAntiAliasing),
    };
    static KindLayout layout() { return {"raster_state.json", {}}; }
    static void bind(Bindings<RasterStateKind>& window);
};

VL_RESOURCE_KIND_NAMES(RasterState);

VL_FIELD_EDIT(RasterState, Fill, fillMode);
VL_FIELD_EDIT(RasterState, Cull, cullMode);
VL_FIELD_EDIT(RasterState, Ccw, frontCounterClockwise);
VL_FIELD_EDIT(RasterState, DepthClip, depthClip);
VL_FIELD_EDIT(RasterState, Scissor, scissorEnabled);
VL_FIELD_EDIT(RasterState, Ms, multiSamplingEnabled);
VL_FIELD_EDIT(RasterState, Aa, lineAntiAliasingEnabled);
VL_FIELD_EDIT(RasterState, Bias, depthBias);
VL_FIELD_EDIT(RasterState, BiasClamp, depthBiasClamp);
VL_FIELD_EDIT(RasterState, SlopeScale, slopeScaledDepthBias);

} // namespace vlEditor
