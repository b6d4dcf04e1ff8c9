#include "render/StatesTest.h"
#include "vulkan/RenderContextGpu.h"
#include "vulkan/TextureGpu.h"
#include "vulkan/Translate.h"

#include <vlGraphics/ChangeCount.h>

#include <cstring>

namespace vlGraphics {
namespace {

using Function = COMPARISON_FUNCTION;

class DepthStencilStates : public StatesTest {
protected:
    /// Of a pass whose only test is the stencil's.
    static DepthStencilState& stencilOf(RenderScenePass& pass) {
        DepthStencilState& state = depthOf(pass);
        state.setDepthEnabled(false);
        state.setStencilEnabled(true);
        return state;
    }
    /// White where the stencil has the value that the pass refers to.
    RenderScenePass& addWitness(TargetOperations& operations) {
        RenderScenePass& pass = addDraw(
                operations, meshOf({}), makeShader(newName(), place, colored("1, 1, 1, 1")));
        stencilOf(pass).setFrontFunction(Function::EQUAL);
        return pass;
    }
};

TEST_F(DepthStencilStates, EachDepthFunctionComparesAsItsNameSays) {
    clear_->setClearDepth(0.5F);
    RenderScenePass& nearer =
            addPass({.right = -0.5F, .leftDepth = 0.25F, .rightDepth = 0.25F}, "1, 1, 1, 1");
    RenderScenePass& equal = addPass({.left = -0.5F, .right = 0.5F}, "1, 1, 1, 1");
    RenderScenePass& farther =
            addPass({.left = 0.5F, .leftDepth = 0.75F, .rightDepth = 0.75F}, "1, 1, 1, 1");
    DepthStencilState& state = depthOf(nearer);
    equal.setDepthStencilState(nearer.getDepthStencilState());
    farther.setDepthStencilState(nearer.getDepthStencilState());
    // The numbers of the functions are sums of what lets a pixel pass, plus one.
    for (std::uint32_t number = 1; number <= 8; ++number) {
        SCOPED_TRACE(number);
        state.setDepthFunction(static_cast<Function>(number));
        const vlImages::Image image = drawAndRead(*context_);
        for (std::uint32_t bit = 0; bit < 3; ++bit)
            EXPECT_EQ(pixelAt(image, 2 + bit * 6, 8),
                      ((number - 1) >> bit & 1U) != 0 ? white : black)
                    << bit;
    }
}

TEST_F(DepthStencilStates, DepthIsWrittenOnlyWhereTestAndMaskSaySo) {
    RenderScenePass& first = addPass({.leftDepth = 0.25F, .rightDepth = 0.25F}, "1, 0, 0, 1");
    addPass({}, "0, 1, 0, 1");
    DepthStencilState& state = depthOf(first);
    EXPECT_EQ(drawnAt(8, 8), red);
    state.setDepthWriteMask(DEPTH_WRITE_MASK::ZERO);
    EXPECT_EQ(drawnAt(8, 8), green);
    state.setDepthWriteMask(DEPTH_WRITE_MASK::ALL);
    state.setDepthEnabled(false);
    EXPECT_EQ(drawnAt(8, 8), green);
}

TEST_F(DepthStencilStates, EachStencilFunctionComparesMaskedReferenceWithMaskedValue) {
    constexpr std::uint32_t value = 0x35;
    clear_->setClearStencil(0xF00 + value);
    RenderScenePass& pass = addWitness(*operations_);
    DepthStencilState& state =
            *DepthStencilStateManager::getInstance()->resolve(pass.getDepthStencilState());
    for (const std::uint32_t mask : {0xFFU, 0x0FU}) {
        state.setStencilReadMask(static_cast<std::uint8_t>(mask));
        for (const std::uint32_t reference : {0x27U, value, 0xF4U}) {
            pass.setStencilReference(static_cast<std::uint8_t>(reference));
            const std::uint32_t left = reference & mask;
            const std::uint32_t right = value & mask;
            const std::uint32_t relation = left < right ? 0 : left == right ? 1 : 2;
            for (std::uint32_t number = 1; number <= 8; ++number) {
                SCOPED_TRACE(testing::Message() << mask << " " << reference << " " << number);
                state.setFrontFunction(static_cast<Function>(number));
                const bool passes = ((number - 1) >> relation & 1U) != 0;
                EXPECT_EQ(drawnAt(8, 8), passes ? white : black);
            }
        }
    }
}

TEST_F(DepthStencilStates, EachStencilOperationLeavesItsValue) {
    using Op = STENCIL_OP;
    struct Case {
        Op op;
        std::uint8_t before;
        std::uint8_t writeMask;
        std::uint8_t after;
    };
    constexpr std::uint8_t reference = 0x5A;
    RenderScenePass& pass = addPass({}, "0, 0, 0, 1");
    pass.setStencilReference(reference);
    DepthStencilState& state = depthOf(pass);
    state.setStencilEnabled(true);
    RenderScenePass& witness = addWitness(*operations_);
    enum class Outcome { fails, failsDepth, passes };
    for (const Outcome outcome : {Outcome::fails, Outcome::failsDepth, Outcome::passes}) {
        state.setFrontFunction(outcome == Outcome::fails ? Function::NEVER : Function::ALWAYS);
        state.setDepthFunction(outcome == Outcome::failsDepth ? Function::NEVER : Function::ALWAYS);
        for (const Case& one : {Case{Op::KEEP, 7, 255, 7},
                                Case{Op::ZERO, 7, 255, 0},
                                Case{Op::ZERO, 7, 1, 6},
                                Case{Op::REPLACE, 7, 255, reference},
                                Case{Op::REPLACE, 0xFF, 0x0F, 0xFA},
                                Case{Op::INCR_SAT, 7, 255, 8},
                                Case{Op::INCR_SAT, 255, 255, 255},
                                Case{Op::DECR_SAT, 7, 255, 6},
                                Case{Op::DECR_SAT, 0, 255, 0},
                                Case{Op::INVERT, 0x0F, 255, 0xF0},
                                Case{Op::INCR, 255, 255, 0},
                                Case{Op::DECR, 0, 255, 255}}) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(outcome) << " "
                                            << static_cast<int>(one.op) << " " << +one.before);
            state.setFrontFail(outcome == Outcome::fails ? one.op : Op::KEEP);
            state.setFrontDepthFail(outcome == Outcome::failsDepth ? one.op : Op::KEEP);
            state.setFrontPass(outcome == Outcome::passes ? one.op : Op::KEEP);
            state.setStencilWriteMask(one.writeMask);
            clear_->setClearStencil(one.before);
            witness.setStencilReference(one.after);
            EXPECT_EQ(drawnAt(8, 8), white);
        }
    }
}

