#pragma once
#include "interfaces/ContainerType.h"
#include "interfaces/kinds/ResourceInterface.h"

#include <vlGraphics/DepthStencilState.h>

namespace vlEditor {

struct DepthStencilStateKind;

/** What the UI knows of a depth-stencil state, enumerations as the engine's numbers. */
struct DepthStencilStateRecord {
    std::string name;
    std::uint32_t depthWriteMask = 1;
    std::uint32_t depthFunction = 8;
    std::uint8_t stencilWriteMask = 255;
    std::uint8_t stencilReadMask = 255;
    std::uint32_t frontFacesStencilFailOperation = 3;
    std::uint32_t frontFacesDepthFailOperation = 3;
    std::uint32_t frontFacesPassOperation = 3;
    std::uint32_t frontFacesStencilFunction = 8;
    std::uint32_t backFacesStencilFailOperation = 3;
    std::uint32_t backFacesDepthFailOperation = 3;
    std::uint32_t backFacesPassOperation = 3;
    std::uint32_t backFacesStencilFunction = 8;
    bool depthEnabled = false;
    bool stencilEnabled = false;

    template <class K = DepthStencilStateKind> static constexpr auto members() {
        return membersOfFields<K>();
    }
    friend bool operator==(const DepthStencilStateRecord&,
                           const DepthStencilStateRecord&) = default;
};

namespace detail {

// Getters of one setting of the faces that are seen from one side.
constexpr auto ofFront(auto setting) {
    return [setting](const vlGraphics::DepthStencilState& state) {
        return state.getFront().*setting;
    };
}
constexpr auto ofBack(auto setting) {
    return [setting](const vlGraphics::DepthStencilState& state) {
        return state.getBack().*setting;
    };
}

} // namespace detail

struct DepthStencilStateKind {
    using Record = DepthStencilStateRecord;
    using Engine = vlGraphics::DepthStencilState;
    using Manager = vlGraphics::DepthStencilStateManager;
    using Face = Engine::Face;

    static constexpr ContainerType containerType = ContainerType::depthStencilState;
    static constexpr KindTexts texts{
            .kind = "DepthStencilState",
            .title = "Depth Stencil States",
            .prefix = "EDITOR_DEPTH_",
            .creation = "DEPTH_CREATION",
            .creationTitle = "Depth Stencil State Creation",
            .explorer = "EDITOR_DEPTH_EXPLO",
            .filterLabel = "Depth Stencil State Declaration Files",
            .extension = "vlds",
            .pickLists = {{{"DEPTH_POP_UP_LIST"}}},
            .subject = "Depth stencil state",
            .deleteStart = "Deleting Depth Stencil State '",
    };
    static constexpr KindHooks<Engine> hooks{
            .load = &vlGraphics::ContentLoader::loadDepthStencilStateDeclaration};
    // In the order in which the engine is set.
    static constexpr std::tuple fields{
            VL_FIELD(depthEnabled, getDepthEnabled, setDepthEnabled),
            VL_FIELD(depthWriteMask, getDepthWriteMask, setDepthWriteMask),
            VL_FIELD(depthFunction, getDepthFunction, setDepthFunction),
            VL_FIELD(stencilEnabled, getStencilEnabled, setStencilEnabled),
            VL_FIELD(stencilReadMask, getStencilReadMask, setStencilReadMask),
            VL_FIELD(stencilWriteMask, getStencilWriteMask, setStencilWriteMask),
            Field{"frontFacesStencilFailOperation",
                  &Record::frontFacesStencilFailOperation,
                  detail::ofFront(&Face::fail),
                  &Engine::setFrontFail},
            Field{"frontFacesDepthFailOperation",
                  &Record::frontFacesDepthFailOperation,
                  detail::ofFront(&Face::depthFail),
                  &Engine::setFrontDepthFail},
            Field{"frontFacesPassOperation",
                  &Record::frontFacesPassOperation,
                  detail::ofFront(&Face::pass),
                  &Engine::setFrontPass},
            Field{"frontFacesStencilFunction",
                  &Record::frontFacesStencilFunction,
                  detail::ofFront(&Face::function),
                  &Engine::setFrontFunction},
            Field{"backFacesStencilFailOperation",
                  &Record::backFacesStencilFailOperation,
                  detail::ofBack(&Face::fail),
                  &Engine::setBackFail},
            Field{"backFacesDepthFailOperation",
                  &Record::backFacesDepthFailOperation,
                  detail::ofBack(&Face::depthFail),
                  &Engine::setBackDepthFail},
            Field{"backFacesPassOperation",
                  &Record::backFacesPassOperation,
                  detail::ofBack(&Face::pass),
                  &Engine::setBackPass},
            Field{"backFacesStencilFunction",
                  &Record::backFacesStencilFunction,
                  detail::ofBack(&Face::function),
                  &Engine::setBackFunction},
    };
    static KindLayout layout() { return {"depth_stencil_state.json", {}}; }
    static void bind(Bindings<DepthStencilStateKind>& window);
};

VL_RESOURCE_KIND_NAMES(DepthStencilState);

VL_FIELD_EDIT(DepthStencilState, DepthEnable, depthEnabled);
VL_FIELD_EDIT(DepthStencilState, DepthWriteMask, depthWriteMask);
VL_FIELD_EDIT(DepthStencilState, DepthFunction, depthFunction);
VL_FIELD_EDIT(DepthStencilState, StencilEnable, stencilEnabled);
VL_FIELD_EDIT(DepthStencilState, StencilReadMask, stencilReadMask);
VL_FIELD_EDIT(DepthStencilState, StencilWriteMask, stencilWriteMask);
VL_FIELD_EDIT(DepthStencilState, StencilFrontFail, frontFacesStencilFailOperation);
VL_FIELD_EDIT(DepthStencilState, StencilFrontDepthFail, frontFacesDepthFailOperation);
VL_FIELD_EDIT(DepthStencilState, StencilFrontPass, frontFacesPassOperation);
VL_FIELD_EDIT(DepthStencilState, StencilFrontFunction, frontFacesStencilFunction);
VL_FIELD_EDIT(DepthStencilState, StencilBackFail, backFacesStencilFailOperation);
VL_FIELD_EDIT(DepthStencilState, StencilBackDepthFail, backFacesDepthFailOperation);
VL_FIELD_EDIT(DepthStencilState, StencilBackPass, backFacesPassOperation);
VL_FIELD_EDIT(DepthStencilState, StencilBackFunction, backFacesStencilFunction);

} // namespace vlEditor
