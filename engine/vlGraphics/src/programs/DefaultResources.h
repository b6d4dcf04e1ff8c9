#pragma once
#include <vlCommon/Result.h>
#include <vlGraphics/ProgramSourcesHolder.h>

#include <array>

namespace vlGraphics {

/// What a default shader shows, by what it needs of the mesh besides the position.
struct DefaultShader {
    vlMemory::StringView name;
    bool normal = false;
    bool uv = false;
};
extern const std::array<DefaultShader, 4> defaultShaders;

ProgramSourcesHolder sourcesOf(const DefaultShader& shader);

/** Makes the hidden resources that stand in where nothing else is set: texture, sampler, shaders
 * with their programs, camera, render queue and compositor. Once, after the managers and the
 * program compiler are there. Graphics thread only. Fails where the texture or the sampler cannot
 * be brought to the device; the programs compile in the background. */
vlCommon::Result<> createDefaultResources();

} // namespace vlGraphics