TEST_F(DepthStencilStates, FrontAndBackFacesHaveStencilsOfTheirOwn) {
    RenderScenePass& front = addPass({.right = 0}, "0, 0, 0, 1");
    RenderScenePass& back = addPass({.left = 0, .clockwise = false}, "0, 0, 0, 1");
    DepthStencilState& state = stencilOf(front);
    back.setDepthStencilState(front.getDepthStencilState());
    rasterOf(front).setCullMode(CULL_MODE::NONE);
    back.setRasterState(front.getRasterState());
    state.setFrontPass(STENCIL_OP::INCR);
    state.setBackFunction(Function::NEVER);
    state.setBackFail(STENCIL_OP::DECR);
    RenderScenePass& witness = addWitness(*operations_);
    witness.setStencilReference(1);
    vlImages::Image image = drawAndRead(*context_);
    EXPECT_EQ(pixelAt(image, 4, 8), white);
    EXPECT_EQ(pixelAt(image, 12, 8), black);
    witness.setStencilReference(255);
    image = drawAndRead(*context_);
    EXPECT_EQ(pixelAt(image, 4, 8), black);
    EXPECT_EQ(pixelAt(image, 12, 8), white);
}

// Every access to depth is wider with stencil: who does not test it must not pay for it.
TEST_F(DepthStencilStates, DepthBufferHasStencilFromTheFirstFrameThatTestsIt) {
    RenderScenePass& pass = addPass({}, "1, 0, 0, 1");
    drawFrame(*context_);
    EXPECT_EQ(context_->gpu()->depth.description().format, VK_FORMAT_D32_SFLOAT);
    DepthStencilState& state = stencilOf(pass);
    state.setFrontFunction(Function::EQUAL);
    pass.setStencilReference(9);
    clear_->setClearStencil(9);
    EXPECT_EQ(drawnAt(8, 8), red);
    EXPECT_TRUE(vulkan::hasStencil(context_->gpu()->depth.description().format));
    clear_->setClearStencil(8);
    EXPECT_EQ(drawnAt(8, 8), black);
    context_->resize(20, 20);
    ASSERT_TRUE(context_->apply().has_value());
    EXPECT_EQ(drawnAt(8, 8), black);
    EXPECT_TRUE(vulkan::hasStencil(context_->gpu()->depth.description().format));
    state.setStencilEnabled(false);
    EXPECT_EQ(drawnAt(8, 8), red);
}

TEST_F(DepthStencilStates, StencilThatALaterCompositorBringsIsRightFromTheNextFrame) {
    addPass({.leftDepth = 0.25F, .rightDepth = 0.25F}, "1, 0, 0, 1");
    Compositor& overlay = *CompositorManager::getInstance()->createOrRetrieve("overlay");
    TargetOperations& over = *overlay.addNode()->addOperations();
    over.setToBackBuffer(0);
    over.setToChainDepthBuffer();
    RenderScenePass& pass = addDraw(
            over, meshOf({.right = 0}), makeShader(newName(), place, colored("0, 1, 0, 1")));
    depthOf(pass).setStencilEnabled(true);
    System& system = *System::getInstance();
    for (int frame = 0; frame < 3; ++frame) {
        const std::uint64_t changes = ChangeCount::get();
        system.tickForNewFrame(*context_);
        system.getRenderer().beginFrame();
        CompositorManager::getInstance()->getActiveCompositor()->draw();
        overlay.draw();
        system.getRenderer().endFrame();
        // The depth of what was drawn before is lost once; then that frame asks for another.
        EXPECT_EQ(ChangeCount::get() != changes, frame == 0);
        if (frame > 0) {
            EXPECT_EQ(pixelAt(context_->readBackBuffer().value(), 4, 8), red);
        }
    }
}

