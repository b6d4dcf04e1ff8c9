#include "ComponentKeys.h"
#include "LayoutPlan.h"
#include "Registry.h"

#include <vlCommon/ThreadBorder.h>
#include <vlExport/JsonExporter.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ContentLoader.h>

namespace vlWinUi {
namespace {

using vlExport::Node;

constexpr std::size_t LONGEST_NAME = 4096; ///< bytes

/// Null, with a line, for an object that names no component that can be.
Component* createComponent(LayoutText& text, const Node& object, vlMemory::StringView member) {
    if (!object.isObject()) {
        text.fault(object, "'{}' expected an object", member);
        return nullptr;
    }
    vlMemory::String name;
    vlMemory::String word;
    if (!text.readRequired(object, "name", name) || !text.readRequired(object, "type", word))
        return nullptr;
    const auto type = ComponentKeys::typeOf(word);
    if (!type) {
        text.fault(*object.find("type"), "unknown type '{}' of '{}'", shown(word), shown(name));
        return nullptr;
    }
    if (name.empty() || name.size() > LONGEST_NAME) {
        text.fault(*object.find("name"), "'name' needs 1 to {} bytes", LONGEST_NAME);
        return nullptr;
    }
    if (Component* existing = ComponentManager::get(name)) {
        if (existing->getType() == *type) return existing;
        text.fault(object,
                   "'{}' exists already and is a {}, not a {}",
                   shown(name),
                   nameOf(existing->getType()),
                   nameOf(*type));
        return nullptr;
    }
    if (!text.takePart(object)) return nullptr;
    Component* component = ComponentManager::createOrRetrieve(name, *type);
    ComponentKeys::apply(text, object, *component);
    return component;
}

Component* process(LayoutText& text, const Node& tree) {
    text.checkMembers(tree, {"element", "children", "layouts"});
    const Node* element = tree.find("element");
    Component* root = element == nullptr ? nullptr : createComponent(text, *element, "element");
    for (const Node& child : text.elements(tree, "children"))
        createComponent(text, child, "children");
    LayoutPlan plan(text);
    for (const Node& layout : text.elements(tree, "layouts"))
        plan.add(layout);
    plan.show();
    return root;
}

} // namespace

Component* ContentLoader::processInterfaceSources(vlMemory::StringView text,
                                                  vlMemory::StringView nameForErrors) {
    vlCommon::assertUiThread();
    if (Registry::slot() == nullptr) {
        logLine("{}: the widget library is not running", nameForErrors);
        return nullptr;
    }
    if (text.size() > LayoutText::MOST_BYTES) {
        logLine("{}: {} bytes, more than the {} that a layout text may have",
                nameForErrors,
                text.size(),
                LayoutText::MOST_BYTES);
        return nullptr;
    }
    const auto tree = vlExport::JsonExporter::importIntoTree(text, nameForErrors);
    if (!tree) {
        logLine("{}", tree.error().message);
        return nullptr;
    }
    if (!tree->isObject()) {
        logLine("{}:{}: a layout text is one object", nameForErrors, tree->line());
        return nullptr;
    }
    LayoutText reading(nameForErrors);
    return process(reading, *tree);
}

} // namespace vlWinUi
