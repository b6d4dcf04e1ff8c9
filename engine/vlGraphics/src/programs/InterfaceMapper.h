#pragma once
#include <vlGraphics/Enumerations.h>
#include <vlMemory/String.h>

#include <cstdint>
#include <string>
#include <vector>

namespace glslang {
class TProgram;
}

namespace vlGraphics {

/// One stage of a program, parsed and linked by itself.
struct LinkedStage {
    SHADER_TYPE stage = SHADER_TYPE::VERTEX;
    glslang::TProgram* program = nullptr;
};

/// Where a vertex input's semantic was placed.
struct PlacedSemantic {
    std::string semantic; ///< upper case, without an index of 0
    std::uint32_t location = 0;
    std::uint32_t locationCount = 1;
};

struct MapFailure {
    SHADER_TYPE stage = SHADER_TYPE::VERTEX;
    std::string message; ///< empty: it worked
    bool failed() const { return !message.empty(); }
};

/// "TexCoord0" and "TEXCOORD" are the same semantic: upper case, without an index of 0.
std::string normalisedSemantic(vlMemory::StringView semantic);

/** Gives every resource its binding (see BindingModel; what has no register takes the lowest that
 * is free in all stages) and every varying its location. Locations follow semantics, so that stages
 *  match whatever the order of their declarations. Vertex inputs with the usual semantics have a
 *  fixed location each, and others take the lowest free ones. */
MapFailure mapInterfaces(const std::vector<LinkedStage>& stages,
                         std::vector<PlacedSemantic>& vertexInputs);

} // namespace vlGraphics
