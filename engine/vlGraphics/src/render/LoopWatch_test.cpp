#include "programs/LoopGuard.h"
#include "render/EngineTest.h"
#include "render/RendererGpu.h"
#include "vulkan/Device.h"

#include <vlGraphics/Buffer.h>

#include <algorithm>
#include <string>
#include <vector>

namespace vlGraphics {
namespace {

constexpr std::string_view red = "float4 main() : SV_TARGET { return float4(1, 0, 0, 1); }";
constexpr std::string_view endless = "float4 main(float4 p : SV_POSITION) : SV_TARGET {\n"
                                     "    float a = p.x;\n"
                                     "    while (true)\n"
                                     "        a += sin(a);\n"
                                     "    return a;\n"
                                     "}";

class LoopWatch : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        if (HasFatalFailure()) return;
        context_ = &makeContext(surface_);
        operations_ = &addBackBuffer(makeCompositor(*context_), {0, 0, 1, 1});
        operations_->addRenderScenePass(TargetOperations::atEnd);
        makeEntity(makeMesh("full", {{-1, 3, 0}, {3, -1, 0}, {-1, -1, 0}}),
                   makeShader("test", place, red),
                   {0, 0, 0, 1});
    }

    static Program& program() { return *ProgramManager::getInstance()->createOrRetrieve("test"); }
    static void load(std::string_view pixel, std::string_view vertex = place) {
        ProgramSourcesHolder sources;
        sources.setVertexMemory(vertex);
        sources.setPixelMemory(pixel);
        load(std::move(sources));
    }
    static void load(ProgramSourcesHolder sources) {
        program().setFromMemory(std::move(sources));
        ASSERT_TRUE(program().load().has_value());
        ProgramManager::getInstance()->waitForAll();
        ASSERT_EQ(program().getLastCompilationResult().getErrorMessage(), "");
    }
    static std::string stopped() {
        return "the loop was stopped: more than " + std::to_string(mostLoopPasses()) + " passes";
    }
    static bool isWatched() {
        const auto& loops = program().gpu()->loops;
        return std::any_of(loops.begin(), loops.end(), [](const auto& of) { return !of.empty(); });
    }
    /// The picture after the frame in which the device may have stopped a program.
    vlImages::Image drawTwice() {
        drawFrame(*context_);
        System::getInstance()->getRenderer().endWork();
        return drawAndRead(*context_);
    }

    static constexpr std::uint32_t side = 128;
    TestSurface surface_{side, side};
    RenderContext* context_ = nullptr;
    TargetOperations* operations_ = nullptr;
};

TEST_F(LoopWatch, LoopsThatEndDrawTheSameWatchedOrNot) {
    const std::vector<std::string> bodies{
            "for (int i = 0; i < n; ++i) { if (i % 3 == 0) continue; a += i; if (a > 900) break; }",
            "int i = n; while (i > 1) { i = i % 2 == 0 ? i / 2 : 3 * i + 1; a += 1; }",
            "int i = 0; do { for (int j = 0; j < i; ++j) a += j; } while (++i < n / 8);",
            "for (;;) { switch (n % 4) { case 0: a += 2; break; case 1: a += 7; if (a < 99) "
            "continue; break; "
            "default: a += 1; } if (a > 200) break; }",
            "a = find(n); for (int i = 0; i < n; i += 2) a += find(i) / n;"};
    for (const std::string& body : bodies) {
        const std::string source =
                "float find(int n) { for (int i = 0; i < n; ++i) { if (i * i > n) return i; } "
                "return 1; }\nfloat4 main(float4 p : SV_POSITION) : SV_TARGET {\n"
                "int n = int(p.x); float a = p.y;\n" +
                body + "\nreturn float4(frac(a / 256), frac(a / 16), frac(a), 1); }";
        program().setBoundLoops(false);
        load(source);
        EXPECT_FALSE(isWatched());
        const vlImages::Image expected = drawTwice();
        program().setBoundLoops(true);
        load(source);
        EXPECT_TRUE(isWatched()) << body;
        const vlImages::Image picture = drawTwice();
        EXPECT_TRUE(program().getLastCompilationResult().isSuccess());
        EXPECT_TRUE(std::equal(picture.pixels.data(),
                               picture.pixels.data() + picture.pixels.size(),
                               expected.pixels.data()))
                << body;
        EXPECT_NE(pixelAt(picture, 3, 100), pixelAt(picture, 97, 5));
    }
}

