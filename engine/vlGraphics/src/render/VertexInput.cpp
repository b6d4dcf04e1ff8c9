#include "render/VertexInput.h"

#include "programs/InterfaceMapper.h"
#include "vulkan/Translate.h"

#include <algorithm>

namespace vlGraphics::render {
namespace {

constexpr std::uint32_t locationBytes = 16; ///< of an entity's data, for each location

const InstanceLayout::Slot* findSlot(const InstanceLayout& layout, const ReflectedInput& input) {
    const auto found =
            std::find_if(layout.slots.begin(), layout.slots.end(), [&input](const auto& slot) {
                return normalisedSemantic(slot.semantic) == normalisedSemantic(input.semantic) &&
                       input.locationCount * locationBytes <= slot.size;
            });
    return found == layout.slots.end() ? nullptr : &*found;
}

/// Vertices hold floats, so an input of integers finds nothing in a mesh.
const VertexAttribute* findAttribute(const Mesh::Gpu& mesh, const ReflectedInput& input) {
    if (vulkan::isIntegerFormat(input.format) || input.locationCount != 1) return nullptr;
    const auto found = std::find_if(
            mesh.attributes.begin(), mesh.attributes.end(), [&input](const auto& attribute) {
                return normalisedSemantic(attribute.semantic) == normalisedSemantic(input.semantic);
            });
    return found == mesh.attributes.end() ? nullptr : &*found;
}

bool isColor(const ReflectedInput& input) {
    return normalisedSemantic(input.semantic).starts_with("COLOR") &&
           !vulkan::isIntegerFormat(input.format);
}

} // namespace

VertexInput::VertexInput(const Program::Gpu& program,
                         const Mesh::Gpu& mesh,
                         const InstanceLayout& instances) {
    bindings[meshBinding] = {meshBinding, mesh.vertexStride, VK_VERTEX_INPUT_RATE_VERTEX};
    bindings[instanceBinding] = {instanceBinding, instances.stride, VK_VERTEX_INPUT_RATE_INSTANCE};
    bindings[constantBinding] = {constantBinding, 0, VK_VERTEX_INPUT_RATE_VERTEX};
    for (const ReflectedInput& input : program.reflection.inputs) {
        const VkFormat format = vulkan::vertexFormat(input.format);
        const InstanceLayout::Slot* slot = findSlot(instances, input);
        const VertexAttribute* attribute = slot != nullptr ? nullptr : findAttribute(mesh, input);
        for (std::uint32_t i = 0; i < input.locationCount; ++i) {
            const std::uint32_t location = input.location + i;
            if (slot != nullptr)
                attributes.push_back(
                        {location, instanceBinding, format, slot->offset + i * locationBytes});
            else if (attribute != nullptr)
                attributes.push_back({location,
                                      meshBinding,
                                      vulkan::vertexFormat(attribute->format),
                                      attribute->offset});
            else
                attributes.push_back(
                        {location, constantBinding, format, isColor(input) ? locationBytes : 0});
        }
    }
}

} // namespace vlGraphics::render
