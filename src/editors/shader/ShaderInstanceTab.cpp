#include "core/EditorLogger.h"
#include "editors/shader/ShaderLists.h"
#include "editors/shader/ShaderSlotEdits.h"
#include "editors/shader/ShaderTabs.h"

#include <fmt/format.h>

namespace vlEditor {
namespace {

using Window = Bindings<ShaderKind>;
using Rows = ElementRows<ShaderKind>;

void bindSlots(Window& window) {
    const auto slots = Rows::make(window, "_INSTANCE_SLOT_LIST", listInstanceSlots);
    slots->adds("_INSTANCE_SLOT_ADD", ChangeShaderAddInstanceSlot{});
    slots->deletes("_INSTANCE_SLOT_DEL", ChangeShaderDelInstanceSlot{});
    slots->moves("_INSTANCE_SLOT_UP",
                 ChangeShaderUpInstanceSlot{},
                 "_INSTANCE_SLOT_DOWN",
                 ChangeShaderDownInstanceSlot{});
    const std::string combo = window.getBase() + "_INSTANCE_SLOT_TYPE_COMBO";
    // There is nothing else to choose yet.
    bindCombo(combo, {{"WORLD_MATRIX", 1}}, [](const std::string&, std::uint32_t) {});
    slots->row<std::uint32_t>(
            [](const ShaderUiData& shader, const ListedElement& element) {
                return shader.instanceSlots[element.key];
            },
            [combo](const std::uint32_t* type) {
                showCombo(combo, type == nullptr ? std::nullopt : std::optional(*type), false);
            });
    slots->able(combo, [rows = slots.get()] { return rows->whyNone(); });
}

void bindMaximum(Window& window) {
    const std::string box = window.getBase() + "_INSTANCE_MAX_EDIT";
    const auto known = window.row<std::uint32_t>(
            [](const ShaderUiData& shader) { return shader.maxInstancesPerBuffer; },
            [box](const std::uint32_t* count, bool isMixed) {
                showEdit(box,
                         count == nullptr ? std::nullopt : std::optional(showNumber(*count)),
                         isMixed);
            });
    const auto pressed = [&window, box, known] {
        const auto text = editText(box);
        if (!text || window.selectedNames().empty()) return;
        const auto count = readNumber<std::uint32_t>(*text);
        if (!count || *count == 0) {
            EditorLogger::getInstance().log(
                    fmt::format(
                            "Number '{}' could not be parsed or is 0 or less. This is incorrect.",
                            *text),
                    "Editor");
            return;
        }
        window.post(ChangeShaderMaxInstanceSlot{},
                    [&](ChangeShaderMaxInstanceSlot& each) { each.value = *count; });
        *known = false;
    };
    bindButton(window.getBase() + "_INSTANCE_MAX_OK", pressed);
    bindEdit(box, pressed);
}

} // namespace

void bindShaderInstances(Window& window) {
    bindSlots(window);
    bindMaximum(window);
}

} // namespace vlEditor
