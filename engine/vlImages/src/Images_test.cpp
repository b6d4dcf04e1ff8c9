#include <vlImages/Decoder.h>
#include <vlImages/ImageOperations.h>
#include <vlImages/JpgEncoder.h>
#include <vlImages/PngEncoder.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace vlImages {
namespace {

Image gradient(std::uint32_t width, std::uint32_t height, PixelFormat format = PixelFormat::rgba8) {
    Image image(width, height, format);
    const std::size_t channels = channelCount(format);
    for (std::size_t at = 0; at < image.pixels.size(); ++at) {
        const std::size_t pixel = at / channels;
        const std::size_t steps[] = {pixel % width * 4, pixel / width * 4, 128, 255};
        image.pixels.data()[at] = static_cast<std::byte>(steps[at % channels]);
    }
    return image;
}

std::span<const std::byte> bytesOf(const std::string& text) {
    return std::as_bytes(std::span(text));
}

TEST(Png, ComesBackWithoutLossFromAnyLayout) {
    const Image image = gradient(33, 21);
    const auto file = PngEncoder::encode(image.view());
    ASSERT_TRUE(file.has_value()) << file.error().message;
    EXPECT_EQ(decode(file->span(), "a.png").value(), image);

    const Image swapped = convert(image.view(), PixelFormat::bgra8);
    EXPECT_EQ(decode(PngEncoder::encode(swapped.view())->span(), "a.png").value(), image);

    ImageView part = image.view(); // rows of a larger picture
    part.width = 10;
    const Image cut = decode(PngEncoder::encode(part)->span(), "a.png").value();
    EXPECT_EQ(cut.width, 10U);
    EXPECT_EQ(difference(cut.view(), part).maximum, 0U);

    const Image grey = gradient(8, 8, PixelFormat::r8);
    const Image colored = decode(PngEncoder::encode(grey.view())->span(), "a.png").value();
    EXPECT_EQ(colored.pixels.data()[4], grey.pixels.data()[1]);
}

TEST(Jpg, IsNearTheOriginalAndKeepsColorsInTheirPlace) {
    const Image image = gradient(40, 30);
    for (const PixelFormat format : {PixelFormat::rgba8, PixelFormat::bgra8}) {
        const auto file = JpgEncoder::encode(convert(image.view(), format).view(), {0, 0.92F});
        ASSERT_TRUE(file.has_value()) << file.error().message;
        const auto again = decode(file->span(), "a.jpg");
        ASSERT_TRUE(again.has_value()) << again.error().message;
        EXPECT_LE(difference(image.view(), again->view(), 12).fraction, 0.0);
    }
}

TEST(Jpg, SettingsAreHeldToTheirRanges) {
    const Image image = gradient(64, 64);
    const auto size = [&](const JpgSettings& settings) {
        return JpgEncoder::encode(image.view(), settings).value().size();
    };
    EXPECT_EQ(size({0, -1.0F}), size({0, 0.0F}));
    EXPECT_EQ(size({0, 7.0F}), size({0, 1.0F}));
    EXPECT_LT(size({2, 0.9F}), size({0, 0.9F}));
    EXPECT_FALSE(JpgEncoder::encode(image.view(), {9, 0.5F}).has_value());
    EXPECT_FALSE(JpgEncoder::encode(Image().view()).has_value());
    EXPECT_FALSE(JpgEncoder::encode(Image(2, 2, PixelFormat::rgba32f).view()).has_value());
    EXPECT_FALSE(PngEncoder::encode(Image(2, 2, PixelFormat::rgba32f).view()).has_value());
}

TEST(Decode, EveryPrefixOfAPictureIsRefusedInOneLine) {
    const Image image = gradient(16, 16);
    const auto png = PngEncoder::encode(image.view()).value();
    const auto jpg = JpgEncoder::encode(image.view()).value();
    // The last 12 bytes of a PNG and 2 of a JPEG only say that it ends.
    const std::pair<std::span<const std::byte>, std::size_t> files[] = {
            {png.span(), png.size() - 12}, {jpg.span(), jpg.size() - 2}};
    for (const auto& [file, needed] : files) {
        for (std::size_t size = 0; size < needed; ++size) {
            const auto read = decode(file.first(size), "a.bin");
            ASSERT_FALSE(read.has_value()) << size;
            EXPECT_EQ(read.error().message.substr(0, 7), "a.bin: ");
            EXPECT_EQ(read.error().message.find('\n'), std::string::npos);
        }
    }
}

TEST(Decode, DamagedPicturesNeverCrash) {
    const auto png = PngEncoder::encode(gradient(24, 24).view()).value();
    const auto jpg = JpgEncoder::encode(gradient(24, 24).view()).value();
    for (const vlMemory::Buffer& file : {png, jpg}) {
        for (std::size_t at = 0; at < file.size(); ++at) {
            vlMemory::Buffer damaged = file;
            damaged.data()[at] ^= std::byte{0x55};
            const auto read = decode(damaged.span(), "a.bin");
            EXPECT_TRUE(!read || read->width <= maxImageSize);
        }
    }
}

TEST(Decode, PictureBombsAreRefusedByTheirHeader) {
    // A whole header with its checksum, 100000 by 100000, and no data.
    const std::string png(
            "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\x01\x86\xA0\0\x01\x86\xA0\x08\x02\0\0\0"
            "\x27\x30\x9C\x9F\0\0\0\0IDAT\x35\xAF\x06\x1E",
            45);
    const auto read = decode(bytesOf(png), "bomb.png");
    ASSERT_FALSE(read.has_value());
    EXPECT_EQ(read.error().message.substr(0, 40), "bomb.png: 100000 x 100000 pixels are too");

    auto jpg = JpgEncoder::encode(gradient(16, 16).view()).value();
    for (std::size_t at = 0; at + 9 < jpg.size(); ++at) {
        if (jpg.data()[at] != std::byte{0xFF} || jpg.data()[at + 1] != std::byte{0xC0}) continue;
        for (const std::size_t byte : {5U, 7U}) {
            jpg.data()[at + byte] = std::byte{0xFE};
            jpg.data()[at + byte + 1] = std::byte{0};
        }
    }
    EXPECT_EQ(decode(jpg.span(), "bomb.jpg").error().message.substr(0, 38),
              "bomb.jpg: 65024 x 65024 pixels are too");

    std::string tga(18, '\0');
    tga[2] = 2;
    tga[12] = tga[13] = tga[14] = tga[15] = '\xFF';
    tga[16] = 32;
    EXPECT_FALSE(decode(bytesOf(tga), "bomb.tga").has_value());
    EXPECT_FALSE(decode(bytesOf("no picture at all"), "a.txt").has_value());
}

TEST(Decode, OtherFormatsAreRead) {
    std::string tga(18, '\0');
    tga[2] = 2;
    tga[12] = 1;
    tga[14] = 1;
    tga[16] = 32;
    tga += "\x10\x20\x30\x40";
    const Image color = decode(bytesOf(tga), "a.tga").value();
    EXPECT_EQ(std::memcmp(color.pixels.data(), "\x30\x20\x10\x40", 4), 0);

    const std::string hdr = std::string("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 1 +X 1\n") +
                            std::string("\x80\x40\x20\x82", 4);
    const Image light = decode(bytesOf(hdr), "a.hdr").value();
    EXPECT_EQ(light.format, PixelFormat::rgba32f);
    float values[4];
    std::memcpy(values, light.pixels.data(), sizeof values);
    EXPECT_FLOAT_EQ(values[0], 2.0F);
    EXPECT_FLOAT_EQ(values[1], 1.0F);
    EXPECT_FLOAT_EQ(values[3], 1.0F);
}

TEST(Difference, CountsPixelsBeyondTheTolerance) {
    const Image image = gradient(10, 10);
    Image other = gradient(10, 10);
    other.pixels.data()[0] = std::byte{3};
    other.pixels.data()[42] = std::byte{138};
    EXPECT_DOUBLE_EQ(difference(image.view(), other.view()).fraction, 0.02);
    EXPECT_DOUBLE_EQ(difference(image.view(), other.view(), 3).fraction, 0.01);
    EXPECT_EQ(difference(image.view(), other.view(), 3).maximum, 10U);
    EXPECT_EQ(difference(image.view(), gradient(10, 11).view()).fraction, 1.0);
}

TEST(Downsample, AveragesColorsAsLightAndAlphaAsItIs) {
    Image image(2, 2, PixelFormat::rgba8);
    for (const std::size_t at : {0U, 1U, 2U, 3U, 12U, 13U, 14U, 15U}) {
        image.pixels.data()[at] = std::byte{255};
    }
    const auto light = downsampleHalf(image.view()).pixels;
    EXPECT_EQ(light.text(), "\xBC\xBC\xBC\x80");
    const auto plain = downsampleHalf(image.view(), ColorSpace::linear).pixels;
    EXPECT_EQ(plain.text(), "\x80\x80\x80\x80");
}

TEST(Downsample, EveryFlatColorStaysAndAnySizeEndsAtOnePixel) {
    for (unsigned value = 0; value < 256; ++value) {
        Image image(5, 3, PixelFormat::bgra8);
        for (std::byte& byte : image.pixels.span())
            byte = static_cast<std::byte>(value);
        const Image half = downsampleHalf(image.view());
        ASSERT_EQ(half.width, 2U);
        ASSERT_EQ(half.height, 1U);
        for (const std::byte byte : half.pixels.span())
            ASSERT_EQ(byte, static_cast<std::byte>(value));
        const Image last = downsampleHalf(downsampleHalf(half.view()).view());
        ASSERT_EQ(last.pixels.size(), 4U);
    }
    Image floats(4, 1, PixelFormat::rgba32f);
    const float bright = 8.0F;
    std::memcpy(floats.pixels.data() + 16, &bright, sizeof bright);
    float mean = 0;
    std::memcpy(&mean, downsampleHalf(floats.view()).pixels.data(), sizeof mean);
    EXPECT_EQ(mean, 4.0F);
}

} // namespace
} // namespace vlImages
