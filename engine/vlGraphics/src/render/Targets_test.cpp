#include "render/EngineTest.h"

#include <cstring>

namespace vlGraphics {
namespace {

class Targets : public EngineTest {
protected:
    static Texture& makeTarget(std::string_view name, FORMAT format, RENDER_FLAG flag) {
        return EngineTest::makeTarget(name, format, flag, 8, 8);
    }
};

TEST_F(Targets, ClearColorsAreLinearAndThePictureIsEncoded) {
    TestSurface surface(7, 5);
    RenderContext& context = makeContext(surface);
    addBackBuffer(makeCompositor(context), {0.0011F, 0.2140411F, 1, 0.5F});
    const vlImages::Image image = drawAndRead(context);
    ASSERT_EQ(image.width, 7U);
    ASSERT_EQ(image.height, 5U);
    EXPECT_EQ(image.format, vlImages::PixelFormat::bgra8);
    const Rgba expected{encoded(0.0011F), 127, 255, 128};
    for (std::uint32_t y = 0; y < 5; ++y)
        for (std::uint32_t x = 0; x < 7; ++x)
            EXPECT_EQ(pixelAt(image, x, y), expected);
}

TEST_F(Targets, LaterClearsAndSeveralTargetsKeepTheirPlaces) {
    TestSurface surface(8, 8);
    RenderContext& context = makeContext(surface);
    Texture& ids = makeTarget("ids", FORMAT::R32_UINT, RENDER_FLAG::COLOR_TARGET);
    Texture& colors = makeTarget("colors", FORMAT::R8G8B8A8_UNORM, RENDER_FLAG::COLOR_TARGET);
    TargetOperations& operations = *makeCompositor(context).addNode()->addOperations();
    operations.addColorTarget({handleOf(ids), 0});
    operations.addColorTarget({handleOf(colors), 1});
    ClearTargetsPass& first = *operations.addClearTargetsPass(TargetOperations::atEnd);
    first.setClearColor({70000, 0, 0, 0});
    ClearTargetsPass& second = *operations.addClearTargetsPass(TargetOperations::atEnd);
    second.setClearColor({1, 0.2F, 0, 1});
    second.setColorTargetIndex(1);
    ClearTargetsPass& pastLast = *operations.addClearTargetsPass(TargetOperations::atEnd);
    pastLast.setColorTargetIndex(2);
    drawFrame(context);

    const auto idPicture = ids.convertToImage();
    ASSERT_TRUE(idPicture.has_value()) << idPicture.error().message;
    EXPECT_EQ(pixelAt(*idPicture, 7, 7), (Rgba{70000 & 255, 70000 >> 8 & 255, 1, 0}));
    EXPECT_EQ(System::getInstance()->getRenderer().readTexel(ids, 7, 0).value_or(0), 70000U);
    EXPECT_EQ(pixelAt(colors.convertToImage().value(), 3, 3), (Rgba{255, 51, 0, 255}));
}

TEST_F(Targets, ViewportBoundsDrawingButNotClearing) {
    TestSurface surface(8, 8);
    RenderContext& context = makeContext(surface);
    TargetOperations& operations = addBackBuffer(makeCompositor(context), {0, 0, 1, 1});
    Viewport& part = *ViewportManager::getInstance()->createOrRetrieve("part");
    ASSERT_TRUE(part.setArea({0.5F, 0.25F, 0.5F, 0.5F, 0, 1}));
    operations.setOverloadedViewport(ViewportManager::getInstance()->handleOf("part"));
    operations.addRenderScenePass(TargetOperations::atEnd);
    const Shader& shader = makeShader("full",
                                      "float4 main(float3 p : POSITION) : SV_POSITION"
                                      "{ return float4(p, 1); }",
                                      "float4 main() : SV_TARGET { return float4(1, 0, 0, 1); }");
    makeEntity(makeMesh("full", {{-1, 3, 0}, {3, -1, 0}, {-1, -1, 0}}), shader, {0, 0, 0, 1});
    const vlImages::Image image = drawAndRead(context);
    EXPECT_EQ(pixelAt(image, 4, 2), (Rgba{255, 0, 0, 255}));
    EXPECT_EQ(pixelAt(image, 7, 5), (Rgba{255, 0, 0, 255}));
    EXPECT_EQ(pixelAt(image, 3, 2), (Rgba{0, 0, 255, 255}));
    EXPECT_EQ(pixelAt(image, 4, 1), (Rgba{0, 0, 255, 255}));
    EXPECT_EQ(pixelAt(image, 7, 6), (Rgba{0, 0, 255, 255}));
}

// No validation layer sees a missing barrier between drawing into a target and reading it.
TEST_F(Targets, DrawnTargetIsReadByTheNextOperationOfTheSameFrame) {
    TestSurface surface(8, 8);
    RenderContext& context = makeContext(surface);
    Texture& target = makeTarget("target", FORMAT::R8G8B8A8_UNORM, RENDER_FLAG::COLOR_TARGET);
    Compositor& compositor = makeCompositor(context);
    TargetOperations& into = *compositor.addNode()->addOperations();
    into.addColorTarget({handleOf(target), 0});
    ClearTargetsPass& clear = *into.addClearTargetsPass(TargetOperations::atEnd);
    addBackBuffer(compositor, {0, 0, 0, 1}).addRenderScenePass(TargetOperations::atEnd);

    Shader& shader = makeShader("copy",
                                "float4 main(float3 p : POSITION) : SV_POSITION"
                                "{ return float4(p, 1); }",
                                "Texture2D source : register(t3);"
                                "float4 main(float4 at : SV_POSITION) : SV_TARGET"
                                "{ return source.Load(int3(at.xy, 0)); }");
    shader.addTexture(handleOf(target), 3, 0);
    makeEntity(makeMesh("full", {{-1, 3, 0}, {3, -1, 0}, {-1, -1, 0}}), shader, {0, 0, 0, 1});
    for (const float red : {1.0F, 0.0F, 1.0F}) {
        clear.setClearColor({red, 1 - red, 0, 1});
        const vlImages::Image image = drawAndRead(context);
        EXPECT_EQ(pixelAt(image, 5, 5), (red > 0 ? Rgba{255, 0, 0, 255} : Rgba{0, 255, 0, 255}));
    }
}

TEST_F(Targets, TextureThatIsBeingDrawnIntoReadsTheDefaultTexture) {
    TestSurface surface(8, 8);
    RenderContext& context = makeContext(surface);
    Texture& target = makeTarget("target", FORMAT::R8G8B8A8_UNORM, RENDER_FLAG::COLOR_TARGET);
    TargetOperations& into = *makeCompositor(context).addNode()->addOperations();
    into.addColorTarget({handleOf(target), 0});
    into.addRenderScenePass(TargetOperations::atEnd);
    Shader& shader = makeShader("copy",
                                "float4 main(float3 p : POSITION) : SV_POSITION"
                                "{ return float4(p, 1); }",
                                "Texture2D source : register(t0);"
                                "float4 main() : SV_TARGET { return source.Load(int3(0, 0, 0)); }");
    shader.addTexture(handleOf(target), 0, 0);
    makeEntity(makeMesh("full", {{-1, 3, 0}, {3, -1, 0}, {-1, -1, 0}}), shader, {0, 0, 0, 1});
    drawFrame(context);
    EXPECT_EQ(pixelAt(target.convertToImage().value(), 4, 4), (Rgba{255, 255, 255, 255}));
}

TEST_F(Targets, DepthTargetKeepsWhatWasDrawn) {
    TestSurface surface(8, 8);
    RenderContext& context = makeContext(surface);
    Texture& depth = makeTarget("depth", FORMAT::R32_FLOAT, RENDER_FLAG::DEPTH_TARGET);
    TargetOperations& operations = *makeCompositor(context).addNode()->addOperations();
    operations.setToBackBuffer(0);
    operations.setDepthTarget(handleOf(depth));
    operations.addClearTargetsPass(TargetOperations::atEnd);
    operations.addRenderScenePass(TargetOperations::atEnd);
    const Shader& shader = makeShader("left",
                                      "float4 main(float3 p : POSITION) : SV_POSITION"
                                      "{ return float4(p, 1); }",
                                      "float4 main() : SV_TARGET { return 1; }");
    makeEntity(makeMesh("left", {{-1, 1, 0.25F}, {0, 1, 0.25F}, {0, -1, 0.25F}}), shader, {});
    drawFrame(context);
    const auto picture = depth.convertToImage();
    ASSERT_TRUE(picture.has_value()) << picture.error().message;
    ASSERT_EQ(picture->format, vlImages::PixelFormat::rgba32f);
    const auto depthAt = [&picture](std::uint32_t x) {
        float value = 0;
        std::memcpy(&value, picture->view().row(1) + std::size_t{x} * 16, sizeof value);
        return value;
    };
    EXPECT_FLOAT_EQ(depthAt(2), 0.25F);
    EXPECT_FLOAT_EQ(depthAt(6), 1);
}

} // namespace
} // namespace vlGraphics
