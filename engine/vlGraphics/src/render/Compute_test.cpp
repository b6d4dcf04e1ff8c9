#include "render/ShaderTest.h"

#include <vlGraphics/References.h>

namespace vlGraphics {
namespace {

class Compute : public ShaderTest {
protected:
    /// Adds one to the first element for each thread there is.
    static constexpr const char* counting =
            "RWStructuredBuffer<uint> count : register(u0);"
            "[numthreads(2, 3, 1)] void main() { InterlockedAdd(count[0], 1); }";

    void SetUp() override {
        ShaderTest::SetUp();
        if (HasFatalFailure()) return;
        count_ = makeBuffer("count", 4, 1);
        Shader& reader = makeReader("StructuredBuffer<uint> count : register(t0);", "count[0]");
        reader.addTexture(count_, 0, 0);
        addDraw(reader);
        // Before the picture, without targets.
        before_ = node_->addOperations();
        node_->swapOperations(0, 1);
    }
    Shader& makeCounting(const std::string& source = counting) {
        Shader& shader = makeCompute(source);
        shader.addUavBuffer(count_, 0, 0);
        return shader;
    }
    float counted() const { return drawNumbers()[0][0]; }

    Handle<Buffer> count_;
    TargetOperations* before_ = nullptr;
};

TEST_F(Compute, GroupsOfThreeAxesRunWithoutTargets) {
    ComputePass& pass = addDispatch(*before_, makeCounting());
    EXPECT_EQ(counted(), 6);
    pass.setX(2);
    pass.setY(3);
    pass.setZ(4);
    EXPECT_EQ(counted(), 6 + 6 * 24);
    pass.setZ(0);
    EXPECT_EQ(counted(), 6 + 6 * 24);
    EXPECT_EQ(counts().dispatches, 2U);
    EXPECT_EQ(counts().pipelinesMade, 2U);
}

TEST_F(Compute, SizeOfAnOperationWithoutTargetsIsThePictures) {
    Shader& shader = makeCounting("cbuffer C : register(b0) { float4 size; };"
                                  "RWStructuredBuffer<uint> count : register(u0);"
                                  "[numthreads(1, 1, 1)] void main()"
                                  "{ count[0] = uint(size.x * 100 + size.y); }");
    shader.addConstantBuffer(0, 0)->addPassMemorySlot()->setAsTargetSize();
    addDispatch(*before_, shader);
    EXPECT_EQ(counted(), 1608);
}

TEST_F(Compute, MoreGroupsThanCanRunAreCutOffWithOneLine) {
    Shader& shader = makeCounting("RWStructuredBuffer<uint> count : register(u0);"
                                  "[numthreads(1, 1, 1)] void main(uint3 id : SV_GroupID)"
                                  "{ if (id.x == 65534) InterlockedAdd(count[0], 1); }");
    ComputePass& pass = addDispatch(*before_, shader);
    pass.setName("many");
    pass.setX(4294967295U);
    for (int frame = 0; frame < 2; ++frame)
        EXPECT_GT(counted(), 0);
    EXPECT_EQ(logged("compute pass 'many': 4294967295 x 1 x 1 groups"), 1U);
}

TEST_F(Compute, ShadersThatCannotComputeDoNothing) {
    ComputePass& pass = addDispatch(*before_, makeReader("", "0"));
    EXPECT_EQ(counted(), 0);
    pass.setShader({});
    EXPECT_EQ(counted(), 0);
    Shader& shader = makeCounting();
    pass.setShader(handleOf(shader));
    EXPECT_TRUE(shader.isUsableCompute());
    EXPECT_FALSE(shader.isUsableScene());
    EXPECT_EQ(counted(), 6);
    // A broken source leaves the last good one at work.
    Program& program = *shader.getProgram();
    ProgramSourcesHolder sources;
    sources.setComputeMemory("nonsense");
    program.setFromMemory(sources);
    ASSERT_TRUE(program.load().has_value());
    ProgramManager::getInstance()->waitForAll();
    EXPECT_EQ(counted(), 12);
    // What is left of another type has no stage to run.
    program.setType(PROGRAM_TYPE::PIPELINE);
    EXPECT_FALSE(shader.isUsableScene());
    EXPECT_EQ(counted(), 12);
    program.setType(PROGRAM_TYPE::COMPUTE);
    ShaderManager::getInstance()->erase(shader.getName());
    EXPECT_EQ(counted(), 12);
}

TEST_F(Compute, TargetsOfItsOwnOperationAreReadAsFarAsTheyAreDrawn) {
    Texture& other = makeTarget("other", FORMAT::R32G32B32A32_FLOAT, RENDER_FLAG::COLOR_TARGET);
    before_->addColorTarget({handleOf(other), 0});
    before_->addClearTargetsPass(TargetOperations::atEnd)->setClearColor({40, 0, 0, 0});
    Shader& shader = makeCounting("RWStructuredBuffer<uint> count : register(u0);"
                                  "Texture2D<float4> picture : register(t0);"
                                  "[numthreads(1, 1, 1)] void main()"
                                  "{ count[0] += uint(picture.Load(int3(3, 0, 0)).x); }");
    shader.addTexture(handleOf(other), 0, 0);
    addDispatch(*before_, shader);
    addDraw(*before_, fullMesh(), makeReader("", "float4(2, 0, 0, 0)"));
    addDispatch(*before_, shader);
    for (const float expected : {42.0F, 84.0F})
        EXPECT_EQ(counted(), expected);
}

TEST_F(Compute, CopiesAndUsersKnowTheShader) {
    Shader& shader = makeCounting();
    ComputePass& pass = addDispatch(*before_, shader);
    pass.setX(7);
    pass.setName("sum");
    const auto copy = pass.clone();
    const auto& twin = static_cast<const ComputePass&>(*copy);
    EXPECT_EQ(twin.getName(), "sum");
    EXPECT_EQ(twin.getX(), 7U);
    EXPECT_EQ(twin.getShader(), pass.getShader());
    const std::vector<vlMemory::String> users = usersOf(shader);
    ASSERT_EQ(users.size(), 1U);
    EXPECT_EQ(users[0], "compositor 'test', pass 1");
}

} // namespace
} // namespace vlGraphics
