#include "interfaces/kinds/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace vlEditor {
namespace {

std::string_view withoutBlanks(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t\n\v\f\r");
    text.remove_prefix(std::min(begin, text.size()));
    // from_chars knows no plus.
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    return text;
}

std::int64_t parseWhole(std::string_view text) {
    text = withoutBlanks(text);
    std::int64_t number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec != std::errc::result_out_of_range) return number;
    return text.front() == '-' ? std::numeric_limits<std::int64_t>::min()
                               : std::numeric_limits<std::int64_t>::max();
}

template <class Whole> Whole bounded(std::int64_t number) {
    return static_cast<Whole>(std::clamp<std::int64_t>(
            number, std::numeric_limits<Whole>::min(), std::numeric_limits<Whole>::max()));
}

template <class Number> std::string shortest(Number number) {
    std::array<char, 64> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), number);
    return {text.data(), written.ptr};
}

template <class Number> std::optional<Number> readWholeText(std::string_view text) {
    text = withoutBlanks(text);
    text = text.substr(0, text.find_last_not_of(" \t\n\v\f\r") + 1);
    Number number{};
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = read.ec == std::errc() && read.ptr == text.data() + text.size();
    return isWhole ? std::optional<Number>(number) : std::nullopt;
}

} // namespace

template <> std::uint8_t parseNumber(std::string_view text) {
    return static_cast<std::uint8_t>(static_cast<std::uint64_t>(parseWhole(text)) & 0xFFU);
}

template <> std::int32_t parseNumber(std::string_view text) {
    return bounded<std::int32_t>(parseWhole(text));
}

template <> std::uint32_t parseNumber(std::string_view text) {
    return bounded<std::uint32_t>(parseWhole(text));
}

template <> float parseNumber(std::string_view text) {
    text = withoutBlanks(text);
    // Neither "inf" nor "nan": no file could hold them.
    const std::size_t digits = text.starts_with('-') ? 1 : 0;
    const bool isNumber = digits < text.size() &&
                          (text[digits] == '.' || (text[digits] >= '0' && text[digits] <= '9'));
    float number = 0;
    if (!isNumber) return 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    return read.ec == std::errc() ? number : 0;
}

template <> std::optional<std::uint32_t> readNumber(std::string_view text) {
    return readWholeText<std::uint32_t>(text);
}

template <> std::optional<float> readNumber(std::string_view text) {
    const auto number = readWholeText<float>(text);
    // Neither "inf" nor "nan": no file could hold them.
    return number && std::isfinite(*number) ? number : std::nullopt;
}

std::string showNumber(std::int64_t number) {
    return shortest(number);
}

std::string showNumber(float number) {
    return shortest(number);
}

} // namespace vlEditor
