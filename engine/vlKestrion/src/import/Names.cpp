#include "Names.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace vlKestrion {

namespace {

constexpr std::size_t maxBytes = 200;

/// Bytes of the well-formed UTF-8 character at the start of the text; 0 where there is none.
std::size_t characterSize(vlMemory::StringView text) {
    const auto byte = [&](std::size_t place) { return static_cast<std::uint8_t>(text[place]); };
    const std::uint8_t first = byte(0);
    if (first < 0x80) return 1;
    const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < size) return 0;
    for (std::size_t place = 1; place < size; ++place)
        if ((byte(place) & 0xC0U) != 0x80U) return 0;
    const std::uint8_t second = byte(1);
    const bool tooLong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool noCharacter = (first == 0xED && second > 0x9F) || (first == 0xF4 && second > 0x8F);
    return tooLong || noCharacter ? 0 : size;
}

template <class Refuse>
vlMemory::String clean(vlMemory::StringView name, vlMemory::StringView fallback, Refuse refuse) {
    vlMemory::String result;
    while (!name.empty()) {
        const std::size_t size = characterSize(name);
        if (result.size() + std::max<std::size_t>(size, 1) > maxBytes) break;
        const bool plain = size == 1;
        const bool control = plain && (static_cast<std::uint8_t>(name[0]) < 32 || name[0] == 127);
        if (size == 0 || control || (plain && refuse(name[0]))) {
            result += '_';
        } else {
            result += name.substr(0, size);
        }
        name.remove_prefix(std::max<std::size_t>(size, 1));
    }
    const auto first = result.find_first_not_of(' ');
    if (first == vlMemory::String::npos) return vlMemory::String(fallback);
    return result.substr(first, result.find_last_not_of(' ') + 1 - first);
}

} // namespace

vlMemory::String cleanName(vlMemory::StringView name, vlMemory::StringView fallback) {
    return clean(name, fallback, [](char) { return false; });
}

vlMemory::String cleanFileName(vlMemory::StringView name, vlMemory::StringView fallback) {
    constexpr vlMemory::StringView reserved = "/\\:*?\"<>|";
    vlMemory::String result = clean(
            name, fallback, [&](char c) { return reserved.find(c) != vlMemory::StringView::npos; });
    const auto first = result.find_first_not_of(". ");
    if (first == vlMemory::String::npos) return vlMemory::String(fallback);
    return result.substr(first, result.find_last_not_of(". ") + 1 - first);
}

vlMemory::StringView lastPathPart(vlMemory::StringView path) {
    const std::size_t separator = path.find_last_of("/\\");
    return separator == vlMemory::StringView::npos ? path : path.substr(separator + 1);
}

vlMemory::String lowerCase(vlMemory::StringView text) {
    vlMemory::String lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

vlMemory::String NameSet::unique(vlMemory::StringView name, vlMemory::StringView extension) {
    vlMemory::String result = fmt::format("{}{}", name, extension);
    std::uint64_t& number = numbers_[lowerCase(result)];
    while (has(result)) {
        number = std::max<std::uint64_t>(number + 1, 2);
        result = fmt::format("{} ({}){}", name, number, extension);
    }
    add(result);
    return result;
}

} // namespace vlKestrion
