#include "editors/blend_state/BlendState.h"

#include "editors/AllKinds.h"
#include "interfaces/kinds/KindEntry.h"

namespace vlEditor {

void BlendStateKind::bind(Bindings<BlendStateKind>& window) {
    using Texts = vlGraphics::StructToString;
    const auto factors = choices(&Texts::getBlendFromIndex, &Texts::getBlendString);
    const auto operations = choices(&Texts::getBlendOpFromIndex, &Texts::getBlendOpString);
    const auto masks = choices(&Texts::getWriteMaskFromIndex, &Texts::getWriteMaskString);
    window.check("_A_COVERAGE_CHECK", BlendStateAlphaCoverage{});
    window.check("_INDEPENDENT_CHECK", BlendStateIndependent{});
    for (std::uint32_t target = 0; target < Engine::targetCount; ++target) {
        const std::string id = std::to_string(target);
        window.check("_TARGET_ENABLE_" + id, BlendStateEnable{{target}});
        window.combo("_SRC_EDIT_" + id, BlendStateSrc{{0, target, false}}, factors);
        window.combo("_DEST_EDIT_" + id, BlendStateDest{{0, target, false}}, factors);
        window.combo("_OP_EDIT_" + id, BlendStateOp{{0, target, false}}, operations);
        window.combo("_SRC_A_EDIT_" + id, BlendStateSrc{{0, target, true}}, factors);
        window.combo("_DEST_A_EDIT_" + id, BlendStateDest{{0, target, true}}, factors);
        window.combo("_OP_A_EDIT_" + id, BlendStateOp{{0, target, true}}, operations);
        window.combo("_W_MASK_EDIT_" + id, BlendStateMask{{target}}, masks);
    }
}

const AnyKind& blendStateKind() {
    static const KindEntry<BlendStateKind,
                           BlendStateAlphaCoverage,
                           BlendStateIndependent,
                           BlendStateEnable,
                           BlendStateSrc,
                           BlendStateDest,
                           BlendStateOp,
                           BlendStateMask>
            kind;
    return kind;
}

} // namespace vlEditor
