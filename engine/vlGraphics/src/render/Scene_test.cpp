#include "render/EngineTest.h"

#include <vlGraphics/Node.h>
#include <vlGraphics/RenderQueue.h>

#include <cstring>

namespace vlGraphics {
namespace {

constexpr std::string_view placing = R"(
cbuffer Pass : register(b0) { float4x4 view; float4x4 projection; };
float4 main(float3 p : POSITION, float4x4 world : WORLD_MATRIX) : SV_POSITION
{ return mul(projection, mul(view, mul(world, float4(p, 1)))); })";

constexpr std::string_view plain = R"(
float4 main(float3 p : POSITION, float4x4 world : WORLD_MATRIX) : SV_POSITION
{ return mul(world, float4(p, 1)); })";

constexpr std::string_view white = "float4 main() : SV_TARGET { return 1; }";

constexpr Rgba black{0, 0, 0, 255};
constexpr Rgba whitePixel{255, 255, 255, 255};

/// A square of one unit round the origin, two clockwise triangles.
const std::vector<vlMaths::Vector> square{{-0.5F, 0.5F, 0},
                                          {0.5F, 0.5F, 0},
                                          {0.5F, -0.5F, 0},
                                          {-0.5F, 0.5F, 0},
                                          {0.5F, -0.5F, 0},
                                          {-0.5F, -0.5F, 0}};

class Scene : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        if (HasFatalFailure()) return;
        context_ = &makeContext(surface_);
        operations_ = &addBackBuffer(makeCompositor(*context_), {0, 0, 0, 1});
        pass_ = operations_->addRenderScenePass(TargetOperations::atEnd);
    }

    TestSurface surface_{40, 20};
    RenderContext* context_ = nullptr;
    TargetOperations* operations_ = nullptr;
    RenderScenePass* pass_ = nullptr;
};

TEST_F(Scene, InstancesStandWhereTheirNodesAre) {
    const Shader& shader = makeShader("plain", plain, white);
    const Mesh& mesh = makeMesh("square", square);
    Entity& wide = makeEntity(mesh, shader, {-0.75F, 0.5F, 0, 1});
    wide.getParentNode()->setScale({0.5F, 0.2F, 1, 0});
    Entity& tall = makeEntity(mesh, shader, {0.5F, -0.5F, 0, 1});
    tall.getParentNode()->setScale({0.1F, 1, 1, 0});
    Entity& turned = makeEntity(mesh, shader, {0.5F, 0.5F, 0, 1});
    turned.getParentNode()->setScale({0.5F, 0.1F, 1, 0});
    // A quarter turn about Z takes +X to +Y: the wide bar stands up.
    turned.getParentNode()->setOrientation({0, 0, 0.70710678F, 0.70710678F});
    RenderQueueManager::getInstance()
            ->get(RenderQueueManager::DEFAULT_RENDER_QUEUE)
            ->getRenderStrategy()
            .setFrustumCull(false);
    const vlImages::Image image = drawAndRead(*context_);
    EXPECT_EQ(pixelAt(image, 5, 5), whitePixel);
    EXPECT_EQ(pixelAt(image, 1, 5), whitePixel);
    EXPECT_EQ(pixelAt(image, 8, 4), whitePixel);
    EXPECT_EQ(pixelAt(image, 5, 8), black);
    EXPECT_EQ(pixelAt(image, 30, 11), whitePixel);
    EXPECT_EQ(pixelAt(image, 30, 18), whitePixel);
    EXPECT_EQ(pixelAt(image, 26, 15), black);
    EXPECT_EQ(pixelAt(image, 30, 3), whitePixel);
    EXPECT_EQ(pixelAt(image, 30, 6), whitePixel);
    EXPECT_EQ(pixelAt(image, 27, 5), black);
    EXPECT_EQ(System::getInstance()->getRenderer().getCounts().draws, 1U);
    EXPECT_EQ(System::getInstance()->getRenderer().getCounts().instances, 3U);
}

