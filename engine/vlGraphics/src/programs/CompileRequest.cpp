#include "programs/CompileRequest.h"

#include "programs/HlslCompiler.h"
#include "programs/HlslText.h"

#include <vlResources/ResourceManager.h>

#include <filesystem>
#include <functional>

namespace vlGraphics {

namespace {

void mix(std::size_t& hash, std::size_t value) {
    hash ^= value + 0x9E3779B97F4A7C15ULL + (hash << 6U) + (hash >> 2U);
}

} // namespace

CompileRequest makeRequest(PROGRAM_TYPE type,
                           const ProgramSourcesHolder& sources,
                           bool crossCompilerDefines,
                           vlMemory::StringView folder) {
    CompileRequest request;
    request.type = type;
    request.crossCompilerDefines = crossCompilerDefines;
    bool mayInclude = false;
    for (const SHADER_TYPE stage : stagesOf(type)) {
        request.sources.setMemory(stage, sources.getMemory(stage));
        for (const DefineMacro& macro : sources.getDefineMacros(stage))
            request.sources.addDefineMacro(stage, macro.name, macro.value);
        mayInclude = mayInclude || HlslText::mayInclude(sources.getMemory(stage));
    }
    if (!mayInclude) return request;
    const std::filesystem::path place(folder);
    if (place.is_absolute()) {
        request.workingPath = place.parent_path().string();
        request.folder = place.filename().string();
        request.filePrefix = request.workingPath + "/";
    } else {
        request.workingPath = vlResources::ResourceManager::getInstance().getWorkingPathAbsolute();
        request.folder = folder;
    }
    return request;
}

std::size_t CompileRequestHash::operator()(const CompileRequest& request) const {
    const std::hash<vlMemory::StringView> textHash;
    std::size_t hash = static_cast<std::size_t>(request.type);
    mix(hash, request.crossCompilerDefines ? 1 : 0);
    mix(hash, textHash(request.workingPath));
    mix(hash, textHash(request.folder));
    mix(hash, request.boundLoops ? 1 : 0);
    mix(hash, request.writingStages);
    mix(hash, request.mostPasses);
    for (std::uint32_t index = 0; index < shaderTypeCount; ++index) {
        const auto stage = static_cast<SHADER_TYPE>(index);
        mix(hash, textHash(request.sources.getMemory(stage)));
        for (const DefineMacro& macro : request.sources.getDefineMacros(stage)) {
            mix(hash, textHash(macro.name));
            mix(hash, textHash(macro.value));
        }
    }
    return hash;
}

} // namespace vlGraphics
