#pragma once
#include <vlGraphics/Camera.h>
#include <vlGraphics/Handle.h>
#include <vlGraphics/Texture.h>
#include <vlMaths/Matrix.h>
#include <vlMaths/Vector.h>

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>

namespace vlGraphics {

/// What fills a slot of a constant buffer each pass. Sizes in bytes: matrices and corners 64, the
/// rest 16.
enum class PASS_SLOT_TYPE : std::uint32_t {
    VECTOR = 1,
    MATRIX = 2,
    CAM_CORNERS_WORLD = 3,
    CAM_CORNERS_VIEW = 4,
    TARGET_SIZE = 5,       ///< width, height, 1 / width, 1 / height
    PROJECTION_PARAMS = 6, ///< near, far, aspect ratio, vertical field of view in radians
    TEXTURE_SIZE = 7,      ///< width, height, 1 / width, 1 / height
    VIEW_MATRIX = 8,
    VIEW_MATRIX_INV = 9,
    PROJECTION_MATRIX = 10,
    PROJECTION_MATRIX_INV = 11,
    CAMERA_POSITION = 13,
    CAMERA_DIRECTION_WORLD = 14,
    TIME = 15, ///< seconds in the period, period in seconds, whole seconds since start, 0..1
               ///< through it
    CUSTOM = 16
};

/** A slot that somebody outside the engine fills. Called while a frame is recorded. */
class ShaderPassCustomSlot {
public:
    virtual ~ShaderPassCustomSlot() = default;
    virtual vlMemory::StringView getTypeName() const = 0;
    /// Bytes; a multiple of 16.
    virtual std::uint32_t getDataSize() const = 0;
    virtual void fill(std::span<std::byte> data) const = 0;
    /// The texture of the TEXTURE_SIZE slot that the slot is declared as: it fills in the same
    /// where its maker is not there. Nothing for a slot that only its maker can make.
    virtual std::optional<Handle<Texture>> getDeclaredTexture() const { return {}; }

protected:
    ShaderPassCustomSlot() = default;
    ShaderPassCustomSlot(const ShaderPassCustomSlot&) = default;
    ShaderPassCustomSlot& operator=(const ShaderPassCustomSlot&) = default;
};

/** One entry of a constant buffer. A camera of none means the camera that the pass renders with. */
class ShaderPassMemorySlot {
public:
    using Value = std::array<float, 16>;

    PASS_SLOT_TYPE getType() const { return type_; }
    std::uint32_t getByteSize() const;
    vlMaths::Vector getDataAsVector() const;
    vlMaths::Matrix getDataAsMatrix() const;
    Handle<Camera> getCamera() const { return camera_; }
    /// Of a TEXTURE_SIZE slot, and of one that is declared as such.
    Handle<Texture> getTexture() const;
    std::uint32_t getTimeModuloMs() const { return timeModuloMs_; }
    ShaderPassCustomSlot* getData() const { return custom_.get(); }

    void setFromVector(const vlMaths::Vector& value);
    void setFromVector(float x, float y, float z, float w);
    void setFromMatrix(const vlMaths::Matrix& value);
    void setAsCamCornersWorld(Handle<Camera> camera = {});
    void setAsCamCornersView(Handle<Camera> camera = {});
    void setAsTargetSize();
    void setAsProjectionParameters(Handle<Camera> camera = {});
    void setAsTextureSize(Handle<Texture> texture);
    void setAsViewMatrix(Handle<Camera> camera = {});
    void setAsViewMatrixInv(Handle<Camera> camera = {});
    void setAsProjectionMatrix(Handle<Camera> camera = {});
    void setAsProjectionMatrixInv(Handle<Camera> camera = {});
    void setAsCameraPosition(Handle<Camera> camera = {});
    void setAsCameraDirectionWorld(Handle<Camera> camera = {});
    /// A period of 0 ms counts as 1.
    void setAsTime(std::uint32_t moduloMs);
    void setAsCustom(std::unique_ptr<ShaderPassCustomSlot> slot);

private:
    void become(PASS_SLOT_TYPE type, Handle<Camera> camera = {});

    PASS_SLOT_TYPE type_ = PASS_SLOT_TYPE::VECTOR;
    Value value_{0, 0, 0, 1};
    Handle<Camera> camera_;
    Handle<Texture> texture_;
    std::uint32_t timeModuloMs_ = 1000;
    std::unique_ptr<ShaderPassCustomSlot> custom_;
};

/** What a pass gives its slots, gathered once a pass. */
struct PassInputs {
    const Camera* camera = nullptr; ///< of the pass; never null
    std::uint32_t targetWidth = 1;  ///< pixels
    std::uint32_t targetHeight = 1;
    std::uint64_t timeMs = 0; ///< since the engine started
};

/// Writes a slot's bytes as HLSL reads them (matrices row by row).
void fillPassSlot(const ShaderPassMemorySlot& slot,
                  const PassInputs& inputs,
                  std::span<std::byte> data);

} // namespace vlGraphics
