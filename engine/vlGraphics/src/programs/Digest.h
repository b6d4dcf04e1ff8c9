#pragma once
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace vlGraphics {

/// Stands for a content: two different ones do not share it by chance.
struct Digest {
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    friend bool operator==(const Digest&, const Digest&) = default;
    friend auto operator<=>(const Digest&, const Digest&) = default;
};

/** Makes a digest of what is added, one after the other; the pieces' ends count, too. Not made to
 *  resist forgery. The same on every machine of one byte order. */
class DigestMaker {
public:
    void add(std::span<const std::byte> bytes);
    void add(std::string_view text) { add(std::as_bytes(std::span(text))); }
    void add(std::uint64_t number);
    Digest get() const;

private:
    Digest state_{0x9E3779B97F4A7C15ULL, 0xD1B54A32D192ED03ULL};
};

Digest digestOf(std::string_view text);
/// 32 digits.
std::string toText(const Digest& digest);

} // namespace vlGraphics
