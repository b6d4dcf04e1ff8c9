#include "scene/GraphInterface.h"

#include "scene/GraphElementUiDataTracker.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/TreeView.h>
#include <vlWinUi/Window.h>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

// More than that at once is quicker set anew.
constexpr std::size_t fewElements = 16;

vlWinUi::TreeItem itemFor(const SceneElement& element) {
    return {element.id, element.parent, element.name};
}

} // namespace

std::unique_ptr<Interface> GraphInterface::create() {
    static unsigned number = 0;
    const std::string name = "GRAPH_" + std::to_string(number++);
    auto& root = *ComponentManager::createOrRetrieve<vlWinUi::Window>(name);
    auto& tree = *ComponentManager::createOrRetrieve<vlWinUi::TreeView>(name + "_TREE");
    tree.setPlaceHolder("The scene is empty");
    tree.setAccessibleName("Nodes and entities of the scene");
    vlWinUi::GridLayout layout(1, 1);
    layout.addComponent(tree, 0, 0);
    root.setLayout(std::move(layout));
    return std::make_unique<GraphInterface>(root);
}

GraphInterface::GraphInterface(const vlWinUi::Component& root) : Interface(root) {
    GraphElementUiDataTracker::getInstance().addListener(*this);
    fill();
}

GraphInterface::~GraphInterface() {
    GraphElementUiDataTracker::getInstance().removeListener(*this);
}

void GraphInterface::elementsAdded(const std::vector<std::uint32_t>& ids) {
    if (ids.size() > fewElements) {
        fill();
        return;
    }
    auto* tree = ComponentManager::get<vlWinUi::TreeView>(getRootName() + "_TREE");
    if (tree == nullptr) return;
    for (const std::uint32_t id : ids) {
        const SceneElement& element = *GraphElementUiDataTracker::getInstance().find(id);
        if (tree->hasItem(id))
            tree->renameItem(id, element.name);
        else
            tree->addItem(itemFor(element));
    }
}

void GraphInterface::elementUpdated(std::uint32_t) {
    // The tree shows names only, and a move changes none.
}

void GraphInterface::elementErased(std::uint32_t) {
    // What hung on it has become a root, so more than one line changes its place.
    fill();
}

void GraphInterface::fill() {
    auto* tree = ComponentManager::get<vlWinUi::TreeView>(getRootName() + "_TREE");
    if (tree == nullptr) return;
    const auto& scene = GraphElementUiDataTracker::getInstance();
    std::vector<vlWinUi::TreeItem> items;
    items.reserve(scene.getCount());
    std::vector<std::uint32_t> waiting(scene.getRoots().rbegin(), scene.getRoots().rend());
    while (!waiting.empty()) {
        const SceneElement& element = *scene.find(waiting.back());
        waiting.pop_back();
        items.push_back(itemFor(element));
        waiting.insert(waiting.end(), element.children.rbegin(), element.children.rend());
    }
    tree->setItems(items);
}

} // namespace vlEditor
