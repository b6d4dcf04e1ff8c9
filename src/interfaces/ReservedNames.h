#pragma once
#include <string_view>

namespace vlEditor {

/** Names that the editor reserves, beside those of the engine. */
namespace ReservedNames {

/// As a camera: the one of the context that is being drawn.
inline constexpr std::string_view contextCamera = "0. ENGINE_CONTEXT_CAM";
/// What a viewport is seen through until somebody chooses otherwise. Hidden.
inline constexpr std::string_view basicCompositor = "EDITOR_BASIC_COMPOSITOR";
/// As a script: none.
inline constexpr std::string_view noScript = "-";

} // namespace ReservedNames
} // namespace vlEditor
