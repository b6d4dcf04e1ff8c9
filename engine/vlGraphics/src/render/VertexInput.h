#pragma once
#include "render/Pipelines.h"

namespace vlGraphics::render {

/** Where each input of a program's vertex stage comes from, by semantic: the entity's data, the
 *  mesh, or constants where neither has it (ones for a colour, else zeros). */
struct VertexInput {
    VertexInput(const Program::Gpu& program,
                const Mesh::Gpu& mesh,
                const InstanceLayout& instances);

    std::array<VkVertexInputBindingDescription, 3> bindings{};
    std::vector<VkVertexInputAttributeDescription> attributes;
};

} // namespace vlGraphics::render
