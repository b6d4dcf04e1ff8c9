#include <vlGraphics/Buffer.h>

namespace vlGraphics {

void Buffer::setSettings(const Settings& settings) {
    if (settings_ == settings) return;
    settings_ = settings;
    markChanged();
}

void Buffer::setUnorderedAccess(bool value) {
    if (settings_.unorderedAccess == value) return;
    settings_.unorderedAccess = value;
    markChanged();
}

void Buffer::setShaderResource(bool value) {
    if (settings_.shaderResource == value) return;
    settings_.shaderResource = value;
    markChanged();
}

void Buffer::setElementCount(std::uint32_t value) {
    if (settings_.elementCount == value) return;
    settings_.elementCount = value;
    markChanged();
}

void Buffer::setElementByteSize(std::uint32_t value) {
    if (settings_.elementByteSize == value) return;
    settings_.elementByteSize = value;
    markChanged();
}

} // namespace vlGraphics
