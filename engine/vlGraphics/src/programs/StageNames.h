#pragma once
#include <vlGraphics/Enumerations.h>
#include <vlMemory/String.h>

#include <array>

namespace vlGraphics {

/// A stage as messages name it.
constexpr vlMemory::StringView stageName(SHADER_TYPE stage) {
    constexpr std::array<vlMemory::StringView, shaderTypeCount> names{
            "vertex", "hull", "domain", "geometry", "pixel", "compute", "raytracing"};
    return names[static_cast<std::size_t>(stage)];
}

} // namespace vlGraphics
