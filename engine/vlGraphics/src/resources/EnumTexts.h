#pragma once
#include <vlExport/EnumText.h>
#include <vlGraphics/Enumerations.h>
#include <vlGraphics/ShaderInstanceMemorySlot.h>
#include <vlGraphics/ShaderPassMemorySlot.h>

#include <array>
#include <optional>
#include <span>

namespace vlGraphics {

/** What each value of an enumeration is called: in pick lists and in declarations alike. The one
 *  table of each enumeration; everything that walks, names or checks its values reads it. */
template <class Enum> struct EnumTexts;

#define VL_ENUM_TEXTS(Enum, ...)                                                                   \
    template <> struct EnumTexts<Enum> {                                                           \
        using E = Enum;                                                                            \
        static constexpr auto table = std::to_array<vlExport::EnumText<Enum>>({__VA_ARGS__});      \
    }

// clang-format off
VL_ENUM_TEXTS(FORMAT,
    {E::UNKNOWN, "UNKNOWN"}, {E::R32G32B32A32_FLOAT, "R32G32B32A32_FLOAT"},
    {E::R32G32B32_FLOAT, "R32G32B32_FLOAT"}, {E::R16G16B16A16_FLOAT, "R16G16B16A16_FLOAT"},
    {E::R32G32_FLOAT, "R32G32_FLOAT"}, {E::R10G10B10A2_UNORM, "R10G10B10A2_UNORM"},
    {E::R11G11B10_FLOAT, "R11G11B10_FLOAT"}, {E::R8G8B8A8_UNORM, "R8G8B8A8_UNORM"},
    {E::R8G8B8A8_UNORM_SRGB, "R8G8B8A8_UNORM_SRGB"}, {E::R16G16_FLOAT, "R16G16_FLOAT"},
    {E::D32_FLOAT_S8X24_UINT, "D32_FLOAT_S8X24_UINT"}, {E::D32_FLOAT, "D32_FLOAT"},
    {E::R32_FLOAT, "R32_FLOAT"}, {E::R32_UINT, "R32_UINT"},
    {E::D24_UNORM_S8_UINT, "D24_UNORM_S8_UINT"},
    {E::R8G8_UNORM, "R8G8_UNORM"}, {E::R16_FLOAT, "R16_FLOAT"}, {E::R8_UNORM, "R8_UNORM"},
    {E::B8G8R8A8_UNORM, "B8G8R8A8_UNORM"}, {E::B8G8R8A8_UNORM_SRGB, "B8G8R8A8_UNORM_SRGB"});

VL_ENUM_TEXTS(BLEND,
    {E::ZERO, "ZERO"}, {E::ONE, "ONE"}, {E::SRC_COLOR, "SRC_COLOR"},
    {E::INV_SRC_COLOR, "INV_SRC_COLOR"}, {E::SRC_ALPHA, "SRC_ALPHA"},
    {E::INV_SRC_ALPHA, "INV_SRC_ALPHA"}, {E::DEST_ALPHA, "DEST_ALPHA"},
    {E::INV_DEST_ALPHA, "INV_DEST_ALPHA"}, {E::DEST_COLOR, "DEST_COLOR"},
    {E::INV_DEST_COLOR, "INV_DEST_COLOR"}, {E::SRC_ALPHA_SAT, "SRC_ALPHA_SAT"},
    {E::BLEND_FACTOR, "BLEND_FACTOR"}, {E::INV_BLEND_FACTOR, "INV_BLEND_FACTOR"},
    {E::SRC1_COLOR, "SRC1_COLOR"}, {E::INV_SRC1_COLOR, "INV_SRC1_COLOR"},
    {E::SRC1_ALPHA, "SRC1_ALPHA"}, {E::INV_SRC1_ALPHA, "INV_SRC1_ALPHA"});

VL_ENUM_TEXTS(BLEND_OP,
    {E::ADD, "ADD"}, {E::SUBTRACT, "SUBTRACT"}, {E::REV_SUBTRACT, "REV_SUBTRACT"},
    {E::MIN, "MIN"}, {E::MAX, "MAX"});

VL_ENUM_TEXTS(COLOR_WRITE_ENABLE,
    {E::NONE, "NONE"}, {E::RED, "RED"}, {E::GREEN, "GREEN"}, {E{3}, "RED | GREEN"},
    {E::BLUE, "BLUE"}, {E{5}, "RED | BLUE"}, {E{6}, "GREEN | BLUE"}, {E{7}, "RED | GREEN | BLUE"},
    {E::ALPHA, "ALPHA"}, {E{9}, "RED | ALPHA"}, {E{10}, "GREEN | ALPHA"},
    {E{11}, "RED | GREEN | ALPHA"}, {E{12}, "BLUE | ALPHA"}, {E{13}, "RED | BLUE | ALPHA"},
    {E{14}, "GREEN | BLUE | ALPHA"}, {E::ALL, "ALL"});

VL_ENUM_TEXTS(FILL_MODE, {E::WIREFRAME, "WIREFRAME"}, {E::SOLID, "SOLID"});
VL_ENUM_TEXTS(CULL_MODE, {E::NONE, "NONE"}, {E::FRONT, "FRONT"}, {E::BACK, "BACK"});

VL_ENUM_TEXTS(COMPARISON_FUNCTION,
    {E::NEVER, "NEVER"}, {E::LESS, "LESS"}, {E::EQUAL, "EQUAL"}, {E::LESS_EQUAL, "LESS_EQUAL"},
    {E::GREATER, "GREATER"}, {E::NOT_EQUAL, "NOT_EQUAL"}, {E::GREATER_EQUAL, "GREATER_EQUAL"},
    {E::ALWAYS, "ALWAYS"});

VL_ENUM_TEXTS(DEPTH_WRITE_MASK, {E::ZERO, "ZERO"}, {E::ALL, "ALL"});

VL_ENUM_TEXTS(STENCIL_OP,
    {E::KEEP, "KEEP"}, {E::ZERO, "ZERO"}, {E::REPLACE, "REPLACE"}, {E::INCR_SAT, "INCR_SAT"},
    {E::DECR_SAT, "DECR_SAT"}, {E::INVERT, "INVERT"}, {E::INCR, "INCR"}, {E::DECR, "DECR"});

VL_ENUM_TEXTS(TEXTURE_ADDRESS_MODE,
    {E::WRAP, "WRAP"}, {E::MIRROR, "MIRROR"}, {E::CLAMP, "CLAMP"}, {E::BORDER, "BORDER"},
    {E::MIRROR_ONCE, "MIRROR_ONCE"});

VL_ENUM_TEXTS(FILTER,
    {E::MIN_MAG_MIP_POINT, "MIN_MAG_MIP_POINT"},
    {E::MIN_MAG_POINT_MIP_LINEAR, "MIN_MAG_POINT_MIP_LINEAR"},
    {E::MIN_POINT_MAG_LINEAR_MIP_POINT, "MIN_POINT_MAG_LINEAR_MIP_POINT"},
    {E::MIN_POINT_MAG_MIP_LINEAR, "MIN_POINT_MAG_MIP_LINEAR"},
    {E::MIN_LINEAR_MAG_MIP_POINT, "MIN_LINEAR_MAG_MIP_POINT"},
    {E::MIN_LINEAR_MAG_POINT_MIP_LINEAR, "MIN_LINEAR_MAG_POINT_MIP_LINEAR"},
    {E::MIN_MAG_LINEAR_MIP_POINT, "MIN_MAG_LINEAR_MIP_POINT"},
    {E::MIN_MAG_MIP_LINEAR, "MIN_MAG_MIP_LINEAR"},
    {E::ANISOTROPIC, "ANISOTROPIC"},
    {E::COMPARISON_MIN_MAG_MIP_POINT, "COMPARISON_MIN_MAG_MIP_POINT"},
    {E::COMPARISON_MIN_MAG_LINEAR_MIP_POINT, "COMPARISON_MIN_MAG_LINEAR_MIP_POINT"},
    {E::COMPARISON_MIN_MAG_MIP_LINEAR, "COMPARISON_MIN_MAG_MIP_LINEAR"},
    {E::COMPARISON_ANISOTROPIC, "COMPARISON_ANISOTROPIC"});

VL_ENUM_TEXTS(PRIMITIVE_TOPOLOGY,
    {E::POINT_LIST, "POINT_LIST"}, {E::LINE_LIST, "LINE_LIST"}, {E::LINE_STRIP, "LINE_STRIP"},
    {E::TRIANGLE_LIST, "TRIANGLE_LIST"}, {E::TRIANGLE_STRIP, "TRIANGLE_STRIP"});

VL_ENUM_TEXTS(RENDER_FLAG,
    {E::NONE, "NONE"}, {E::COLOR_TARGET, "COLOR_TARGET"}, {E::DEPTH_TARGET, "DEPTH_TARGET"});

VL_ENUM_TEXTS(SHADER_TYPE,
    {E::VERTEX, "VERTEX"}, {E::HULL, "HULL"}, {E::DOMAIN_STAGE, "DOMAIN"},
    {E::GEOMETRY, "GEOMETRY"}, {E::PIXEL, "PIXEL"}, {E::COMPUTE, "COMPUTE"},
    {E::RAYTRACING, "RAYTRACING"});

VL_ENUM_TEXTS(PROGRAM_TYPE,
    {E::NONE, "NONE"}, {E::PIPELINE, "PIPELINE"}, {E::GEOMETRY, "GEOMETRY"}, {E::COMPUTE, "COMPUTE"},
    {E::RAYTRACING, "RAYTRACING"});

VL_ENUM_TEXTS(PASS_TYPE,
    {E::NONE, "none"}, {E::CLEAR_TARGETS, "clearTargets"}, {E::COMPUTE, "compute"},
    {E::INSTANCING, "instancing"}, {E::MONO_MATERIAL, "monoMaterial"},
    {E::POST_PROCESS, "postProcess"}, {E::RENDER_SCENE, "renderScene"},
    {E::RAYTRACING, "raytracing"});

VL_ENUM_TEXTS(PASS_SLOT_TYPE,
    {E::VECTOR, "VECTOR"}, {E::MATRIX, "MATRIX"}, {E::CAM_CORNERS_WORLD, "CAM_CORNERS_WORLD"},
    {E::CAM_CORNERS_VIEW, "CAM_CORNERS_VIEW"}, {E::TARGET_SIZE, "TARGET_SIZE"},
    {E::PROJECTION_PARAMS, "PROJECTION_PARAMS"}, {E::TEXTURE_SIZE, "TEXTURE_SIZE"},
    {E::VIEW_MATRIX, "VIEW_MATRIX"}, {E::VIEW_MATRIX_INV, "VIEW_MATRIX_INV"},
    {E::PROJECTION_MATRIX, "PROJECTION_MATRIX"},
    {E::PROJECTION_MATRIX_INV, "PROJECTION_MATRIX_INV"},
    {E::CAMERA_POSITION, "CAMERA_POSITION"},
    {E::CAMERA_DIRECTION_WORLD, "CAMERA_DIRECTION_WORLD"},
    {E::TIME, "TIME"}, {E::CUSTOM, "CUSTOM"});

VL_ENUM_TEXTS(INSTANCE_SLOT_TYPE, {E::WORLD_MATRIX, "WORLD_MATRIX"}, {E::CUSTOM, "CUSTOM"});
// clang-format on
#undef VL_ENUM_TEXTS

/// Empty for a value that the enumeration has not.
template <class Enum> constexpr vlMemory::StringView enumText(Enum value) {
    for (const auto& entry : EnumTexts<Enum>::table) {
        if (entry.value == value) return entry.text;
    }
    return {};
}

template <class Enum> constexpr std::optional<Enum> enumValue(vlMemory::StringView text) {
    for (const auto& entry : EnumTexts<Enum>::table) {
        if (entry.text == text) return entry.value;
    }
    return {};
}

/// Numbers reach the setters from lists and files; only those of the enumeration may pass.
template <class Enum> constexpr bool isKnownValue(Enum value) {
    return !enumText(value).empty();
}

} // namespace vlGraphics