TEST_F(DepthStencilStates, ClearsBetweenPassesReachTheStencil) {
    RenderScenePass& first = addPass({}, "1, 0, 0, 1");
    stencilOf(first).setFrontPass(STENCIL_OP::INCR);
    ClearTargetsPass& clear = *operations_->addClearTargetsPass(TargetOperations::atEnd);
    clear.setShouldClearColor(false);
    clear.setClearStencil(77);
    addWitness(*operations_).setStencilReference(77);
    EXPECT_EQ(drawnAt(8, 8), white);
    clear.setShouldClearDepth(false);
    EXPECT_EQ(drawnAt(8, 8), red);
}

TEST_F(DepthStencilStates, TexturesWithStencilAreTestedReadBackAndSampled) {
    for (const FORMAT format : {FORMAT::D32_FLOAT_S8X24_UINT, FORMAT::D24_UNORM_S8_UINT}) {
        SCOPED_TRACE(static_cast<int>(format));
        Texture& depth = makeTarget(format, RENDER_FLAG::DEPTH_TARGET);
        Texture& color = makeTarget(FORMAT::R8G8B8A8_UNORM, RENDER_FLAG::COLOR_TARGET);
        Compositor& compositor = makeCompositor(*context_, newName());
        TargetOperations& into = *compositor.addNode()->addOperations();
        into.addColorTarget({handleOf(color), 0});
        into.setDepthTarget(handleOf(depth));
        into.addClearTargetsPass(TargetOperations::atEnd)->setClearDepth(0.75F);
        RenderScenePass& left = addDraw(
                into, meshOf({.right = 0}), makeShader(newName(), place, colored("1, 0, 0, 1")));
        DepthStencilState& state = depthOf(left);
        state.setStencilEnabled(true);
        state.setFrontPass(STENCIL_OP::REPLACE);
        left.setStencilReference(3);
        addWitness(into).setStencilReference(3);
        Shader& shader =
                makeShader(newName(),
                           place,
                           "Texture2D depths : register(t0);"
                           "float4 main(float4 at : SV_POSITION) : SV_TARGET"
                           "{ return float4(depths.Load(int3(at.xy, 0)).r < 0.6, 0, 0, 1); }");
        shader.addTexture(handleOf(depth), 0, 0);
        addDraw(addBackBuffer(compositor, {0, 0, 0, 1}), meshOf({}), shader);

        const vlImages::Image picture = drawAndRead(*context_);
        EXPECT_EQ(pixelAt(picture, 4, 8), red);
        EXPECT_EQ(pixelAt(picture, 12, 8), black);
        const auto colors = color.convertToImage();
        ASSERT_TRUE(colors.has_value()) << colors.error().message;
        EXPECT_EQ(pixelAt(*colors, 4, 8), white);
        EXPECT_EQ(pixelAt(*colors, 12, 8), black);
        const auto depths = depth.convertToImage();
        ASSERT_TRUE(depths.has_value()) << depths.error().message;
        const auto depthAt = [&depths](std::uint32_t x) {
            float value = 0;
            std::memcpy(&value, depths->view().row(8) + std::size_t{x} * 16, sizeof value);
            return value;
        };
        EXPECT_NEAR(depthAt(4), 0.5F, 1e-6F);
        EXPECT_NEAR(depthAt(12), 0.75F, 1e-6F);
    }
}

TEST_F(DepthStencilStates, WithoutStencilTheTestPassesAndOneLineSaysSo) {
    RenderScenePass& pass = addPass({}, "1, 0, 0, 1");
    DepthStencilState& state = stencilOf(pass);
    state.setFrontFunction(Function::NEVER);
    operations_->setDepthTarget(handleOf(makeTarget(FORMAT::D32_FLOAT, RENDER_FLAG::DEPTH_TARGET)));
    for (int frame = 0; frame < 3; ++frame)
        EXPECT_EQ(drawnAt(8, 8), red);
    EXPECT_EQ(logged("has no stencil"), 1U);
    operations_->setNoDepthTarget();
    EXPECT_EQ(drawnAt(8, 8), red);
    EXPECT_EQ(logged("there is no depth target"), 1U);
    EXPECT_EQ(logged("depth stencil state '" + std::string(state.getName()) + "'"), 2U);
}

} // namespace
} // namespace vlGraphics
