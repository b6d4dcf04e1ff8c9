#pragma once
#include <vlGraphics/ProgramReflection.h>

#include <cstdint>

namespace vlGraphics::BindingModel {

// An HLSL address (register of a class, space) is a descriptor (binding, set): the set is the
// space, and each class has a range of bindings of its own.

inline constexpr std::uint32_t registersPerClass = 128;
inline constexpr std::uint32_t spaceCount = 8;

constexpr std::uint32_t baseOf(RESOURCE_CLASS resourceClass) {
    return static_cast<std::uint32_t>(resourceClass) * registersPerClass;
}
constexpr RESOURCE_CLASS classOf(std::uint32_t binding) {
    return static_cast<RESOURCE_CLASS>(binding / registersPerClass);
}
constexpr std::uint32_t bindingOf(RESOURCE_CLASS resourceClass, std::uint32_t slot) {
    return baseOf(resourceClass) + slot;
}

/// Where stages tell of loops that do not end, beyond all registers.
inline constexpr std::uint32_t loopSet = 0;
inline constexpr std::uint32_t loopBinding = 4 * registersPerClass;

constexpr char letterOf(RESOURCE_CLASS resourceClass) {
    return "btsu"[static_cast<std::uint32_t>(resourceClass)];
}

static_assert(baseOf(RESOURCE_CLASS::TEXTURE) == 128 && baseOf(RESOURCE_CLASS::SAMPLER) == 256 &&
              baseOf(RESOURCE_CLASS::UAV) == 384);

} // namespace vlGraphics::BindingModel
