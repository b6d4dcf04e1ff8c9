#pragma once
#include <vlGraphics/ShaderPassMemorySlot.h>

#include <vector>

namespace vlGraphics {

/** A constant buffer of a shader: slots one behind the other, filled anew each pass. Each begins at
 * the next multiple of 16 bytes. Owned by its shader; identified by (slot, space). */
class ConstantBuffer {
public:
    ConstantBuffer(std::uint32_t slot, std::uint32_t space) : slot_(slot), space_(space) {}

    std::uint32_t getSlot() const { return slot_; }
    std::uint32_t getSpace() const { return space_; }
    std::uint32_t getByteSize() const;

    /// A vector (0, 0, 0, 1) at the end.
    ShaderPassMemorySlot* addPassMemorySlot();
    bool deletePassMemorySlot(std::uint32_t index);
    /// For changing: marks the pictures out of date. Null past the last.
    ShaderPassMemorySlot* getPassMemorySlot(std::uint32_t index);
    const ShaderPassMemorySlot* getPassMemorySlotReadOnly(std::uint32_t index) const;
    std::uint32_t getPassMemorySlotCount() const {
        return static_cast<std::uint32_t>(slots_.size());
    }
    /// Swaps two; false, nothing changed, when either is past the last.
    bool changePassMemorySlotOrder(std::uint32_t index, std::uint32_t other);

    /// Writes every slot; the span has at least getByteSize() bytes.
    void fill(const PassInputs& inputs, std::span<std::byte> data) const;

private:
    friend class Shader;
    std::uint32_t slot_;
    std::uint32_t space_;
    std::vector<ShaderPassMemorySlot> slots_;
};

} // namespace vlGraphics
