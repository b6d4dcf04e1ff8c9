#pragma once
#include <vlCommon/Result.h>
#include <vlGraphics/Shader.h>
#include <vlImages/Image.h>

#include <cstdint>
#include <optional>
#include <string>

namespace vlEditor {

/** What previews are drawn with: hidden resources, made when they are first needed, again when
 *  somebody has erased them. Whoever owns the engine. */
namespace PreviewScene {

/** One way of drawing over the whole target. */
struct Drawing {
    std::string name;             ///< of all that it needs
    std::string_view pixelShader; ///< asset
    std::string_view macro;       ///< defined for it; none when empty
    bool isDepth = false;         ///< into the depths to compare with
    /// Drawn before it, in the same frame; null for nothing. Not owned.
    const Drawing* first = nullptr;
};

/// Nothing while its program compiles; fails when that is broken.
vlCommon::Result<std::optional<vlGraphics::Shader*>> prepare(const Drawing& drawing);
/// Draws it and reads what it drew: 32-bit floats, of which it filled the top left corner.
vlCommon::Result<vlImages::Image> draw(const Drawing& drawing, std::uint32_t side);

/// Small and not symmetrical, with mip levels.
vlCommon::Result<vlGraphics::Handle<vlGraphics::Texture>> pattern();
/// Depths of the pattern's size.
vlCommon::Result<vlGraphics::Handle<vlGraphics::Texture>> depths();

} // namespace PreviewScene
} // namespace vlEditor
