#include <vlGraphics/ChangeCount.h>
#include <vlGraphics/LogManager.h>
#include <vlGraphics/Resource.h>
#include <vlGraphics/ResourceManager.h>

#include <fmt/format.h>

namespace vlGraphics {

namespace {

constexpr std::size_t longestName = 4096;

/// Bytes of the character at the front; 0 where it is no UTF-8 (overlong forms, surrogates and what
/// lies beyond the last character included).
std::size_t characterSize(vlMemory::StringView text) {
    const auto byte = [&](std::size_t index) {
        return index < text.size() ? static_cast<unsigned char>(text[index]) : 0U;
    };
    const auto follows = [&](std::size_t index) { return (byte(index) & 0xC0U) == 0x80U; };
    const unsigned first = byte(0);
    if (first < 0x80U) return 1;
    if (first >= 0xC2U && first <= 0xDFU) return follows(1) ? 2 : 0;
    if (first >= 0xE0U && first <= 0xEFU) {
        if (!follows(1) || !follows(2)) return 0;
        const bool overlong = first == 0xE0U && byte(1) < 0xA0U;
        const bool surrogate = first == 0xEDU && byte(1) >= 0xA0U;
        return overlong || surrogate ? 0 : 3;
    }
    if (first >= 0xF0U && first <= 0xF4U) {
        if (!follows(1) || !follows(2) || !follows(3)) return 0;
        const bool overlong = first == 0xF0U && byte(1) < 0x90U;
        const bool beyond = first == 0xF4U && byte(1) >= 0x90U;
        return overlong || beyond ? 0 : 4;
    }
    return 0;
}

/// One line of printable text, whatever the bytes: what the log shows of a refused name.
vlMemory::String printable(vlMemory::StringView name) {
    constexpr std::size_t most = 80;
    vlMemory::String text;
    while (!name.empty() && text.size() < most) {
        const std::size_t size = characterSize(name);
        const auto first = static_cast<unsigned char>(name.front());
        if (size == 0 || first < 0x20U || first == 0x7FU) {
            text += '?';
        } else {
            text += name.substr(0, size);
        }
        name.remove_prefix(size == 0 ? 1 : size);
    }
    if (!name.empty()) text += "...";
    return text;
}

} // namespace

void Resource::markChanged() {
    ++revision_;
    ChangeCount::bump();
}

bool isValidResourceName(vlMemory::StringView name) {
    if (name.empty() || name.size() > longestName) return false;
    while (!name.empty()) {
        const std::size_t size = characterSize(name);
        if (size == 0) return false;
        const auto first = static_cast<unsigned char>(name[0]);
        const bool control = first < 0x20U || first == 0x7FU ||
                             (first == 0xC2U && static_cast<unsigned char>(name[1]) < 0xA0U);
        if (control) return false;
        name.remove_prefix(size);
    }
    return true;
}

void logRefusedName(vlMemory::StringView kind, vlMemory::StringView name) {
    LogManager::getInstance().log(
            fmt::format("Refused the name '{}' for a {}: names have 1 to {} bytes of UTF-8 without "
                        "control characters.",
                        printable(name),
                        kind,
                        longestName));
}

} // namespace vlGraphics
