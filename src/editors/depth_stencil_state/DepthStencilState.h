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
            Field{"depthEnabled",
                  &Record::depthEnabled,
                  &Engine::getDepthEnabled,
                  &Engine::setDepthEnabled},
            Field{"depthWriteMask",
                  &Record::depthWriteMask,
                  &Engine::getDepthWriteMask,
                  &Engine::setDepthWriteMask},
            Field{"depthFunction",
                  &Record::depthFunction,
                  &Engine::getDepthFunction,
                  &Engine::setDepthFunction},
            Field{"stencilEnabled",
                  &Record::stencilEnabled,
                  &Engine::getStencilEnabled,
                  &Engine::setStencilEnabled},
            Field{"stencilReadMask",
                  &Record::stencilReadMask,
                  &Engine::getStencilReadMask,
                  &Engine::setStencilReadMask},
            Field{"stencilWriteMask",
                  &Record::stencilWriteMask,
                  &Engine::getStencilWriteMask,
                  &Engine::setStencilWriteMask},
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

template <auto member> using SetDepthStencil = SetField<DepthStencilStateKind, member>;
using DepthRecord = DepthStencilStateRecord;
struct DepthStencilStateDepthEnable : SetDepthStencil<&DepthRecord::depthEnabled> {};
struct DepthStencilStateDepthWriteMask : SetDepthStencil<&DepthRecord::depthWriteMask> {};
struct DepthStencilStateDepthFunction : SetDepthStencil<&DepthRecord::depthFunction> {};
struct DepthStencilStateStencilEnable : SetDepthStencil<&DepthRecord::stencilEnabled> {};
struct DepthStencilStateStencilReadMask : SetDepthStencil<&DepthRecord::stencilReadMask> {};
struct DepthStencilStateStencilWriteMask : SetDepthStencil<&DepthRecord::stencilWriteMask> {};
struct DepthStencilStateStencilFrontFail
    : SetDepthStencil<&DepthRecord::frontFacesStencilFailOperation> {};
struct DepthStencilStateStencilFrontDepthFail
    : SetDepthStencil<&DepthRecord::frontFacesDepthFailOperation> {};
struct DepthStencilStateStencilFrontPass : SetDepthStencil<&DepthRecord::frontFacesPassOperation> {
};
struct DepthStencilStateStencilFrontFunction
    : SetDepthStencil<&DepthRecord::frontFacesStencilFunction> {};
struct DepthStencilStateStencilBackFail
    : SetDepthStencil<&DepthRecord::backFacesStencilFailOperation> {};
struct DepthStencilStateStencilBackDepthFail
    : SetDepthStencil<&DepthRecord::backFacesDepthFailOperation> {};
struct DepthStencilStateStencilBackPass : SetDepthStencil<&DepthRecord::backFacesPassOperation> {};
struct DepthStencilStateStencilBackFunction
    : SetDepthStencil<&DepthRecord::backFacesStencilFunction> {};

using DepthStencilStateDepthEnableMessage = ResourceEditMessage<DepthStencilStateDepthEnable>;
using DepthStencilStateDepthWriteMaskMessage = ResourceEditMessage<DepthStencilStateDepthWriteMask>;
using DepthStencilStateDepthFunctionMessage = ResourceEditMessage<DepthStencilStateDepthFunction>;
using DepthStencilStateStencilEnableMessage = ResourceEditMessage<DepthStencilStateStencilEnable>;
using DepthStencilStateStencilReadMaskMessage =
        ResourceEditMessage<DepthStencilStateStencilReadMask>;
using DepthStencilStateStencilWriteMaskMessage =
        ResourceEditMessage<DepthStencilStateStencilWriteMask>;
using DepthStencilStateStencilFrontFailMessage =
        ResourceEditMessage<DepthStencilStateStencilFrontFail>;
using DepthStencilStateStencilFrontDepthFailMessage =
        ResourceEditMessage<DepthStencilStateStencilFrontDepthFail>;
using DepthStencilStateStencilFrontPassMessage =
        ResourceEditMessage<DepthStencilStateStencilFrontPass>;
using DepthStencilStateStencilFrontFunctionMessage =
        ResourceEditMessage<DepthStencilStateStencilFrontFunction>;
using DepthStencilStateStencilBackFailMessage =
        ResourceEditMessage<DepthStencilStateStencilBackFail>;
using DepthStencilStateStencilBackDepthFailMessage =
        ResourceEditMessage<DepthStencilStateStencilBackDepthFail>;
using DepthStencilStateStencilBackPassMessage =
        ResourceEditMessage<DepthStencilStateStencilBackPass>;
using DepthStencilStateStencilBackFunctionMessage =
        ResourceEditMessage<DepthStencilStateStencilBackFunction>;

} // namespace vlEditor
