#include "programs/HlslCompiler.h"
#include "programs/ProgramCompiler.h"
#include "vulkan/ProgramGpu.h"

#include <vlGraphics/ChangeCount.h>
#include <vlGraphics/LogManager.h>
#include <vlResources/ResourceManager.h>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <future>
#include <string>
#include <vector>

namespace vlGraphics {
namespace {

using vlMemory::StringView;

tl::expected<std::unique_ptr<Program::Gpu>, ProgramDiagnostic> noGpu(const CompiledProgram&) {
    return std::unique_ptr<Program::Gpu>();
}

/** Stands for the compiler: a source is the number of colour targets, or "bad"; the source "gate"
 *  waits for the gate to open. */
class ProgramCompilerTest : public testing::Test, public vlLog::Logger {
protected:
    ProgramCompilerTest() { LogManager::getInstance().setReceiver(this); }
    ~ProgramCompilerTest() override {
        open();
        LogManager::getInstance().setReceiver(nullptr);
    }

    void log(StringView text) override { lines.emplace_back(text); }

    CompileOutcome compile(const CompileRequest& request) {
        ++compilations;
        const vlMemory::String& source = request.sources.getPixelMemory();
        if (source.starts_with("gate")) opened.wait();
        if (source == "bad")
            return tl::unexpected(ProgramCompilationResult(SHADER_TYPE::PIXEL, "12: 'x' is bad"));
        CompiledProgram compiled;
        compiled.reflection.colorTargetCount =
                source.starts_with("gate") ? 7 : std::uint32_t(source[0] - '0');
        return compiled;
    }

    void open() {
        if (!isOpen) gate.set_value();
        isOpen = true;
    }

    Program& load(StringView name, StringView pixel) {
        Program& program = *manager.createOrRetrieve(name);
        ProgramSourcesHolder sources;
        sources.setPixelMemory(pixel);
        program.setFromMemory(sources);
        EXPECT_TRUE(program.load());
        return program;
    }
    static std::uint32_t targets(const Program& program) {
        return program.getReflection().colorTargetCount;
    }

