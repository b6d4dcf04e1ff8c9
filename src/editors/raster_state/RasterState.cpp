#include "editors/raster_state/RasterState.h"

#include "editors/AllKinds.h"
#include "interfaces/kinds/KindEntry.h"

namespace vlEditor {

void RasterStateKind::bind(Bindings<RasterStateKind>& window) {
    using Texts = vlGraphics::StructToString;
    const auto fillModes = choices(&Texts::getFillModeFromIndex, &Texts::getFillModeString);
    const auto cullModes = choices(&Texts::getCullModeFromIndex, &Texts::getCullModeString);
    window.combo("_FILL_COMBO", RasterStateFill{}, fillModes);
    window.combo("_CULL_COMBO", RasterStateCull{}, cullModes);
    window.check("_CCW_CHECK", RasterStateCcw{});
    window.check("_DEPTH_CLIP_CHECK", RasterStateDepthClip{});
    window.check("_SCISSOR_CHECK", RasterStateScissor{});
    window.check("_MS_CHECK", RasterStateMs{});
    window.check("_AA_CHECK", RasterStateAa{});
    window.number("_DEPTH_BIAS_EDIT", "_DEPTH_BIAS_BUTTON", RasterStateBias{});
    window.number("_BIAS_CLAMP_EDIT", "_BIAS_CLAMP_BUTTON", RasterStateBiasClamp{});
    window.number("_SCALE_BIAS_EDIT", "_SCALE_BIAS_BUTTON", RasterStateSlopeScale{});
}

const AnyKind& rasterStateKind() {
    static const KindEntry<RasterStateKind,
                           RasterStateFill,
                           RasterStateCull,
                           RasterStateCcw,
                           RasterStateDepthClip,
                           RasterStateScissor,
                           RasterStateMs,
                           RasterStateAa,
                           RasterStateBias,
                           RasterStateBiasClamp,
                           RasterStateSlopeScale>
            kind;
    return kind;
}

} // namespace vlEditor
