#include "project/LoadProjectMessage.h"

#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"
#include "editors/AllKinds.h"
#include "interfaces/AddPickListEntriesMessage.h"
#include "scene/AddSceneElementsMessage.h"
#include "scene/GraphManager.h"
#include "viewport/EngineWindowChangeCompositorMessage.h"
#include "viewport/EngineWindowEngineDataTracker.h"

#include <vlKestrion/ProjectLoader.h>
#include <vlKestrion/System.h>

#include <iterator>

namespace vlEditor {
namespace {

template <class T>
void list(std::string_view pickList,
          const std::vector<T*>& resources,
          const std::string& entryStart = {}) {
    std::vector<std::string> names;
    for (const T* resource : resources) {
        if (!resource->isHidden()) names.push_back(entryStart + resource->getName());
    }
    if (!names.empty()) postToUi(AddPickListEntriesMessage(pickList, std::move(names)));
}

void listResources(const vlKestrion::ProjectLoadResult& loaded) {
    const vlGraphics::DeclarationLoadResult& resources = loaded.resources;
    for (const AnyKind* kind : allKinds())
        kind->adopt(resources);
    // Kinds without an editor are only offered by their pick lists.
    list("RENDER_QUEUE_POP_UP_LIST", resources.getRenderQueues());
    list("TEXTURE_POP_UP_LIST", resources.getTextures());
    list("TEXTURE_BUFFER_POP_UP_LIST", resources.getTextures(), "T. ");
    list("TEXTURE_BUFFER_POP_UP_LIST", resources.getRenderQueues(), "R. ");
    list("MESH_POP_UP_LIST", resources.getMeshes());
    list("MATERIAL_POP_UP_LIST", loaded.materials);
    list("COMPOSITOR_POP_UP_LIST", resources.getCompositors());
}

void enterScene(const vlKestrion::ProjectLoadResult& loaded) {
    std::vector<SceneElement> elements;
    for (vlGraphics::Node* root : loaded.rootNodes) {
        std::vector<SceneElement> below = GraphManager::getInstance().enter(*root);
        elements.insert(elements.end(),
                        std::make_move_iterator(below.begin()),
                        std::make_move_iterator(below.end()));
    }
    if (!elements.empty()) postToUi(AddSceneElementsMessage(std::move(elements)));
}

void takeView(const vlKestrion::ProjectLoadResult& loaded) {
    auto& windows = EngineWindowEngineDataTracker::getInstance();
    if (!loaded.camera.empty()) windows.lookThrough(loaded.camera);
    if (loaded.compositor.empty()) return;
    for (const auto& [surface, data] : windows.all()) {
        postToGraphics(EngineWindowChangeCompositorMessage(
                surface, loaded.compositor, data->getBaseName()));
    }
}

} // namespace

void LoadProjectMessage::runOnGraphicsThread() {
    const vlKestrion::ProjectLoadResult loaded =
            vlKestrion::System::getInstance()->getProjectLoader().load(
                    vlKestrion::ProjectLoadQuery(path));
    for (const std::string& error : loaded.errors)
        postToUi(LogMessage(error));
    if (!loaded.opened) return;
    listResources(loaded);
    enterScene(loaded);
    takeView(loaded);
}

} // namespace vlEditor