TEST_F(LoopWatch, LastGoodResultComesBackForAnEndlessOne) {
    EXPECT_EQ(pixelAt(drawTwice(), 5, 5), (Rgba{255, 0, 0, 255}));
    const std::uint64_t build = program().getBuild();
    int told = 0;
    ProgramManager::getInstance()->setCompiledCallback([&](Program&) { ++told; });
    load(endless);
    EXPECT_EQ(pixelAt(drawTwice(), 5, 5), (Rgba{255, 0, 0, 255}));
    drawTwice();
    ProgramManager::getInstance()->setCompiledCallback({});
    EXPECT_EQ(told, 2); // compiled, and stopped once
    EXPECT_GT(program().getBuild(), build);
    const ProgramCompilationResult& result = program().getLastCompilationResult();
    EXPECT_EQ(result.getStage(), SHADER_TYPE::PIXEL);
    EXPECT_EQ(result.getErrorMessage(), "3: " + stopped());
}

TEST_F(LoopWatch, ResultThatWasNeverDrawnIsNotWhatComesBack) {
    drawTwice();
    load(endless);
    load(std::string(endless) + "// again");
    EXPECT_EQ(pixelAt(drawTwice(), 5, 5), (Rgba{255, 0, 0, 255}));
}

TEST_F(LoopWatch, EndlessProgramWithoutEarlierResultIsNotDrawn) {
    program().unload();
    load(endless);
    EXPECT_EQ(pixelAt(drawTwice(), 5, 5), (Rgba{0, 0, 255, 255}));
    EXPECT_FALSE(program().isUsable());
    ASSERT_FALSE(log_.empty());
    EXPECT_EQ(log_.back(), "program 'test', pixel stage: 3: " + stopped());
    load(red);
    EXPECT_EQ(pixelAt(drawTwice(), 5, 5), (Rgba{255, 0, 0, 255}));
}

/// Green, after more passes than a thread may have that is asked to stop.
constexpr std::string_view mended = "float4 main(float4 p : SV_POSITION) : SV_TARGET {\n"
                                    "    float a = 0;\n"
                                    "    for (int i = 0; i < (p.x < 8 ? 6000 : 8); ++i)\n"
                                    "        a += sin(p.y + i);\n"
                                    "    return float4(0, 1, a * 1e-9, 1);\n"
                                    "}";

TEST_F(LoopWatch, MendedLoopDrawsAgainAndTheNextEndlessOneIsStopped) {
    constexpr Rgba green{0, 255, 0, 255};
    drawTwice();
    for (int round = 0; round < 2; ++round) {
        load(endless);
        EXPECT_EQ(pixelAt(drawTwice(), 5, 5), round == 0 ? Rgba({255, 0, 0, 255}) : green);
        EXPECT_EQ(program().getLastCompilationResult().getErrorMessage(), "3: " + stopped());
        load(mended);
        EXPECT_TRUE(isWatched());
        EXPECT_EQ(pixelAt(drawTwice(), 5, 5), green);
        EXPECT_TRUE(program().getLastCompilationResult().isSuccess());
    }
}

TEST_F(LoopWatch, ResultThatComesBackIsNotStoppedForWhatItWasAskedBefore) {
    constexpr Rgba green{0, 255, 0, 255};
    load(mended);
    EXPECT_EQ(pixelAt(drawTwice(), 5, 5), green);
    // A frame that ends as it is asked to stop, while the next result is coming.
    drawFrame(*context_);
    vulkan::Device::getInstance()->waitIdle();
    auto* words = reinterpret_cast<std::uint32_t*>(program().gpu()->loopWords.mapped());
    std::fill_n(words, shaderTypeCount, LoopWords::askedToStop);
    load(endless);
    EXPECT_EQ(pixelAt(drawTwice(), 5, 5), green);
    EXPECT_EQ(pixelAt(drawTwice(), 5, 5), green);
    EXPECT_EQ(program().getLastCompilationResult().getErrorMessage(), "3: " + stopped());
}

