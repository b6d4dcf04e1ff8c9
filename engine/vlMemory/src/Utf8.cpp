#include <vlMemory/Utf8.h>

#include <algorithm>
#include <cstdint>

namespace vlMemory {

std::size_t utf8Length(StringView text) {
    if (text.empty()) return 0;
    const auto byte = [&](std::size_t at) {
        return at < text.size() ? static_cast<std::uint8_t>(text[at]) : std::uint8_t{0};
    };
    const auto between = [&](std::size_t at, unsigned lowest, unsigned highest) {
        return byte(at) >= lowest && byte(at) <= highest;
    };
    const std::uint8_t lead = byte(0);
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return between(1, 0x80, 0xBF) ? 2 : 0;
    // The second byte's range keeps overlong forms, surrogates and what is beyond U+10FFFF out.
    if (lead >= 0xE0 && lead <= 0xEF) {
        const bool second = between(1, lead == 0xE0 ? 0xA0 : 0x80, lead == 0xED ? 0x9F : 0xBF);
        return second && between(2, 0x80, 0xBF) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const bool second = between(1, lead == 0xF0 ? 0x90 : 0x80, lead == 0xF4 ? 0x8F : 0xBF);
        return second && between(2, 0x80, 0xBF) && between(3, 0x80, 0xBF) ? 4 : 0;
    }
    return 0;
}

std::size_t findInvalidUtf8(StringView text) {
    std::size_t at = 0;
    while (at < text.size()) {
        if (static_cast<std::uint8_t>(text[at]) < 0x80) {
            ++at;
            continue;
        }
        const std::size_t length = utf8Length(text.substr(at));
        if (length == 0) return at;
        at += length;
    }
    return StringView::npos;
}

bool startsWithControl(StringView text) {
    if (text.empty()) return false;
    const auto first = static_cast<std::uint8_t>(text[0]);
    if (first < 0x20 || first == 0x7F) return true;
    return first == 0xC2 && text.size() > 1 && static_cast<std::uint8_t>(text[1]) >= 0x80 &&
           static_cast<std::uint8_t>(text[1]) < 0xA0;
}

bool isPrintable(StringView text) {
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        if (length == 0 || startsWithControl(text)) return false;
        text.remove_prefix(length);
    }
    return true;
}

String printable(StringView text, std::size_t mostBytes) {
    String line;
    line.reserve(std::min(text.size(), mostBytes) + 3);
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        if (line.size() + std::max<std::size_t>(length, 1) > mostBytes) return line + "...";
        line += length == 0 || startsWithControl(text) ? StringView("?") : text.substr(0, length);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return line;
}

} // namespace vlMemory
