#pragma once
#include <vlMaths/Matrix.h>
#include <vlMemory/String.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace vlGraphics {

class Entity;

enum class INSTANCE_SLOT_TYPE : std::uint32_t { WORLD_MATRIX = 1, CUSTOM = 2 };

/** Per-entity data that somebody outside the engine fills. Called for each drawn entity of a frame.
 */
class ShaderInstanceCustomSlot {
public:
    virtual ~ShaderInstanceCustomSlot() = default;
    /// As the vertex stage writes it, such as "PICKINGID".
    virtual vlMemory::StringView getSemantic() const = 0;
    /// Bytes; a multiple of 16.
    virtual std::uint32_t getDataSize() const = 0;
    virtual void fill(const Entity& entity, std::span<std::byte> data) const = 0;

protected:
    ShaderInstanceCustomSlot() = default;
    ShaderInstanceCustomSlot(const ShaderInstanceCustomSlot&) = default;
    ShaderInstanceCustomSlot& operator=(const ShaderInstanceCustomSlot&) = default;
};

/** One entry of a shader's per-instance data. Starts as the world matrix. */
class ShaderInstanceMemorySlot {
public:
    INSTANCE_SLOT_TYPE getType() const { return type_; }
    /// Semantic "WORLD_MATRIX", 64 bytes row by row.
    void setAsWorldMatrix();
    void setAsCustom(std::shared_ptr<const ShaderInstanceCustomSlot> slot);
    const ShaderInstanceCustomSlot* getCustom() const { return custom_.get(); }
    vlMemory::StringView getSemantic() const;
    std::uint32_t getByteSize() const;

private:
    INSTANCE_SLOT_TYPE type_ = INSTANCE_SLOT_TYPE::WORLD_MATRIX;
    std::shared_ptr<const ShaderInstanceCustomSlot> custom_;
};

} // namespace vlGraphics
