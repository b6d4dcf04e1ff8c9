#include "programs/BindingModel.h"
#include "render/EngineTest.h"
#include "vulkan/Device.h"
#include "vulkan/ProgramGpu.h"

#include <fmt/format.h>

namespace vlGraphics {
namespace {

class ProgramAddresses : public EngineTest {
protected:
    static std::string errorFor(RESOURCE_CLASS kind, std::uint32_t slot, std::uint32_t space) {
        CompiledProgram program;
        ReflectedResource& resource = program.reflection.resources.emplace_back();
        resource.name = "thing";
        resource.resourceClass = kind;
        resource.slot = slot;
        resource.space = space;
        const auto made = makeProgramGpu(program);
        return made ? "" : made.error().text;
    }
};

TEST_F(ProgramAddresses, LastRegisterAndSpaceFitAndTheNextAreNamed) {
    EXPECT_EQ(errorFor(RESOURCE_CLASS::TEXTURE, 127, 7), "");
    EXPECT_EQ(errorFor(RESOURCE_CLASS::TEXTURE, 128, 0),
              "'thing': register t128 lies beyond the last, t127");
    EXPECT_EQ(errorFor(RESOURCE_CLASS::SAMPLER, 0, 8),
              "'thing': space8 lies beyond the last, space7");
}

TEST_F(ProgramAddresses, WhatLiesBeyondTheDevicesIsToldWhereItStands) {
    CompiledProgram program;
    ReflectedResource& resource = program.reflection.resources.emplace_back();
    resource.name = "thing";
    resource.slot = BindingModel::registersPerClass;
    resource.stageMask = 16;
    resource.file = "shared.hlsl";
    resource.line = 7;
    const auto made = makeProgramGpu(program);
    ASSERT_FALSE(made.has_value());
    EXPECT_EQ(made.error(),
              (ProgramDiagnostic{SHADER_TYPE::PIXEL,
                                 "shared.hlsl",
                                 7,
                                 "'thing': register b128 lies beyond the last, b127"}));
}

TEST_F(ProgramAddresses, AStageHasNoMoreResourcesThanTheDeviceTakes) {
    const std::uint32_t most = vulkan::Device::getInstance()->limits().maxPerStageResources;
    CompiledProgram program;
    program.reflection.colorTargetCount = most;
    ReflectedResource& resource = program.reflection.resources.emplace_back();
    resource.stageMask = 17;
    resource.byteSize = 64;
    const auto made = makeProgramGpu(program);
    ASSERT_FALSE(made.has_value());
    EXPECT_EQ(made.error().stage, SHADER_TYPE::PIXEL);
    EXPECT_EQ(made.error().text,
              fmt::format("It has {} textures, buffers and targets in one stage, where the device "
                          "has {} at most",
                          std::uint64_t{most} + 1,
                          most));
}

TEST_F(ProgramAddresses, SpacesBetweenMayBeEmpty) {
    CompiledProgram program;
    ReflectedResource& resource = program.reflection.resources.emplace_back();
    resource.slot = 3;
    resource.space = 5;
    resource.byteSize = 64;
    resource.stageMask = 17;
    const auto made = makeProgramGpu(program);
    ASSERT_TRUE(made.has_value()) << made.error().text;
    ASSERT_EQ((*made)->sets.size(), 6U);
    EXPECT_TRUE((*made)->sets[4].bindings.empty());
    EXPECT_EQ((*made)->sets[5].bindings.at(0).binding, 3U);
}

TEST_F(ProgramAddresses, GroupsBeyondTheDevicesAreALine) {
    CompiledProgram program;
    // Looked at before the words are, so that a head without instructions will do.
    program.spirv[static_cast<std::size_t>(SHADER_TYPE::COMPUTE)] = {0, 0, 0, 0, 0};
    program.reflection.threadGroupSize = {1, 1, 4294967295U};
    const auto made = makeProgramGpu(program);
    ASSERT_FALSE(made.has_value());
    EXPECT_EQ(made.error().text.find("A group has 4294967295 threads along Z, where the device"),
              0U)
            << made.error().text;
}

} // namespace
} // namespace vlGraphics