TEST_F(LoopWatch, EveryStageAndFormEnds) {
    struct Form {
        std::string_view vertex, pixel;
        std::string_view told;
    };
    const Form forms[] = {
            {place,
             "float4 main(float4 p : SV_POSITION) : SV_TARGET { float a = p.x;\n"
             "while (true) {\nwhile (true) {\n a += sin(a); } } return a; }",
             "3: "},
            {place, "float4 main() : SV_TARGET {\nwhile (true) {} return 1; }", "2: "},
            {place,
             "float f(float x) {\ndo { x *= 0.5; } while (x < 4);\nreturn x; }\n"
             "float4 main(float4 p : SV_POSITION) : SV_TARGET { float a = p.x % 1;\n"
             "for (int i = 0; i < 1000; ++i) a += f(a); return a; }",
             "2: "},
            {"float4 main(float3 p : POSITION) : SV_POSITION { float a = p.x;\n"
             "for (;;) a += sin(a); return float4(p, a); }",
             red,
             "2: "}};
    for (const Form& form : forms) {
        load(red);
        drawTwice();
        load(form.pixel, form.vertex);
        EXPECT_EQ(pixelAt(drawTwice(), 5, 5), (Rgba{255, 0, 0, 255}));
        const ProgramCompilationResult& result = program().getLastCompilationResult();
        EXPECT_EQ(result.getStage(),
                  form.vertex == place ? SHADER_TYPE::PIXEL : SHADER_TYPE::VERTEX);
        EXPECT_EQ(result.getErrorMessage().substr(0, 3), form.told) << form.pixel;
    }
}

TEST_F(LoopWatch, HullAndDomainStagesEnd) {
    const auto sourcesWith = [](std::string_view inFactors, std::string_view inDomain) {
        const std::string patch = "struct Patch { float edges[3] : SV_TessFactor; float inside : "
                                  "SV_InsideTessFactor; "
                                  "}; struct Point { float4 p : CONTROL; };\n";
        ProgramSourcesHolder sources;
        sources.setVertexMemory("float4 main(float3 p : POSITION) : CONTROL { return "
                                "float4(p, 1); }");
        sources.setHullMemory(patch +
                              "Patch factors(InputPatch<Point, 3> patch) { float a = "
                              "patch[0].p.x;\n" +
                              std::string(inFactors) +
                              "\nPatch f; f.edges[0] = 2; f.edges[1] = 2; f.edges[2] = 2; "
                              "f.inside = 2 + min(a, 0.1); return f; }\n"
                              "[domain(\"tri\")] [partitioning(\"integer\")] "
                              "[outputtopology(\"triangle_cw\")] [outputcontrolpoints(3)] "
                              "[patchconstantfunc(\"factors\")] Point main(InputPatch<Point, 3> "
                              "patch, uint i : SV_OutputControlPointID) { return patch[i]; }");
        sources.setDomainMemory(
                patch +
                "[domain(\"tri\")] float4 main(Patch f, float3 at : SV_DomainLocation, const "
                "OutputPatch<Point, 3> patch) : SV_POSITION { float a = at.x;\n" +
                std::string(inDomain) +
                "\nreturn patch[0].p * at.x + patch[1].p * at.y + patch[2].p * at.z + a * 0; }");
        sources.setPixelMemory(red);
        return sources;
    };
    drawTwice();
    for (const SHADER_TYPE stage : {SHADER_TYPE::HULL, SHADER_TYPE::DOMAIN_STAGE}) {
        constexpr std::string_view loop = "while (a < 7) a *= 0.5;";
        const bool inHull = stage == SHADER_TYPE::HULL;
        load(sourcesWith(inHull ? loop : "", inHull ? "" : loop));
        EXPECT_EQ(pixelAt(drawTwice(), 5, 5), (Rgba{255, 0, 0, 255}));
        EXPECT_EQ(program().getLastCompilationResult().getStage(), stage);
        EXPECT_EQ(program().getLastCompilationResult().getErrorMessage(), "3: " + stopped());
    }
}

TEST_F(LoopWatch, LoopsOfAFrameThatTakesTooLongAreStopped) {
    drawTwice();
    Renderer::Gpu& renderer = System::getInstance()->getRenderer().gpu();
    vulkan::Device::getInstance()->setPatience(100, [&] { renderer.loops.askToStop(); });
    // Far below the bound of one pixel, and minutes for all of them.
    load("float4 main(float4 p : SV_POSITION) : SV_TARGET { float a = p.x;\n"
         "for (int i = 0; i < 40000; ++i) a += sin(a);\nreturn a; }");
    context_->resize(512, 512);
    ASSERT_TRUE(context_->apply().has_value());
    EXPECT_EQ(pixelAt(drawTwice(), 5, 5), (Rgba{255, 0, 0, 255}));
    EXPECT_EQ(program().getLastCompilationResult().getErrorMessage(),
              "2: the loop was stopped: its frame took too long");
}

