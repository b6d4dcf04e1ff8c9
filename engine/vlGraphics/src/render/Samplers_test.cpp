#include "render/StatesTest.h"
#include "vulkan/Device.h"

#include <cmath>
#include <cstring>

namespace vlGraphics {
namespace {

/** A picture whose pixels read a texture through the sampler under test. */
class Samplers : public StatesTest {
protected:
    void SetUp() override {
        StatesTest::SetUp();
        if (HasFatalFailure()) return;
        sampler_ = SamplerManager::getInstance()->createOrRetrieve("tested");
        sampler_->setFilter(FILTER::MIN_MAG_MIP_POINT);
        reload();
    }
    /// As every edit of a sampler does.
    void reload() {
        sampler_->unload();
        const auto loaded = sampler_->load();
        ASSERT_TRUE(loaded.has_value()) << loaded.error().message;
    }
    /// Greys; each is a texel's, row by row.
    static Texture& textureOf(std::uint32_t width, const std::vector<std::uint8_t>& texels) {
        vlImages::Image image(width,
                              static_cast<std::uint32_t>(texels.size()) / width,
                              vlImages::PixelFormat::rgba8);
        for (std::size_t i = 0; i < texels.size(); ++i) {
            const std::array<std::uint8_t, 4> pixel{texels[i], texels[i], texels[i], 255};
            std::memcpy(image.pixels.data() + i * 4, pixel.data(), 4);
        }
        Texture& texture = *TextureManager::getInstance()->createOrRetrieve(newName());
        texture.setGammaCorrected(false);
        texture.setImage(std::move(image));
        EXPECT_TRUE(texture.load().has_value());
        return texture;
    }
    /// `expression` gives a colour of the pixel `at` from `colors` and `how`.
    void read(const Texture& texture, const std::string& expression) {
        readAs(texture, "SamplerState", expression);
    }
    void readAs(const Texture& texture, const std::string& type, const std::string& expression) {
        target_ = &makeTarget(FORMAT::R8G8B8A8_UNORM, RENDER_FLAG::COLOR_TARGET);
        TargetOperations& into = *makeCompositor(*context_, newName()).addNode()->addOperations();
        into.addColorTarget({handleOf(*target_), 0});
        into.addClearTargetsPass(TargetOperations::atEnd);
        Shader& shader = makeShader(newName(),
                                    place,
                                    "Texture2D colors : register(t0);" + type +
                                            " how : register(s0);"
                                            "float4 main(float4 at : SV_POSITION) : SV_TARGET"
                                            "{ return " +
                                            expression + "; }");
        shader.addTexture(handleOf(texture), 0, 0);
        shader.addSampler(SamplerManager::getInstance()->handleOf("tested"), 0, 0);
        addDraw(into, meshOf({}), shader);
    }
    vlImages::Image drawn() {
        drawFrame(*context_);
        auto picture = target_->convertToImage();
        EXPECT_TRUE(picture.has_value());
        return picture ? *std::move(picture) : vlImages::Image();
    }
    std::uint8_t grey(std::uint32_t x = 8, std::uint32_t y = 8) {
        return pixelAt(drawn(), x, y)[0];
    }

