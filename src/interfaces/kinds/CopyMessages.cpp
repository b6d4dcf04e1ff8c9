#include "interfaces/kinds/CopyMessages.h"

#include <vlExport/JsonExporter.h>
#include <vlWinUi/Clipboard.h>

#include <fmt/format.h>

#include <charconv>

namespace vlEditor {

std::string declarationText(vlMemory::StringView listName, vlExport::Node declaration) {
    vlExport::Node list = vlExport::Node::array();
    list.append(std::move(declaration));
    vlExport::Node tree = vlExport::Node::object();
    tree.add("formatVersion", 1);
    tree.add(listName, std::move(list));
    return vlExport::JsonExporter::exportTreeIntoString(tree);
}

vlCommon::Result<vlExport::Node>
firstDeclaration(const std::string& text, const KindTexts& texts, vlMemory::StringView listName) {
    const auto tree = vlExport::JsonExporter::importIntoTree(text, "clipboard");
    const vlExport::Node* list = tree ? tree->find(listName) : nullptr;
    if (list == nullptr || list->elements().empty() || !list->elements()[0].isObject())
        return vlCommon::fail(
                fmt::format("The clipboard holds no settings of a {}.", texts.thing()));
    return list->elements()[0];
}

std::string nextName(const std::string& name) {
    const std::size_t end = name.find_last_not_of("0123456789");
    constexpr std::size_t mostDigits = 6;
    const bool isNumbered = end != std::string::npos && name[end] == '_' && end + 1 < name.size() &&
                            name.size() - end - 1 <= mostDigits;
    if (!isNumbered) return name + "_2";
    unsigned number = 0;
    std::from_chars(name.data() + end + 1, name.data() + name.size(), number);
    return name.substr(0, end + 1) + std::to_string(number + 1);
}

void setClipboard(const std::string& text) {
    vlWinUi::Clipboard::setText(text);
}

} // namespace vlEditor