const std::vector<vlMaths::Vector> behind{{-1, 3, 0.5F}, {3, -1, 0.5F}, {-1, -1, 0.5F}};

TEST_F(LoopWatch, HiddenPixelsDoNotRun) {
    const Shader& hidden = makeShader("hidden", place, endless);
    addDraw(*operations_, makeMesh("behind", behind), hidden);
    EXPECT_EQ(pixelAt(drawTwice(), 5, 5), (Rgba{255, 0, 0, 255}));
    EXPECT_TRUE(hidden.getProgram()->getLastCompilationResult().isSuccess());
    program().unload();
    drawTwice();
    EXPECT_EQ(hidden.getProgram()->getLastCompilationResult().getErrorMessage(), "3: " + stopped());
}

TEST_F(LoopWatch, HiddenPixelsThatWriteRunAllTheSame) {
    Buffer& marks = *BufferManager::getInstance()->createOrRetrieve("marks");
    marks.setElementByteSize(4);
    marks.setElementCount(1);
    ASSERT_TRUE(marks.load().has_value());
    const auto handle = BufferManager::getInstance()->handleOf("marks");
    ShaderManager::getInstance()->get("test")->addTexture(handle, 0, 0);
    load("StructuredBuffer<float> marks : register(t0);"
         "float4 main() : SV_TARGET { return float4(marks[0], 0, 0, 1); }");
    Shader& hidden = makeShader("hidden",
                                place,
                                "RWStructuredBuffer<float> marks : register(u0);"
                                "float4 main(float4 p : SV_POSITION) : SV_TARGET { float a = 1;"
                                "for (int i = 0; i < int(p.x); ++i) a += sin(p.y + i);"
                                "marks[0] = 1; return a; }");
    hidden.addUavBuffer(handle, 0, 0);
    addDraw(*operations_, makeMesh("behind", behind), hidden);
    EXPECT_EQ(pixelAt(drawTwice(), 5, 5), (Rgba{255, 0, 0, 255}));
}

TEST_F(LoopWatch, PixelsThatLeaveTheirPlaceToOthersHideNothing) {
    addDraw(*operations_, makeMesh("behind", behind), makeShader("behind", place, red));
    BlendState& blend = *BlendStateManager::getInstance()->createOrRetrieve("coverage");
    const auto handle = BlendStateManager::getInstance()->handleOf("coverage");
    static_cast<RenderScenePass*>(operations_->getPass(1))->setBlendState(handle);
    const std::string looping = "float a = 0; for (int i = 0; i < int(p.x); ++i) a += sin(p.y + i);"
                                "const float kept = p.x < 64 ? a * 1e-9 : 1 + a * 1e-9;";
    struct Case {
        const char* outputs;
        const char* body;
        bool alphaToCoverage;
    };
    const Case cases[] = {{"float4 color : SV_TARGET;",
                           "if (kept < 0.5) discard; o.color = float4(0, 1, 0, 1);",
                           false},
                          {"float4 color : SV_TARGET; float depth : SV_DEPTH;",
                           "o.color = float4(0, 1, 0, 1); o.depth = kept < 0.5 ? 0.9 : 0.1;",
                           false},
                          {"float4 color : SV_TARGET;", "o.color = float4(0, 1, 0, kept);", true}};
    for (const Case& one : cases) {
        SCOPED_TRACE(one.body);
        blend.setAlphaToCoverage(one.alphaToCoverage);
        load("struct Out { " + std::string(one.outputs) +
             " }; Out main(float4 p : SV_POSITION) { Out o;" + looping + one.body + " return o; }");
        EXPECT_TRUE(isWatched());
        const vlImages::Image picture = drawTwice();
        EXPECT_EQ(pixelAt(picture, 5, 5), (Rgba{255, 0, 0, 255}));
        EXPECT_EQ(pixelAt(picture, 100, 5), (Rgba{0, 255, 0, 255}));
    }
}

} // namespace
} // namespace vlGraphics
