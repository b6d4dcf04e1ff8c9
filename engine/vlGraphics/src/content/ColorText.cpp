#include "content/ColorText.h"

#include <fmt/format.h>

#include <array>
#include <charconv>

namespace vlGraphics {

namespace {

/// The shortest text that reads back as the same float, with a point where it is a whole number.
vlMemory::String numberText(float value) {
    vlMemory::String text = fmt::format("{}", value);
    if (text.find_first_of(".e") == vlMemory::String::npos) text += ".0";
    return text;
}

void skipBlanks(vlMemory::StringView& text) {
    const std::size_t start = text.find_first_not_of(" \t");
    text.remove_prefix(start == vlMemory::StringView::npos ? text.size() : start);
}

} // namespace

vlMemory::String colorText(const vlMaths::Vector& color) {
    return fmt::format("{}, {}, {}, {}",
                       numberText(color.x),
                       numberText(color.y),
                       numberText(color.z),
                       numberText(color.w));
}

std::optional<vlMaths::Vector> parseColor(vlMemory::StringView text) {
    std::array<float, 4> values{};
    for (std::size_t index = 0; index < values.size(); ++index) {
        skipBlanks(text);
        const auto read = std::from_chars(text.data(), text.data() + text.size(), values[index]);
        if (read.ec != std::errc()) return {};
        text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
        skipBlanks(text);
        if (index + 1 == values.size()) break;
        if (text.empty() || text.front() != ',') return {};
        text.remove_prefix(1);
    }
    const vlMaths::Vector color{values[0], values[1], values[2], values[3]};
    if (!text.empty() || !isFinite(color)) return {};
    return color;
}

} // namespace vlGraphics
