#pragma once
#include <vlGraphics/Shader.h>

namespace vlEditor {

/** A slot with the size of a texture: width, height, 1 / width and 1 / height as floats, each time
 *  it is asked. Where the editor shows another texture in a render context in that one's place (see
 *  TextureReplacements), it tells the size of that. A texture that is not there is the engine's
 *  default. Declared as an ordinary slot of a texture's size. Graphics thread only. */
class EditorTextureSizeSlot final : public vlGraphics::ShaderPassCustomSlot {
public:
    static constexpr vlMemory::StringView typeName = "EDITOR_TEXTURE_SIZE";

    explicit EditorTextureSizeSlot(vlGraphics::Handle<vlGraphics::Texture> texture)
        : texture_(texture) {}

    vlGraphics::Handle<vlGraphics::Texture> getTexture() const { return texture_; }
    void setTexture(vlGraphics::Handle<vlGraphics::Texture> texture) { texture_ = texture; }

    vlMemory::StringView getTypeName() const override { return typeName; }
    std::uint32_t getDataSize() const override { return 4 * sizeof(float); }
    void fill(std::span<std::byte> data) const override;
    std::optional<vlGraphics::Handle<vlGraphics::Texture>> getDeclaredTexture() const override {
        return texture_;
    }

    /// Makes editor's slots of a shader's slots of a texture's size, but for those of a context's
    /// own buffers: these are as large as what is drawn to, which the engine alone knows.
    static void putInto(vlGraphics::Shader& shader);

private:
    vlGraphics::Handle<vlGraphics::Texture> texture_;
};

} // namespace vlEditor
