#include "editors/shader/EditorTextureSizeSlot.h"

#include "scene/TextureReplacements.h"

#include <vlGraphics/DefaultNames.h>
#include <vlGraphics/System.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace vlEditor {
namespace {

using vlGraphics::Handle;
using vlGraphics::Texture;
using vlGraphics::TextureManager;

const Texture* resolve(Handle<Texture> texture) {
    vlGraphics::System* system = vlGraphics::System::getInstance();
    const auto* context = system == nullptr ? nullptr : system->getRenderer().getActiveContext();
    if (context != nullptr)
        texture = TextureReplacements::getInstance().find(*context, texture).value_or(texture);
    const TextureManager* textures = TextureManager::getInstance();
    const Texture* found = textures->resolve(texture);
    return found != nullptr ? found : textures->get(vlGraphics::DefaultNames::texture);
}

bool isOfContext(Handle<Texture> texture) {
    const vlMemory::StringView name = TextureManager::getInstance()->nameOf(texture);
    return name == vlGraphics::DefaultNames::backBuffer ||
           name == vlGraphics::DefaultNames::depthBuffer;
}

} // namespace

void EditorTextureSizeSlot::fill(std::span<std::byte> data) const {
    const Texture* texture = resolve(texture_);
    if (texture == nullptr) return;
    const std::array<float, 4> size{static_cast<float>(texture->getWidth()),
                                    static_cast<float>(texture->getHeight()),
                                    texture->getInverseWidth(),
                                    texture->getInverseHeight()};
    std::memcpy(data.data(), size.data(), std::min(data.size(), sizeof(size)));
}

void EditorTextureSizeSlot::putInto(vlGraphics::Shader& shader) {
    const vlGraphics::Shader& read = shader;
    for (std::uint32_t i = 0; const auto* buffer = read.getConstantBufferPerIndex(i); ++i) {
        for (std::uint32_t s = 0; const auto* slot = buffer->getPassMemorySlotReadOnly(s); ++s) {
            if (slot->getType() != vlGraphics::PASS_SLOT_TYPE::TEXTURE_SIZE) continue;
            if (isOfContext(slot->getTexture())) continue;
            // Only what is changed marks the pictures out of date.
            shader.getConstantBufferPerIndex(i)->getPassMemorySlot(s)->setAsCustom(
                    std::make_unique<EditorTextureSizeSlot>(slot->getTexture()));
        }
    }
}

} // namespace vlEditor
