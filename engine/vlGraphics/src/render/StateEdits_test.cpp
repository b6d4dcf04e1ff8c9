#include "render/RendererGpu.h"
#include "render/StatesTest.h"
#include "vulkan/Device.h"

#include <cstdlib>

namespace vlGraphics {
namespace {

class StateEdits : public StatesTest {
protected:
    static void reload(Resource& resource) {
        resource.unload();
        EXPECT_TRUE(resource.load().has_value());
    }
    static const render::Pipelines& pipelines() {
        return *System::getInstance()->getRenderer().gpu().pipelines;
    }
    static Texture& whiteTexel() {
        vlImages::Image image(1, 1, vlImages::PixelFormat::rgba8);
        for (std::size_t i = 0; i < 4; ++i)
            image.pixels.data()[i] = std::byte{255};
        Texture& texture = *TextureManager::getInstance()->createOrRetrieve(newName());
        texture.setImage(std::move(image));
        EXPECT_TRUE(texture.load().has_value());
        return texture;
    }
};

TEST_F(StateEdits, EachShowsInTheNextPictureAndLeavesNothingBehind) {
    Sampler& sampler = *SamplerManager::getInstance()->createOrRetrieve("edited");
    for (const auto set : {&Sampler::setAddressModeU, &Sampler::setAddressModeV})
        (sampler.*set)(TEXTURE_ADDRESS_MODE::BORDER);
    Shader& shader = makeShader(newName(),
                                place,
                                "Texture2D colors : register(t0); SamplerState how : register(s0);"
                                "float4 main() : SV_TARGET"
                                "{ return colors.SampleLevel(how, float2(2, 2), 0); }");
    shader.addTexture(handleOf(whiteTexel()), 0, 0);
    shader.addSampler(SamplerManager::getInstance()->handleOf("edited"), 0, 0);
    RenderScenePass& pass = addDraw(*operations_, meshOf({}), shader);
    RasterState& raster = rasterOf(pass);
    DepthStencilState& depth = depthOf(pass);
    BlendState& blend = blendOf(pass);
    constexpr int edits = 320;
    for (int i = 0; i < edits; ++i) {
        const bool shows = i % 4 != 1;
        const bool isWhite = i % 3 == 0;
        const float grey = isWhite ? 1.0F : 0.0F;
        sampler.setBorderColor(grey, grey, grey, 1);
        sampler.setLodBias(static_cast<float>(i) / edits);
        raster.setDepthBiasClamp(static_cast<float>(i) / edits);
        raster.setDepthBias(i);
        raster.setCullMode(shows ? CULL_MODE::BACK : CULL_MODE::FRONT);
        depth.setStencilEnabled(i % 5 == 0);
        depth.setStencilReadMask(static_cast<std::uint8_t>(i));
        blend.setBlendEnabled(i % 2 == 0, 0);
        for (Resource* resource : {static_cast<Resource*>(&sampler),
                                   static_cast<Resource*>(&raster),
                                   static_cast<Resource*>(&depth),
                                   static_cast<Resource*>(&blend)})
            reload(*resource);
        if (i % 8 < 4)
            drawFrame(*context_);
        else
            ASSERT_EQ(drawnAt(8, 8), shows && isWhite ? white : black) << i;
        ASSERT_LE(pipelines().heldCount(), 16U) << i;
    }
    // Settings that came back find what was made for them.
    const std::uint64_t made = pipelines().madeCount();
    EXPECT_LE(made, 16U) << "numbers that are dragged make pipelines";
    drawFrame(*context_);
    EXPECT_EQ(pipelines().madeCount(), made);
}

TEST_F(StateEdits, WhatHasNoEffectMakesNoPipelines) {
    RenderScenePass& pass = addPass({}, "1, 0, 0, 1");
    RasterState& raster = rasterOf(pass);
    DepthStencilState& depth = depthOf(pass);
    BlendState& blend = blendOf(pass);
    drawFrame(*context_);
    const std::uint64_t made = pipelines().madeCount();
    raster.setScissor(true);
    raster.setMultiSampling(true);
    raster.setDepthBiasClamp(1);
    depth.setFrontPass(STENCIL_OP::INVERT);
    depth.setStencilReadMask(3);
    blend.setDestBlend(BLEND::SRC_ALPHA, 0);
    blend.setTarget({.src = BLEND::DEST_COLOR, .enabled = true}, 3);
    EXPECT_EQ(drawnAt(8, 8), red);
    EXPECT_EQ(pipelines().madeCount(), made);
}

/// Begins with a device that has nothing to spare.
class PoorDevice : public StateEdits {
protected:
    void SetUp() override {
        setenv("VL_DEVICE_WITHOUT",
               "independentBlend dualSrcBlend depthClamp depthBiasClamp fillModeNonSolid "
               "samplerAnisotropy customBorderColors samplerMirrorClampToEdge smoothLines "
               "D32_SFLOAT_S8_UINT",
               1);
        StateEdits::SetUp();
        unsetenv("VL_DEVICE_WITHOUT");
    }
};

TEST_F(PoorDevice, DrawsWhatComesClosestAndSaysSoOnceAState) {
    RenderScenePass& pass = addPass({.rightDepth = 1.5F}, "1, 0, 0, 1");
    RasterState& raster = rasterOf(pass);
    raster.setFillMode(FILL_MODE::WIREFRAME);
    raster.setDepthClip(false);
    raster.setDepthBias(-3);
    raster.setDepthBiasClamp(-0.5F);
    raster.setLineAntiAliasing(true);
    BlendState& blend = blendOf(pass);
    blend.setIndependentBlend(true);
    blend.setTarget({.src = BLEND::SRC1_COLOR, .enabled = true}, 0);
    DepthStencilState& depth = depthOf(pass);
    depth.setStencilEnabled(true);
    depth.setFrontFunction(COMPARISON_FUNCTION::EQUAL);
    pass.setStencilReference(4);
    clear_->setClearStencil(4);
    for (int frame = 0; frame < 3; ++frame) {
        const vlImages::Image image = drawAndRead(*context_);
        EXPECT_EQ(pixelAt(image, 4, 8), red);
        EXPECT_EQ(pixelAt(image, 14, 8), black);
    }
    for (const char* line :
         {"no wire frames", "unclipped", "clamp the depth bias", "second source"})
        EXPECT_EQ(logged(line), 1U) << line;
    EXPECT_EQ(logged("raster state '" + std::string(raster.getName()) + "'"), 3U);
    clear_->setClearStencil(5);
    EXPECT_EQ(drawnAt(4, 8), black);
}

TEST_F(PoorDevice, BlendsAllTargetsLikeTheFirst) {
    Texture& color = makeTarget(FORMAT::R8G8B8A8_UNORM, RENDER_FLAG::COLOR_TARGET);
    operations_->addColorTarget({handleOf(color), 1});
    const Shader& shader =
            makeShader(newName(),
                       place,
                       "struct Out { float4 a : SV_TARGET0; float4 b : SV_TARGET1; };"
                       "Out main() { Out o; o.a = float4(1, 0, 0, 1); o.b = 1; return o; }");
    RenderScenePass& pass = addDraw(*operations_, meshOf({}), shader);
    BlendState& blend = blendOf(pass);
    blend.setIndependentBlend(true);
    blend.setTarget({.src = BLEND::ZERO, .dest = BLEND::ONE, .enabled = true}, 1);
    blend.setWriteMask(COLOR_WRITE_ENABLE::RED, 1);
    EXPECT_EQ(drawnAt(8, 8), red);
    EXPECT_EQ(pixelAt(color.convertToImage().value(), 8, 8), white);
    EXPECT_EQ(logged("target 0's settings count"), 1U);
    // The program writes one of the two alone.
    addDraw(*operations_, meshOf({}), makeShader(newName(), place, colored("0, 1, 0, 1")));
    drawFrame(*context_);
}

TEST_F(PoorDevice, SamplersFallBackWithOneLineEach) {
    Sampler& sampler = *SamplerManager::getInstance()->createOrRetrieve("poor");
    sampler.setFilter(FILTER::ANISOTROPIC);
    sampler.setAnisotropy(8);
    sampler.setAddressModeU(TEXTURE_ADDRESS_MODE::MIRROR_ONCE);
    sampler.setAddressModeV(TEXTURE_ADDRESS_MODE::BORDER);
    sampler.setBorderColor(0.9F, 0.8F, 0.7F, 1);
    for (int i = 0; i < 3; ++i)
        reload(sampler);
    for (const char* line : {"anisotropy", "mirror once", "border colour"})
        EXPECT_EQ(logged(line), 1U) << line;
    EXPECT_EQ(logged("sampler 'poor'"), 3U);
}

} // namespace
} // namespace vlGraphics
