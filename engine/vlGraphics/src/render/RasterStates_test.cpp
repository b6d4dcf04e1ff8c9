#include "render/StatesTest.h"
#include "vulkan/Device.h"

#include <cstring>

namespace vlGraphics {
namespace {

class RasterStates : public StatesTest {
protected:
    static constexpr BlendState::Target alphaBlending{
            .src = BLEND::SRC_ALPHA, .dest = BLEND::INV_SRC_ALPHA, .enabled = true};

    static std::size_t countIf(const vlImages::Image& image, bool (*matches)(const Rgba&)) {
        std::size_t count = 0;
        for (std::uint32_t y = 0; y < image.height; ++y)
            for (std::uint32_t x = 0; x < image.width; ++x)
                if (matches(pixelAt(image, x, y))) ++count;
        return count;
    }
    static const Mesh& meshOfTopology(PRIMITIVE_TOPOLOGY topology,
                                      const std::vector<vlMaths::Vector>& positions) {
        MeshData data;
        data.topology = topology;
        data.attributes = {{"POSITION", FORMAT::R32G32B32_FLOAT, 0}};
        data.vertexStride = 12;
        data.vertexCount = static_cast<std::uint32_t>(positions.size());
        data.vertices = vlMemory::Buffer(positions.size() * 12);
        for (std::size_t i = 0; i < positions.size(); ++i)
            std::memcpy(data.vertices.data() + i * 12, &positions[i].x, 12);
        computeBounds(data);
        Mesh& mesh = *MeshManager::getInstance()->createOrRetrieve(newName());
        EXPECT_TRUE(mesh.setData(std::move(data)).has_value());
        EXPECT_TRUE(mesh.load().has_value());
        return mesh;
    }
};

TEST_F(RasterStates, WireFrameDrawsEdgesAlone) {
    RenderScenePass& pass = addPass({-0.8F, 0.8F, 0.8F, -0.8F}, "1, 1, 1, 1");
    RasterState& state = rasterOf(pass);
    const auto isWhite = [](const Rgba& pixel) { return pixel == white; };
    const std::size_t solid = countIf(drawAndRead(*context_), isWhite);
    state.setFillMode(FILL_MODE::WIREFRAME);
    const vlImages::Image wires = drawAndRead(*context_);
    EXPECT_GT(countIf(wires, isWhite), 4 * side / 2);
    EXPECT_LT(countIf(wires, isWhite), solid * 2 / 3);
    EXPECT_EQ(pixelAt(wires, 11, 4), black);
    EXPECT_EQ(pixelAt(wires, 4, 11), black);
}

TEST_F(RasterStates, CullingFollowsTheWindingThatIsTheFront) {
    RenderScenePass& left = addPass({.right = 0}, "1, 1, 1, 1");
    RenderScenePass& right = addPass({.left = 0, .clockwise = false}, "1, 1, 1, 1");
    RasterState& state = rasterOf(left);
    right.setRasterState(left.getRasterState());
    struct Case {
        CULL_MODE cull;
        bool counterClockwise;
        bool showsClockwise;
        bool showsCounterClockwise;
    };
    for (const Case& one : {Case{CULL_MODE::NONE, false, true, true},
                            Case{CULL_MODE::NONE, true, true, true},
                            Case{CULL_MODE::BACK, false, true, false},
                            Case{CULL_MODE::BACK, true, false, true},
                            Case{CULL_MODE::FRONT, false, false, true},
                            Case{CULL_MODE::FRONT, true, true, false}}) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(one.cull) << one.counterClockwise);
        state.setCullMode(one.cull);
        state.setFrontCounterClockwise(one.counterClockwise);
        const vlImages::Image image = drawAndRead(*context_);
        EXPECT_EQ(pixelAt(image, 4, 8), one.showsClockwise ? white : black);
        EXPECT_EQ(pixelAt(image, 12, 8), one.showsCounterClockwise ? white : black);
    }
}

