#pragma once
#include <cstdint>
#include <span>
#include <unordered_set>

namespace vlGraphics {

/// The variables of the textures that a module samples with comparison. Their types do not always
/// say so: what a function is given has that of its parameter.
std::unordered_set<std::uint32_t> findComparedTextures(std::span<const std::uint32_t> spirv);

} // namespace vlGraphics
