#pragma once
#include <vlCommon/SingletonClass.h>
#include <vlGraphics/RenderContext.h>
#include <vlGraphics/Texture.h>

#include <map>
#include <optional>
#include <utility>

namespace vlEditor {

/** Which textures the editor draws with in place of others, by render context. Graphics thread
 *  only. */
class TextureReplacements final : public vlCommon::SingletonClass<TextureReplacements> {
public:
    using Texture = vlGraphics::Handle<vlGraphics::Texture>;

    /// In place of an earlier one.
    void set(const vlGraphics::RenderContext& context, Texture texture, Texture replacement) {
        replacements_.insert_or_assign({&context, texture}, replacement);
    }
    void remove(const vlGraphics::RenderContext& context, Texture texture) {
        replacements_.erase({&context, texture});
    }
    /// All of the context; to be called before it goes.
    void forget(const vlGraphics::RenderContext& context) {
        std::erase_if(replacements_, [&](const auto& row) { return row.first.first == &context; });
    }
    /// Nothing where the texture itself is drawn with.
    std::optional<Texture> find(const vlGraphics::RenderContext& context, Texture texture) const {
        const auto found = replacements_.find({&context, texture});
        return found == replacements_.end() ? std::nullopt : std::optional(found->second);
    }

private:
    std::map<std::pair<const vlGraphics::RenderContext*, Texture>, Texture> replacements_;
};

} // namespace vlEditor
