#include "interfaces/PickLists.h"

#include "interfaces/ReservedNames.h"

#include <vlGraphics/DefaultNames.h>
#include <vlGraphics/RenderQueue.h>

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace vlEditor {
namespace {

namespace Names = vlGraphics::DefaultNames;

struct Description {
    std::string_view name;
    std::string_view label;
    std::initializer_list<std::string_view> entries = {};
};

void create(std::vector<std::unique_ptr<PickList>>& lists, const Description& list) {
    lists.push_back(std::make_unique<PickList>(
            std::string(list.name),
            std::string(list.label),
            std::vector<std::string>(list.entries.begin(), list.entries.end())));
}

} // namespace

void PickLists::createFirstGroup() {
    create(lists_, {"BLEND_POP_UP_LIST", "Blend States"});
    create(lists_, {"CAMERA_POP_UP_LIST", "Cameras", {ReservedNames::contextCamera}});
    create(lists_, {"COMPOSITOR_POP_UP_LIST", "Compositors", {ReservedNames::basicCompositor}});
    create(lists_, {"DEPTH_POP_UP_LIST", "Depth Stencil States"});
    create(lists_, {"MATERIAL_POP_UP_LIST", "Materials"});
    create(lists_, {"MESH_POP_UP_LIST", "Meshes"});
    create(lists_, {"RASTER_POP_UP_LIST", "Raster States"});
    create(lists_,
           {"RENDER_QUEUE_POP_UP_LIST",
            "Render Queues",
            {vlGraphics::RenderQueueManager::DEFAULT_RENDER_QUEUE}});
    create(lists_, {"SAMPLER_POP_UP_LIST", "Samplers", {Names::sampler}});
    create(lists_, {"SCRIPT_POP_UP_LIST", "Scripts", {ReservedNames::noScript}});
    create(lists_, {"SHADER_PROGRAM_POP_UP_LIST", "Shader Programs"});
    create(lists_,
           {"SHADER_POP_UP_LIST",
            "Shaders",
            {Names::positionShader, Names::normalShader, Names::uvShader, Names::uvNormalShader}});
}

void PickLists::createSecondGroup() {
    create(lists_, {"TEXTURE_POP_UP_LIST", "Textures", {Names::texture}});
    // What stands before a name says what bears it: a texture, a buffer or a render queue.
    const std::string defaultTexture = "T. " + std::string(Names::texture);
    create(lists_, {"TEXTURE_BUFFER_POP_UP_LIST", "Textures / Compute buffers", {defaultTexture}});
    create(lists_, {"RENDER_TARGET_POP_UP_LIST", "Color targets", {Names::backBuffer}});
    create(lists_, {"DEPTH_TARGET_POP_UP_LIST", "Depth targets", {Names::depthBuffer}});
    create(lists_, {"VIEWPORT_POP_UP_LIST", "Viewports"});
    create(lists_, {"RQ_POP_UP_LIST", "Special RQs"});
    create(lists_, {"UAV_POP_UP_LIST", "UAVs"});
}

PickList* PickLists::find(vlMemory::StringView name) const {
    const auto found =
            std::ranges::find_if(lists_, [&](const auto& list) { return list->getName() == name; });
    return found == lists_.end() ? nullptr : found->get();
}

} // namespace vlEditor
