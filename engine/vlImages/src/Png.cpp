#include "Bounds.h"
#include "Codecs.h"

#include <vlImages/Decoder.h>
#include <vlImages/PngEncoder.h>

#include <fmt/format.h>
#include <png.h>

#include <limits>
#include <optional>

namespace vlImages {

namespace {

/** libpng's simple interface, freed at the end of the scope. */
class PngImage {
public:
    PngImage() { image_.version = PNG_IMAGE_VERSION; }
    ~PngImage() { png_image_free(&image_); }
    PngImage(const PngImage&) = delete;
    PngImage& operator=(const PngImage&) = delete;
    png_image* operator->() { return &image_; }
    png_image* get() { return &image_; }

private:
    png_image image_{};
};

std::optional<png_uint_32> pngFormat(PixelFormat format) {
    switch (format) {
    case PixelFormat::r8:
        return PNG_FORMAT_GRAY;
    case PixelFormat::rgba8:
        return PNG_FORMAT_RGBA;
    case PixelFormat::bgra8:
        return PNG_FORMAT_BGRA;
    case PixelFormat::rgba32f:
        break;
    }
    return {};
}

} // namespace

vlCommon::Result<Image> decodePng(std::span<const std::byte> bytes, vlMemory::StringView name) {
    PngImage png;
    if (!png_image_begin_read_from_memory(png.get(), bytes.data(), bytes.size())) {
        return vlCommon::fail(fmt::format("{}: broken PNG: {}", name, png->message));
    }
    if (auto fits = checkBounds(name, png->width, png->height, PixelFormat::rgba8); !fits) {
        return tl::unexpected(fits.error());
    }
    // Deflate makes a byte out of no less than a thousandth, and a pixel takes a bit at least: a
    // header that claims more than its data can hold gets no memory.
    constexpr std::uint64_t mostPixelsPerByte = 8 * 1032;
    if (std::uint64_t{png->width} * png->height > bytes.size() * mostPixelsPerByte) {
        return vlCommon::fail(fmt::format("{}: broken PNG: {} bytes cannot hold {} x {} pixels",
                                          name,
                                          bytes.size(),
                                          png->width,
                                          png->height));
    }
    png->format = PNG_FORMAT_RGBA;
    Image image(png->width, png->height, PixelFormat::rgba8);
    if (!png_image_finish_read(png.get(), nullptr, image.pixels.data(), 0, nullptr)) {
        return vlCommon::fail(fmt::format("{}: broken PNG: {}", name, png->message));
    }
    return image;
}

vlCommon::Result<vlMemory::Buffer> PngEncoder::encode(const ImageView& image) {
    const auto format = pngFormat(image.format);
    if (!image.valid()) return vlCommon::fail("a PNG cannot be made of an empty picture");
    if (!format) return vlCommon::fail("a PNG cannot be made of floating point pixels");
    const std::size_t stride = image.rowStride / (PNG_IMAGE_PIXEL_COMPONENT_SIZE(*format));
    if (image.width > maxImageSize || image.height > maxImageSize ||
        stride > std::size_t{std::numeric_limits<png_int_32>::max()}) {
        return vlCommon::fail(
                fmt::format("a PNG of {} x {} pixels is too large", image.width, image.height));
    }
    PngImage png;
    png->width = image.width;
    png->height = image.height;
    png->format = *format;
    vlMemory::Buffer file(PNG_IMAGE_PNG_SIZE_MAX(*png.get()));
    png_alloc_size_t size = file.size();
    if (!png_image_write_to_memory(png.get(),
                                   file.data(),
                                   &size,
                                   0,
                                   image.pixels.data(),
                                   static_cast<png_int_32>(stride),
                                   nullptr)) {
        return vlCommon::fail(fmt::format("a PNG cannot be made: {}", png->message));
    }
    file.resize(size);
    return file;
}

} // namespace vlImages