    Sampler* sampler_ = nullptr;
    Texture* target_ = nullptr;
};

TEST_F(Samplers, AddressModesSayWhatLiesBesideThePicture) {
    // Pixel i reads texel i - 6 of a line or a column of four.
    const std::vector<std::uint8_t> texels{10, 20, 30, 40};
    Texture& line = textureOf(4, texels);
    Texture& column = textureOf(1, texels);
    sampler_->setBorderColor(1, 1, 1, 1);
    struct Case {
        TEXTURE_ADDRESS_MODE mode;
        std::array<std::uint8_t, 16> expected;
    };
    const bool mirrorsOnce = vulkan::Device::getInstance()->choice().hasMirrorClamp;
    const Case cases[] = {
            {TEXTURE_ADDRESS_MODE::WRAP,
             {30, 40, 10, 20, 30, 40, 10, 20, 30, 40, 10, 20, 30, 40, 10, 20}},
            {TEXTURE_ADDRESS_MODE::MIRROR,
             {30, 40, 40, 30, 20, 10, 10, 20, 30, 40, 40, 30, 20, 10, 10, 20}},
            {TEXTURE_ADDRESS_MODE::CLAMP,
             {10, 10, 10, 10, 10, 10, 10, 20, 30, 40, 40, 40, 40, 40, 40, 40}},
            {TEXTURE_ADDRESS_MODE::BORDER,
             {255, 255, 255, 255, 255, 255, 10, 20, 30, 40, 255, 255, 255, 255, 255, 255}},
            {TEXTURE_ADDRESS_MODE::MIRROR_ONCE,
             {40, 40, 40, 30, 20, 10, 10, 20, 30, 40, 40, 40, 40, 40, 40, 40}}};
    for (const bool along : {true, false}) {
        read(along ? line : column,
             along ? "colors.SampleLevel(how, float2((at.x - 6) / 4, 0.5), 0)"
                   : "colors.SampleLevel(how, float2(0.5, (at.y - 6) / 4), 0)");
        for (const Case& one : cases) {
            SCOPED_TRACE(testing::Message() << along << static_cast<int>(one.mode));
            constexpr auto other = TEXTURE_ADDRESS_MODE::CLAMP;
            sampler_->setAddressModeU(along ? one.mode : other);
            sampler_->setAddressModeV(along ? other : one.mode);
            reload();
            const vlImages::Image picture = drawn();
            if (one.mode == TEXTURE_ADDRESS_MODE::MIRROR_ONCE && !mirrorsOnce) continue;
            for (std::uint32_t i = 0; i < side; ++i)
                EXPECT_EQ(pixelAt(picture, along ? i : 8, along ? 8 : i)[0], one.expected[i]) << i;
        }
    }
}

TEST_F(Samplers, BorderHasItsColorOrTheNearestThatTheDeviceHas) {
    read(textureOf(1, {10}), "colors.SampleLevel(how, float2(2, 2), 0)");
    for (const auto set : {&Sampler::setAddressModeU, &Sampler::setAddressModeV})
        (sampler_->*set)(TEXTURE_ADDRESS_MODE::BORDER);
    const bool any = vulkan::Device::getInstance()->choice().hasCustomBorderColors;
    struct Case {
        std::array<float, 4> color;
        Rgba nearest;
    };
    for (const Case& one : {Case{{0, 0, 0, 0}, {0, 0, 0, 0}},
                            Case{{0, 0, 0, 1}, {0, 0, 0, 255}},
                            Case{{1, 1, 1, 1}, {255, 255, 255, 255}},
                            Case{{0.2F, 0.4F, 0.6F, 1}, {0, 0, 0, 255}},
                            Case{{0.8F, 0.6F, 0.6F, 0.8F}, {255, 255, 255, 255}},
                            Case{{0.8F, 0.6F, 0.6F, 0.2F}, {0, 0, 0, 0}}}) {
        const auto& color = one.color;
        sampler_->setBorderColor(color[0], color[1], color[2], color[3]);
        reload();
        const Rgba pixel = pixelAt(drawn(), 8, 8);
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_NEAR(pixel[i], any ? color[i] * 255 : static_cast<float>(one.nearest[i]), 1)
                    << i;
    }
    EXPECT_EQ(logged("border colour"), any ? 0U : 1U);
}

TEST_F(Samplers, FiltersMixTexelsAndLevelsWhereTheyAreLinear) {
    // Level 0 has columns of 0 and 200, level 1 is 100 throughout.
    Texture& texture = textureOf(2, {0, 200, 0, 200});
    sampler_->setAddressModeU(TEXTURE_ADDRESS_MODE::CLAMP);
    struct Case {
        FILTER filter;
        std::uint8_t magnified; ///< 3/8 of the way from the left texel's centre to the right one's
        std::uint8_t minified;  ///< the same, with a texel smaller than a pixel
        std::uint8_t between;   ///< on the right, a quarter of the way to level 1
    };
    const Case cases[] = {{FILTER::MIN_MAG_MIP_POINT, 0, 0, 200},
                          {FILTER::MIN_MAG_POINT_MIP_LINEAR, 0, 0, 175},
                          {FILTER::MIN_POINT_MAG_LINEAR_MIP_POINT, 75, 0, 200},
                          {FILTER::MIN_POINT_MAG_MIP_LINEAR, 75, 0, 175},
                          {FILTER::MIN_LINEAR_MAG_MIP_POINT, 0, 75, 200},
                          {FILTER::MIN_LINEAR_MAG_POINT_MIP_LINEAR, 0, 75, 175},
                          {FILTER::MIN_MAG_LINEAR_MIP_POINT, 75, 75, 200},
                          {FILTER::MIN_MAG_MIP_LINEAR, 75, 75, 175},
                          {FILTER::ANISOTROPIC, 75, 75, 175}};
    const auto check = [&](const char* expression, std::uint8_t Case::*expected) {
        read(texture, expression);
        for (const Case& one : cases) {
            SCOPED_TRACE(testing::Message() << expression << static_cast<int>(one.filter));
            sampler_->setFilter(one.filter);
            reload();
            EXPECT_NEAR(grey(), one.*expected, 2);
        }
    };
    check("colors.SampleLevel(how, float2(0.4375, 0.5), -1)", &Case::magnified);
    check("colors.SampleLevel(how, float2(1, 0.5), 0.25)", &Case::between);
    // Within half a level of the first one the level is still the first.
    for (const Case& one : cases) {
        if ((static_cast<std::uint32_t>(one.filter) & 1U) != 0) continue;
        sampler_->setFilter(one.filter);
        reload();
        read(texture, "colors.SampleLevel(how, float2(0.4375, 0.5), 0.25)");
        EXPECT_NEAR(grey(), one.minified, 2) << static_cast<int>(one.filter);
    }
}

TEST_F(Samplers, LodIsClampedToItsRangeAndMovedByTheBias) {
    Texture& texture = textureOf(4, {0, 0, 0, 200, 0, 0, 0, 200, 0, 0, 200, 200, 0, 0, 200, 200});
    struct Case {
        float asked;
        float bias;
        float least;
        float most;
        std::uint8_t expected; ///< at the top right corner levels have 200, 100, 75
    };
    for (const Case& one : {Case{0, 0, 0, 1000, 200},
                            Case{1, 0, 0, 1000, 100},
                            Case{2, 0, 0, 1000, 75},
                            Case{0, 0, 2, 1000, 75},
                            Case{0, 0, 1, 1, 100},
                            Case{2, 0, 0, 0, 200},
                            Case{0, 1, 0, 1000, 100},
                            Case{1, -1, 0, 1000, 200},
                            Case{0, 1e6F, 0, 1, 100},
                            Case{2, -1e6F, 0, 1000, 200}}) {
        SCOPED_TRACE(testing::Message() << one.asked << " " << one.bias << " " << one.least);
        sampler_->setLodBias(one.bias);
        sampler_->setLodRange(one.least, one.most);
        reload();
        // One texel of the level that is asked for a pixel.
        const std::string scale = std::to_string(std::exp2(one.asked) / 4);
        read(texture,
             "colors.SampleGrad(how, float2(0.9, 0.1), float2(" + scale + ", 0), float2(0, " +
                     scale + "))");
        EXPECT_NEAR(grey(), one.expected, 2);
    }
    EXPECT_EQ(logged("LOD bias"), 1U);
}

TEST_F(Samplers, ComparisonSamplersCompareWithWhatTheTextureHolds) {
    Texture& depth = makeTarget(FORMAT::D32_FLOAT, RENDER_FLAG::DEPTH_TARGET);
    TargetOperations& fill = *makeCompositor(*context_, newName()).addNode()->addOperations();
    fill.setDepthTarget(handleOf(depth));
    fill.addClearTargetsPass(TargetOperations::atEnd)->setClearDepth(0.5F);
    drawFrame(*context_);
    readAs(depth,
           "SamplerComparisonState",
           "colors.SampleCmpLevelZero(how, float2(0.5, 0.5), "
           "at.x < 5 ? 0.25 : at.x < 10 ? 0.5 : 0.75)");
    for (const FILTER filter :
         {FILTER::COMPARISON_MIN_MAG_MIP_POINT, FILTER::COMPARISON_MIN_MAG_MIP_LINEAR}) {
        sampler_->setFilter(filter);
        for (std::uint32_t number = 1; number <= 8; ++number) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(filter) << " " << number);
            sampler_->setComparisonFunc(static_cast<COMPARISON_FUNCTION>(number));
            reload();
            const vlImages::Image picture = drawn();
            for (std::uint32_t bit = 0; bit < 3; ++bit)
                EXPECT_EQ(pixelAt(picture, 2 + bit * 5, 8)[0],
                          ((number - 1) >> bit & 1U) != 0 ? 255 : 0);
        }
    }
}

TEST_F(Samplers, AnisotropyKeepsWhatIsSharpAcrossTheStretch) {
    std::vector<std::uint8_t> stripes;
    for (std::uint32_t i = 0; i < 256; ++i)
        stripes.push_back(i / 4 % 2 == 0 ? 0 : 200);
    // A pixel covers one column and eight rows.
    read(textureOf(16, stripes), "colors.Sample(how, float2((at.x - 7) / 16, at.y / 2))");
    sampler_->setFilter(FILTER::ANISOTROPIC);
    reload();
    EXPECT_NEAR(grey(), 100, 3);
    sampler_->setAnisotropy(16);
    reload();
    const vulkan::Device& device = *vulkan::Device::getInstance();
    if (device.features().samplerAnisotropy == VK_FALSE ||
        device.limits().maxSamplerAnisotropy < 8) {
        EXPECT_NEAR(grey(), 100, 3);
        EXPECT_EQ(logged("anisotropy"), 1U);
        return;
    }
    EXPECT_LT(grey(), 50);
}

} // namespace
} // namespace vlGraphics