    std::promise<void> gate;
    std::shared_future<void> opened = gate.get_future().share();
    bool isOpen = false;
    std::atomic<int> compilations = 0;
    std::vector<std::string> lines;
    ProgramManager manager;
    ProgramCompiler compiler{
            1, [this](const CompileRequest& request) { return compile(request); }, noGpu};
};

TEST_F(ProgramCompilerTest, ResultComesIntoUseWhenAdopted) {
    Program& program = load("a", "gate");
    EXPECT_TRUE(program.isCompiling());
    EXPECT_TRUE(manager.isAnyCompiling());
    manager.adoptFinished();
    EXPECT_TRUE(program.isCompiling());
    EXPECT_EQ(program.getBuild(), 0U);
    const std::uint64_t changes = ChangeCount::get();
    open();
    manager.waitForAll();
    EXPECT_GT(ChangeCount::get(), changes);
    EXPECT_FALSE(program.isCompiling());
    EXPECT_FALSE(manager.isAnyCompiling());
    EXPECT_EQ(targets(program), 7U);
    EXPECT_GT(program.getBuild(), 0U);
}

TEST_F(ProgramCompilerTest, NewerSettingsDropTheResultUnderWay) {
    Program& program = load("a", "gate");
    load("a", "2");
    open();
    manager.waitForAll();
    EXPECT_EQ(targets(program), 2U);
    const std::uint64_t build = program.getBuild();
    manager.waitForAll();
    EXPECT_EQ(program.getBuild(), build) << "one result came into use, not two";
}

TEST_F(ProgramCompilerTest, SupersededRequestsThatWaitAreNotCompiled) {
    load("blocker", "gate");
    for (const char* text : {"1", "2", "3"})
        load("a", text);
    const Program& program = load("a", "4");
    open();
    manager.waitForAll();
    EXPECT_EQ(compilations, 2);
    EXPECT_EQ(targets(program), 4U);
}

TEST_F(ProgramCompilerTest, FailureKeepsTheLastGoodResultAndLogsOneLine) {
    Program& program = load("a", "3");
    manager.waitForAll();
    const std::uint64_t build = program.getBuild();
    load("a", "bad");
    manager.waitForAll();
    EXPECT_EQ(targets(program), 3U);
    EXPECT_EQ(program.getBuild(), build);
    EXPECT_FALSE(program.getLastCompilationResult().isSuccess());
    EXPECT_EQ(program.getLastCompilationResult().getStage(), SHADER_TYPE::PIXEL);
    EXPECT_EQ(lines, std::vector<std::string>{"program 'a', pixel stage: 12: 'x' is bad"});
    load("a", "3");
    manager.waitForAll();
    EXPECT_TRUE(program.getLastCompilationResult().isSuccess());
}

TEST_F(ProgramCompilerTest, ErasedProgramAndItsNamesakeGetNothing) {
    load("a", "gate");
    manager.erase("a");
    Program& namesake = *manager.createOrRetrieve("a");
    open();
    manager.waitForAll();
    EXPECT_EQ(namesake.getBuild(), 0U);
    EXPECT_FALSE(namesake.isCompiling());
}

TEST_F(ProgramCompilerTest, RenamedProgramStillGetsItsResult) {
    Program& program = load("a", "gate");
    manager.rename("a", "b");
    open();
    manager.waitForAll();
    EXPECT_EQ(targets(program), 7U);
}

TEST_F(ProgramCompilerTest, UnloadDropsWhatIsUnderWayAndWhatThereIs) {
    Program& program = load("a", "2");
    manager.waitForAll();
    load("a", "gate");
    program.unload();
    open();
    manager.waitForAll();
    EXPECT_EQ(targets(program), 0U);
    EXPECT_FALSE(program.isCompiling());
}

TEST_F(ProgramCompilerTest, EqualRequestsShareOneCompilation) {
    load("blocker", "gate");
    for (int index = 0; index < 500; ++index)
        load(fmt::format("early{}", index), "5");
    open();
    manager.waitForAll();
    for (int index = 0; index < 500; ++index)
        load(fmt::format("late{}", index), "5");
    manager.waitForAll();
    EXPECT_EQ(compilations, 2);
    for (std::size_t index = 1; index < manager.getCount(); ++index) {
        const Program* program = manager.getByIndex(index);
        ASSERT_TRUE(program != nullptr);
        EXPECT_EQ(targets(*program), 5U);
    }
}

TEST_F(ProgramCompilerTest, StagesThatTheTypeLacksDoNotMakeRequestsDiffer) {
    Program& program = load("a", "5");
    manager.waitForAll();
    ProgramSourcesHolder sources = program.getMemory();
    sources.setComputeMemory("other");
    program.setFromMemory(sources);
    ASSERT_TRUE(program.load());
    manager.waitForAll();
    EXPECT_EQ(compilations, 1);
}

TEST_F(ProgramCompilerTest, RemembersABoundedNumberOfResults) {
    for (std::size_t index = 0; index < ProgramCompiler::maxRemembered + 50; ++index)
        load("a", fmt::format("1{}", index));
    manager.waitForAll();
    for (std::size_t index = 0; index < ProgramCompiler::maxRemembered + 50; ++index)
        load(fmt::format("b{}", index), fmt::format("2{}", index));
    manager.waitForAll();
    EXPECT_LE(compiler.rememberedCount(), ProgramCompiler::maxRemembered);
}

TEST_F(ProgramCompilerTest, CompilerMayEndWithCompilationsWaiting) {
    load("a", "1");
    load("b", "2");
    SUCCEED() << "the fixture ends the compiler next";
}

TEST(ProgramCompiler, ProgramWithoutACompilerCannotBeLoaded) {
    ProgramManager manager;
    const auto loaded = manager.createOrRetrieve("a")->load();
    ASSERT_FALSE(loaded);
    EXPECT_EQ(loaded.error().message, "program 'a': the engine does not run");
}

TEST(ProgramCompiler, ChangedIncludedFilesAreSeen) {
    namespace fs = std::filesystem;
    const fs::path root = fs::temp_directory_path() / "vl_program_compiler_includes";
    fs::create_directories(root);
    auto& resources = vlResources::ResourceManager::getInstance();
    const vlMemory::String before = resources.getWorkingPath();
    resources.setWorkingPath(root.string());
    const auto write = [&](StringView text) { std::ofstream(root / "group.hlsl") << text; };
    ProgramManager manager;
    std::atomic<int> compilations = 0;
    const auto compile = [&](const CompileRequest& request) {
        ++compilations;
        return compileHlsl(request);
    };
    ProgramCompiler compiler(1, compile, noGpu);
    Program& program = *manager.createOrRetrieve("p");
    ProgramSourcesHolder sources;
    sources.setComputeMemory("#include \"group.hlsl\"\n[numthreads(SIZE, 1, 1)] void main() {}");
    program.setType(PROGRAM_TYPE::COMPUTE);
    program.setFromMemory(sources);
    const auto sizeAfterLoad = [&] {
        EXPECT_TRUE(program.load());
        manager.waitForAll();
        return program.getLastCompilationResult().isSuccess()
                       ? program.getReflection().threadGroupSize[0]
                       : 0;
    };
    fs::remove(root / "group.hlsl");
    EXPECT_EQ(sizeAfterLoad(), 0U);
    EXPECT_EQ(program.getIncludedFiles(), std::vector<vlMemory::String>{"group.hlsl"});
    write("#define SIZE 4");
    EXPECT_EQ(sizeAfterLoad(), 4U);
    write("#define SIZE 8");
    EXPECT_EQ(sizeAfterLoad(), 8U);
    EXPECT_EQ(sizeAfterLoad(), 8U);
    EXPECT_EQ(compilations, 3) << "nothing had changed the last time";
    if (compilesApart) {
        write("void half_typed(float4 ["); // the compiler breaks down on it
        EXPECT_EQ(sizeAfterLoad(), 0U);
        EXPECT_EQ(program.getIncludedFiles(), std::vector<vlMemory::String>{"group.hlsl"});
        write("#define SIZE 2");
        EXPECT_EQ(sizeAfterLoad(), 2U);
    }
    EXPECT_EQ(program.getIncludedFiles(), std::vector<vlMemory::String>{"group.hlsl"});
    resources.setWorkingPath(before);
    fs::remove_all(root);
}

TEST_F(ProgramCompilerTest, WhoComesLateWaitsForFilesToBeReadAnew) {
    Program& early = load("early", "gate");
    vlMemory::String text = "gate // #include";
    // Both ask for the same; while the first is compiled the files may change.
    load("early", text);
    load("late", text);
    open();
    manager.waitForAll();
    EXPECT_FALSE(early.isCompiling());
    EXPECT_FALSE(manager.isAnyCompiling());
    const Program* late = manager.get("late");
    ASSERT_TRUE(late != nullptr);
    EXPECT_EQ(targets(*late), 7U);
}

TEST(ProgramCompiler, WhatCannotBeBoundIsToldWhenTheResultComesIntoUse) {
    ProgramManager manager;
    ProgramCompiler compiler(1, ProgramCompiler::compileKeptIn(""), noGpu);
    Program& program = *manager.createOrRetrieve("p");
    ProgramSourcesHolder sources;
    sources.setComputeMemory(
            "Texture2D many[] : register(t0); RWBuffer<float> sum : register(u0);\n"
            "[numthreads(1, 1, 1)] void main(uint i : SV_GroupIndex) {\n"
            "sum[0] = many[i][uint2(0, 0)].x; }");
    program.setType(PROGRAM_TYPE::COMPUTE);
    program.setFromMemory(sources);
    ASSERT_TRUE(program.load());
    manager.waitForAll();
    EXPECT_EQ(program.getLastCompilationResult().getStage(), SHADER_TYPE::COMPUTE);
    EXPECT_EQ(program.getLastCompilationResult().getErrorMessage(),
              "3: 'many': an array without a count cannot be bound");
}

TEST(ProgramCompiler, RealCompilationsRunInTheBackground) {
    ProgramManager manager;
    ProgramCompiler compiler(
            2, [](const CompileRequest& request) { return compileHlsl(request); }, noGpu);
    for (int index = 0; index < 20; ++index) {
        Program& program = *manager.createOrRetrieve(fmt::format("p{}", index));
        ProgramSourcesHolder sources;
        sources.setComputeMemory("RWStructuredBuffer<float> data : register(u" +
                                 std::to_string(index) +
                                 ");\n[numthreads(8, 1, 1)] void main() { data[0] = 1; }");
        program.setType(PROGRAM_TYPE::COMPUTE);
        program.setFromMemory(sources);
        ASSERT_TRUE(program.load());
    }
    manager.waitForAll();
    for (std::uint32_t index = 0; index < 20; ++index) {
        const Program* program = manager.getByIndex(index);
        ASSERT_TRUE(program != nullptr && program->getReflection().resources.size() == 1);
        EXPECT_EQ(program->getReflection().resources[0].slot, index);
        EXPECT_EQ(program->getReflection().threadGroupSize[0], 8U);
    }
}

} // namespace
} // namespace vlGraphics