TEST_F(RasterStates, DepthBiasMovesFacesTowardsOrAwayFromTheViewer) {
    struct Case {
        const char* what;
        Rectangle later;
        std::int32_t bias;
        float clamp;
        float slope;
        bool shows;
    };
    const Rectangle flat;
    const Rectangle sloped{.leftDepth = 0.25F, .rightDepth = 0.75F};
    const Rectangle behind{.leftDepth = 0.6F, .rightDepth = 0.6F};
    // Beyond 0.5 a step of the depth buffer is 2^-24.
    constexpr std::int32_t aFifth = 3355443;
    addPass(flat, "1, 0, 0, 1");
    RenderScenePass& pass = addPass(flat, "0, 1, 0, 1");
    RenderScenePass& slopes = addPass(sloped, "0, 1, 0, 1");
    RenderScenePass& behinds = addPass(behind, "0, 1, 0, 1");
    RasterState& hidden = *RasterStateManager::getInstance()->createOrRetrieve("hidden");
    hidden.setCullMode(CULL_MODE::FRONT);
    const Case cases[] = {{"none", flat, 0, 0, 0, false},
                          {"nearer", flat, -16, 0, 0, true},
                          {"farther", flat, 16, 0, 0, false},
                          {"no slope", flat, 0, 0, -4, false},
                          {"slope", sloped, 0, 0, -1, true},
                          {"slope, farther", sloped, 0, 0, 1, false},
                          {"far", behind, -aFifth, 0, 0, true},
                          {"clamped", behind, -aFifth, -0.01F, 0, false}};
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        for (RenderScenePass* other : {&pass, &slopes, &behinds})
            other->setRasterState(RasterStateManager::getInstance()->handleOf("hidden"));
        RenderScenePass& drawn = one.later.leftDepth == 0.5F   ? pass
                                 : one.later.leftDepth == 0.6F ? behinds
                                                               : slopes;
        RasterState& state = rasterOf(drawn);
        state.setDepthBias(one.bias);
        state.setDepthBiasClamp(one.clamp);
        state.setSlopeScaledDepthBias(one.slope);
        // In the middle of the picture the slope is as deep as the flat one.
        const Rgba pixel = drawnAt(8, 8);
        EXPECT_EQ(pixel, one.shows ? green : red);
    }
}

TEST_F(RasterStates, WithoutDepthClipWhatLiesBeforeAndBehindIsDrawn) {
    RenderScenePass& before =
            addPass({.right = 0, .leftDepth = -0.5F, .rightDepth = -0.5F}, "1, 1, 1, 1");
    RenderScenePass& behind =
            addPass({.left = 0, .leftDepth = 1.5F, .rightDepth = 1.5F}, "1, 1, 1, 1");
    depthOf(behind).setDepthFunction(COMPARISON_FUNCTION::LESS_EQUAL);
    RasterState& state = rasterOf(before);
    behind.setRasterState(before.getRasterState());
    for (const bool clips : {true, false, true}) {
        state.setDepthClip(clips);
        const vlImages::Image image = drawAndRead(*context_);
        EXPECT_EQ(pixelAt(image, 4, 8), clips ? black : white);
        EXPECT_EQ(pixelAt(image, 12, 8), clips ? black : white);
    }
}

// Faces end at the viewport anyhow; a line has a width, half of which may lie beyond.
TEST_F(RasterStates, ScissorCutsLinesOffAtTheViewport) {
    Viewport& part = *ViewportManager::getInstance()->createOrRetrieve("part");
    ASSERT_TRUE(part.setArea({0, 0, 0.5F, 1, 0, 1}));
    operations_->setOverloadedViewport(ViewportManager::getInstance()->handleOf("part"));
    const Mesh& mesh = meshOfTopology(PRIMITIVE_TOPOLOGY::LINE_LIST,
                                      {{0.99F, -0.9F, 0.5F}, {0.99F, 0.9F, 0.5F}});
    RenderScenePass& pass =
            addDraw(*operations_, mesh, makeShader(newName(), place, colored("1, 1, 1, 1")));
    blendOf(pass).setTarget(alphaBlending, 0);
    RasterState& state = rasterOf(pass);
    state.setLineAntiAliasing(true);
    const Rgba beyond = drawnAt(8, 8);
    state.setScissor(true);
    const vlImages::Image cut = drawAndRead(*context_);
    EXPECT_EQ(pixelAt(cut, 8, 8), black);
    EXPECT_NE(pixelAt(cut, 7, 8), black);
    if (!vulkan::Device::getInstance()->choice().hasSmoothLines)
        GTEST_SKIP() << "the device does not smooth lines";
    EXPECT_NE(beyond, black);
}

