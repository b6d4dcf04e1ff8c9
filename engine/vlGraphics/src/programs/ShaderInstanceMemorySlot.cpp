#include <vlGraphics/ChangeCount.h>
#include <vlGraphics/ShaderInstanceMemorySlot.h>

#include <utility>

namespace vlGraphics {

void ShaderInstanceMemorySlot::setAsWorldMatrix() {
    type_ = INSTANCE_SLOT_TYPE::WORLD_MATRIX;
    custom_.reset();
    ChangeCount::bump();
}

void ShaderInstanceMemorySlot::setAsCustom(std::shared_ptr<const ShaderInstanceCustomSlot> slot) {
    if (slot == nullptr) return setAsWorldMatrix();
    type_ = INSTANCE_SLOT_TYPE::CUSTOM;
    custom_ = std::move(slot);
    ChangeCount::bump();
}

vlMemory::StringView ShaderInstanceMemorySlot::getSemantic() const {
    return custom_ == nullptr ? vlMemory::StringView("WORLD_MATRIX") : custom_->getSemantic();
}

std::uint32_t ShaderInstanceMemorySlot::getByteSize() const {
    return custom_ == nullptr ? 64 : custom_->getDataSize();
}

} // namespace vlGraphics
