#include "render/ShaderTest.h"

#include <vlGraphics/Node.h>

#include <memory>
#include <numeric>

namespace vlGraphics {
namespace {

using vlMaths::Matrix;
using vlMaths::Vector;

class FourNumbers final : public ShaderPassCustomSlot {
public:
    vlMemory::StringView getTypeName() const override { return "FOUR"; }
    std::uint32_t getDataSize() const override { return 16; }
    void fill(std::span<std::byte> data) const override {
        const std::array<float, 4> values{4, 3, 2, 1};
        std::memcpy(data.data(), values.data(), sizeof values);
    }
};

/** A constant buffer behind an address of its own, whose first four rows are the picture's texels.
 */
class PassSlots : public ShaderTest {
protected:
    void SetUp() override {
        ShaderTest::SetUp();
        if (HasFatalFailure()) return;
        passCamera_ = &makeCamera("pass", {1, 2, 3, 1});
        ownCamera_ = &makeCamera("own", {-4, 5, -6, 1});
        Shader& shader = makeReader("cbuffer Pass : register(b2, space1) { float4x4 value; };"
                                    "float4 row(int i) { return i < 4 ? value[i] : 0; }",
                                    "row(i)");
        buffer_ = shader.addConstantBuffer(2, 1);
        RenderScenePass& pass = addDraw(shader);
        pass.setRenderCamera(CameraManager::getInstance()->handleOf("pass"));
    }
    static Camera& makeCamera(std::string_view name, const Vector& position) {
        Camera& camera = *CameraManager::getInstance()->createOrRetrieve(name);
        camera.setPosition(position);
        // A third of a turn round the diagonal: nothing of its matrices is symmetric.
        camera.setOrientation({0.5F, 0.5F, 0.5F, name == "own" ? -0.5F : 0.5F});
        camera.setNearDistance(0.25F);
        return camera;
    }
    /// What the pixel stage sees of the only slot.
    std::array<float, 16> seen() {
        const Numbers numbers = drawNumbers();
        std::array<float, 16> values{};
        std::memcpy(values.data(), numbers.data(), sizeof values);
        return values;
    }
    /// The slot on a line of its own, set by `set`.
    template <class Set> std::array<float, 16> seenOf(Set set) {
        buffer_->deletePassMemorySlot(0);
        set(*buffer_->addPassMemorySlot());
        return seen();
    }
    static void expectNear(const std::array<float, 16>& values, const Matrix& expected) {
        for (std::size_t i = 0; i < 16; ++i)
            EXPECT_NEAR(values[i], expected.elements[i], 1e-3F) << "element " << i;
    }
    static void expectRow(const std::array<float, 16>& values, const Vector& expected) {
        EXPECT_NEAR(values[0], expected.x, 1e-5F);
        EXPECT_NEAR(values[1], expected.y, 1e-5F);
        EXPECT_NEAR(values[2], expected.z, 1e-5F);
        EXPECT_NEAR(values[3], expected.w, 1e-5F);
    }

