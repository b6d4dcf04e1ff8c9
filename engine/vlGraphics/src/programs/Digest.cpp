#include "programs/Digest.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

namespace vlGraphics {

namespace {

/// Both halves of the product take part, so that every bit reaches every other.
std::uint64_t mixed(std::uint64_t a, std::uint64_t b) {
    __extension__ using Wide = unsigned __int128;
    const Wide product = Wide{a} * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64U);
}

constexpr std::uint64_t firstKey = 0xA0761D6478BD642FULL;
constexpr std::uint64_t secondKey = 0xE7037ED1A0B428DBULL;

} // namespace

void DigestMaker::add(std::uint64_t number) {
    state_.high = mixed(state_.high ^ number, firstKey);
    state_.low = mixed(state_.low + number, secondKey) ^ (state_.low << 1U | state_.low >> 63U);
}

void DigestMaker::add(std::span<const std::byte> bytes) {
    for (std::size_t at = 0; at < bytes.size(); at += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + at, std::min(sizeof word, bytes.size() - at));
        add(word);
    }
    add(std::uint64_t{bytes.size()});
}

Digest DigestMaker::get() const {
    return {mixed(state_.high ^ secondKey, state_.low | 1U),
            mixed(state_.low ^ firstKey, state_.high | 1U)};
}

Digest digestOf(std::string_view text) {
    DigestMaker maker;
    maker.add(text);
    return maker.get();
}

std::string toText(const Digest& digest) {
    return fmt::format("{:016x}{:016x}", digest.high, digest.low);
}

} // namespace vlGraphics
