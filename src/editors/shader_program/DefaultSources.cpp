#include "editors/shader_program/DefaultSources.h"

#include "Assets.h"

namespace vlEditor {

using vlGraphics::PROGRAM_TYPE;

vlGraphics::ProgramSourcesHolder defaultSources(PROGRAM_TYPE type) {
    vlGraphics::ProgramSourcesHolder sources;
    switch (type) {
    case PROGRAM_TYPE::PIPELINE:
        sources.setVertexMemory(shaders::asset("pipeline_vertex.hlsl"));
        sources.setPixelMemory(shaders::asset("pipeline_pixel.hlsl"));
        break;
    case PROGRAM_TYPE::GEOMETRY:
        sources.setVertexMemory(shaders::asset("geometry_vertex.hlsl"));
        sources.setGeometryMemory(shaders::asset("geometry_geometry.hlsl"));
        break;
    case PROGRAM_TYPE::COMPUTE:
        sources.setComputeMemory(shaders::asset("compute.hlsl"));
        break;
    case PROGRAM_TYPE::RAYTRACING:
        sources.setRaytracingMemory(shaders::asset("raytracing.hlsl"));
        break;
    case PROGRAM_TYPE::NONE:
        break;
    }
    return sources;
}

} // namespace vlEditor
