#pragma once
#include <vlGraphics/Program.h>
#include <vlMemory/String.h>

#include <glslang/Public/ShaderLang.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vlGraphics {

/// One stage of a program, parsed and linked by itself.
struct LinkedStage {
    SHADER_TYPE stage = SHADER_TYPE::VERTEX;
    glslang::TProgram* program = nullptr;
    EShLanguage language = EShLangVertex;
};

/// Where a semantic was placed.
struct PlacedSemantic {
    std::string semantic; ///< upper case, without an index of 0
    std::uint32_t location = 0;
    std::uint32_t locationCount = 1;
};

/// What a stage's text says of a resource and SPIR-V no longer does.
struct MappedResource {
    SHADER_TYPE stage = SHADER_TYPE::VERTEX;
    std::uint32_t space = 0;
    std::uint32_t binding = 0;
    std::string file; ///< as the compiler calls it; empty: the source itself
    std::uint32_t line = 1;
    bool isUnbounded = false; ///< an array without a count
    bool isByteAddress = false;
    bool isComparison = false; ///< of a sampler
};

/// The place in a stage's text of one of its inputs.
struct MappedInput {
    SHADER_TYPE stage = SHADER_TYPE::VERTEX;
    std::string semantic;
    std::string file;
    std::uint32_t line = 1;
};

struct MappedInterfaces {
    std::vector<PlacedSemantic> vertexInputs;
    std::vector<PlacedSemantic> varyings; ///< between stages
    std::vector<MappedInput> inputs;      ///< of all stages but the first
    std::vector<MappedResource> resources;
};

/// "TexCoord0" and "TEXCOORD" are the same semantic: upper case, without an index of 0.
std::string normalisedSemantic(vlMemory::StringView semantic);

/** Gives every resource its binding (see BindingModel; what has no register takes the lowest that
 * is free in all stages) and every varying its location. Locations follow semantics, so that stages
 *  match whatever the order of their declarations. Vertex inputs with the usual semantics have a
 *  fixed location each, and others take the lowest free ones. What cannot be placed is the result,
 *  with its file as the compiler calls it. */
std::optional<ProgramDiagnostic> mapInterfaces(const std::vector<LinkedStage>& stages,
                                               MappedInterfaces& into);

} // namespace vlGraphics
