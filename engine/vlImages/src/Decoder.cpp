#include "Bounds.h"
#include "Codecs.h"

#include <vlImages/Decoder.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace vlImages {

namespace {

bool startsWith(std::span<const std::byte> bytes, std::span<const std::uint8_t> signature) {
    return bytes.size() >= signature.size() &&
           std::equal(signature.begin(), signature.end(), bytes.begin(), [](auto a, auto b) {
               return std::byte{a} == b;
           });
}

} // namespace

vlCommon::Result<> checkBounds(vlMemory::StringView name,
                               std::uint64_t width,
                               std::uint64_t height,
                               PixelFormat format) {
    if (width == 0 || height == 0) {
        return vlCommon::fail(fmt::format("{}: a picture of {} x {} pixels", name, width, height));
    }
    const bool tooLarge = width > maxImageSize || height > maxImageSize ||
                          width * height > maxImagePixels ||
                          width * height * bytesPerPixel(format) > maxImageBytes;
    if (!tooLarge) return {};
    return vlCommon::fail(fmt::format(
            "{}: {} x {} pixels are too many; at most {} either way and {} MiB in memory are read",
            name,
            width,
            height,
            maxImageSize,
            maxImageBytes >> 20U));
}

vlCommon::Result<Image> decode(std::span<const std::byte> bytes,
                               vlMemory::StringView nameForErrors) {
    constexpr std::array<std::uint8_t, 8> png{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    constexpr std::array<std::uint8_t, 3> jpg{0xFF, 0xD8, 0xFF};
    if (bytes.empty()) return vlCommon::fail(fmt::format("{}: the file is empty", nameForErrors));
    if (startsWith(bytes, png)) return decodePng(bytes, nameForErrors);
    if (startsWith(bytes, jpg)) return decodeJpg(bytes, nameForErrors);
    return decodeOther(bytes, nameForErrors);
}

} // namespace vlImages
