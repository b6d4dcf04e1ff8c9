#include "programs/SlotLayout.h"

#include <vlGraphics/ChangeCount.h>
#include <vlGraphics/ConstantBuffer.h>

#include <cassert>
#include <utility>

namespace vlGraphics {

std::uint32_t ConstantBuffer::getByteSize() const {
    std::uint32_t bytes = 0;
    for (const ShaderPassMemorySlot& slot : slots_)
        bytes += slotStride(slot.getByteSize());
    return bytes;
}

ShaderPassMemorySlot* ConstantBuffer::addPassMemorySlot() {
    ChangeCount::bump();
    return &slots_.emplace_back();
}

bool ConstantBuffer::deletePassMemorySlot(std::uint32_t index) {
    if (index >= slots_.size()) return false;
    slots_.erase(slots_.begin() + index);
    ChangeCount::bump();
    return true;
}

ShaderPassMemorySlot* ConstantBuffer::getPassMemorySlot(std::uint32_t index) {
    if (index >= slots_.size()) return nullptr;
    ChangeCount::bump();
    return &slots_[index];
}

const ShaderPassMemorySlot* ConstantBuffer::getPassMemorySlotReadOnly(std::uint32_t index) const {
    return index < slots_.size() ? &slots_[index] : nullptr;
}

bool ConstantBuffer::changePassMemorySlotOrder(std::uint32_t index, std::uint32_t other) {
    if (index >= slots_.size() || other >= slots_.size()) return false;
    if (index != other) std::swap(slots_[index], slots_[other]);
    ChangeCount::bump();
    return true;
}

void ConstantBuffer::fill(const PassInputs& inputs, std::span<std::byte> data) const {
    assert(data.size() >= getByteSize());
    std::size_t at = 0;
    for (const ShaderPassMemorySlot& slot : slots_) {
        const std::size_t bytes = slotStride(slot.getByteSize());
        fillPassSlot(slot, inputs, data.subspan(at, bytes));
        at += bytes;
    }
}

} // namespace vlGraphics
