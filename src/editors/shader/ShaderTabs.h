#pragma once
#include "editors/shader/ShaderKind.h"
#include "interfaces/kinds/ElementRows.h"

#include <string>
#include <vector>

namespace vlEditor {

// The tabs of a shader's window, each with its list and what acts on the element selected there.
// UI thread only.

void bindShaderTextures(Bindings<ShaderKind>& window);
void bindShaderSamplers(Bindings<ShaderKind>& window);
void bindShaderUavs(Bindings<ShaderKind>& window);
void bindShaderBuffers(Bindings<ShaderKind>& window);
void bindShaderInstances(Bindings<ShaderKind>& window);

// What they share.

constexpr const char* unparsedAddress = "Can't parse new settings (space and / or slot). Aborting.";

/// Space and slot, whose members the edits of all four kinds of address call alike.
template <class Edit>
std::vector<ElementBox<Edit, std::uint32_t>> addressBoxes(const std::string& prefix) {
    return {{prefix + "_SPACE_EDIT", [](Edit& edit) -> std::uint32_t& { return edit.newSpace; }},
            {prefix + "_SLOT_EDIT", [](Edit& edit) -> std::uint32_t& { return edit.newSlot; }}};
}

} // namespace vlEditor