TEST_F(Scene, CameraLooksAlongPlusZWithXToTheRight) {
    Camera& camera = *CameraManager::getInstance()->createOrRetrieve("camera");
    camera.setPosition({0, 0, -5, 1});
    context_->setRenderCamera(CameraManager::getInstance()->handleOf("camera"));
    context_->setCullingCamera(CameraManager::getInstance()->handleOf("camera"));
    Shader& shader = makeShader("placing", placing, white);
    ConstantBuffer& buffer = *shader.addConstantBuffer(0, 0);
    buffer.addPassMemorySlot()->setAsViewMatrix();
    buffer.addPassMemorySlot()->setAsProjectionMatrix();
    makeEntity(makeMesh("square", square), shader, {2, 1, 0, 1});
    const vlImages::Image image = drawAndRead(*context_);
    // Half the height is tan(30 degrees) * 5 = 2.887 units, so a unit has 3.46 pixels.
    EXPECT_EQ(pixelAt(image, 27, 6), whitePixel);
    EXPECT_EQ(pixelAt(image, 27, 13), black);
    EXPECT_EQ(pixelAt(image, 13, 6), black);
}

TEST_F(Scene, NearerEntityHidesTheFartherWhateverTheOrder) {
    const Mesh& mesh = makeMesh("square", square);
    const Shader& red =
            makeShader("red", plain, "float4 main() : SV_TARGET { return float4(1, 0, 0, 1); }");
    const Shader& green =
            makeShader("green", plain, "float4 main() : SV_TARGET { return float4(0, 1, 0, 1); }");
    makeEntity(mesh, red, {-0.5F, 0, 0.25F, 1});
    makeEntity(mesh, green, {-0.5F, 0, 0.5F, 1});
    makeEntity(mesh, green, {0.5F, 0, 0.25F, 1});
    makeEntity(mesh, red, {0.5F, 0, 0.5F, 1});
    const vlImages::Image image = drawAndRead(*context_);
    EXPECT_EQ(pixelAt(image, 10, 10), (Rgba{255, 0, 0, 255}));
    EXPECT_EQ(pixelAt(image, 30, 10), (Rgba{0, 255, 0, 255}));
}

TEST_F(Scene, CounterClockwiseFacesAreCulledUnlessTheStateSaysOtherwise) {
    const Mesh& mesh = makeMesh("back", {{-1, 1, 0}, {-1, -3, 0}, {3, 1, 0}});
    makeEntity(mesh, makeShader("plain", plain, white), {0, 0, 0, 1});
    EXPECT_EQ(pixelAt(drawAndRead(*context_), 20, 10), black);
    RasterState& state = *RasterStateManager::getInstance()->createOrRetrieve("both");
    state.setCullMode(CULL_MODE::NONE);
    pass_->setRasterState(RasterStateManager::getInstance()->handleOf("both"));
    EXPECT_EQ(pixelAt(drawAndRead(*context_), 20, 10), whitePixel);
}

TEST_F(Scene, TransparentPassBlendsOverTheOpaqueOne) {
    const Mesh& mesh = makeMesh("square", square);
    const Shader& shader =
            makeShader("half", plain, "float4 main() : SV_TARGET { return float4(1, 1, 1, 0.5); }");
    Entity& entity = makeEntity(mesh, shader, {0, 0, 0.5F, 1});
    EntityRenderInfo info = entity.getRenderInfo();
    info.transparent = true;
    entity.setRenderInfo(info);
    EXPECT_EQ(pixelAt(drawAndRead(*context_), 20, 10), black);
    operations_->addRenderScenePass(TargetOperations::atEnd)->setTransparentPass(true);
    const Rgba pixel = pixelAt(drawAndRead(*context_), 20, 10);
    EXPECT_NEAR(pixel[0], encoded(0.5F), 1);
    EXPECT_EQ(pixel[3], 255);
}

