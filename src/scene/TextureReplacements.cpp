#include "scene/TextureReplacements.h"

namespace vlEditor {

void TextureReplacements::set(const vlGraphics::RenderContext& context,
                              Texture texture,
                              Texture replacement) {
    replacements_.insert_or_assign({&context, texture}, replacement);
}

void TextureReplacements::remove(const vlGraphics::RenderContext& context, Texture texture) {
    replacements_.erase({&context, texture});
}

void TextureReplacements::forget(const vlGraphics::RenderContext& context) {
    std::erase_if(replacements_, [&](const auto& row) { return row.first.first == &context; });
}

std::optional<TextureReplacements::Texture>
TextureReplacements::find(const vlGraphics::RenderContext& context, Texture texture) const {
    const auto found = replacements_.find({&context, texture});
    if (found == replacements_.end()) return std::nullopt;
    const auto* textures = vlGraphics::TextureManager::getInstance();
    if (textures->resolve(found->second) == nullptr) return std::nullopt;
    return found->second;
}

} // namespace vlEditor
