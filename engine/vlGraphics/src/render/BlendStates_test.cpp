#include "render/StatesTest.h"
#include "vulkan/Device.h"

#include <array>
#include <cmath>

namespace vlGraphics {
namespace {

using Color = std::array<float, 4>;

class BlendStates : public StatesTest {
protected:
    static constexpr Color source{0.2F, 0.9F, 0.5F, 0.4F};
    static constexpr Color second{0.6F, 0.3F, 0.8F, 0.7F};
    static constexpr Color target{0.5F, 0.3F, 0.1F, 0.8F};

    void SetUp() override {
        StatesTest::SetUp();
        if (HasFatalFailure()) return;
        texture_ = &makeTarget(FORMAT::R8G8B8A8_UNORM, RENDER_FLAG::COLOR_TARGET, 2, 2);
        into_ = makeCompositor(*context_, newName()).addNode()->addOperations();
        into_->addColorTarget({handleOf(*texture_), 0});
        into_->addClearTargetsPass(TargetOperations::atEnd)
                ->setClearColor({target[0], target[1], target[2], target[3]});
    }

    static std::string text(const Color& color) {
        std::string all;
        for (const float value : color)
            all += (all.empty() ? "" : ", ") + std::to_string(value);
        return all;
    }
    static std::string twoOutputs() {
        return "struct Out { float4 a : SV_TARGET0; float4 b : SV_TARGET1; };"
               "Out main() { Out o; o.a = float4(" +
               text(source) + "); o.b = float4(" + text(second) + "); return o; }";
    }
    BlendState& drawInto(const std::string& pixel) {
        return blendOf(addDraw(*into_, meshOf({}), makeShader(newName(), place, pixel)));
    }
    void expectDrawn(const Texture& texture, const Color& expected) {
        const auto picture = texture.convertToImage();
        ASSERT_TRUE(picture.has_value()) << picture.error().message;
        const Rgba pixel = pixelAt(*picture, 1, 1);
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_NEAR(pixel[i], std::clamp(expected[i], 0.0F, 1.0F) * 255, 1.5F) << i;
    }
    void expectDrawn(const Color& expected) {
        drawFrame(*context_);
        expectDrawn(*texture_, expected);
    }

    static float factor(BLEND value, std::size_t channel, const Color& other = second) {
        switch (value) {
        case BLEND::ZERO:
            return 0;
        case BLEND::SRC_COLOR:
            return source[channel];
        case BLEND::INV_SRC_COLOR:
            return 1 - source[channel];
        case BLEND::SRC_ALPHA:
            return source[3];
        case BLEND::INV_SRC_ALPHA:
            return 1 - source[3];
        case BLEND::DEST_ALPHA:
            return target[3];
        case BLEND::INV_DEST_ALPHA:
            return 1 - target[3];
        case BLEND::DEST_COLOR:
            return target[channel];
        case BLEND::INV_DEST_COLOR:
            return 1 - target[channel];
        case BLEND::SRC_ALPHA_SAT:
            return channel == 3 ? 1 : std::min(source[3], 1 - target[3]);
        case BLEND::INV_BLEND_FACTOR: // the constant factor is one
            return 0;
        case BLEND::SRC1_COLOR:
            return other[channel];
        case BLEND::INV_SRC1_COLOR:
            return 1 - other[channel];
        case BLEND::SRC1_ALPHA:
            return other[3];
        case BLEND::INV_SRC1_ALPHA:
            return 1 - other[3];
        default:
            return 1;
        }
    }
    static float combine(BLEND_OP op, float from, float to, float fromFactor, float toFactor) {
        switch (op) {
        case BLEND_OP::SUBTRACT:
            return from * fromFactor - to * toFactor;
        case BLEND_OP::REV_SUBTRACT:
            return to * toFactor - from * fromFactor;
        case BLEND_OP::MIN:
            return std::min(from, to);
        case BLEND_OP::MAX:
            return std::max(from, to);
        default:
            return from * fromFactor + to * toFactor;
        }
    }
    static Color blended(const BlendState::Target& how, const Color& other = second) {
        Color result{};
        for (std::size_t i = 0; i < 4; ++i)
            result[i] = combine(i < 3 ? how.op : how.opAlpha,
                                source[i],
                                target[i],
                                factor(i < 3 ? how.src : how.srcAlpha, i, other),
                                factor(i < 3 ? how.dest : how.destAlpha, i, other));
        return result;
    }