TEST_F(Scene, TexelsAppearWhereTheyAreInThePicture) {
    vlImages::Image image(2, 2, vlImages::PixelFormat::rgba8);
    const std::array<std::uint8_t, 16> texels{
            255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 0, 255};
    std::memcpy(image.pixels.data(), texels.data(), texels.size());
    Texture& texture = *TextureManager::getInstance()->createOrRetrieve("texels");
    texture.setImage(std::move(image));
    ASSERT_TRUE(texture.load().has_value());
    Sampler& sampler = *SamplerManager::getInstance()->createOrRetrieve("point");
    sampler.setFilter(FILTER::MIN_MAG_MIP_POINT);
    ASSERT_TRUE(sampler.load().has_value());
    Shader& shader = makeShader("textured",
                                R"(
struct Out { float4 clip : SV_POSITION; float2 uv : TEXCOORD; };
Out main(float3 p : POSITION)
{ Out o; o.clip = float4(p, 1); o.uv = float2(p.x, -p.y) * 0.5 + 0.5; return o; })",
                                R"(
Texture2D colors : register(t1, space2);
SamplerState point_ : register(s1, space2);
float4 main(float4 at : SV_POSITION, float2 uv : TEXCOORD) : SV_TARGET
{ return colors.Sample(point_, uv); })");
    shader.addTexture(TextureManager::getInstance()->handleOf("texels"), 1, 2);
    shader.addSampler(SamplerManager::getInstance()->handleOf("point"), 1, 2);
    makeEntity(makeMesh("full", {{-1, 3, 0}, {3, -1, 0}, {-1, -1, 0}}), shader, {0, 0, 0, 1});
    const vlImages::Image drawn = drawAndRead(*context_);
    EXPECT_EQ(pixelAt(drawn, 19, 9), (Rgba{255, 0, 0, 255}));
    EXPECT_EQ(pixelAt(drawn, 20, 9), (Rgba{0, 255, 0, 255}));
    EXPECT_EQ(pixelAt(drawn, 19, 10), (Rgba{0, 0, 255, 255}));
    EXPECT_EQ(pixelAt(drawn, 20, 10), (Rgba{255, 255, 0, 255}));
}

TEST_F(Scene, MipLevelsHoldTheMeanOfTheLight) {
    vlImages::Image image(4, 4, vlImages::PixelFormat::bgra8);
    for (std::uint32_t i = 0; i < 16; ++i) {
        const std::byte level{static_cast<unsigned char>((i + i / 4) % 2 == 0 ? 255 : 0)};
        for (std::uint32_t channel = 0; channel < 3; ++channel)
            image.pixels.data()[i * 4 + channel] = level;
        image.pixels.data()[i * 4 + 3] = std::byte{255};
    }
    Texture& texture = *TextureManager::getInstance()->createOrRetrieve("checks");
    texture.setImage(std::move(image));
    ASSERT_TRUE(texture.load().has_value());
    Shader& shader = makeShader("levels",
                                "float4 main(float3 p : POSITION) : SV_POSITION"
                                "{ return float4(p, 1); }",
                                R"(
Texture2D colors : register(t0);
float4 main(float4 at : SV_POSITION) : SV_TARGET
{ return at.x < 20 ? colors.Load(int3(0, 0, 2)) : colors.Load(int3(1, 1, 1)); })");
    shader.addTexture(TextureManager::getInstance()->handleOf("checks"), 0, 0);
    makeEntity(makeMesh("full", {{-1, 3, 0}, {3, -1, 0}, {-1, -1, 0}}), shader, {0, 0, 0, 1});
    const vlImages::Image drawn = drawAndRead(*context_);
    EXPECT_NEAR(pixelAt(drawn, 5, 10)[0], encoded(0.5F), 2);
    EXPECT_NEAR(pixelAt(drawn, 35, 10)[2], encoded(0.5F), 2);
}