TEST_F(RasterStates, AntiAliasedLinesHaveSoftEdgesAndMultisamplingChangesNothing) {
    const Mesh& mesh = meshOfTopology(PRIMITIVE_TOPOLOGY::LINE_LIST,
                                      {{-0.9F, -0.5F, 0.5F}, {0.9F, 0.4F, 0.5F}});
    const Shader& shader = makeShader(newName(), place, colored("1, 1, 1, 1"));
    RenderScenePass& pass = addDraw(*operations_, mesh, shader);
    BlendState& blend = blendOf(pass);
    blend.setTarget(alphaBlending, 0);
    RasterState& state = rasterOf(pass);
    const auto isGrey = [](const Rgba& pixel) { return pixel[0] != 0 && pixel[0] != 255; };
    state.setMultiSampling(true);
    EXPECT_EQ(countIf(drawAndRead(*context_), isGrey), 0U);
    state.setLineAntiAliasing(true);
    const std::size_t greys = countIf(drawAndRead(*context_), isGrey);
    blend.setAlphaToCoverage(true);
    drawFrame(*context_);
    if (!vulkan::Device::getInstance()->choice().hasSmoothLines)
        GTEST_SKIP() << "the device does not smooth lines";
    EXPECT_GT(greys, 4U);
}

// The validation layers watch: a point of no size is an error.
TEST_F(RasterStates, PointsAreOnePixelWhoeverPlacesThem) {
    const auto middleOf = [](std::uint32_t pixel) {
        return (static_cast<float>(pixel) + 0.5F) / side * 2 - 1;
    };
    const Mesh& mesh =
            meshOfTopology(PRIMITIVE_TOPOLOGY::POINT_LIST,
                           {{middleOf(3), -middleOf(5), 0.5F}, {middleOf(12), -middleOf(9), 0.5F}});
    const std::string withColor =
            "float4 main(float3 p : POSITION, out float shade : TEXCOORD0) : SV_POSITION {"
            " float4 at = float4(p, 1); if (p.x > 0) { shade = 1; return at; } shade = 0.5;"
            " return at; }";
    const Shader& plain = makeShader(newName(), place, colored("1, 1, 1, 1"));
    const Shader& shaded =
            makeShader(newName(),
                       withColor,
                       "float4 main(float4 at : SV_POSITION, float shade : TEXCOORD0) : SV_TARGET {"
                       " return shade > 0.75; }");
    addDraw(*operations_, mesh, plain);
    const auto isWhite = [](const Rgba& pixel) { return pixel == white; };
    const vlImages::Image both = drawAndRead(*context_);
    EXPECT_EQ(countIf(both, isWhite), 2U);
    EXPECT_EQ(pixelAt(both, 3, 5), white);
    EXPECT_EQ(pixelAt(both, 12, 9), white);

    const Mesh& others = meshOfTopology(
            PRIMITIVE_TOPOLOGY::POINT_LIST,
            {{middleOf(2), -middleOf(14), 0.5F}, {middleOf(10), -middleOf(14), 0.5F}});
    addDraw(*operations_, others, shaded);
    const vlImages::Image three = drawAndRead(*context_);
    EXPECT_EQ(countIf(three, isWhite), 3U);
    EXPECT_EQ(pixelAt(three, 10, 14), white);
}

} // namespace
} // namespace vlGraphics
