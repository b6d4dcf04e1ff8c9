#include "editors/shader/ShaderLists.h"

#include "editors/shader/PassSlotTypes.h"
#include "editors/shader/ShaderAddress.h"
#include "interfaces/ReservedNames.h"

#include <fmt/format.h>

namespace vlEditor {
namespace {

constexpr const char* unusedRemark = "Not used by the program";

/// What the program has there; null where it has nothing, or is not compiled.
const ShaderWantedUiData* wantedAt(const ShaderUiData& shader,
                                   std::string_view letter,
                                   std::uint32_t slot,
                                   std::uint32_t space) {
    for (const ShaderWantedUiData& wanted : shader.wanted) {
        if (wanted.letter != letter || wanted.space != space || slot < wanted.slot) continue;
        // No count is as many as there are.
        if (wanted.count == 0 || slot - wanted.slot < wanted.count) return &wanted;
    }
    return nullptr;
}

/// "t1 albedo" and what is there.
ListedElement elementAt(const ShaderUiData& shader,
                        std::string_view letter,
                        std::uint32_t slot,
                        std::uint32_t space,
                        const std::string& content) {
    const ShaderWantedUiData* wanted = wantedAt(shader, letter, slot, space);
    std::string label = addressText(letter, slot, space);
    if (wanted != nullptr) label += " " + wanted->name;
    if (wanted != nullptr && wanted->count != 1) label += fmt::format("[{}]", slot - wanted->slot);
    const bool isUsed = wanted != nullptr || !shader.reflected;
    return {label + " : " + content,
            keyOf(slot, space),
            {{"slot", slot}, {"space", space}},
            isUsed ? "" : unusedRemark};
}

void addInOrder(std::vector<ListedElement>& all, ListedElement element) {
    element.place.emplace_back("index", static_cast<std::uint32_t>(all.size()));
    all.push_back(std::move(element));
}

/// What the engine has where the window goes on showing something else; empty where it does not.
std::string whatTheEngineHas(const ShaderPassSlotUiData& slot) {
    const std::string& name = slot.engine.resourceName;
    const bool isContext = slot.resourceName == ReservedNames::contextCamera;
    if (PassSlotTypes::isCamera(slot.type) && (isContext ? "" : slot.resourceName) != name)
        return name.empty() ? "the camera of the pass" : fmt::format("the camera '{}'", name);
    if (PassSlotTypes::isTexture(slot.type) && slot.resourceName != name)
        return fmt::format("the size of '{}'", name);
    const std::uint32_t modulo = moduloIn(slot.engine.value);
    if (slot.type == PassSlotTypes::time && moduloIn(slot.value) != modulo)
        return fmt::format("a modulo of {} ms", modulo);
    return {};
}

} // namespace

std::uint64_t keyOf(std::uint32_t slot, std::uint32_t space) {
    return std::uint64_t{space} << 32U | slot;
}

std::vector<ListedElement> listBindings(const ShaderUiData& shader,
                                        std::string_view letter,
                                        const std::vector<ShaderResourceBindingUiData>& bindings) {
    std::vector<ListedElement> all;
    for (const ShaderResourceBindingUiData& binding : bindings) {
        const std::string content = binding.resource.empty() ? "-" : binding.resource;
        addInOrder(all, elementAt(shader, letter, binding.slot, binding.space, content));
    }
    return all;
}

std::vector<ListedElement> listBuffers(const ShaderUiData& shader) {
    std::vector<ListedElement> all;
    for (const ShaderConstantBufferUiData& buffer : shader.constantBuffers) {
        const std::size_t count = buffer.slots.size();
        const std::string content = fmt::format("{} slot{}", count, count == 1 ? "" : "s");
        addInOrder(all, elementAt(shader, "b", buffer.slot, buffer.space, content));
    }
    return all;
}

std::vector<ListedElement> listPassSlots(const ShaderConstantBufferUiData& buffer) {
    std::vector<ListedElement> all;
    for (const ShaderPassSlotUiData& slot : buffer.slots) {
        const auto index = static_cast<std::uint32_t>(all.size());
        const std::string engine = whatTheEngineHas(slot);
        all.push_back({fmt::format("{}. {}", index, PassSlotTypes::labelInList(slot.type)),
                       index,
                       {{"slotIndex", index}, {"slot", buffer.slot}, {"space", buffer.space}},
                       engine.empty() ? "" : "Until it is set the engine has " + engine});
    }
    return all;
}

std::vector<ListedElement> listInstanceSlots(const ShaderUiData& shader) {
    std::vector<ListedElement> all;
    constexpr std::uint32_t worldMatrix = 1;
    for (const std::uint32_t type : shader.instanceSlots) {
        const auto index = static_cast<std::uint32_t>(all.size());
        const char* label = type == worldMatrix ? "World matrix" : "UNKNOWN";
        all.push_back({fmt::format("{}. {}", index, label), index, {{"index", index}}, {}});
    }
    return all;
}

} // namespace vlEditor
