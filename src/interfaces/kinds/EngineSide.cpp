#include "interfaces/kinds/EngineSide.h"

#include <vlExport/JsonExporter.h>
#include <vlResources/ResourceManager.h>

namespace vlEditor {

std::string fromWorkingDirectory(const std::string& path) {
    return vlResources::ResourceManager::getInstance().getFromWorkingDirFromAbsolute(path);
}

std::vector<std::string> declaredNames(const std::string& path, vlMemory::StringView listName) {
    std::vector<std::string> names;
    const auto text = vlResources::ResourceManager::getInstance().readFile(
            path, vlExport::JsonExporter::maxTextSize);
    if (!text) return names;
    const auto tree = vlExport::JsonExporter::importIntoTree(text->text(), path);
    const vlExport::Node* list = tree ? tree->find(listName) : nullptr;
    if (list == nullptr) return names;
    for (const vlExport::Node& element : list->elements()) {
        const vlExport::Node* name = element.find("name");
        const std::string* value = name == nullptr ? nullptr : name->asString();
        if (value != nullptr) names.push_back(*value);
    }
    return names;
}

} // namespace vlEditor
