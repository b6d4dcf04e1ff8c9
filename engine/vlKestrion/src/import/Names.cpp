#include "Names.h"

#include <vlMemory/Utf8.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace vlKestrion {

namespace {

constexpr std::size_t maxBytes = 200;

template <class Refuse>
vlMemory::String clean(vlMemory::StringView name, vlMemory::StringView fallback, Refuse refuse) {
    vlMemory::String result;
    while (!name.empty()) {
        const std::size_t size = vlMemory::utf8Length(name);
        if (result.size() + std::max<std::size_t>(size, 1) > maxBytes) break;
        const bool plain = size == 1;
        if (size == 0 || vlMemory::startsWithControl(name) || (plain && refuse(name[0]))) {
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
