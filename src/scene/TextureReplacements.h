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
    void set(const vlGraphics::RenderContext& context, Texture texture, Texture replacement);
    void remove(const vlGraphics::RenderContext& context, Texture texture);
    /// All of the context; to be called before it goes.
    void forget(const vlGraphics::RenderContext& context);
    /// Nothing where the texture itself is drawn with, as when the replacement has gone.
    std::optional<Texture> find(const vlGraphics::RenderContext& context, Texture texture) const;
    /// Over all contexts, also of what has gone.
    std::size_t getCount() const { return replacements_.size(); }

private:
    std::map<std::pair<const vlGraphics::RenderContext*, Texture>, Texture> replacements_;
};

} // namespace vlEditor
