#include "editors/depth_stencil_state/DepthStencilState.h"

#include "editors/AllKinds.h"
#include "interfaces/kinds/KindEntry.h"

#include <vlGraphics/ComparisonFunctionUtils.h>

namespace vlEditor {

void DepthStencilStateKind::bind(Bindings<DepthStencilStateKind>& window) {
    using Texts = vlGraphics::StructToString;
    using Comparisons = vlGraphics::ComparisonFunctionUtils;
    const auto masks = choices(&Texts::getDepthWriteMaskFromIndex, &Texts::getDepthWriteMaskString);
    const auto operations = choices(&Texts::getStencilOpFromIndex, &Texts::getStencilOpString);
    const auto comparisons = choices(&Comparisons::fromIndex, &Comparisons::toString);
    window.check("_DEPTH_ENABLE_CHECK", DepthStencilStateDepthEnable{});
    window.combo("_DEPTH_MASK_COMBO", DepthStencilStateDepthWriteMask{}, masks);
    window.combo("_DEPTH_FUNCTION_COMBO", DepthStencilStateDepthFunction{}, comparisons);
    window.check("_STENCIL_ENABLE_CHECK", DepthStencilStateStencilEnable{});
    window.number(
            "_STENCIL_R_MASK_EDIT", "_STENCIL_R_MASK_BUTTON", DepthStencilStateStencilReadMask{});
    window.number(
            "_STENCIL_W_MASK_EDIT", "_STENCIL_W_MASK_BUTTON", DepthStencilStateStencilWriteMask{});
    window.combo("_STENCIL_F_FAIL2_COMBO", DepthStencilStateStencilFrontFail{}, operations);
    window.combo("_STENCIL_F_FAIL1_COMBO", DepthStencilStateStencilFrontDepthFail{}, operations);
    window.combo("_STENCIL_F_PASS_COMBO", DepthStencilStateStencilFrontPass{}, operations);
    window.combo("_STENCIL_F_FUNCTION_COMBO", DepthStencilStateStencilFrontFunction{}, comparisons);
    window.combo("_STENCIL_B_FAIL2_COMBO", DepthStencilStateStencilBackFail{}, operations);
    window.combo("_STENCIL_B_FAIL1_COMBO", DepthStencilStateStencilBackDepthFail{}, operations);
    window.combo("_STENCIL_B_PASS_COMBO", DepthStencilStateStencilBackPass{}, operations);
    window.combo("_STENCIL_B_FUNCTION_COMBO", DepthStencilStateStencilBackFunction{}, comparisons);
}

const AnyKind& depthStencilStateKind() {
    static const KindEntry<DepthStencilStateKind,
                           DepthStencilStateDepthEnable,
                           DepthStencilStateDepthWriteMask,
                           DepthStencilStateDepthFunction,
                           DepthStencilStateStencilEnable,
                           DepthStencilStateStencilReadMask,
                           DepthStencilStateStencilWriteMask,
                           DepthStencilStateStencilFrontFail,
                           DepthStencilStateStencilFrontDepthFail,
                           DepthStencilStateStencilFrontPass,
                           DepthStencilStateStencilFrontFunction,
                           DepthStencilStateStencilBackFail,
                           DepthStencilStateStencilBackDepthFail,
                           DepthStencilStateStencilBackPass,
                           DepthStencilStateStencilBackFunction>
            kind;
    return kind;
}

} // namespace vlEditor
