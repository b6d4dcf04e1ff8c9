#include <vlGraphics/ConstantBuffer.h>
#include <vlGraphics/DefaultNames.h>
#include <vlGraphics/Shader.h>

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <utility>
#include <vector>

namespace vlGraphics {
namespace {

using vlMaths::Matrix;
using vlMaths::Vector;

Matrix countingMatrix() {
    Matrix matrix;
    for (std::size_t index = 0; index < 16; ++index)
        matrix.elements[index] = static_cast<float>(index);
    return matrix;
}

class ThreeWords final : public ShaderPassCustomSlot {
public:
    vlMemory::StringView getTypeName() const override { return "THREE"; }
    std::uint32_t getDataSize() const override { return 12; }
    void fill(std::span<std::byte> data) const override {
        EXPECT_EQ(data.size(), 12U);
        std::fill(data.begin(), data.end(), std::byte{7});
    }
};

class FourWords final : public ShaderInstanceCustomSlot {
public:
    vlMemory::StringView getSemantic() const override { return "PICKINGID"; }
    std::uint32_t getDataSize() const override { return 16; }
    void fill(const Entity&, std::span<std::byte>) const override {}
};

class ShaderSlots : public testing::Test {
protected:
    ShaderSlots() {
        passCamera = cameras.createOrRetrieve("pass");
        passCamera->setPosition({1, 2, 3, 1});
        passCamera->setAspectRatio(2);
        inputs = {passCamera, 320, 200, 12'345};
    }

    std::vector<float> fill() const {
        std::vector<float> values(buffer.getByteSize() / sizeof(float), -1.0F);
        buffer.fill(inputs, std::as_writable_bytes(std::span(values)));
        return values;
    }
    using Floats = std::vector<float>;

    CameraManager cameras;
    TextureManager textures;
    ProgramManager programs;
    Camera* passCamera = nullptr;
    PassInputs inputs;
    ConstantBuffer buffer{0, 0};
};

TEST_F(ShaderSlots, MatricesLieRowByRow) {
    buffer.addPassMemorySlot()->setFromMatrix(countingMatrix());
    const Floats values = fill();
    ASSERT_EQ(values.size(), 16U);
    for (std::size_t index = 0; index < 16; ++index)
        EXPECT_EQ(values[index], static_cast<float>(index));
    buffer.getPassMemorySlot(0)->setAsViewMatrix();
    const Floats view = fill();
    EXPECT_EQ(view[3], -1.0F);
    EXPECT_EQ(view[7], -2.0F);
    EXPECT_EQ(view[11], -3.0F);
}

TEST_F(ShaderSlots, SlotsBeginAtMultiplesOfSixteenBytes) {
    buffer.addPassMemorySlot()->setAsCustom(std::make_unique<ThreeWords>());
    buffer.addPassMemorySlot()->setFromVector(1, 2, 3, 4);
    EXPECT_EQ(buffer.getByteSize(), 32U);
    const Floats values = fill();
    EXPECT_EQ(values[3], 0.0F) << "the gap is zeros";
    EXPECT_EQ((Floats{values.begin() + 4, values.end()}), (Floats{1, 2, 3, 4}));
}

TEST_F(ShaderSlots, ValuesOfThePass) {
    buffer.addPassMemorySlot()->setAsTargetSize();
    buffer.addPassMemorySlot()->setAsProjectionParameters();
    buffer.addPassMemorySlot()->setAsCameraPosition();
    buffer.addPassMemorySlot()->setAsCameraDirectionWorld();
    buffer.addPassMemorySlot()->setAsTime(5'000);
    const Floats values = fill();
    const Floats expected{320,        200, 1 / 320.0F, 1 / 200.0F, 0.1F, 1000,  2,
                          1.0471976F, 1,   2,          3,          1,    0,     0,
                          1,          0,   2.345F,     5,          12,   0.469F};
    ASSERT_EQ(values.size(), expected.size());
    for (std::size_t index = 0; index < expected.size(); ++index)
        EXPECT_FLOAT_EQ(values[index], expected[index]) << index;
}

TEST_F(ShaderSlots, ProjectionTimesItsInverseIsTheIdentity) {
    buffer.addPassMemorySlot()->setAsProjectionMatrix();
    buffer.addPassMemorySlot()->setAsProjectionMatrixInv();
    const Floats values = fill();
    Matrix projection;
    Matrix inverse;
    std::copy_n(values.begin(), 16, projection.elements.begin());
    std::copy_n(values.begin() + 16, 16, inverse.elements.begin());
    const Matrix product = projection * inverse;
    for (std::size_t index = 0; index < 16; ++index)
        EXPECT_NEAR(product.elements[index], Matrix().elements[index], 1e-4F);
}

TEST_F(ShaderSlots, CornersAreTheFarPlanes) {
    buffer.addPassMemorySlot()->setAsCamCornersWorld();
    const Floats values = fill();
    const auto corners = passCamera->getCornersWorld();
    for (std::size_t index = 0; index < 4; ++index) {
        EXPECT_EQ(values[4 * index], corners[index].x);
        EXPECT_EQ(values[4 * index + 2], corners[index].z);
    }
}

TEST_F(ShaderSlots, OwnCameraWinsUntilItIsErased) {
    cameras.createOrRetrieve("own")->setPosition({9, 8, 7, 1});
    buffer.addPassMemorySlot()->setAsCameraPosition(cameras.handleOf("own"));
    EXPECT_EQ(fill(), (Floats{9, 8, 7, 1}));
    cameras.erase("own");
    EXPECT_EQ(fill(), (Floats{1, 2, 3, 1}));
}

TEST_F(ShaderSlots, TextureSizeFallsBackToTheDefaultTexture) {
    textures.createOrRetrieve(DefaultNames::texture)->setWidth(8);
    textures.createOrRetrieve("wide")->setWidth(64);
    buffer.addPassMemorySlot()->setAsTextureSize(textures.handleOf("wide"));
    EXPECT_EQ(fill(), (Floats{64, 1, 1 / 64.0F, 1}));
    textures.erase("wide");
    EXPECT_EQ(fill(), (Floats{8, 1, 1 / 8.0F, 1}));
}

TEST_F(ShaderSlots, OrderChangesOnlyWithinTheList) {
    buffer.addPassMemorySlot()->setFromVector(1, 0, 0, 0);
    buffer.addPassMemorySlot()->setFromVector(2, 0, 0, 0);
    EXPECT_FALSE(buffer.changePassMemorySlotOrder(1, 2));
    EXPECT_TRUE(buffer.changePassMemorySlotOrder(1, 0));
    EXPECT_EQ(fill()[0], 2.0F);
    EXPECT_FALSE(buffer.deletePassMemorySlot(2));
    EXPECT_TRUE(buffer.deletePassMemorySlot(0));
    EXPECT_EQ(fill()[0], 1.0F);
    EXPECT_EQ(buffer.getPassMemorySlot(1), nullptr);
}

TEST_F(ShaderSlots, AddressesOfAShaderStayUnique) {
    Shader shader;
    EXPECT_TRUE(shader.addTexture({}, 0, 0));
    EXPECT_TRUE(shader.addTexture({}, 0, 1));
    EXPECT_FALSE(shader.addTexture({}, 0, 1));
    EXPECT_TRUE(shader.addSampler({}, 0, 0)) << "classes do not collide";
    EXPECT_FALSE(shader.changeTextureSpace(1, 0));
    EXPECT_TRUE(shader.changeTextureSlot(1, 4));
    EXPECT_TRUE(shader.changeTextureSpace(1, 0));
    EXPECT_EQ(shader.getTexturePerIndex(1)->slot, 4U);
    EXPECT_TRUE(shader.forgetTexture(0, 0));
    EXPECT_FALSE(shader.forgetTexture(0, 0));
    EXPECT_EQ(shader.getTexturePerIndex(1), nullptr);

    EXPECT_NE(shader.addConstantBuffer(0, 0), nullptr);
    EXPECT_EQ(shader.addConstantBuffer(0, 0), nullptr);
    EXPECT_NE(shader.addConstantBuffer(1, 0), nullptr);
    EXPECT_FALSE(shader.changeConstantBufferSlot(1, 0));
    EXPECT_TRUE(shader.changeConstantBufferSlot(1, 1)) << "its own address is no clash";
    EXPECT_TRUE(shader.deleteConstantBuffer(0, 0));
    EXPECT_EQ(shader.getConstantBuffer(0, 0), nullptr);
}

TEST_F(ShaderSlots, InstanceDataIsBoundedAndAligned) {
    Shader shader;
    EXPECT_FALSE(shader.setMaxInstancePerBuffer(0));
    EXPECT_FALSE(shader.setMaxInstancePerBuffer(65537));
    EXPECT_TRUE(shader.setMaxInstancePerBuffer(65536));
    shader.addInstanceMemorySlot();
    shader.addInstanceMemorySlot()->setAsCustom(std::make_shared<FourWords>());
    EXPECT_EQ(shader.getInstanceStride(), 80U);
    EXPECT_TRUE(shader.changeInstanceMemorySlotOrder(0, 1));
    EXPECT_EQ(std::as_const(shader).getInstanceMemorySlot(0)->getSemantic(), "PICKINGID");
    shader.getInstanceMemorySlot(0)->setAsCustom(nullptr);
    EXPECT_EQ(shader.getInstanceStride(), 128U) << "nothing to ask: the world matrix";
}

TEST_F(ShaderSlots, ProgramIsFoundByHandle) {
    Shader shader;
    EXPECT_EQ(shader.getProgram(), nullptr);
    Program* program = programs.createOrRetrieve("p");
    shader.setProgram(program);
    EXPECT_EQ(shader.getProgram(), program);
    EXPECT_FALSE(shader.isUsableScene()) << "it has not been compiled";
    programs.rename("p", "q");
    EXPECT_EQ(shader.getProgram(), program);
    programs.erase("q");
    EXPECT_EQ(shader.getProgram(), nullptr);
}

} // namespace
} // namespace vlGraphics
