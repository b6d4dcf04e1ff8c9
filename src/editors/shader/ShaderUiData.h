#pragma once
#include "interfaces/kinds/Fields.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace vlEditor {

struct ShaderKind;

/** A resource at an address, as HLSL's register(t<slot>, space<space>) writes it. */
struct ShaderResourceBindingUiData {
    std::string resource; ///< its name; of a texture also a buffer's or a render queue's
    std::uint32_t space = 0;
    std::uint32_t slot = 0;

    static constexpr auto members() {
        return std::tuple{Member{"resource", &ShaderResourceBindingUiData::resource},
                          Member{"space", &ShaderResourceBindingUiData::space},
                          Member{"slot", &ShaderResourceBindingUiData::slot}};
    }
    friend bool operator==(const ShaderResourceBindingUiData&,
                           const ShaderResourceBindingUiData&) = default;
};

/// Sixteen floats row by row of a matrix, the first four of a vector; the first four bytes are the
/// whole number of a time modulo in ms.
using PassSlotValue = std::array<float, 16>;
std::uint32_t moduloIn(const PassSlotValue& value);
void putModulo(std::uint32_t milliseconds, PassSlotValue& value);

/** What the engine has in a slot, beside its type. */
struct ShaderPassSlotState {
    PassSlotValue value{0, 0, 0, 1};
    std::string resourceName;

    static constexpr auto members() {
        return std::tuple{Member{"value", &ShaderPassSlotState::value},
                          Member{"resourceName", &ShaderPassSlotState::resourceName}};
    }
    /// Bit by bit: the bytes of a time modulo need not make a number that equals itself.
    friend bool operator==(const ShaderPassSlotState& a, const ShaderPassSlotState& b);
};

/** A slot of a constant buffer. Value and resource name are what the window shows: they keep what a
 *  slot had before its type was changed where the engine begins anew, and are read from the engine
 *  again when the shader is loaded or an edit is undone. */
struct ShaderPassSlotUiData {
    std::uint32_t type = 1; ///< the engine's number; 7 for what the editor sizes textures with
    PassSlotValue value{0, 0, 0, 1};
    std::string resourceName; ///< of the camera or texture; empty: none
    ShaderPassSlotState engine;

    static constexpr auto members() {
        return std::tuple{Member{"type", &ShaderPassSlotUiData::type},
                          Member{"value", &ShaderPassSlotUiData::value},
                          Member{"resourceName", &ShaderPassSlotUiData::resourceName},
                          Member{"engine", &ShaderPassSlotUiData::engine}};
    }
    /// As the engine has it.
    friend bool operator==(const ShaderPassSlotUiData& a, const ShaderPassSlotUiData& b) {
        return a.type == b.type && a.engine == b.engine;
    }
};

/** Told from the shader's others by its address alone. */
struct ShaderConstantBufferUiData {
    std::vector<ShaderPassSlotUiData> slots;
    std::uint32_t space = 0;
    std::uint32_t slot = 0;

    static constexpr auto members() {
        return std::tuple{Member{"slots", &ShaderConstantBufferUiData::slots},
                          Member{"space", &ShaderConstantBufferUiData::space},
                          Member{"slot", &ShaderConstantBufferUiData::slot}};
    }
    friend bool operator==(const ShaderConstantBufferUiData&,
                           const ShaderConstantBufferUiData&) = default;
};

/** What the program reads or writes at an address. */
struct ShaderWantedUiData {
    std::string letter; ///< of its register: "b", "t", "s" or "u"
    std::string name;
    std::uint32_t slot = 0;
    std::uint32_t space = 0;
    std::uint32_t count = 1;                 ///< of registers, from the slot on
    std::string shape;                       ///< as HLSL writes it: "Texture2D"
    bool needsBuffer = false;                ///< nothing but a buffer can be bound there
    std::vector<std::uint32_t> unboundSlots; ///< those of its registers that nothing is bound to

    static constexpr auto members() {
        return std::tuple{Member{"letter", &ShaderWantedUiData::letter},
                          Member{"name", &ShaderWantedUiData::name},
                          Member{"slot", &ShaderWantedUiData::slot},
                          Member{"space", &ShaderWantedUiData::space},
                          Member{"count", &ShaderWantedUiData::count},
                          Member{"shape", &ShaderWantedUiData::shape},
                          Member{"needsBuffer", &ShaderWantedUiData::needsBuffer},
                          Member{"unboundSlots", &ShaderWantedUiData::unboundSlots}};
    }
    friend bool operator==(const ShaderWantedUiData&, const ShaderWantedUiData&) = default;
};

/** What the UI knows of a shader. */
struct ShaderUiData {
    std::string name;
    std::string programName;       ///< empty when none is set
    std::uint32_t programType = 0; ///< the engine's number; 0 when there is no program
    std::vector<ShaderResourceBindingUiData> textures;
    std::vector<ShaderResourceBindingUiData> samplers;
    std::vector<ShaderResourceBindingUiData> uavs;
    std::vector<ShaderConstantBufferUiData> constantBuffers;
    std::uint32_t maxInstancesPerBuffer = 0;
    std::vector<std::uint32_t> instanceSlots; ///< the engine's type numbers
    bool usableScene = false;
    bool usablePost = false;
    bool usableCompute = false;
    bool usableRaytracing = false;
    bool reflected = false; ///< the program has been compiled, so that it is known what it wants
    std::vector<ShaderWantedUiData> wanted;

    template <class K = ShaderKind> static constexpr auto members() { return membersOfFields<K>(); }
    /// Without what the program says: it changes while the shader does not.
    friend bool operator==(const ShaderUiData& a, const ShaderUiData& b) {
        return a.name == b.name && a.programName == b.programName && a.textures == b.textures &&
               a.samplers == b.samplers && a.uavs == b.uavs &&
               a.constantBuffers == b.constantBuffers &&
               a.maxInstancesPerBuffer == b.maxInstancesPerBuffer &&
               a.instanceSlots == b.instanceSlots;
    }
};

} // namespace vlEditor
