#include "Utf8.h"

#include <cstdint>

namespace vlExport {

std::size_t utf8Length(vlMemory::StringView text) {
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

std::size_t findInvalidUtf8(vlMemory::StringView text) {
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
    return vlMemory::StringView::npos;
}

} // namespace vlExport
