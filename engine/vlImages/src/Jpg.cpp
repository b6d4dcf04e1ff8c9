#include "Bounds.h"
#include "Codecs.h"

#include <vlImages/JpgEncoder.h>

#include <fmt/format.h>
#include <turbojpeg.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <string_view>

namespace vlImages {

namespace {

struct Destroy {
    void operator()(void* codec) const { tjDestroy(codec); }
};
using Codec = std::unique_ptr<void, Destroy>;

struct Free {
    void operator()(unsigned char* bytes) const { tjFree(bytes); }
};

std::optional<int> jpgFormat(PixelFormat format) {
    switch (format) {
    case PixelFormat::r8:
        return TJPF_GRAY;
    case PixelFormat::rgba8:
        return TJPF_RGBX;
    case PixelFormat::bgra8:
        return TJPF_BGRX;
    case PixelFormat::rgba32f:
        break;
    }
    return {};
}

/// The inks are stored inverted, as every writer of such files does it.
void inksToColors(Image& image) {
    for (std::size_t at = 0; at < image.pixels.size(); at += 4) {
        std::byte* pixel = image.pixels.data() + at;
        const auto black = std::to_integer<unsigned>(pixel[3]);
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const unsigned value = std::to_integer<unsigned>(pixel[channel]) * black;
            pixel[channel] = static_cast<std::byte>((value + 127U) / 255U);
        }
        pixel[3] = std::byte{255};
    }
}

/// A file may have rubbish between its segments without any harm to the picture.
bool isHarmless(void* codec) {
    const std::string_view message = tjGetErrorStr2(codec);
    return tjGetErrorCode(codec) == TJERR_WARNING &&
           message.find("extraneous bytes") != std::string_view::npos;
}

} // namespace

vlCommon::Result<Image> decodeJpg(std::span<const std::byte> bytes, vlMemory::StringView name) {
    const Codec codec(tjInitDecompress());
    if (!codec) return vlCommon::fail(fmt::format("{}: no memory for a JPEG decoder", name));
    const auto broken = [&] {
        return vlCommon::fail(
                fmt::format("{}: broken JPEG: {}", name, tjGetErrorStr2(codec.get())));
    };
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    int width = 0, height = 0, subsampling = 0, colors = 0;
    if (tjDecompressHeader3(
                codec.get(), data, bytes.size(), &width, &height, &subsampling, &colors) != 0 &&
        !isHarmless(codec.get())) {
        return broken();
    }
    const auto columns = static_cast<std::uint32_t>(std::max(width, 0));
    const auto rows = static_cast<std::uint32_t>(std::max(height, 0));
    if (auto fits = checkBounds(name, columns, rows, PixelFormat::rgba8); !fits) {
        return tl::unexpected(fits.error());
    }
    Image image(columns, rows, PixelFormat::rgba8);
    const bool inks = colors == TJCS_CMYK || colors == TJCS_YCCK;
    const int status = tjDecompress2(codec.get(),
                                     data,
                                     bytes.size(),
                                     reinterpret_cast<unsigned char*>(image.pixels.data()),
                                     width,
                                     0,
                                     height,
                                     inks ? TJPF_CMYK : TJPF_RGBA,
                                     TJFLAG_LIMITSCANS | TJFLAG_ACCURATEDCT);
    if (status != 0 && !isHarmless(codec.get())) return broken();
    if (inks) inksToColors(image);
    return image;
}

vlCommon::Result<vlMemory::Buffer> JpgEncoder::encode(const ImageView& image,
                                                      const JpgSettings& settings) {
    constexpr std::array subsamplings{TJSAMP_444, TJSAMP_422, TJSAMP_420};
    constexpr std::uint32_t longest = 65535;
    const auto format = jpgFormat(image.format);
    if (!image.valid()) return vlCommon::fail("a JPEG cannot be made of an empty picture");
    if (!format) return vlCommon::fail("a JPEG cannot be made of floating point pixels");
    if (image.width > longest || image.height > longest ||
        image.rowStride > std::size_t{std::numeric_limits<int>::max()}) {
        return vlCommon::fail(
                fmt::format("a JPEG of {} x {} pixels is too large", image.width, image.height));
    }
    if (settings.subsampling >= subsamplings.size()) {
        return vlCommon::fail(
                fmt::format("{} is no colour subsampling of a JPEG", settings.subsampling));
    }
    const Codec codec(tjInitCompress());
    if (!codec) return vlCommon::fail("no memory for a JPEG encoder");
    // Not-a-number compares false and ends at the lowest.
    const float quality = settings.quality > 0.0F ? std::min(settings.quality, 1.0F) : 0.0F;
    const int percent = std::max(1, static_cast<int>(std::lround(quality * 100.0F)));
    unsigned char* encoded = nullptr;
    unsigned long size = 0;
    const int status = tjCompress2(
            codec.get(),
            reinterpret_cast<const unsigned char*>(image.pixels.data()),
            static_cast<int>(image.width),
            static_cast<int>(image.rowStride),
            static_cast<int>(image.height),
            *format,
            &encoded,
            &size,
            image.format == PixelFormat::r8 ? TJSAMP_GRAY : subsamplings[settings.subsampling],
            percent,
            TJFLAG_ACCURATEDCT);
    const std::unique_ptr<unsigned char, Free> owned(encoded);
    if (status != 0) {
        return vlCommon::fail(
                fmt::format("a JPEG cannot be made: {}", tjGetErrorStr2(codec.get())));
    }
    vlMemory::Buffer file(size);
    std::copy_n(reinterpret_cast<const std::byte*>(encoded), size, file.data());
    return file;
}

} // namespace vlImages
