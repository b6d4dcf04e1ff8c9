#include "interfaces/kinds/ResourceChange.h"

#include <fmt/format.h>

namespace vlEditor {
namespace {

constexpr std::size_t mostFieldsNamed = 3;

std::string nameIn(const vlExport::Node& tree) {
    const vlExport::Node* name = tree.find("name");
    const std::string* text = name == nullptr ? nullptr : name->asString();
    return text == nullptr ? std::string() : *text;
}

/// "depthBiasClamp" is "depth bias clamp".
std::string words(std::string_view camelCase) {
    std::string text;
    for (const char letter : camelCase) {
        const bool isUpper = letter >= 'A' && letter <= 'Z';
        if (isUpper) text += ' ';
        text += isUpper ? static_cast<char>(letter - 'A' + 'a') : letter;
    }
    return text;
}

/// The members of a memento that say how the resource is set.
const vlExport::Node& settingsOf(const vlExport::Node& tree) {
    const vlExport::Node* declaration = tree.find("declaration");
    return declaration == nullptr ? tree : *declaration;
}

std::string changedFields(const vlExport::Node& before, const vlExport::Node& after) {
    std::string text;
    std::size_t count = 0;
    for (const vlExport::Member& member : settingsOf(after).members()) {
        const vlExport::Node* earlier = settingsOf(before).find(member.name);
        if (member.name == "name" || (earlier != nullptr && *earlier == member.value)) continue;
        if (++count > mostFieldsNamed) continue;
        text += (text.empty() ? "" : ", ") + words(member.name);
    }
    return count > mostFieldsNamed ? text + ", ..." : text;
}

} // namespace

std::string
describeChange(const KindTexts& texts, const vlExport::Node& before, const vlExport::Node& after) {
    if (before.isNull()) return "Create " + thingNamed(texts, nameIn(after));
    const std::string thing = thingNamed(texts, nameIn(before));
    if (after.isNull()) return "Erase " + thing;
    if (nameIn(before) != nameIn(after))
        return fmt::format("Rename {} to '{}'", thing, nameIn(after));
    const std::string fields = changedFields(before, after);
    return fields.empty() ? "Change " + thing : fmt::format("Change {}: {}", thing, fields);
}

std::size_t heldBytes(const vlExport::Node& tree) {
    std::size_t sum = 0;
    if (const std::string* text = tree.asString()) sum = text->size();
    for (const vlExport::Node& element : tree.elements())
        sum += sizeof(element) + heldBytes(element);
    for (const vlExport::Member& member : tree.members())
        sum += sizeof(member) + member.name.size() + heldBytes(member.value);
    return sum;
}

} // namespace vlEditor
