#include "editors/shader/ShaderLists.h"
#include "editors/shader/ShaderSlotEdits.h"
#include "editors/shader/ShaderTabs.h"
#include "editors/shader/ShaderWantedList.h"

#include <vlWinUi/ComponentManager.h>

#include <fmt/format.h>

#include <array>

namespace vlEditor {
namespace {

using Window = Bindings<ShaderKind>;
using Rows = ElementRows<ShaderKind>;

constexpr const char* unparsedNumber = "Can't parse new settings (number). Aborting.";

/// The group whose type it is, and no other, can be seen.
void bindGroups(Window& window, Rows& slots) {
    struct Group {
        const char* suffix;
        bool (*isFor)(std::uint32_t type);
    };
    static constexpr std::array groups{
            Group{"_SLOT_VECTOR_WIN",
                  [](std::uint32_t type) { return type == PassSlotTypes::vector; }},
            Group{"_SLOT_MATRIX_WIN",
                  [](std::uint32_t type) { return type == PassSlotTypes::matrix; }},
            Group{"_SLOT_CAM_WIN", &PassSlotTypes::isCamera},
            Group{"_SLOT_TEX_WIN", &PassSlotTypes::isTexture},
            Group{"_SLOT_TIME_WIN",
                  [](std::uint32_t type) { return type == PassSlotTypes::time; }}};
    const auto typeOf = [](const ShaderUiData& shader, const ListedElement& element) {
        PassSlotPlace place;
        for (const auto& [name, value] : element.place) {
            if (name == "slot") place.slot = value;
            if (name == "space") place.space = value;
            if (name == "slotIndex") place.slotIndex = value;
        }
        const ShaderPassSlotUiData* slot = place.find(shader);
        return slot == nullptr ? 0 : slot->type;
    };
    slots.row<std::uint32_t>(typeOf, [base = window.getBase()](const std::uint32_t* type) {
        for (const Group& group : groups) {
            auto* shown = vlWinUi::ComponentManager::get(base + group.suffix);
            if (shown != nullptr) shown->setVisible(type != nullptr && group.isFor(*type));
        }
    });
}

void bindSlotValues(Rows& slots) {
    using Vector = ChangeShaderUpdateVectorSlot;
    std::vector<ElementBox<Vector, float>> vector;
    for (std::size_t i = 0; i < 4; ++i)
        vector.push_back({std::string("_SLOT_VECTOR_") + "XYZW"[i],
                          [i](Vector& edit) -> float& { return edit.value[i]; }});
    slots.numbers("_SLOT_VECTOR_OK", Vector{}, vector, unparsedNumber);

    using Matrix = ChangeShaderUpdateMatrixSlot;
    std::vector<ElementBox<Matrix, float>> matrix;
    for (std::size_t i = 0; i < 16; ++i)
        matrix.push_back({fmt::format("_SLOT_MATRIX_{}{}", i / 4, i % 4),
                          [i](Matrix& edit) -> float& { return edit.value[i]; }});
    slots.numbers("_SLOT_MATRIX_OK", Matrix{}, matrix, unparsedNumber);

    using Time = ChangeShaderUpdateTimeModSlot;
    const auto modulo = [](Time& edit) -> std::uint32_t& { return edit.value; };
    slots.numbers("_SLOT_TIME_OK",
                  Time{},
                  std::vector<ElementBox<Time, std::uint32_t>>{{"_SLOT_TIME_EDIT", modulo}},
                  unparsedNumber);
    slots.picks("_SLOT_CAM_NAME_LABEL",
                "_SLOT_CAM_SEARCH",
                "CAMERA_POP_UP_LIST",
                ChangeShaderUpdateCameraSlot{});
    slots.picks("_SLOT_TEX_NAME_LABEL",
                "_SLOT_TEX_SEARCH",
                "TEXTURE_POP_UP_LIST",
                ChangeShaderUpdateTextureSlot{});
}

} // namespace

void bindShaderBuffers(Window& window) {
    const auto buffers = Rows::make(window, "_CBUF_LIST", listBuffers);
    buffers->adds("_CBUF_ADD", ChangeShaderAddConstantBuffer{});
    buffers->deletes("_CBUF_DEL", ChangeShaderDelConstantBuffer{});
    buffers->numbers("_CBUF_UPDATE",
                     ChangeShaderConstantBufferBindings{},
                     addressBoxes<ChangeShaderConstantBufferBindings>("_CBUF"),
                     unparsedAddress);
    bindWanted(window, *buffers, "_CBUF", "b", {});

    // Both are kept as long as the window.
    Rows* around = buffers.get();
    const auto slots = Rows::make(
            window,
            "_CBUF_SLOT_LIST",
            [around](const ShaderUiData& shader) {
                const auto index = around->getSelectedIndex();
                if (!index || *index >= shader.constantBuffers.size())
                    return std::vector<ListedElement>();
                return listPassSlots(shader.constantBuffers[*index]);
            },
            [around] { return around->getSelected() == nullptr ? 0 : around->getSelected()->key; });
    const auto add = [around, slots = slots.get()] {
        slots->followNew();
        around->post(ChangeShaderAddPassSlot{}, [](auto&) {});
    };
    slots->addsBy("_CBUF_SLOT_ADD", add);
    // More than a shader is needed.
    slots->able(window.getBase() + "_CBUF_SLOT_ADD", [around] { return around->whyNone(); });
    slots->deletes("_CBUF_SLOT_DEL", ChangeShaderDelPassSlot{});
    slots->moves("_CBUF_SLOT_UP",
                 ChangeShaderUpPassSlot{},
                 "_CBUF_SLOT_DOWN",
                 ChangeShaderDownPassSlot{});
    slots->combo("_CBUF_SLOT_TYPE_COMBO", ChangeShaderPassSlotType{}, PassSlotTypes::choices());
    bindSlotValues(*slots);
    bindGroups(window, *slots);
}

} // namespace vlEditor
