#include "resources/EnumTexts.h"
#include "resources/TestManagers.h"

#include <vlGraphics/ComparisonFunctionUtils.h>
#include <vlGraphics/FilterUtils.h>
#include <vlGraphics/StructToString.h>
#include <vlGraphics/TextureAddressModeUtils.h>

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace vlGraphics {
namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

TEST(RasterState, EqualAndImpossibleValuesChangeNothing) {
    RasterState state;
    const std::uint64_t before = state.getRevision();
    state.setCullMode(state.getCullMode());
    state.setCullMode(static_cast<CULL_MODE>(77));
    state.setDepthBiasClamp(notANumber);
    state.setSlopeScaledDepthBias(infinite);
    EXPECT_EQ(state.getRevision(), before);
    EXPECT_EQ(state.getSettings(), RasterState::Settings());
    const std::uint64_t pictures = ChangeCount::get();
    state.setCullMode(CULL_MODE::FRONT);
    EXPECT_GT(state.getRevision(), before);
    EXPECT_GT(ChangeCount::get(), pictures);
}

TEST(DepthStencilState, ImpossibleValuesAmongOthersAreLeftOut) {
    DepthStencilState state;
    DepthStencilState::Settings settings;
    settings.depthFunction = static_cast<COMPARISON_FUNCTION>(0);
    settings.depthWriteMask = static_cast<DEPTH_WRITE_MASK>(2);
    settings.front.pass = static_cast<STENCIL_OP>(9);
    settings.back.function = static_cast<COMPARISON_FUNCTION>(4294967295U);
    settings.back.fail = STENCIL_OP::DECR;
    state.setSettings(settings);
    DepthStencilState::Settings expected;
    expected.back.fail = STENCIL_OP::DECR;
    EXPECT_EQ(state.getSettings(), expected);
}

TEST(BlendState, IgnoresNumbersThatAreNoFactorAndNoOperation) {
    BlendState state;
    for (const std::uint32_t number : {0U, 12U, 13U, 20U, 4294967295U})
        for (std::uint32_t target = 0; target < BlendState::targetCount; ++target) {
            const auto factor = static_cast<BLEND>(number);
            const auto op = static_cast<BLEND_OP>(number);
            state.setTarget({factor, factor, op, factor, factor, op}, target);
        }
    EXPECT_EQ(state.getRevision(), BlendState().getRevision());
}

TEST(BlendState, IgnoresTargetsPastTheLastAndReadsThemAsTheFirst) {
    BlendState state;
    state.setSrcBlend(BLEND::SRC_ALPHA, 7);
    state.setSrcBlend(BLEND::DEST_COLOR, 8);
    state.setWriteMask(static_cast<COLOR_WRITE_ENABLE>(16), 0);
    EXPECT_EQ(state.getSrcBlend(7), BLEND::SRC_ALPHA);
    EXPECT_EQ(state.getSrcBlend(8), BLEND::ONE);
    EXPECT_EQ(state.getWriteMask(0), COLOR_WRITE_ENABLE::ALL);
}

TEST(Sampler, KeepsItsRanges) {
    Sampler sampler;
    sampler.setAnisotropy(0);
    EXPECT_EQ(sampler.getAnisotropy(), 1U);
    sampler.setAnisotropy(64);
    EXPECT_EQ(sampler.getAnisotropy(), 16U);
    sampler.setLodRange(2, 1);
    sampler.setLodRange(notANumber, 1);
    EXPECT_EQ(sampler.getMinLod(), 0);
    EXPECT_EQ(sampler.getMaxLod(), 1000);
    sampler.setLodBias(infinite);
    sampler.setFilter(static_cast<FILTER>(0x54));
    sampler.setAddressModeV(static_cast<TEXTURE_ADDRESS_MODE>(0));
    sampler.setComparisonFunc(static_cast<COMPARISON_FUNCTION>(9));
    EXPECT_EQ(sampler.getLodBias(), 0);
    EXPECT_EQ(sampler.getFilter(), FILTER::MIN_MAG_MIP_LINEAR);
    EXPECT_EQ(sampler.getAddressModeV(), TEXTURE_ADDRESS_MODE::WRAP);
    EXPECT_EQ(sampler.getComparisonFunc(), COMPARISON_FUNCTION::NEVER);
    sampler.setBorderColor(0, 0, infinite, 0);
    EXPECT_EQ(sampler.getSettings().borderColor[2], 0);
    EXPECT_TRUE(sampler.setComparisonFuncFromString("LESS_EQUAL"));
    EXPECT_FALSE(sampler.setComparisonFuncFromString("less"));
    EXPECT_EQ(sampler.getComparisonFunc(), COMPARISON_FUNCTION::LESS_EQUAL);
}

TEST(Viewport, RefusesWhatLiesOutsideOrIsNoNumber) {
    Viewport viewport;
    EXPECT_FALSE(viewport.setArea({.x = -0.1F}));
    EXPECT_FALSE(viewport.setArea({.width = notANumber}));
    EXPECT_EQ(viewport.getArea(), Viewport::Area());
    EXPECT_TRUE(viewport.setArea({.x = 0.5F, .width = 0.5F}));
}

template <class Enum> void expectOneTextAValue() {
    std::set<vlMemory::StringView> texts;
    std::set<Enum> values;
    for (const auto& [value, text] : EnumTexts<Enum>::table) {
        EXPECT_TRUE(texts.insert(text).second) << text;
        EXPECT_TRUE(values.insert(value).second) << text;
        EXPECT_EQ(enumText(value), text);
        EXPECT_EQ(enumValue<Enum>(text), value);
    }
}

TEST(EnumTexts, EachValueAndEachTextStandsOnceInItsTable) {
    expectOneTextAValue<FORMAT>();
    expectOneTextAValue<BLEND>();
    expectOneTextAValue<BLEND_OP>();
    expectOneTextAValue<COLOR_WRITE_ENABLE>();
    expectOneTextAValue<FILL_MODE>();
    expectOneTextAValue<CULL_MODE>();
    expectOneTextAValue<COMPARISON_FUNCTION>();
    expectOneTextAValue<DEPTH_WRITE_MASK>();
    expectOneTextAValue<STENCIL_OP>();
    expectOneTextAValue<TEXTURE_ADDRESS_MODE>();
    expectOneTextAValue<FILTER>();
    expectOneTextAValue<PRIMITIVE_TOPOLOGY>();
    expectOneTextAValue<RENDER_FLAG>();
    expectOneTextAValue<SHADER_TYPE>();
    expectOneTextAValue<PROGRAM_TYPE>();
    expectOneTextAValue<PASS_TYPE>();
    expectOneTextAValue<PASS_SLOT_TYPE>();
    EXPECT_EQ(EnumTexts<COLOR_WRITE_ENABLE>::table.size(), 16U);
}

TEST(StructToString, WalksAnEnumerationToItsEnd) {
    std::uint32_t count = 0;
    while (StructToString::getWriteMaskFromIndex(count) != 4294967295U)
        ++count;
    EXPECT_EQ(count, 16U);
    EXPECT_EQ(StructToString::getBlendFromIndex(4), 5U);
    EXPECT_EQ(StructToString::getBlendString(5), "SRC_ALPHA");
    EXPECT_EQ(StructToString::getBlendString(12), "UNKNOWN");
    EXPECT_EQ(StructToString::getShaderTypeString(2), "DOMAIN");
    EXPECT_EQ(FilterUtils::fromString(FilterUtils::toString(0x15)), 0x15U);
    EXPECT_EQ(TextureAddressModeUtils::fromString("SIDEWAYS"), 4294967295U);
    EXPECT_EQ(ComparisonFunctionUtils::fromIndex(8), 4294967295U);
}

} // namespace
} // namespace vlGraphics
