#include "script/Conversion.h"

#include <vlGraphics/ComparisonFunctionUtils.h>
#include <vlGraphics/FilterUtils.h>
#include <vlGraphics/StructToString.h>
#include <vlGraphics/TextureAddressModeUtils.h>

#include <algorithm>

namespace vlKestrion {
namespace {

using Names = std::vector<std::pair<std::uint32_t, String>>;
using vlGraphics::StructToString;

template <class FromIndex, class ToString> Names collect(FromIndex fromIndex, ToString toString) {
    Names names;
    for (std::uint32_t i = 0;; ++i) {
        const std::uint32_t value = fromIndex(i);
        if (value == StructToString::pastTheLast) return names;
        names.emplace_back(value, toString(value));
    }
}

} // namespace

Names namesOf(vlGraphics::BLEND) {
    return collect(StructToString::getBlendFromIndex, StructToString::getBlendString);
}
Names namesOf(vlGraphics::BLEND_OP) {
    return collect(StructToString::getBlendOpFromIndex, StructToString::getBlendOpString);
}
Names namesOf(vlGraphics::COLOR_WRITE_ENABLE) {
    return collect(StructToString::getWriteMaskFromIndex, StructToString::getWriteMaskString);
}
Names namesOf(vlGraphics::FILL_MODE) {
    return collect(StructToString::getFillModeFromIndex, StructToString::getFillModeString);
}
Names namesOf(vlGraphics::CULL_MODE) {
    return collect(StructToString::getCullModeFromIndex, StructToString::getCullModeString);
}
Names namesOf(vlGraphics::COMPARISON_FUNCTION) {
    using Utils = vlGraphics::ComparisonFunctionUtils;
    return collect(Utils::fromIndex, Utils::toString);
}
Names namesOf(vlGraphics::DEPTH_WRITE_MASK) {
    return collect(StructToString::getDepthWriteMaskFromIndex,
                   StructToString::getDepthWriteMaskString);
}
Names namesOf(vlGraphics::STENCIL_OP) {
    return collect(StructToString::getStencilOpFromIndex, StructToString::getStencilOpString);
}
Names namesOf(vlGraphics::TEXTURE_ADDRESS_MODE) {
    using Utils = vlGraphics::TextureAddressModeUtils;
    return collect(Utils::fromIndex, Utils::toString);
}
Names namesOf(vlGraphics::FILTER) {
    using Utils = vlGraphics::FilterUtils;
    return collect(Utils::fromIndex, Utils::toString);
}
Names namesOf(vlGraphics::FORMAT) {
    return collect(StructToString::getFormatFromIndex, StructToString::getFormatString);
}
Names namesOf(vlGraphics::PRIMITIVE_TOPOLOGY) {
    return collect(StructToString::getTopologyFromIndex, StructToString::getTopologyString);
}
Names namesOf(vlGraphics::RENDER_FLAG) {
    return {{0, "NONE"}, {1, "COLOR_TARGET"}, {2, "DEPTH_TARGET"}};
}
Names namesOf(vlGraphics::PROGRAM_TYPE) {
    return {{0, "NONE"}, {1, "PIPELINE"}, {2, "GEOMETRY"}, {3, "COMPUTE"}, {4, "RAYTRACING"}};
}

Value nameOrNumber(const Names& names, std::uint32_t value) {
    const auto found = std::find_if(
            names.begin(), names.end(), [&](const auto& entry) { return entry.first == value; });
    return found == names.end() ? Value(value) : Value(found->second);
}

Result<std::uint32_t> valueNamed(const Names& names, const Value& value) {
    const String* text = value.asText();
    const auto number = value.asInteger();
    for (const auto& [known, name] : names) {
        if ((text != nullptr && *text == name) || (number && *number == known)) return known;
    }
    return vlCommon::fail("expected " + listNames(names));
}

String listNames(const Names& names) {
    String text = "one of ";
    for (const auto& [value, name] : names)
        text += (&name == &names.front().second ? "" : ", ") + name;
    return text;
}

Result<float> finiteFrom(const Value& value) {
    const auto number = value.asNumber();
    if (!number) return vlCommon::fail("expected a number, not " + value.describeKind());
    const auto narrow = static_cast<float>(*number);
    if (!std::isfinite(narrow)) return vlCommon::fail("expected a finite number");
    return narrow;
}

Result<vlScripts::Numbers> finiteNumbersFrom(const Value& value, std::uint8_t count) {
    const auto numbers = value.asNumbers();
    const bool fits = numbers && numbers->count == count;
    if (!fits) return vlCommon::fail(count == 3 ? "expected {x, y, z}" : "expected {x, y, z, w}");
    for (std::size_t i = 0; i < count; ++i) {
        if (!std::isfinite(static_cast<float>(numbers->values[i])))
            return vlCommon::fail("expected finite numbers");
    }
    return *numbers;
}

Result<std::array<float, 4>> Conversion<std::array<float, 4>>::read(const Value& value) {
    return finiteNumbersFrom(value, 4).map([](const auto& numbers) {
        std::array<float, 4> four{};
        std::transform(numbers.values.begin(), numbers.values.end(), four.begin(), [](double one) {
            return static_cast<float>(one);
        });
        return four;
    });
}

Result<vlMaths::Quaternion> Conversion<vlMaths::Quaternion>::read(const Value& value) {
    return Conversion<std::array<float, 4>>::read(value).map([](const auto& four) {
        return vlMaths::Quaternion(four[0], four[1], four[2], four[3]);
    });
}

Result<Triple> Conversion<Triple>::read(const Value& value) {
    return finiteNumbersFrom(value, 3).map([](const auto& numbers) {
        return Triple{{static_cast<float>(numbers.values[0]),
                       static_cast<float>(numbers.values[1]),
                       static_cast<float>(numbers.values[2])}};
    });
}

Result<String> referredName(const Value& value, const char* kind) {
    if (value.isNil()) return String();
    const vlScripts::Object* object = value.asObject();
    if (object != nullptr && object->kind == kind) return object->name;
    if (const String* text = value.asText(); text != nullptr && !text->empty()) return *text;
    return vlCommon::fail(String("expected a ") + kind + ", its name or nil, not " +
                          value.describeKind());
}

} // namespace vlKestrion
