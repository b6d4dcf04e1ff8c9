#include "Native.h"
#include "PictureView.h"
#include "WinUiTest.h"

#include <QImage>

#include <cstring>
#include <limits>

namespace vlWinUi {
namespace {

using vlImages::Image;
using vlImages::PixelFormat;

struct PictureTest : test::WinUiTest {
    void SetUp() override {
        WinUiTest::SetUp();
        picture = &make<Picture>("P");
    }
    PictureView& view() const { return widgetAs<PictureView>(*picture); }
    QImage drawn(int width, int height) const {
        view().resize(width, height);
        return view().grab().toImage();
    }
    static void fill(Image& image, const void* pixel) {
        const std::size_t size = bytesPerPixel(image.format);
        for (std::size_t at = 0; at < image.pixels.size(); at += size)
            std::memcpy(image.pixels.data() + at, pixel, size);
    }

    Picture* picture = nullptr;
};

TEST_F(PictureTest, EveryFormatIsShownInItsColours) {
    constexpr std::uint8_t RGBA[] = {200, 100, 50, 255};
    constexpr std::uint8_t BGRA[] = {50, 100, 200, 255};
    constexpr std::uint8_t GREY[] = {77};
    constexpr float FLOATS[] = {2.0F, -1.0F, std::numeric_limits<float>::quiet_NaN(), 1.0F};
    const auto middle = [&](PixelFormat format, const void* pixel) {
        Image image(3, 5, format); // rows that do not end at multiples of four bytes
        fill(image, pixel);
        picture->setImage(image);
        return drawn(60, 60).pixelColor(30, 30);
    };
    EXPECT_EQ(middle(PixelFormat::rgba8, RGBA), QColor(200, 100, 50));
    EXPECT_EQ(middle(PixelFormat::bgra8, BGRA), QColor(200, 100, 50));
    EXPECT_EQ(middle(PixelFormat::r8, GREY), QColor(77, 77, 77));
    EXPECT_EQ(middle(PixelFormat::rgba32f, FLOATS), QColor(255, 0, 0));
    EXPECT_EQ(picture->getImageWidth(), 3U);
    EXPECT_EQ(picture->getImageHeight(), 5U);
}

TEST_F(PictureTest, SmallPicturesAreShownInWholeMultiplesAndLargeOnesWhole) {
    picture->setImage(Image(10, 5, PixelFormat::rgba8));
    view().resize(102 + 9, 302);
    EXPECT_EQ(view().place().size(), QSizeF(100, 50));
    picture->setScaling(Picture::Scaling::Smooth);
    EXPECT_EQ(view().place().size(), QSizeF(109, 55));
    picture->setScaling(Picture::Scaling::Automatic);
    picture->setImage(Image(1000, 10, PixelFormat::rgba8));
    view().resize(102, 52);
    EXPECT_EQ(view().place().size(), QSizeF(100, 1));
    const qreal before = view().place().bottom();
    picture->setText("a caption");
    EXPECT_LT(view().place().bottom(), before);
    view().resize(1, 1);
    EXPECT_TRUE(view().place().isEmpty());
    drawn(1, 1);
}

TEST_F(PictureTest, WhatIsTransparentShowsTheCheckerboardAndNoneShowsTheReason) {
    picture->setText("The texture has no pixels");
    const QImage reason = drawn(200, 100);
    EXPECT_EQ(picture->getText(), "The texture has no pixels");
    picture->setImage(Image(40, 40, PixelFormat::rgba8));
    const QImage checkered = drawn(200, 100);
    EXPECT_NE(checkered, reason);
    const QRectF place = view().place();
    const auto at = [&](int x, int y) {
        return checkered.pixelColor(static_cast<int>(place.x()) + x,
                                    static_cast<int>(place.y()) + y);
    };
    EXPECT_NE(at(2, 2), at(10, 2));
    EXPECT_EQ(at(2, 2), at(10, 10));
    picture->setImage({});
    EXPECT_EQ(picture->getImageWidth(), 0U);
    EXPECT_EQ(drawn(200, 100), reason);
}

} // namespace
} // namespace vlWinUi
