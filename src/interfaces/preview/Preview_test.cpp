#include "core/MessageOrchestrator.h"
#include "interfaces/preview/PreviewDrawer.h"
#include "interfaces/preview/PreviewRow.h"

#include <vlCommon/ThreadBorder.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/Program.h>
#include <vlGraphics/RenderContext.h>
#include <vlGraphics/Sampler.h>
#include <vlGraphics/Shader.h>
#include <vlGraphics/System.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/Picture.h>
#include <vlWinUi/System.h>

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>

namespace vlEditor {
namespace {

using namespace vlGraphics;

using Rgba = std::array<int, 4>;

Rgba pixelAt(const vlImages::Image& image, std::uint32_t x, std::uint32_t y) {
    const std::byte* at = image.view().row(y) + x * 4;
    return {std::to_integer<int>(at[0]),
            std::to_integer<int>(at[1]),
            std::to_integer<int>(at[2]),
            std::to_integer<int>(at[3])};
}

void expectNear(const Rgba& found, const Rgba& expected) {
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(found[i], expected[i], 1) << i;
}

vlImages::Image floats(std::uint32_t width, const std::vector<std::array<float, 4>>& texels) {
    vlImages::Image image(width,
                          static_cast<std::uint32_t>(texels.size()) / width,
                          vlImages::PixelFormat::rgba32f);
    std::memcpy(image.pixels.data(), texels.data(), texels.size() * sizeof texels[0]);
    return image;
}

TEST(PreviewPicture, ValuesOfAnyRangeAreBroughtIntoView) {
    constexpr float infinite = std::numeric_limits<float>::infinity();
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    const PreviewContent free{.isLinear = true, .isFree = true, .isOpaque = true};
    auto made = PreviewPicture::fromTexels(
            floats(2, {{0, 1, 8, 0}, {infinite, none, 0.5F, 0}}), 2, 1, free, "2 x 1");
    EXPECT_EQ(made.text, "2 x 1, 0 to 8");
    EXPECT_EQ(pixelAt(made.image, 0, 0)[2], 255);
    EXPECT_LT(pixelAt(made.image, 0, 0)[1], 250);
    expectNear(pixelAt(made.image, 1, 0), {255, 0, pixelAt(made.image, 1, 0)[2], 255});
    made = PreviewPicture::fromTexels(
            floats(2, {{-2, 0, 2, 1}, {0, 0, 1, 1}}), 2, 1, free, "normals");
    expectNear(pixelAt(made.image, 0, 0), {0, 128, 255, 255});
    EXPECT_EQ(made.text, "normals, -2 to 2");
    made = PreviewPicture::fromTexels(floats(2, {{0.98F, 0, 0, 1}, {0.99F, 0, 0, 1}}),
                                      2,
                                      1,
                                      {.isGrey = true, .isDepth = true},
                                      "depth");
    expectNear(pixelAt(made.image, 0, 0), {0, 0, 0, 255});
    expectNear(pixelAt(made.image, 1, 0), {255, 255, 255, 255});
}

/** The drawing with a real engine and a picture to show it in, both threads' halves run in turn. */
class Preview : public testing::Test {
protected:
    static void SetUpTestSuite() {
        vlCommon::ThreadBorder::claimUi();
        vlGraphics::Configuration configuration;
        configuration.presenting = false;
        const auto started = vlGraphics::System::initialize(configuration);
        ASSERT_TRUE(started) << started.error().message;
    }
    static void TearDownTestSuite() {
        EXPECT_EQ(vlGraphics::System::getValidationMessageCount(), 0U);
        vlGraphics::System::shutdown();
    }

