#pragma once
#include <cstdint>
#include <span>

namespace vlGraphics {

/// What a module's own variables take for one vertex, pixel or group, in bytes; the highest number
/// where that cannot be said. The module comes from the compiler.
std::uint64_t variableBytes(std::span<const std::uint32_t> spirv);
/// Of those in one of SPIR-V's storage classes; every number of a scalar has four bytes.
std::uint64_t variableBytesIn(std::span<const std::uint32_t> spirv, std::uint32_t storageClass);

} // namespace vlGraphics
