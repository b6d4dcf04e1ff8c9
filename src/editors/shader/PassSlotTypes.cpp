#include "editors/shader/PassSlotTypes.h"

#include "editors/shader/EditorTextureSizeSlot.h"

#include <vlGraphics/DefaultNames.h>

#include <algorithm>
#include <array>

namespace vlEditor::PassSlotTypes {
namespace {

using vlGraphics::Handle;
using Slot = vlGraphics::ShaderPassMemorySlot;
using CameraSetter = void (Slot::*)(Handle<vlGraphics::Camera>);

constexpr std::uint32_t startModuloMs = 1000;

void becomeVector(Slot& slot) {
    slot.setFromVector(0, 0, 0, 1);
}
void becomeMatrix(Slot& slot) {
    slot.setFromMatrix(vlMaths::Matrix());
}
void becomeTargetSize(Slot& slot) {
    slot.setAsTargetSize();
}
void becomeTextureSize(Slot& slot) {
    slot.setAsCustom(std::make_unique<EditorTextureSizeSlot>(
            vlGraphics::TextureManager::getInstance()->handleOf(
                    vlGraphics::DefaultNames::texture)));
}
void becomeTime(Slot& slot) {
    slot.setAsTime(startModuloMs);
}

struct Type {
    std::string_view label;
    std::uint32_t code;
    CameraSetter camera = nullptr;  ///< of a type that looks through one
    void (*start)(Slot&) = nullptr; ///< of any other
};

constexpr std::array<Type, 14> types{{
        {"VECTOR", vector, nullptr, &becomeVector},
        {"MATRIX", matrix, nullptr, &becomeMatrix},
        {"CAM_CORNERS_WORLD", 3, &Slot::setAsCamCornersWorld},
        {"CAM_CORNERS_VIEW", 4, &Slot::setAsCamCornersView},
        {"TARGET_SIZE", 5, nullptr, &becomeTargetSize},
        {"PROJECTION_PARAMS", 6, &Slot::setAsProjectionParameters},
        {"TEXTURE_SIZE", textureSize, nullptr, &becomeTextureSize},
        {"VIEW_MATRIX", 8, &Slot::setAsViewMatrix},
        {"VIEW_MATRIX_INV", 9, &Slot::setAsViewMatrixInv},
        {"PROJ_MATRIX", 10, &Slot::setAsProjectionMatrix},
        {"PROJ_MATRIX_INV", 11, &Slot::setAsProjectionMatrixInv},
        {"CAM_POSITION", 13, &Slot::setAsCameraPosition},
        {"CAM_DIRECTION_WORLD", cameraDirection, &Slot::setAsCameraDirectionWorld},
        {"TIME", time, nullptr, &becomeTime},
}};

const Type* find(std::uint32_t code) {
    const auto* found = std::ranges::find(types, code, &Type::code);
    return found == types.end() ? nullptr : found;
}

const EditorTextureSizeSlot* editorSlot(const Slot& slot) {
    return dynamic_cast<const EditorTextureSizeSlot*>(slot.getData());
}

} // namespace

std::vector<Choice> choices() {
    std::vector<Choice> all;
    for (const Type& type : types)
        all.push_back({std::string(type.label), type.code});
    return all;
}

std::string_view labelInList(std::uint32_t code) {
    static constexpr std::array<std::string_view, 14> labels{"Vector4",
                                                             "Matrix4",
                                                             "World camera corners",
                                                             "View camera corners",
                                                             "Target size",
                                                             "Projection parameters",
                                                             "Texture size",
                                                             "View matrix",
                                                             "View matrix inverse",
                                                             "Projection matrix",
                                                             "Projection matrix inverse",
                                                             "Camera position",
                                                             "Camera direction",
                                                             "Time"};
    return code >= 1 && code <= labels.size() ? labels[code - 1] : "UNKNOWN";
}

bool isCamera(std::uint32_t code) {
    const Type* type = find(code);
    return type != nullptr && type->camera != nullptr;
}

bool isTexture(std::uint32_t code) {
    return code == textureSize;
}

std::uint32_t codeOf(const Slot& slot) {
    return editorSlot(slot) != nullptr ? textureSize : static_cast<std::uint32_t>(slot.getType());
}

bool become(std::uint32_t code, Slot& slot) {
    const Type* type = find(code);
    if (type == nullptr) return false;
    if (type->camera != nullptr)
        (slot.*type->camera)({});
    else
        type->start(slot);
    return true;
}

void setCamera(Slot& slot, Handle<vlGraphics::Camera> camera) {
    const Type* type = find(codeOf(slot));
    if (type != nullptr && type->camera != nullptr) (slot.*type->camera)(camera);
}

void setTexture(Slot& slot, Handle<vlGraphics::Texture> texture) {
    if (isTexture(codeOf(slot))) slot.setAsCustom(std::make_unique<EditorTextureSizeSlot>(texture));
}

} // namespace vlEditor::PassSlotTypes
