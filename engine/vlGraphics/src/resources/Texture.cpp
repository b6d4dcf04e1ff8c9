#include "resources/EnumTexts.h"

#include <vlGraphics/Texture.h>

namespace vlGraphics {

void Texture::setWidth(std::uint32_t value) {
    if (width_ == value || value == 0) return;
    width_ = value;
    markChanged();
}

void Texture::setHeight(std::uint32_t value) {
    if (height_ == value || value == 0) return;
    height_ = value;
    markChanged();
}

void Texture::setMipCount(std::uint32_t value) {
    if (mipCount_ == value) return;
    mipCount_ = value;
    markChanged();
}

void Texture::setFormat(FORMAT value) {
    if (format_ == value || !isKnownValue(value)) return;
    format_ = value;
    markChanged();
}

void Texture::setRenderFlag(RENDER_FLAG value) {
    if (renderFlag_ == value || !isKnownValue(value)) return;
    renderFlag_ = value;
    markChanged();
}

void Texture::setGammaCorrected(bool value) {
    if (gammaCorrected_ == value) return;
    gammaCorrected_ = value;
    markChanged();
}

void Texture::setSourcePath(vlMemory::StringView path) {
    if (sourcePath_ == path) return;
    sourcePath_ = path;
    markChanged();
}

void Texture::setImage(vlImages::Image image) {
    if (!image.empty()) {
        width_ = image.width;
        height_ = image.height;
        format_ = image.format == vlImages::PixelFormat::bgra8 ? FORMAT::B8G8R8A8_UNORM
                                                               : FORMAT::R8G8B8A8_UNORM;
    }
    image_ = std::move(image);
    markChanged();
}

void Texture::copySettings(const Texture& other) {
    setWidth(other.width_);
    setHeight(other.height_);
    setMipCount(other.mipCount_);
    setFormat(other.format_);
    setRenderFlag(other.renderFlag_);
    setGammaCorrected(other.gammaCorrected_);
    setSourcePath(other.sourcePath_);
}

} // namespace vlGraphics
