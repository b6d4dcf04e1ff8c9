#pragma once
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace vlMemory {

/** Owned bytes. Empty after a move. */
class Buffer {
public:
    Buffer() = default;
    /// Zeroed bytes.
    explicit Buffer(std::size_t size) : bytes_(size) {}
    explicit Buffer(std::vector<std::byte> bytes) : bytes_(std::move(bytes)) {}

    std::size_t size() const { return bytes_.size(); }
    bool empty() const { return bytes_.empty(); }
    std::byte* data() { return bytes_.data(); }
    const std::byte* data() const { return bytes_.data(); }
    void resize(std::size_t size) { bytes_.resize(size); }

    std::span<std::byte> span() { return bytes_; }
    std::span<const std::byte> span() const { return bytes_; }
    /// The bytes as text; valid while the buffer lives unchanged.
    std::string_view text() const {
        return {reinterpret_cast<const char*>(bytes_.data()), bytes_.size()};
    }

    friend bool operator==(const Buffer&, const Buffer&) = default;

private:
    std::vector<std::byte> bytes_;
};

} // namespace vlMemory
