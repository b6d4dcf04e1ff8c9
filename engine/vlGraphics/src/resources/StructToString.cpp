#include "resources/EnumTexts.h"

#include <vlGraphics/ComparisonFunctionUtils.h>
#include <vlGraphics/FilterUtils.h>
#include <vlGraphics/StructToString.h>
#include <vlGraphics/TextureAddressModeUtils.h>

namespace vlGraphics {

namespace {

template <class Enum> std::uint32_t fromIndex(std::uint32_t index) {
    constexpr auto& table = EnumTexts<Enum>::table;
    return index < table.size() ? static_cast<std::uint32_t>(table[index].value)
                                : StructToString::pastTheLast;
}

template <class Enum> vlMemory::StringView toString(std::uint32_t value) {
    const vlMemory::StringView text = enumText(static_cast<Enum>(value));
    return text.empty() ? vlMemory::StringView("UNKNOWN") : text;
}

template <class Enum> std::uint32_t fromString(vlMemory::StringView text) {
    const auto value = enumValue<Enum>(text);
    return value ? static_cast<std::uint32_t>(*value) : StructToString::pastTheLast;
}

} // namespace

#define VL_ENUM_LIST(Name, Enum)                                                                   \
    std::uint32_t StructToString::get##Name##FromIndex(std::uint32_t index) {                      \
        return fromIndex<Enum>(index);                                                             \
    }                                                                                              \
    vlMemory::StringView StructToString::get##Name##String(std::uint32_t value) {                  \
        return toString<Enum>(value);                                                              \
    }
VL_ENUM_LIST(Blend, BLEND)
VL_ENUM_LIST(BlendOp, BLEND_OP)
VL_ENUM_LIST(WriteMask, COLOR_WRITE_ENABLE)
VL_ENUM_LIST(FillMode, FILL_MODE)
VL_ENUM_LIST(CullMode, CULL_MODE)
VL_ENUM_LIST(StencilOp, STENCIL_OP)
VL_ENUM_LIST(DepthWriteMask, DEPTH_WRITE_MASK)
VL_ENUM_LIST(ShaderType, SHADER_TYPE)
VL_ENUM_LIST(Format, FORMAT)
VL_ENUM_LIST(Topology, PRIMITIVE_TOPOLOGY)
VL_ENUM_LIST(PassSlotType, PASS_SLOT_TYPE)
#undef VL_ENUM_LIST

#define VL_ENUM_UTILS(Name, Enum)                                                                  \
    std::uint32_t Name::fromIndex(std::uint32_t index) {                                           \
        return vlGraphics::fromIndex<Enum>(index);                                                 \
    }                                                                                              \
    vlMemory::StringView Name::toString(std::uint32_t value) {                                     \
        return vlGraphics::toString<Enum>(value);                                                  \
    }                                                                                              \
    std::uint32_t Name::fromString(vlMemory::StringView text) {                                    \
        return vlGraphics::fromString<Enum>(text);                                                 \
    }
VL_ENUM_UTILS(FilterUtils, FILTER)
VL_ENUM_UTILS(TextureAddressModeUtils, TEXTURE_ADDRESS_MODE)
VL_ENUM_UTILS(ComparisonFunctionUtils, COMPARISON_FUNCTION)
#undef VL_ENUM_UTILS

} // namespace vlGraphics
