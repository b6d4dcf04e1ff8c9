#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vlEditor {

/** Numbers as a person types them: decimal, as C reads them but the same in every locale. Leading
 *  blanks and a sign are passed over, reading goes as far as it can ("12.7" is the whole number 12,
 *  "0.5x" is 0.5), and no number gives 0. Whole numbers beyond the type end at its bounds, a real
 *  one that no float holds gives 0. */
template <class Number> Number parseNumber(std::string_view text);
/// Masks keep the low eight bits of the whole number.
template <> std::uint8_t parseNumber(std::string_view text);
template <> std::int32_t parseNumber(std::string_view text);
template <> std::uint32_t parseNumber(std::string_view text);
template <> float parseNumber(std::string_view text);

/** The number that the whole text is, with nothing but blanks around it; nothing for any other text
 *  and for a number beyond the type. */
template <class Number> std::optional<Number> readNumber(std::string_view text);
template <> std::optional<std::uint32_t> readNumber(std::string_view text);
template <> std::optional<float> readNumber(std::string_view text);

/// The shortest text that is parsed as the same number.
std::string showNumber(std::int64_t number);
std::string showNumber(float number);
inline std::string showNumber(std::uint8_t number) {
    return showNumber(std::int64_t{number});
}
inline std::string showNumber(std::int32_t number) {
    return showNumber(std::int64_t{number});
}
inline std::string showNumber(std::uint32_t number) {
    return showNumber(std::int64_t{number});
}

} // namespace vlEditor
