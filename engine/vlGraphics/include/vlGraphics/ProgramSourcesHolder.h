#pragma once
#include <vlGraphics/Enumerations.h>
#include <vlMemory/String.h>

#include <array>
#include <vector>

namespace vlGraphics {

struct DefineMacro {
    vlMemory::String name;
    vlMemory::String value;
    friend bool operator==(const DefineMacro&, const DefineMacro&) = default;
};

/** The HLSL text and the macros of each of a program's stages. Plain value. */
class ProgramSourcesHolder {
public:
    const vlMemory::String& getMemory(SHADER_TYPE stage) const { return at(stage).source; }
    void setMemory(SHADER_TYPE stage, vlMemory::StringView text) { at(stage).source = text; }
    const std::vector<DefineMacro>& getDefineMacros(SHADER_TYPE stage) const {
        return at(stage).macros;
    }
    void addDefineMacro(SHADER_TYPE stage, vlMemory::StringView name, vlMemory::StringView value) {
        at(stage).macros.push_back({vlMemory::String(name), vlMemory::String(value)});
    }

#define VL_STAGE_ACCESS(Name, stage)                                                               \
    const vlMemory::String& get##Name##Memory() const {                                            \
        return getMemory(SHADER_TYPE::stage);                                                      \
    }                                                                                              \
    void set##Name##Memory(vlMemory::StringView text) {                                            \
        setMemory(SHADER_TYPE::stage, text);                                                       \
    }                                                                                              \
    const std::vector<DefineMacro>& getDefineMacros##Name() const {                                \
        return getDefineMacros(SHADER_TYPE::stage);                                                \
    }                                                                                              \
    void addDefineMacro##Name(vlMemory::StringView name, vlMemory::StringView value) {             \
        addDefineMacro(SHADER_TYPE::stage, name, value);                                           \
    }
    VL_STAGE_ACCESS(Vertex, VERTEX)
    VL_STAGE_ACCESS(Hull, HULL)
    VL_STAGE_ACCESS(Domain, DOMAIN_STAGE)
    VL_STAGE_ACCESS(Geometry, GEOMETRY)
    VL_STAGE_ACCESS(Pixel, PIXEL)
    VL_STAGE_ACCESS(Compute, COMPUTE)
    VL_STAGE_ACCESS(Raytracing, RAYTRACING)
#undef VL_STAGE_ACCESS

    friend bool operator==(const ProgramSourcesHolder&, const ProgramSourcesHolder&) = default;

private:
    struct Stage {
        vlMemory::String source;
        std::vector<DefineMacro> macros;
        friend bool operator==(const Stage&, const Stage&) = default;
    };
    Stage& at(SHADER_TYPE stage) {
        return stages_[static_cast<std::size_t>(stage)];
    }
    const Stage& at(SHADER_TYPE stage) const {
        return stages_[static_cast<std::size_t>(stage)];
    }

    std::array<Stage, shaderTypeCount> stages_;
};

} // namespace vlGraphics