    Camera* passCamera_ = nullptr;
    Camera* ownCamera_ = nullptr;
    ConstantBuffer* buffer_ = nullptr;
};

TEST_F(PassSlots, ValuesThatAreGivenArriveAsTheyAre) {
    expectRow(seenOf([](auto& slot) { slot.setFromVector(1, -2, 3.5F, 4); }), {1, -2, 3.5F, 4});
    Matrix counting;
    std::iota(counting.elements.begin(), counting.elements.end(), 1.0F);
    expectNear(seenOf([&](auto& slot) { slot.setFromMatrix(counting); }), counting);
    expectRow(seenOf([](auto& slot) { slot.setAsCustom(std::make_unique<FourNumbers>()); }),
              {4, 3, 2, 1});
    expectRow(seenOf([](auto& slot) { slot.setAsTargetSize(); }), {32, 1, 1 / 32.0F, 1});
    TextureManager& textures = *TextureManager::getInstance();
    Texture* wide = textures.createOrRetrieve("wide");
    ASSERT_NE(wide, nullptr);
    wide->setWidth(64);
    wide->setHeight(8);
    expectRow(seenOf([&](auto& slot) { slot.setAsTextureSize(textures.handleOf("wide")); }),
              {64, 8, 1 / 64.0F, 1 / 8.0F});
    System::getInstance()->setTimeMs(12345);
    expectRow(seenOf([](auto& slot) { slot.setAsTime(5000); }), {2.345F, 5, 12, 0.469F});
}

TEST_F(PassSlots, CamerasOfThePassAndOfTheSlotArriveAsMatricesAndVectors) {
    struct Case {
        void (ShaderPassMemorySlot::*set)(Handle<Camera>);
        Matrix (*matrix)(const Camera&);
    };
    const Case matrices[] = {
            {&ShaderPassMemorySlot::setAsViewMatrix,
             [](const Camera& camera) { return camera.getViewMatrix(); }},
            {&ShaderPassMemorySlot::setAsViewMatrixInv,
             [](const Camera& camera) { return inverse(camera.getViewMatrix()); }},
            {&ShaderPassMemorySlot::setAsProjectionMatrix,
             [](const Camera& camera) { return camera.getProjectionMatrix(); }},
            {&ShaderPassMemorySlot::setAsProjectionMatrixInv,
             [](const Camera& camera) { return inverse(camera.getProjectionMatrix()); }}};
    const Handle<Camera> own = CameraManager::getInstance()->handleOf("own");
    for (const Case& one : matrices) {
        expectNear(seenOf([&](auto& slot) { (slot.*one.set)({}); }), one.matrix(*passCamera_));
        expectNear(seenOf([&](auto& slot) { (slot.*one.set)(own); }), one.matrix(*ownCamera_));
    }
    expectRow(seenOf([](auto& slot) { slot.setAsCameraPosition(); }), {1, 2, 3, 1});
    expectRow(seenOf([&](auto& slot) { slot.setAsCameraPosition(own); }), {-4, 5, -6, 1});
    // The turns take +Z to +X and to +Y.
    expectRow(seenOf([](auto& slot) { slot.setAsCameraDirectionWorld(); }), {1, 0, 0, 0});
    expectRow(seenOf([&](auto& slot) { slot.setAsCameraDirectionWorld(own); }), {0, 1, 0, 0});
    const auto parameters = seenOf([](auto& slot) { slot.setAsProjectionParameters(); });
    expectRow(parameters, {0.25F, 1000, passCamera_->getAspectRatio(), 1.0471976F});
}

TEST_F(PassSlots, CornersAreFourPointsOfTheFarPlane) {
    for (const bool isWorld : {true, false}) {
        const auto values = seenOf([&](auto& slot) {
            isWorld ? slot.setAsCamCornersWorld() : slot.setAsCamCornersView();
        });
        const auto corners =
                isWorld ? passCamera_->getCornersWorld() : passCamera_->getCornersView();
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_NEAR(values[4 * i], corners[i].x, 1e-2F);
            EXPECT_NEAR(values[4 * i + 1], corners[i].y, 1e-2F);
            EXPECT_NEAR(values[4 * i + 2], corners[i].z, 1e-2F);
        }
    }
}

TEST_F(ShaderTest, MembersThatStraddleSixteenBytesBeginAtTheNext) {
    // float3 behind float2 moves on; each slot is a row.
    Shader& shader = makeReader("cbuffer C : register(b0)"
                                "{ float2 a; float3 b; float c; float2x2 d; float e[2]; };",
                                "i == 0 ? float4(a, b.xy) : i == 1 ? float4(b.z, c, d[0])"
                                "       : float4(d[1], e[0], e[1])");
    ConstantBuffer& buffer = *shader.addConstantBuffer(0, 0);
    for (const float row : {10.0F, 20.0F, 30.0F, 40.0F, 50.0F, 60.0F})
        buffer.addPassMemorySlot()->setFromVector(row, row + 1, row + 2, row + 3);
    addDraw(shader);
    const Numbers numbers = drawNumbers();
    EXPECT_EQ(numbers[0], (std::array<float, 4>{10, 11, 20, 21}));
    EXPECT_EQ(numbers[1], (std::array<float, 4>{22, 23, 30, 31}));
    EXPECT_EQ(numbers[2], (std::array<float, 4>{40, 41, 50, 60}));
}

class PlaceInQueue final : public ShaderInstanceCustomSlot {
public:
    vlMemory::StringView getSemantic() const override { return "PLACE"; }
    std::uint32_t getDataSize() const override { return 16; }
    void fill(const Entity& entity, std::span<std::byte> data) const override {
        const float place = entity.getParentNode()->getPosition().y;
        const std::array<float, 4> values{place, place * 2, 0, 1};
        std::memcpy(data.data(), values.data(), sizeof values);
    }
};

TEST_F(ShaderTest, EntitiesBeyondOneInstanceBufferAreDrawnByTheNext) {
    Shader& shader = makeProgram(
            {{SHADER_TYPE::VERTEX,
              "struct Out { float4 at : SV_POSITION; float4 place : PLACE; };"
              "Out main(float4 place : PLACE, float4x4 world : WORLD_MATRIX, float3 p : POSITION)"
              "{ Out o; o.at = mul(world, float4(p, 1)); o.at.y = p.y; o.place = place;"
              "  return o; }"},
             // Its inputs in another order.
             {SHADER_TYPE::PIXEL,
              "struct In { float4 place : PLACE; float4 at : SV_POSITION; };"
              "float4 main(In i) : SV_TARGET { return i.place; }"}});
    shader.addInstanceMemorySlot();
    shader.addInstanceMemorySlot()->setAsCustom(std::make_shared<PlaceInQueue>());
    ASSERT_TRUE(shader.setMaxInstancePerBuffer(5));
    // A texel wide each.
    constexpr float wide = 2.0F / texels;
    const Mesh& mesh = makeMesh("bar", {{0, 3, 0.5F}, {1.8F * wide, -1, 0.5F}, {0, -1, 0.5F}});
    RenderScenePass& pass = *operations_->addRenderScenePass(TargetOperations::atEnd);
    pass.setRenderQueue({});
    RenderQueueManager::getInstance()
            ->get(RenderQueueManager::DEFAULT_RENDER_QUEUE)
            ->getRenderStrategy()
            .setFrustumCull(false);
    for (std::uint32_t i = 0; i < texels; ++i)
        makeEntity(mesh, shader, {-1 + static_cast<float>(i) * wide, static_cast<float>(i), 0, 1});
    const Numbers numbers = drawNumbers();
    for (std::uint32_t i = 0; i < texels; ++i)
        EXPECT_EQ(numbers[i], (std::array<float, 4>{float(i), 2 * float(i), 0, 1})) << i;
    EXPECT_EQ(counts().draws, 7U);
    EXPECT_EQ(counts().instances, texels);
}

} // namespace
} // namespace vlGraphics