    static Texture& makeTexture(std::string_view name, vlImages::Image image, bool gamma) {
        Texture& texture = *TextureManager::getInstance()->createOrRetrieve(name);
        texture.setGammaCorrected(gamma);
        texture.setImage(std::move(image));
        EXPECT_TRUE(texture.load());
        return texture;
    }
    /// Filled with one value as a pass clears it.
    static Texture& makeTarget(std::string_view name, FORMAT format, RENDER_FLAG flag) {
        Texture& texture = *TextureManager::getInstance()->createOrRetrieve(name);
        texture.setWidth(300);
        texture.setHeight(100);
        texture.setFormat(format);
        texture.setRenderFlag(flag);
        texture.setGammaCorrected(false);
        EXPECT_TRUE(texture.load());
        return texture;
    }
    template <class Draw> static PreviewPicture drawn(Draw draw) {
        std::optional<PreviewPicture> picture = draw();
        if (!picture) {
            ProgramManager::getInstance()->waitForAll();
            picture = draw();
        }
        EXPECT_TRUE(picture.has_value());
        return picture ? *std::move(picture) : PreviewPicture();
    }
    static PreviewPicture ofTexture(const std::string& name) {
        return drawn([&] { return PreviewDrawer::drawTexture(name); });
    }
    static PreviewPicture ofSampler(const std::string& name) {
        return drawn([&] { return PreviewDrawer::drawSampler(name); });
    }
};

TEST_F(Preview, TexturesAreShownAsTheyAreHoweverTheyAreKept) {
    vlImages::Image image(1000, 500, vlImages::PixelFormat::rgba8);
    for (std::size_t i = 0; i < image.pixels.size(); i += 4) {
        const bool left = i / 4 % 1000 < 500;
        const std::array<std::uint8_t, 4> texel{200, std::uint8_t(left ? 100 : 0), 50, 128};
        std::memcpy(image.pixels.data() + i, texel.data(), 4);
    }
    for (const bool gamma : {true, false}) {
        makeTexture("picture", image, gamma).unload();
        makeTexture("picture", image, gamma);
        const PreviewPicture made = ofTexture("picture");
        EXPECT_EQ(made.text, "1000 x 500");
        ASSERT_EQ(made.image.width, PreviewDrawer::side);
        ASSERT_EQ(made.image.height, PreviewDrawer::side / 2);
        expectNear(pixelAt(made.image, 0, 0), {200, 100, 50, 128});
        expectNear(pixelAt(made.image, 255, 127), {200, 0, 50, 128});
    }
    const vlImages::Image grey(3, 2, vlImages::PixelFormat::r8);
    makeTexture("grey", grey, false);
    EXPECT_EQ(ofTexture("grey").image.width, 3U);
    EXPECT_TRUE(ofTexture("nobody").image.empty());
    EXPECT_EQ(ofTexture("nobody").text, "There is no texture 'nobody'");
    TextureManager::getInstance()->createOrRetrieve("unloaded");
    EXPECT_EQ(ofTexture("unloaded").text, "Texture 'unloaded' is not loaded");
}

TEST_F(Preview, TargetsOfEveryFormatCanBeSeen) {
    for (const FORMAT format : {FORMAT::R32G32B32A32_FLOAT,
                                FORMAT::R16G16B16A16_FLOAT,
                                FORMAT::R11G11B10_FLOAT,
                                FORMAT::R10G10B10A2_UNORM,
                                FORMAT::R8G8_UNORM,
                                FORMAT::R32_FLOAT,
                                FORMAT::R32_UINT,
                                FORMAT::R8_UNORM})
        makeTarget("target " + std::to_string(static_cast<int>(format)),
                   format,
                   RENDER_FLAG::COLOR_TARGET);
    makeTarget("target depth", FORMAT::D32_FLOAT, RENDER_FLAG::DEPTH_TARGET);
    makeTarget("target stencil", FORMAT::D24_UNORM_S8_UINT, RENDER_FLAG::DEPTH_TARGET);
    auto& textures = *TextureManager::getInstance();
    std::size_t seen = 0;
    for (std::size_t i = 0; const Texture* texture = textures.getByIndex(i); ++i) {
        if (!texture->getName().starts_with("target ")) continue;
        SCOPED_TRACE(texture->getName());
        const PreviewPicture made = ofTexture(texture->getName());
        ASSERT_EQ(made.image.width, 256U) << made.text;
        EXPECT_EQ(made.image.height, 85U);
        EXPECT_EQ(pixelAt(made.image, 128, 40)[3], 255);
        ++seen;
    }
    EXPECT_EQ(seen, 10U);
}

TEST_F(Preview, SamplersShowTheirAddressModesFiltersAndComparison) {
    Sampler& sampler = *SamplerManager::getInstance()->createOrRetrieve("shown");
    const auto shownWith = [&](FILTER filter, TEXTURE_ADDRESS_MODE mode) {
        sampler.setFilter(filter);
        sampler.setAddressModeU(mode);
        sampler.setAddressModeV(mode);
        sampler.setBorderColor(1, 1, 1, 1);
        sampler.unload();
        EXPECT_TRUE(sampler.load());
        return ofSampler("shown").image;
    };
    const auto wrapped = shownWith(FILTER::MIN_MAG_MIP_POINT, TEXTURE_ADDRESS_MODE::WRAP);
    ASSERT_EQ(wrapped.width, 256U);
    ASSERT_EQ(wrapped.height, 128U);
    const auto bordered = shownWith(FILTER::MIN_MAG_MIP_POINT, TEXTURE_ADDRESS_MODE::BORDER);
    EXPECT_EQ(pixelAt(wrapped, 20, 64), pixelAt(wrapped, 20, 64 + 128 / 3 + 1));
    EXPECT_EQ(pixelAt(bordered, 10, 64), (Rgba{255, 255, 255, 255}));
    EXPECT_EQ(pixelAt(bordered, 64, 64), pixelAt(wrapped, 64, 64));
    EXPECT_NE(wrapped, shownWith(FILTER::MIN_MAG_MIP_LINEAR, TEXTURE_ADDRESS_MODE::WRAP));
    EXPECT_NE(wrapped, shownWith(FILTER::MIN_MAG_POINT_MIP_LINEAR, TEXTURE_ADDRESS_MODE::WRAP));
    sampler.setComparisonFunc(COMPARISON_FUNCTION::LESS);
    const auto less = shownWith(FILTER::COMPARISON_MIN_MAG_MIP_POINT, TEXTURE_ADDRESS_MODE::WRAP);
    sampler.setComparisonFunc(COMPARISON_FUNCTION::GREATER_EQUAL);
    const auto other = shownWith(FILTER::COMPARISON_MIN_MAG_MIP_POINT, TEXTURE_ADDRESS_MODE::WRAP);
    int light = 0;
    for (std::uint32_t x = 0; x < 128; ++x) {
        EXPECT_EQ(pixelAt(less, x, 64)[0] + pixelAt(other, x, 64)[0], 255);
        light += pixelAt(less, x, 64)[0] / 255;
    }
    EXPECT_GT(light, 10);
    EXPECT_LT(light, 118);
}

TEST_F(Preview, LookingChangesNothingThatOthersSee) {
    makeTexture("picture", vlImages::Image(4, 4, vlImages::PixelFormat::rgba8), true);
    const std::uint64_t before = PreviewDrawer::getChangeCount();
    ofTexture("picture");
    ofTexture("picture");
    EXPECT_EQ(PreviewDrawer::getChangeCount(), before);
    TextureManager::getInstance()->get("picture")->setMipCount(1);
    EXPECT_NE(PreviewDrawer::getChangeCount(), before);
    // Somebody has emptied the engine meanwhile.
    ShaderManager::getInstance()->erase("EDITOR_PREVIEW_TEXTURE");
    CompositorManager::getInstance()->erase("EDITOR_PREVIEW_TEXTURE");
    ProgramManager::getInstance()->erase("EDITOR_PREVIEW_TEXTURE");
    EXPECT_EQ(ofTexture("picture").image.width, 4U);
}

TEST_F(Preview, ARowShowsWhatWasAskedForLast) {
    vlWinUi::SystemOptions options;
    options.headless = true;
    ASSERT_TRUE(vlWinUi::System::initialize(options));
    makeTexture("small", vlImages::Image(4, 4, vlImages::PixelFormat::rgba8), true);
    makeTexture("large", vlImages::Image(64, 32, vlImages::PixelFormat::rgba8), true);
    auto& queues = MessageOrchestrator::getInstance();
    const auto& picture =
            *vlWinUi::ComponentManager::createOrRetrieve<vlWinUi::Picture>("W_PREVIEW");
    {
        PreviewRow row("W_PREVIEW", PreviewKind::texture);
        EXPECT_EQ(picture.getText(), "Nothing is selected");
        const auto settle = [&] {
            for (int turn = 0; turn < 200; ++turn) {
                queues.drainGraphics();
                ProgramManager::getInstance()->waitForAll();
                queues.drainUi();
            }
        };
        row.show("small");
        row.show("large");
        settle();
        EXPECT_EQ(picture.getImageWidth(), 64U);
        EXPECT_EQ(picture.getText(), "64 x 32");
        row.show("small");
        row.show({}, "Mixed");
        settle();
        EXPECT_EQ(picture.getImageWidth(), 0U);
        EXPECT_EQ(picture.getText(), "Mixed");
        row.show("small");
        vlWinUi::ComponentManager::erase("W_PREVIEW");
        settle();
        row.show("large");
    }
    queues.drainGraphics();
    queues.drainUi();
    MessageOrchestrator::destroyInstance();
    vlWinUi::System::kill();
}

} // namespace
} // namespace vlEditor
