#pragma once
#include "interfaces/ContainerType.h"
#include "interfaces/kinds/ResourceInterface.h"

#include <vlGraphics/BlendState.h>

namespace vlEditor {

struct BlendStateKind;

/** What the UI knows of a blend state: enumerations as the engine's numbers, arrays by target. */
struct BlendStateRecord {
    template <class Value> using Targets = std::array<Value, vlGraphics::BlendState::targetCount>;

    std::string name;
    Targets<std::uint32_t> sourceFactor{2};
    Targets<std::uint32_t> destinationFactor{2};
    Targets<std::uint32_t> operation{1};
    Targets<std::uint32_t> sourceAlphaFactor{2};
    Targets<std::uint32_t> destinationAlphaFactor{2};
    Targets<std::uint32_t> alphaOperation{1};
    Targets<std::uint32_t> writeMask{15};
    Targets<bool> blendingEnabled{};
    bool alphaToCoverage = false;
    bool independentBlend = false;

    template <class K = BlendStateKind> static constexpr auto members() {
        return membersOfFields<K>();
    }
    friend bool operator==(const BlendStateRecord&, const BlendStateRecord&) = default;
};

struct BlendStateKind {
    using Record = BlendStateRecord;
    using Engine = vlGraphics::BlendState;
    using Manager = vlGraphics::BlendStateManager;

    static constexpr ContainerType containerType = ContainerType::blendState;
    static constexpr KindTexts texts{
            .kind = "BlendState",
            .title = "Blend States",
            .prefix = "EDITOR_BLEND_",
            .creation = "BLEND_CREATION",
            .creationTitle = "Blend State Creation",
            .explorer = "EDITOR_BLEND_EXPLO",
            .filterLabel = "Blend state Decl Files",
            .extension = "vlbs",
            .pickLists = {{{"BLEND_POP_UP_LIST"}}},
            .subject = "Blend state",
            .deleteStart = "Deleting Blend State '",
    };
    static constexpr KindHooks<Engine> hooks{
            .load = &vlGraphics::ContentLoader::loadBlendStateDeclaration};
    static constexpr std::tuple fields{
            VL_FIELD(alphaToCoverage, getAlphaToCoverage, setAlphaToCoverage),
            VL_FIELD(independentBlend, getIndependentBlend, setIndependentBlend),
            VL_INDEXED_FIELD(blendingEnabled, getBlendEnabled, setBlendEnabled),
            VL_INDEXED_FIELD(sourceFactor, getSrcBlend, setSrcBlend),
            VL_INDEXED_FIELD(destinationFactor, getDestBlend, setDestBlend),
            VL_INDEXED_FIELD(operation, getBlendOp, setBlendOp),
            VL_INDEXED_FIELD(sourceAlphaFactor, getSrcAlphaBlend, setSrcAlphaBlend),
            VL_INDEXED_FIELD(destinationAlphaFactor, getDestAlphaBlend, setDestAlphaBlend),
            VL_INDEXED_FIELD(alphaOperation, getBlendOpAlpha, setBlendOpAlpha),
            VL_INDEXED_FIELD(writeMask, getWriteMask, setWriteMask),
    };
    static KindLayout layout() {
        return {"blend_state.json", {{"blend_target.json", Engine::targetCount}}};
    }
    static void bind(Bindings<BlendStateKind>& window);
};

VL_RESOURCE_KIND_NAMES(BlendState);

/** Sets a field of the colours, or its twin of the alpha channel, of one target. */
template <auto ofColor, auto ofAlpha> struct SetBlendTwin {
    using Kind = BlendStateKind;
    std::uint32_t value = 0;
    std::uint32_t target = 0;
    bool alpha = false;

    static constexpr auto members() {
        return std::tuple{Member{"value", &SetBlendTwin::value},
                          Member{"target", &SetBlendTwin::target},
                          Member{"alpha", &SetBlendTwin::alpha}};
    }
    void applyTo(Kind::Engine& state) const {
        if (alpha)
            SetElement<Kind, ofAlpha>{target, value}.applyTo(state);
        else
            SetElement<Kind, ofColor>{target, value}.applyTo(state);
    }
    void readFrom(const BlendStateRecord& record) {
        if (target < Kind::Engine::targetCount)
            value = alpha ? (record.*ofAlpha)[target] : (record.*ofColor)[target];
    }
};

using BlendRecord = BlendStateRecord;
VL_FIELD_EDIT(BlendState, AlphaCoverage, alphaToCoverage);
VL_FIELD_EDIT(BlendState, Independent, independentBlend);
VL_ELEMENT_EDIT(BlendState, Enable, blendingEnabled);
struct BlendStateSrc : SetBlendTwin<&BlendRecord::sourceFactor, &BlendRecord::sourceAlphaFactor> {};
struct BlendStateDest
    : SetBlendTwin<&BlendRecord::destinationFactor, &BlendRecord::destinationAlphaFactor> {};
struct BlendStateOp : SetBlendTwin<&BlendRecord::operation, &BlendRecord::alphaOperation> {};
VL_ELEMENT_EDIT(BlendState, Mask, writeMask);

using BlendStateSrcMessage = ResourceEditMessage<BlendStateSrc>;
using BlendStateDestMessage = ResourceEditMessage<BlendStateDest>;
using BlendStateOpMessage = ResourceEditMessage<BlendStateOp>;

} // namespace vlEditor
