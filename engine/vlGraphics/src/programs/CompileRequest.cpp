#include "programs/CompileRequest.h"

#include <functional>

namespace vlGraphics {

namespace {

void mix(std::size_t& hash, std::size_t value) {
    hash ^= value + 0x9E3779B97F4A7C15ULL + (hash << 6U) + (hash >> 2U);
}

} // namespace

std::size_t CompileRequestHash::operator()(const CompileRequest& request) const {
    const std::hash<vlMemory::StringView> textHash;
    std::size_t hash = static_cast<std::size_t>(request.type);
    mix(hash, request.crossCompilerDefines ? 1 : 0);
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
