#pragma once
#include "editors/shader/ShaderUiData.h"
#include "interfaces/kinds/ElementList.h"

#include <string_view>
#include <vector>

namespace vlEditor {

// What the lists of a shader's window say of it, with what the program calls it where that is
// known. Entries that the program does not use are remarked. UI thread only.

/// Tells what is bound at an address from what is bound at others.
std::uint64_t keyOf(std::uint32_t slot, std::uint32_t space);

/// "t1 albedo : rust"
std::vector<ListedElement> listBindings(const ShaderUiData& shader,
                                        std::string_view letter,
                                        const std::vector<ShaderResourceBindingUiData>& bindings);
/// "b0 PassBuffer : 2 slots"
std::vector<ListedElement> listBuffers(const ShaderUiData& shader);
/// "1. Vector4"; a slot that is shown otherwise than the engine has it is remarked.
std::vector<ListedElement> listPassSlots(const ShaderConstantBufferUiData& buffer);
std::vector<ListedElement> listInstanceSlots(const ShaderUiData& shader);

} // namespace vlEditor
