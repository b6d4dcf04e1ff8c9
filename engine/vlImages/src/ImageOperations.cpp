#include <vlImages/ImageOperations.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace vlImages {

namespace {

/// Where a channel (red, green, blue, alpha) lies in a pixel.
std::size_t channelAt(PixelFormat format, std::size_t channel) {
    constexpr std::array<std::size_t, 4> swapped{2, 1, 0, 3};
    return format == PixelFormat::bgra8 ? swapped[channel] : channel;
}

bool comparable(const ImageView& a, const ImageView& b) {
    return a.valid() && b.valid() && a.width == b.width && a.height == b.height &&
           channelCount(a.format) == channelCount(b.format) && a.format != PixelFormat::rgba32f &&
           b.format != PixelFormat::rgba32f;
}

/** Light in 16 bits for each byte of a colour, and back. */
class SrgbTables {
public:
    static const SrgbTables& get() {
        static const SrgbTables tables;
        return tables;
    }
    std::uint32_t light(std::byte color) const {
        return light_[std::to_integer<std::size_t>(color)];
    }
    std::byte color(std::uint32_t light) const { return color_[light]; }

private:
    SrgbTables() : color_(65536) {
        for (std::size_t code = 0; code < light_.size(); ++code) {
            const double c = static_cast<double>(code) / 255.0;
            const double linear = c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
            light_[code] = static_cast<std::uint16_t>(std::lround(linear * 65535.0));
        }
        for (std::size_t light = 0; light < color_.size(); ++light) {
            const double l = static_cast<double>(light) / 65535.0;
            const double c = l <= 0.0031308 ? l * 12.92 : 1.055 * std::pow(l, 1.0 / 2.4) - 0.055;
            color_[light] = static_cast<std::byte>(std::lround(c * 255.0));
        }
    }

    std::array<std::uint16_t, 256> light_{};
    std::vector<std::byte> color_;
};

/// The two rows above a row of the result, and how far the right pixel of a pair lies from the
/// left.
struct Rows {
    const std::byte* upper;
    const std::byte* lower;
    std::size_t right;
};

std::byte meanByte(const Rows& rows, std::size_t at) {
    const unsigned sum = std::to_integer<unsigned>(rows.upper[at]) +
                         std::to_integer<unsigned>(rows.upper[at + rows.right]) +
                         std::to_integer<unsigned>(rows.lower[at]) +
                         std::to_integer<unsigned>(rows.lower[at + rows.right]);
    return static_cast<std::byte>((sum + 2U) / 4U);
}

std::byte meanLight(const SrgbTables& tables, const Rows& rows, std::size_t at) {
    const std::uint32_t sum =
            tables.light(rows.upper[at]) + tables.light(rows.upper[at + rows.right]) +
            tables.light(rows.lower[at]) + tables.light(rows.lower[at + rows.right]);
    return tables.color((sum + 2U) / 4U);
}

template <std::size_t channels>
void halveBytes(const Rows& rows, bool srgb, std::span<std::byte> result) {
    const SrgbTables& tables = SrgbTables::get();
    const std::size_t colors = srgb ? std::min<std::size_t>(channels, 3) : 0;
    std::size_t source = 0;
    for (std::size_t at = 0; at < result.size(); at += channels, source += 2 * channels) {
        for (std::size_t channel = 0; channel < channels; ++channel) {
            result[at + channel] = channel < colors ? meanLight(tables, rows, source + channel)
                                                    : meanByte(rows, source + channel);
        }
    }
}

void halveFloats(const Rows& rows, std::span<std::byte> result) {
    const auto load = [](const std::byte* from) {
        float value = 0.0F;
        std::memcpy(&value, from, sizeof value);
        return value;
    };
    constexpr std::size_t pixel = 4 * sizeof(float);
    for (std::size_t at = 0; at < result.size(); at += sizeof(float)) {
        const std::size_t source = at / pixel * pixel * 2 + at % pixel;
        const float mean = (load(rows.upper + source) + load(rows.upper + source + rows.right) +
                            load(rows.lower + source) + load(rows.lower + source + rows.right)) /
                           4.0F;
        std::memcpy(&result[at], &mean, sizeof mean);
    }
}

} // namespace

Difference difference(const ImageView& a, const ImageView& b, std::uint32_t tolerance) {
    if (!comparable(a, b)) return {1.0, 255};
    const std::size_t channels = channelCount(a.format);
    std::uint64_t differing = 0;
    std::uint32_t maximum = 0;
    for (std::uint32_t y = 0; y < a.height; ++y) {
        const std::byte* left = a.row(y);
        const std::byte* right = b.row(y);
        for (std::uint32_t x = 0; x < a.width; ++x, left += channels, right += channels) {
            std::uint32_t most = 0;
            for (std::size_t channel = 0; channel < channels; ++channel) {
                const int apart = std::to_integer<int>(left[channelAt(a.format, channel)]) -
                                  std::to_integer<int>(right[channelAt(b.format, channel)]);
                most = std::max(most, static_cast<std::uint32_t>(std::abs(apart)));
            }
            maximum = std::max(maximum, most);
            if (most > tolerance) ++differing;
        }
    }
    const double pixels = static_cast<double>(a.width) * static_cast<double>(a.height);
    return {static_cast<double>(differing) / pixels, maximum};
}

Image downsampleHalf(const ImageView& image, ColorSpace space) {
    if (!image.valid()) return {};
    Image half(std::max(image.width / 2, 1U), std::max(image.height / 2, 1U), image.format);
    const std::size_t pixel = bytesPerPixel(image.format);
    for (std::uint32_t y = 0; y < half.height; ++y) {
        const Rows rows{image.row(std::min(2 * y, image.height - 1)),
                        image.row(std::min(2 * y + 1, image.height - 1)),
                        image.width > 1 ? pixel : 0};
        const auto result = half.pixels.span().subspan(y * half.rowBytes(), half.rowBytes());
        if (image.format == PixelFormat::rgba32f) {
            halveFloats(rows, result);
        } else if (pixel == 1) {
            halveBytes<1>(rows, space == ColorSpace::srgb, result);
        } else {
            halveBytes<4>(rows, space == ColorSpace::srgb, result);
        }
    }
    return half;
}

Image convert(const ImageView& image, PixelFormat format) {
    const bool same = image.format == format;
    const bool swaps = !same && channelCount(image.format) == 4 && channelCount(format) == 4 &&
                       image.format != PixelFormat::rgba32f && format != PixelFormat::rgba32f;
    if (!image.valid() || !(same || swaps)) return {};
    Image result(image.width, image.height, format);
    for (std::uint32_t y = 0; y < image.height; ++y) {
        std::byte* row = result.pixels.data() + y * result.rowBytes();
        std::copy_n(image.row(y), result.rowBytes(), row);
        if (!swaps) continue;
        for (std::size_t at = 0; at < result.rowBytes(); at += 4)
            std::swap(row[at], row[at + 2]);
    }
    return result;
}

} // namespace vlImages
