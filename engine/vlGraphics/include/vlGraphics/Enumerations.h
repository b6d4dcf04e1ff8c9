#pragma once
#include <cstdint>

namespace vlGraphics {

// Numbers are Direct3D's and DXGI's, in files and in public headers; only the back end translates
// them.

enum class FORMAT : std::uint32_t {
    UNKNOWN = 0,
    R32G32B32A32_FLOAT = 2,
    R32G32B32A32_UINT = 3,
    R32G32B32A32_SINT = 4,
    R32G32B32_FLOAT = 6,
    R32G32B32_UINT = 7,
    R32G32B32_SINT = 8,
    R16G16B16A16_FLOAT = 10,
    R32G32_FLOAT = 16,
    R32G32_UINT = 17,
    R32G32_SINT = 18,
    D32_FLOAT_S8X24_UINT = 20, ///< depth and stencil; D24_UNORM_S8_UINT where the device lacks it
    R10G10B10A2_UNORM = 24,
    R11G11B10_FLOAT = 26,
    R8G8B8A8_UNORM = 28,
    R8G8B8A8_UNORM_SRGB = 29,
    R16G16_FLOAT = 34,
    D32_FLOAT = 40,
    R32_FLOAT = 41,
    R32_UINT = 42,
    R32_SINT = 43,
    D24_UNORM_S8_UINT = 45, ///< depth and stencil; D32_FLOAT_S8X24_UINT where the device lacks it
    R8G8_UNORM = 49,
    R16_FLOAT = 54,
    R8_UNORM = 61,
    B8G8R8A8_UNORM = 87,
    B8G8R8A8_UNORM_SRGB = 91,
};

enum class BLEND : std::uint32_t {
    ZERO = 1,
    ONE = 2,
    SRC_COLOR = 3,
    INV_SRC_COLOR = 4,
    SRC_ALPHA = 5,
    INV_SRC_ALPHA = 6,
    DEST_ALPHA = 7,
    INV_DEST_ALPHA = 8,
    DEST_COLOR = 9,
    INV_DEST_COLOR = 10,
    SRC_ALPHA_SAT = 11,
    BLEND_FACTOR = 14,
    INV_BLEND_FACTOR = 15,
    SRC1_COLOR = 16,
    INV_SRC1_COLOR = 17,
    SRC1_ALPHA = 18,
    INV_SRC1_ALPHA = 19,
};

enum class BLEND_OP : std::uint32_t { ADD = 1, SUBTRACT = 2, REV_SUBTRACT = 3, MIN = 4, MAX = 5 };

/// Bits of a write mask; any sum of them is valid.
enum class COLOR_WRITE_ENABLE : std::uint32_t {
    NONE = 0,
    RED = 1,
    GREEN = 2,
    BLUE = 4,
    ALPHA = 8,
    ALL = 15
};

enum class FILL_MODE : std::uint32_t { WIREFRAME = 2, SOLID = 3 };
enum class CULL_MODE : std::uint32_t { NONE = 1, FRONT = 2, BACK = 3 };

enum class COMPARISON_FUNCTION : std::uint32_t {
    NEVER = 1,
    LESS = 2,
    EQUAL = 3,
    LESS_EQUAL = 4,
    GREATER = 5,
    NOT_EQUAL = 6,
    GREATER_EQUAL = 7,
    ALWAYS = 8
};

enum class DEPTH_WRITE_MASK : std::uint32_t { ZERO = 0, ALL = 1 };

enum class STENCIL_OP : std::uint32_t {
    KEEP = 1,
    ZERO = 2,
    REPLACE = 3,
    INCR_SAT = 4,
    DECR_SAT = 5,
    INVERT = 6,
    INCR = 7,
    DECR = 8
};

enum class TEXTURE_ADDRESS_MODE : std::uint32_t {
    WRAP = 1,
    MIRROR = 2,
    CLAMP = 3,
    BORDER = 4,
    MIRROR_ONCE = 5
};

/// Minification, magnification and mip filter, as D3D12_FILTER encodes them; 0x80 compares.
enum class FILTER : std::uint32_t {
    MIN_MAG_MIP_POINT = 0x00,
    MIN_MAG_POINT_MIP_LINEAR = 0x01,
    MIN_POINT_MAG_LINEAR_MIP_POINT = 0x04,
    MIN_POINT_MAG_MIP_LINEAR = 0x05,
    MIN_LINEAR_MAG_MIP_POINT = 0x10,
    MIN_LINEAR_MAG_POINT_MIP_LINEAR = 0x11,
    MIN_MAG_LINEAR_MIP_POINT = 0x14,
    MIN_MAG_MIP_LINEAR = 0x15,
    ANISOTROPIC = 0x55,
    COMPARISON_MIN_MAG_MIP_POINT = 0x80,
    COMPARISON_MIN_MAG_LINEAR_MIP_POINT = 0x94,
    COMPARISON_MIN_MAG_MIP_LINEAR = 0x95,
    COMPARISON_ANISOTROPIC = 0xD5
};

enum class PRIMITIVE_TOPOLOGY : std::uint32_t {
    POINT_LIST = 1,
    LINE_LIST = 2,
    LINE_STRIP = 3,
    TRIANGLE_LIST = 4,
    TRIANGLE_STRIP = 5
};

/// What a texture may be rendered to as.
enum class RENDER_FLAG : std::uint32_t { NONE = 0, COLOR_TARGET = 1, DEPTH_TARGET = 2 };

/// Order of the program's stages everywhere.
enum class SHADER_TYPE : std::uint32_t {
    VERTEX = 0,
    HULL = 1,
    DOMAIN_STAGE = 2,
    GEOMETRY = 3,
    PIXEL = 4,
    COMPUTE = 5,
    RAYTRACING = 6
};
inline constexpr std::uint32_t shaderTypeCount = 7;

enum class PROGRAM_TYPE : std::uint32_t {
    NONE = 0,
    PIPELINE = 1,
    GEOMETRY = 2,
    COMPUTE = 3,
    RAYTRACING = 4
};

/// Codes of the compositor's passes.
enum class PASS_TYPE : std::uint32_t {
    NONE = 0,
    CLEAR_TARGETS = 1,
    COMPUTE = 2,
    INSTANCING = 3,
    MONO_MATERIAL = 4,
    POST_PROCESS = 5,
    RENDER_SCENE = 6,
    RAYTRACING = 7
};

} // namespace vlGraphics
