#include <vlGraphics/ChangeCount.h>
#include <vlGraphics/DefaultNames.h>
#include <vlGraphics/ShaderPassMemorySlot.h>

#include <algorithm>
#include <cassert>
#include <cstring>
#include <utility>

namespace vlGraphics {

namespace {

using vlMaths::Matrix;
using vlMaths::Vector;

constexpr std::uint32_t vectorBytes = 16;
constexpr std::uint32_t matrixBytes = 64;
constexpr ShaderPassMemorySlot::Value startValue{0, 0, 0, 1};

void write(std::span<std::byte> data, const float* values, std::size_t count) {
    std::memcpy(data.data(), values, std::min(data.size(), count * sizeof(float)));
}

void write(std::span<std::byte> data, const Vector& vector) {
    const std::array<float, 4> values{vector.x, vector.y, vector.z, vector.w};
    write(data, values.data(), values.size());
}

void write(std::span<std::byte> data, const Matrix& matrix) {
    write(data, matrix.elements.data(), matrix.elements.size());
}

void write(std::span<std::byte> data, const std::array<Vector, 4>& corners) {
    for (std::size_t index = 0; index < corners.size() && data.size() >= vectorBytes; ++index) {
        write(data, corners[index]);
        data = data.subspan(vectorBytes);
    }
}

Vector sizeVector(std::uint32_t width, std::uint32_t height) {
    const auto x = static_cast<float>(std::max(width, 1U));
    const auto y = static_cast<float>(std::max(height, 1U));
    return {x, y, 1 / x, 1 / y};
}

const Camera& cameraOf(const ShaderPassMemorySlot& slot, const PassInputs& inputs) {
    const CameraManager* cameras = CameraManager::getInstance();
    const Camera* camera = cameras == nullptr ? nullptr : cameras->resolve(slot.getCamera());
    assert(camera != nullptr || inputs.camera != nullptr);
    return camera != nullptr ? *camera : *inputs.camera;
}

Vector textureSize(const ShaderPassMemorySlot& slot, const PassInputs& inputs) {
    const TextureManager* textures = TextureManager::getInstance();
    if (textures == nullptr) return sizeVector(1, 1);
    // The context's own buffers are as large as what is being drawn to, unless that is overloaded.
    const vlMemory::StringView name = textures->nameOf(slot.getTexture());
    if (name == DefaultNames::backBuffer || name == DefaultNames::depthBuffer)
        return sizeVector(inputs.targetWidth, inputs.targetHeight);
    const Texture* texture = textures->resolve(slot.getTexture());
    if (texture == nullptr) texture = textures->get(DefaultNames::texture);
    if (texture == nullptr) return sizeVector(1, 1);
    return {static_cast<float>(texture->getWidth()),
            static_cast<float>(texture->getHeight()),
            texture->getInverseWidth(),
            texture->getInverseHeight()};
}

Vector projectionParameters(const Camera& camera) {
    const Camera::Settings& settings = camera.getSettings();
    return {settings.nearDistance,
            settings.farDistance,
            camera.getAspectRatio(),
            settings.fieldOfView};
}

Vector timeVector(std::uint32_t moduloMs, std::uint64_t timeMs) {
    const auto period = static_cast<float>(moduloMs) / 1000;
    const auto within = static_cast<float>(timeMs % moduloMs) / 1000;
    return {within,
            period,
            static_cast<float>(timeMs / 1000),
            static_cast<float>(timeMs % moduloMs) / static_cast<float>(moduloMs)};
}

} // namespace

std::uint32_t ShaderPassMemorySlot::getByteSize() const {
    switch (type_) {
    case PASS_SLOT_TYPE::MATRIX:
    case PASS_SLOT_TYPE::CAM_CORNERS_WORLD:
    case PASS_SLOT_TYPE::CAM_CORNERS_VIEW:
    case PASS_SLOT_TYPE::VIEW_MATRIX:
    case PASS_SLOT_TYPE::VIEW_MATRIX_INV:
    case PASS_SLOT_TYPE::PROJECTION_MATRIX:
    case PASS_SLOT_TYPE::PROJECTION_MATRIX_INV:
        return matrixBytes;
    case PASS_SLOT_TYPE::CUSTOM:
        return custom_ == nullptr ? vectorBytes : custom_->getDataSize();
    default:
        return vectorBytes;
    }
}

Handle<Texture> ShaderPassMemorySlot::getTexture() const {
    return custom_ == nullptr ? texture_ : custom_->getDeclaredTexture().value_or(texture_);
}

Vector ShaderPassMemorySlot::getDataAsVector() const {
    return {value_[0], value_[1], value_[2], value_[3]};
}

Matrix ShaderPassMemorySlot::getDataAsMatrix() const {
    Matrix matrix;
    matrix.elements = value_;
    return matrix;
}

void ShaderPassMemorySlot::become(PASS_SLOT_TYPE type, Handle<Camera> camera) {
    type_ = type;
    value_ = startValue;
    camera_ = camera;
    texture_ = {};
    timeModuloMs_ = 1000;
    custom_.reset();
    ChangeCount::bump();
}

void ShaderPassMemorySlot::setFromVector(const Vector& value) {
    become(PASS_SLOT_TYPE::VECTOR);
    value_ = {value.x, value.y, value.z, value.w};
}

void ShaderPassMemorySlot::setFromVector(float x, float y, float z, float w) {
    setFromVector(Vector(x, y, z, w));
}

void ShaderPassMemorySlot::setFromMatrix(const Matrix& value) {
    become(PASS_SLOT_TYPE::MATRIX);
    value_ = value.elements;
}

void ShaderPassMemorySlot::setAsCamCornersWorld(Handle<Camera> camera) {
    become(PASS_SLOT_TYPE::CAM_CORNERS_WORLD, camera);
}

void ShaderPassMemorySlot::setAsCamCornersView(Handle<Camera> camera) {
    become(PASS_SLOT_TYPE::CAM_CORNERS_VIEW, camera);
}

void ShaderPassMemorySlot::setAsTargetSize() {
    become(PASS_SLOT_TYPE::TARGET_SIZE);
}

void ShaderPassMemorySlot::setAsProjectionParameters(Handle<Camera> camera) {
    become(PASS_SLOT_TYPE::PROJECTION_PARAMS, camera);
}

void ShaderPassMemorySlot::setAsTextureSize(Handle<Texture> texture) {
    become(PASS_SLOT_TYPE::TEXTURE_SIZE);
    texture_ = texture;
}

void ShaderPassMemorySlot::setAsViewMatrix(Handle<Camera> camera) {
    become(PASS_SLOT_TYPE::VIEW_MATRIX, camera);
}

void ShaderPassMemorySlot::setAsViewMatrixInv(Handle<Camera> camera) {
    become(PASS_SLOT_TYPE::VIEW_MATRIX_INV, camera);
}

void ShaderPassMemorySlot::setAsProjectionMatrix(Handle<Camera> camera) {
    become(PASS_SLOT_TYPE::PROJECTION_MATRIX, camera);
}

void ShaderPassMemorySlot::setAsProjectionMatrixInv(Handle<Camera> camera) {
    become(PASS_SLOT_TYPE::PROJECTION_MATRIX_INV, camera);
}

void ShaderPassMemorySlot::setAsCameraPosition(Handle<Camera> camera) {
    become(PASS_SLOT_TYPE::CAMERA_POSITION, camera);
}

void ShaderPassMemorySlot::setAsCameraDirectionWorld(Handle<Camera> camera) {
    become(PASS_SLOT_TYPE::CAMERA_DIRECTION_WORLD, camera);
}

void ShaderPassMemorySlot::setAsTime(std::uint32_t moduloMs) {
    become(PASS_SLOT_TYPE::TIME);
    timeModuloMs_ = std::max(moduloMs, 1U);
}

void ShaderPassMemorySlot::setAsCustom(std::unique_ptr<ShaderPassCustomSlot> slot) {
    become(PASS_SLOT_TYPE::CUSTOM);
    custom_ = std::move(slot);
}

void fillPassSlot(const ShaderPassMemorySlot& slot,
                  const PassInputs& inputs,
                  std::span<std::byte> data) {
    const auto camera = [&]() -> const Camera& { return cameraOf(slot, inputs); };
    switch (slot.getType()) {
    case PASS_SLOT_TYPE::VECTOR:
        return write(data, slot.getDataAsVector());
    case PASS_SLOT_TYPE::MATRIX:
        return write(data, slot.getDataAsMatrix());
    case PASS_SLOT_TYPE::CAM_CORNERS_WORLD:
        return write(data, camera().getCornersWorld());
    case PASS_SLOT_TYPE::CAM_CORNERS_VIEW:
        return write(data, camera().getCornersView());
    case PASS_SLOT_TYPE::TARGET_SIZE:
        return write(data, sizeVector(inputs.targetWidth, inputs.targetHeight));
    case PASS_SLOT_TYPE::PROJECTION_PARAMS:
        return write(data, projectionParameters(camera()));
    case PASS_SLOT_TYPE::TEXTURE_SIZE:
        return write(data, textureSize(slot, inputs));
    case PASS_SLOT_TYPE::VIEW_MATRIX:
        return write(data, camera().getViewMatrix());
    case PASS_SLOT_TYPE::VIEW_MATRIX_INV:
        return write(data, vlMaths::inverseAffine(camera().getViewMatrix()));
    case PASS_SLOT_TYPE::PROJECTION_MATRIX:
        return write(data, camera().getProjectionMatrix());
    case PASS_SLOT_TYPE::PROJECTION_MATRIX_INV:
        return write(data, vlMaths::inverse(camera().getProjectionMatrix()));
    case PASS_SLOT_TYPE::CAMERA_POSITION:
        return write(data, camera().getPositionAbsolute().withW(1));
    case PASS_SLOT_TYPE::CAMERA_DIRECTION_WORLD:
        return write(data, camera().getAbsoluteFront().withW(0));
    case PASS_SLOT_TYPE::TIME:
        return write(data, timeVector(slot.getTimeModuloMs(), inputs.timeMs));
    case PASS_SLOT_TYPE::CUSTOM:
        break;
    }
    std::fill(data.begin(), data.end(), std::byte{0});
    if (const ShaderPassCustomSlot* custom = slot.getData())
        custom->fill(data.first(std::min<std::size_t>(data.size(), custom->getDataSize())));
}

} // namespace vlGraphics