    Texture* texture_ = nullptr;
    TargetOperations* into_ = nullptr;
};

constexpr BLEND factors[] = {BLEND::ZERO,
                             BLEND::ONE,
                             BLEND::SRC_COLOR,
                             BLEND::INV_SRC_COLOR,
                             BLEND::SRC_ALPHA,
                             BLEND::INV_SRC_ALPHA,
                             BLEND::DEST_ALPHA,
                             BLEND::INV_DEST_ALPHA,
                             BLEND::DEST_COLOR,
                             BLEND::INV_DEST_COLOR,
                             BLEND::SRC_ALPHA_SAT,
                             BLEND::BLEND_FACTOR,
                             BLEND::INV_BLEND_FACTOR};
constexpr BLEND secondFactors[] = {
        BLEND::SRC1_COLOR, BLEND::INV_SRC1_COLOR, BLEND::SRC1_ALPHA, BLEND::INV_SRC1_ALPHA};

TEST_F(BlendStates, EachFactorOnEachSideAndEachOperation) {
    BlendState& state = drawInto(colored(text(source)));
    expectDrawn(source);
    const auto expectBlended = [&](const BlendState::Target& how) {
        SCOPED_TRACE(testing::Message()
                     << static_cast<int>(how.src) << " " << static_cast<int>(how.dest) << " "
                     << static_cast<int>(how.op));
        state.setTarget(how, 0);
        expectDrawn(blended(how));
    };
    for (const BLEND one : factors) {
        const BlendState::Target how{.src = one, .srcAlpha = one, .enabled = true};
        expectBlended(how);
        expectBlended({.src = BLEND::ZERO,
                       .dest = one,
                       .srcAlpha = BLEND::ZERO,
                       .destAlpha = one,
                       .enabled = true});
    }
    for (std::uint32_t op = 1; op <= 5; ++op)
        expectBlended({.src = BLEND::SRC_COLOR,
                       .dest = BLEND::DEST_ALPHA,
                       .op = static_cast<BLEND_OP>(op),
                       .srcAlpha = BLEND::ONE,
                       .destAlpha = BLEND::INV_SRC_ALPHA,
                       .opAlpha = static_cast<BLEND_OP>(6 - op),
                       .enabled = true});
}

TEST_F(BlendStates, SecondColorOfTheProgramIsTheSecondSource) {
    BlendState& state = drawInto(twoOutputs());
    expectDrawn(source);
    const bool acts = vulkan::Device::getInstance()->features().dualSrcBlend == VK_TRUE;
    for (const BLEND one : secondFactors) {
        SCOPED_TRACE(static_cast<int>(one));
        const BlendState::Target how{
                .src = one, .dest = one, .srcAlpha = one, .destAlpha = one, .enabled = true};
        state.setTarget(how, 0);
        expectDrawn(blended(how, acts ? second : source));
    }
    EXPECT_EQ(logged("second"), acts ? 0U : 1U);
}

TEST_F(BlendStates, WithoutSecondColorTheFirstTakesItsPlace) {
    BlendState& state = drawInto(colored(text(source)));
    for (const BLEND one : secondFactors) {
        const BlendState::Target how{.src = one, .dest = one, .enabled = true};
        state.setTarget(how, 0);
        expectDrawn(blended(how, source));
    }
    EXPECT_EQ(logged("blend state '" + std::string(state.getName()) + "'"), 1U);
    // The smaller and the larger value heed no factors.
    state.setTarget({.src = BLEND::SRC1_COLOR,
                     .op = BLEND_OP::MAX,
                     .srcAlpha = BLEND::SRC1_ALPHA,
                     .opAlpha = BLEND_OP::MIN,
                     .enabled = true},
                    0);
    expectDrawn(blended({.op = BLEND_OP::MAX, .opAlpha = BLEND_OP::MIN}));
}

TEST_F(BlendStates, TargetsHaveSettingsOfTheirOwnOnlyWhenIndependent) {
    Texture& other = makeTarget(FORMAT::R8G8B8A8_UNORM, RENDER_FLAG::COLOR_TARGET, 2, 2);
    into_->addColorTarget({handleOf(other), 1});
    ClearTargetsPass& clear = *into_->addClearTargetsPass(TargetOperations::atEnd);
    clear.setClearColor({0, 0, 0, 0});
    clear.setColorTargetIndex(1);
    BlendState& state = drawInto(twoOutputs());
    state.setWriteMask(COLOR_WRITE_ENABLE::RED, 0);
    state.setTarget({.src = BLEND::ZERO, .dest = BLEND::ONE, .enabled = true}, 1);
    state.setWriteMask(COLOR_WRITE_ENABLE::GREEN, 1);
    const Color redOnly{source[0], target[1], target[2], target[3]};
    expectDrawn(redOnly);
    expectDrawn(other, {second[0], 0, 0, 0});
    state.setIndependentBlend(true);
    expectDrawn(redOnly);
    expectDrawn(other, {0, 0, 0, 0});
    state.setTarget({.writeMask = COLOR_WRITE_ENABLE::GREEN}, 1);
    expectDrawn(redOnly);
    expectDrawn(other, {0, second[1], 0, 0});
    // Two targets leave no room for a second source.
    state.setTarget({.src = BLEND::SRC1_COLOR, .enabled = true}, 1);
    expectDrawn(redOnly);
    EXPECT_EQ(logged("single colour target"), 1U);
}

TEST_F(BlendStates, WriteMasksChooseChannels) {
    BlendState& state = drawInto(colored(text(source)));
    for (std::uint32_t mask = 0; mask < 16; ++mask) {
        SCOPED_TRACE(mask);
        state.setWriteMask(static_cast<COLOR_WRITE_ENABLE>(mask), 0);
        Color expected = target;
        for (std::size_t i = 0; i < 4; ++i)
            if ((mask >> i & 1U) != 0) expected[i] = source[i];
        expectDrawn(expected);
    }
}

TEST_F(BlendStates, WhatATargetOrAProgramCannotDoIsPassedOverInSilence) {
    // Integers do not blend, and are written.
    Texture& ids = makeTarget(FORMAT::R32_UINT, RENDER_FLAG::COLOR_TARGET, 2, 2);
    const Handle<Compositor> into = context_->getCompositor();
    TargetOperations& operations = *makeCompositor(*context_, newName()).addNode()->addOperations();
    operations.addColorTarget({handleOf(ids), 0});
    BlendState& state = blendOf(
            addDraw(operations,
                    meshOf({}),
                    makeShader(newName(), place, "uint main() : SV_TARGET { return 70000; }")));
    state.setTarget({.src = BLEND::SRC_ALPHA, .dest = BLEND::ONE, .enabled = true}, 0);
    state.setAlphaToCoverage(true);
    drawFrame(*context_);
    EXPECT_EQ(System::getInstance()->getRenderer().readTexel(ids, 1, 1).value_or(0), 70000U);
    // Where there is no alpha there is no coverage to take from it.
    BlendState& opaque = drawInto("float3 main() : SV_TARGET { return 1; }");
    opaque.setAlphaToCoverage(true);
    opaque.setWriteMask(static_cast<COLOR_WRITE_ENABLE>(7), 0);
    context_->setCompositor(into);
    expectDrawn({1, 1, 1, target[3]});
    EXPECT_EQ(logged("blend state"), 0U);
}

TEST_F(BlendStates, AlphaToCoverageKeepsOpaquePixels) {
    BlendState& state = drawInto(colored("0.2, 0.4, 0.6, 1"));
    state.setAlphaToCoverage(true);
    expectDrawn({0.2F, 0.4F, 0.6F, 1});
}

} // namespace
} // namespace vlGraphics