TEST_F(Scene, WhatNobodyBoundReadsDefaultsAndWhatAMeshLacksReadsConstants) {
    const Shader& shader = makeShader("lacking",
                                      R"(
struct Out { float4 clip : SV_POSITION; float4 color : COLOR; float3 normal : NORMAL; };
Out main(float3 p : POSITION, float4 color : COLOR, float3 normal : NORMAL)
{ Out o; o.clip = float4(p, 1); o.color = color; o.normal = normal; return o; })",
                                      R"(
cbuffer Missing : register(b7) { float4 zero[20]; };
Texture2D texture_ : register(t0);
SamplerState sampler_ : register(s0);
StructuredBuffer<float4> buffer_ : register(t1);
float4 main(float4 at : SV_POSITION, float4 color : COLOR, float3 normal : NORMAL) : SV_TARGET
{
    float grey = texture_.SampleLevel(sampler_, float2(0.0625, 0.0625), 0).r;
    return float4(color.r + zero[19].r, normal.x + buffer_[3].r, grey, color.a);
})");
    makeEntity(makeMesh("full", {{-1, 3, 0}, {3, -1, 0}, {-1, -1, 0}}), shader, {0, 0, 0, 1});
    EXPECT_EQ(pixelAt(drawAndRead(*context_), 20, 10), (Rgba{255, 0, 255, 255}));
}

class NumberSlot final : public ShaderInstanceCustomSlot {
public:
    vlMemory::StringView getSemantic() const override { return "PICKINGID"; }
    std::uint32_t getDataSize() const override { return 16; }
    void fill(const Entity& entity, std::span<std::byte> data) const override {
        const std::uint32_t value = entity.getParentNode()->getPosition().x > 0 ? 1 : 0;
        const std::array<std::uint32_t, 4> values{value, 1 - value, 0, 0};
        std::memcpy(data.data(), values.data(), sizeof values);
    }
};

TEST_F(Scene, CustomSlotsComeBesideTheWorldMatrix) {
    Shader& shader = makeShader("numbered",
                                R"(
struct Out { float4 clip : SV_POSITION; nointerpolation uint4 id : PICKINGID; };
Out main(float3 p : POSITION, float4x4 world : WORLD_MATRIX, uint4 id : PICKINGID)
{ Out o; o.clip = mul(world, float4(p, 1)); o.id = id; return o; })",
                                R"(
float4 main(float4 at : SV_POSITION, nointerpolation uint4 id : PICKINGID) : SV_TARGET
{ return float4(id.x, id.y, 0, 1); })");
    shader.addInstanceMemorySlot()->setAsCustom(std::make_shared<NumberSlot>());
    ASSERT_TRUE(shader.changeInstanceMemorySlotOrder(0, 1));
    const Mesh& mesh = makeMesh("square", square);
    makeEntity(mesh, shader, {-0.5F, 0, 0, 1});
    makeEntity(mesh, shader, {0.5F, 0, 0, 1});
    const vlImages::Image image = drawAndRead(*context_);
    EXPECT_EQ(pixelAt(image, 10, 10), (Rgba{0, 255, 0, 255}));
    EXPECT_EQ(pixelAt(image, 30, 10), (Rgba{255, 0, 0, 255}));
}

TEST_F(Scene, WhatIsErasedWhileFramesAreInFlightIsDrawnNoMore) {
    makeEntity(makeMesh("square", square), makeShader("plain", plain, white), {0, 0, 0, 1});
    for (int i = 0; i < 5; ++i)
        drawFrame(*context_);
    MeshManager::getInstance()->erase("square");
    EXPECT_EQ(pixelAt(drawAndRead(*context_), 20, 10), black);
    makeMesh("square", square);
    EXPECT_EQ(pixelAt(drawAndRead(*context_), 20, 10), whitePixel);
    ProgramManager::getInstance()->erase("plain");
    EXPECT_EQ(pixelAt(drawAndRead(*context_), 20, 10), black);
}

TEST_F(Scene, ManyEntitiesOutgrowTheFrameMemory) {
    const Shader& shader = makeShader("plain", plain, white);
    const Mesh& mesh = makeMesh("square", square);
    constexpr int count = 6000;
    for (int i = 0; i < count; ++i)
        makeEntity(mesh, shader, {i == count - 1 ? 0.5F : -0.5F, 0, 0.5F, 1});
    for (int frame = 0; frame < 4; ++frame)
        EXPECT_EQ(pixelAt(drawAndRead(*context_), 30, 10), whitePixel);
    EXPECT_EQ(System::getInstance()->getRenderer().getCounts().pipelinesMade, 1U);
}

} // namespace
} // namespace vlGraphics
