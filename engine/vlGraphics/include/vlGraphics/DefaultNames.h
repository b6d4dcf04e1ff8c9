#pragma once
#include <vlMemory/String.h>

namespace vlGraphics {

/** Names that the engine reserves. The resources among them exist, hidden, while the engine runs.
 */
namespace DefaultNames {

/// As a colour target: the back buffer of the context that is being drawn.
inline constexpr vlMemory::StringView backBuffer = "VORLANE_BACK_BUFFER";
/// As a depth target: the depth buffer chained with that back buffer.
inline constexpr vlMemory::StringView depthBuffer = "VORLANE_DEPTH_BUFFER";
/// 8 by 8 pixels, white and grey checks; stands in for every missing texture.
inline constexpr vlMemory::StringView texture = "VORLANE_DEFAULT_TEXTURE";
/// Trilinear, wrapping.
inline constexpr vlMemory::StringView sampler = "VORLANE_DEFAULT_SAMPLER";
/// The default shaders show, in this order: grey, the normal, the texture, the lit texture.
inline constexpr vlMemory::StringView positionShader = "VORLANE_POSITION_SHADER";
inline constexpr vlMemory::StringView normalShader = "VORLANE_NORMAL_SHADER";
inline constexpr vlMemory::StringView uvShader = "VORLANE_UV_SHADER";
inline constexpr vlMemory::StringView uvNormalShader = "VORLANE_UV_NORMAL_SHADER";
/// Renders where nothing else is active.
inline constexpr vlMemory::StringView camera = "VORLANE_DEFAULT_CAMERA";
/// Clears colour to black and depth, then renders the scene.
inline constexpr vlMemory::StringView compositor = "VORLANE_DEFAULT_COMPOSITOR";

} // namespace DefaultNames
} // namespace vlGraphics
