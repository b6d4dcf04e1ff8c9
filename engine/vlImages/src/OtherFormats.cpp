#include "Bounds.h"
#include "Codecs.h"

#include <vlImages/Decoder.h>

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <memory>

// Private to this file: other libraries of the program bring copies of their own.
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_NO_STDIO
#define STBI_NO_PNG
#define STBI_NO_JPEG
#define STBI_NO_PIC
#define STBI_NO_PNM
#define STBI_MAX_DIMENSIONS 16384
#define STBI_FAILURE_USERMSG
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#endif
#include <stb/stb_image.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace vlImages {

namespace {

static_assert(maxImageSize == STBI_MAX_DIMENSIONS);

struct Free {
    void operator()(void* pixels) const { stbi_image_free(pixels); }
};

} // namespace

vlCommon::Result<Image> decodeOther(std::span<const std::byte> bytes, vlMemory::StringView name) {
    const auto broken = [&] {
        const char* reason = stbi_failure_reason();
        return vlCommon::fail(fmt::format("{}: not a picture that can be read: {}",
                                          name,
                                          reason ? reason : "unknown format"));
    };
    if (bytes.size() > std::size_t{std::numeric_limits<int>::max()}) {
        return vlCommon::fail(fmt::format("{}: {} bytes are too many", name, bytes.size()));
    }
    const auto* data = reinterpret_cast<const stbi_uc*>(bytes.data());
    const int size = static_cast<int>(bytes.size());
    int width = 0, height = 0, channels = 0;
    if (!stbi_info_from_memory(data, size, &width, &height, &channels)) return broken();
    const bool hdr = stbi_is_hdr_from_memory(data, size) != 0;
    const PixelFormat format = hdr ? PixelFormat::rgba32f : PixelFormat::rgba8;
    const auto columns = static_cast<std::uint32_t>(std::max(width, 0));
    const auto rows = static_cast<std::uint32_t>(std::max(height, 0));
    if (auto fits = checkBounds(name, columns, rows, format); !fits) {
        return tl::unexpected(fits.error());
    }
    std::unique_ptr<void, Free> pixels;
    if (hdr) {
        pixels.reset(stbi_loadf_from_memory(data, size, &width, &height, &channels, 4));
    } else {
        pixels.reset(stbi_load_from_memory(data, size, &width, &height, &channels, 4));
    }
    if (!pixels) return broken();
    Image image(columns, rows, format);
    std::copy_n(
            static_cast<const std::byte*>(pixels.get()), image.pixels.size(), image.pixels.data());
    return image;
}

} // namespace vlImages
