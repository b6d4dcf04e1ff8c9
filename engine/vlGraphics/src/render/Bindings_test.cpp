#include "render/RendererGpu.h"
#include "render/ShaderTest.h"

#include <cstdlib>

namespace vlGraphics {
namespace {

class Bindings : public ShaderTest {
protected:
    /// A buffer at u0, filled by a compute pass with the expression of `i`, before anything else.
    Handle<Buffer> filled(const std::string& type,
                          const std::string& expression,
                          std::uint32_t elementByteSize,
                          std::uint32_t elementCount = texels) {
        const std::string name = newName();
        const Handle<Buffer> buffer = makeBuffer(name, elementByteSize, elementCount);
        Shader& shader = makeCompute("RWStructuredBuffer<" + type +
                                     "> to : register(u0);"
                                     "[numthreads(32, 1, 1)]"
                                     "void main(uint i : SV_GroupIndex) { to[i] = " +
                                     expression + "; }");
        shader.addUavBuffer(buffer, 0, 0);
        addDispatch(shader);
        return buffer;
    }
};

TEST_F(Bindings, BuffersOfEveryKindAreReadAsTheyWereWritten) {
    const Handle<Buffer> vectors = filled("float4", "float4(i, i * 2, 0.5, -1.0)", 16);
    const Handle<Buffer> words = filled("uint", "i * 3", 4);
    struct Case {
        const char* declaration;
        const char* expression;
        Handle<Buffer> buffer;
        float expected; ///< of texel 7
    };
    const Case cases[] = {
            {"StructuredBuffer<float4> b", "b[i].y", vectors, 14},
            {"struct Pair { float2 a; float b; float c; }; StructuredBuffer<Pair> b",
             "b[i].a.x + b[i].b",
             vectors,
             7.5F},
            {"ByteAddressBuffer b", "asfloat(b.Load(i * 16 + 8))", vectors, 0.5F},
            {"ByteAddressBuffer b", "b.Load2(i * 4).y", words, 24},
            {"Buffer<float4> b", "b[i].y", vectors, 14},
            {"Buffer<uint> b", "b[i]", words, 21},
            {"Buffer<int> b", "b.Load(i)", words, 21},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.declaration);
        Shader& shader = makeReader(std::string(one.declaration) + " : register(t3, space1);",
                                    std::string("float4(") + one.expression + ", 0, 0, 1)");
        ASSERT_TRUE(shader.addTexture(one.buffer, 3, 1));
        const std::uint32_t added = operations_->getPassCount();
        addDraw(shader);
        EXPECT_EQ(drawNumbers()[7][0], one.expected);
        operations_->erasePass(added);
    }
}

TEST_F(Bindings, EveryStageWritesAndTheNextPassReads) {
    const Handle<Buffer> buffer = makeBuffer("chain", 4, texels);
    // Pixels, then threads, then vertices: each adds what no other could have.
    Shader& pixels = makeReader("RWStructuredBuffer<uint> b : register(u1);"
                                "float4 put(int i) { b[i] += 1; return 0; }",
                                "put(i)");
    pixels.addUavBuffer(buffer, 1, 0);
    Shader& threads = makeCompute("RWByteAddressBuffer b : register(u2, space1);"
                                  "[numthreads(8, 1, 1)] void main(uint3 id : SV_DispatchThreadID)"
                                  "{ b.Store(id.x * 4, b.Load(id.x * 4) * 10); }");
    threads.addUavBuffer(buffer, 2, 1);
    Shader& vertices =
            makeProgram({{SHADER_TYPE::VERTEX,
                          "RWStructuredBuffer<uint> b : register(u0);"
                          "float4 main(float3 p : POSITION, uint id : SV_VertexID) : SV_POSITION"
                          "{ if (id == 0) for (uint i = 0; i < 32; ++i) b[i] += 3;"
                          "  return float4(p, 1); }"},
                         {SHADER_TYPE::PIXEL, "float4 main() : SV_TARGET { return 0; }"}});
    vertices.addUavBuffer(buffer, 0, 0);
    Shader& read = makeReader("StructuredBuffer<uint> b : register(t0);", "b[i]");
    read.addTexture(buffer, 0, 0);

    addDraw(pixels);
    addDispatch(threads).setX(texels / 8);
    addDraw(vertices);
    addDispatch(threads).setX(texels / 8);
    addDraw(read);
    for (const float expected : {130.0F, 13130.0F, 1313130.0F}) {
        const Numbers numbers = drawNumbers();
        for (const std::array<float, 4>& texel : numbers)
            ASSERT_EQ(texel[0], expected);
    }
}

TEST_F(Bindings, DrawsOfAPassWaitForThoseAloneWithWhichTheyShareWhatIsWritten) {
    const Handle<Buffer> first = makeBuffer("first", 4, texels);
    const Handle<Buffer> second = makeBuffer("second", 4, texels);
    const auto adding = [](Handle<Buffer> buffer, const std::string& number) -> Shader& {
        Shader& shader = makeReader("RWStructuredBuffer<float> b : register(u0);"
                                    "float add(int i) { b[i] += " +
                                            number + "; return 0; }",
                                    "add(i)");
        shader.addUavBuffer(buffer, 0, 0);
        return shader;
    };
    Shader& read = makeReader("StructuredBuffer<float> a : register(t0);"
                              "StructuredBuffer<float> b : register(t1);",
                              "float4(a[31 - i], b[31 - i], 0, 1)");
    read.addTexture(first, 0, 0);
    read.addTexture(second, 1, 0);
    RenderQueue& queue = *RenderQueueManager::getInstance()->resolve(
            addDraw(adding(first, "1")).getRenderQueue());
    queue.getRenderStrategy().setOrderQueue(false);
    const auto barriers = [this] {
        const render::AccessOrder& order = System::getInstance()->getRenderer().gpu().accessOrder;
        const std::uint64_t before = order.barrierCount();
        drawNumbers();
        return order.barrierCount() - before;
    };
    // Only the frame before, from the second on.
    addEntity(queue, fullMesh(), adding(second, "10"));
    EXPECT_EQ(barriers(), 0U);
    EXPECT_EQ(barriers(), 1U);
    // One for both that are read, and none between those who read.
    addEntity(queue, fullMesh(), read);
    addEntity(queue, makeMesh("half", {{-1, 3, 0.5F}, {1, -1, 0.5F}, {-1, -1, 0.5F}}), read);
    EXPECT_EQ(barriers(), 2U);
    // What has been read is written again.
    addEntity(queue, fullMesh(), adding(first, "100"));
    EXPECT_EQ(barriers(), 3U);
    addEntity(queue, fullMesh(), read);
    for (const std::array<float, 4>& texel : drawNumbers())
        EXPECT_EQ(texel, (std::array<float, 4>{205, 50, 0, 1}));
}

TEST_F(Bindings, VerticesStandWhereThreadsPutThem) {
    const Handle<Buffer> places =
            filled("float4", "float4(i == 1 ? 3 : -1, i == 0 ? 3 : -1, 0, 1)", 16, 3);
    Shader& shader = makeProgram(
            {{SHADER_TYPE::VERTEX,
              "StructuredBuffer<float4> places : register(t0);"
              "float4 main(uint id : SV_VertexID) : SV_POSITION { return places[id]; }"},
             {SHADER_TYPE::PIXEL, "float4 main() : SV_TARGET { return 5; }"}});
    shader.addTexture(places, 0, 0);
    addDraw(shader);
    EXPECT_EQ(drawNumbers()[20][0], 5);
}

TEST_F(Bindings, FourClassesOfRegistersInTwoSpacesAtOnce) {
    std::string declarations;
    std::string sum;
    Handle<Buffer> buffers[2];
    for (int space = 0; space < 2; ++space) {
        const std::string at = std::to_string(space);
        const auto address = [&](const char* letter) {
            return std::string(" : register(") + letter + "5, space" + at + ")";
        };
        declarations += "cbuffer C" + at + address("b") + " { float4 c" + at + "; };" +
                        "StructuredBuffer<float> t" + at + address("t") + ";" + "SamplerState s" +
                        at + address("s") + ";" + "Texture2D x" + at + " : register(t6, space" +
                        at + ");" + "RWStructuredBuffer<float> u" + at + address("u") + ";";
        sum += (space == 0 ? "float4(" : ", ") + std::string("c") + at + ".x + t" + at + "[i] + u" +
               at + "[i] + 0 * x" + at + ".SampleLevel(s" + at + ", 0.5, 0).x";
        buffers[space] = filled("float", "i * " + std::to_string(space + 1), 4);
    }
    Shader& shader = makeReader(declarations, sum + ", 0, 1)");
    for (std::uint32_t space = 0; space < 2; ++space) {
        shader.addConstantBuffer(5, space)->addPassMemorySlot()->setFromVector(
                100.0F * static_cast<float>(space + 1), 0, 0, 0);
        shader.addTexture(buffers[space], 5, space);
        shader.addUavBuffer(buffers[1 - space], 5, space);
    }
    addDraw(shader);
    const Numbers numbers = drawNumbers();
    EXPECT_EQ(numbers[4], (std::array<float, 4>{112, 212, 0, 1}));
}

TEST_F(Bindings, ArraysTakeARegisterForEachElement) {
    Handle<Texture> pictures[2];
    for (std::size_t i = 0; i < 2; ++i) {
        vlImages::Image image(1, 1, vlImages::PixelFormat::rgba8);
        const std::array<std::uint8_t, 4> texel{
                i == 0 ? std::uint8_t{255} : std::uint8_t{0}, 255, 0, 255};
        std::memcpy(image.pixels.data(), texel.data(), texel.size());
        Texture& texture = *TextureManager::getInstance()->createOrRetrieve(newName());
        texture.setImage(std::move(image));
        ASSERT_TRUE(texture.load().has_value());
        pictures[i] = handleOf(texture);
    }
    const Handle<Buffer> ones = filled("float", "1", 4);
    const Handle<Buffer> twos = filled("float", "2", 4);
    Shader& shader = makeReader("Texture2D pictures[3] : register(t2);"
                                "Buffer<float4> numbers[2] : register(t8);",
                                "float4(pictures[0].Load(0).r, pictures[1].Load(0).r,"
                                "       numbers[0].Load(i).x, numbers[1].Load(i).x)");
    shader.addTexture(pictures[0], 2, 0);
    shader.addTexture(pictures[1], 3, 0);
    shader.addTexture(ones, 8, 0);
    shader.addTexture(twos, 9, 0);
    addDraw(shader);
    EXPECT_EQ(drawNumbers()[3], (std::array<float, 4>{1, 0, 1, 2}));
}

/// A way to read or write each kind of resource there is; each reads zeros of what stands in.
struct Kind {
    char letter;
    const char* declaration; ///< `r`
    const char* expression;  ///< of `i`
    float standIn = 0;
};

const Kind kinds[] = {
        {'t', "Texture1D r", "r.Load(int2(0, 0)).x"},
        {'t', "Texture1DArray<float4> r", "r.Load(int3(0, 0, 0)).x"},
        {'t', "Texture2D<uint4> r", "r.Load(int3(0, 0, 0)).x"},
        {'t', "Texture2D<int4> r", "r.Load(int3(0, 0, 0)).x"},
        {'t', "Texture2DArray r", "r.Load(int4(0, 0, 0, 0)).x"},
        {'t', "Texture2DMS<float4> r", "r.Load(int2(0, 0), 1).x"},
        {'t', "Texture2DMSArray<float4> r", "r.Load(int3(0, 0, 0), 1).x"},
        {'t', "Texture3D<float4> r", "r.Load(int4(0, 0, 0, 0)).x"},
        {'t', "SamplerState s; TextureCube r", "r.SampleLevel(s, float3(0, 1, 0), 0).x"},
        {'t', "SamplerState s; TextureCubeArray r", "r.SampleLevel(s, float4(0, 1, 0, 0), 0).x"},
        {'t',
         "SamplerComparisonState s; Texture2D r",
         "r.SampleCmpLevelZero(s, float2(0.5, 0.5), 0.5)",
         1},
        {'t',
         "SamplerComparisonState s; TextureCube r",
         "r.SampleCmpLevelZero(s, float3(0, 1, 0), 0.5)",
         1},
        {'t', "Buffer<float4> r", "r[i].x"},
        {'t', "Buffer<uint> r", "r[i]"},
        {'t', "StructuredBuffer<float4> r", "r[i].x"},
        {'t', "ByteAddressBuffer r", "r.Load(i * 4)"},
        {'t', "Texture2D<uint4> r[3]", "r[i % 2].Load(int3(0, 0, 0)).x"},
        {'u', "RWTexture1D<float> r", "(r[i] = 1, 0)"},
        {'u', "RWTexture2D<float4> r", "(r[int2(i, 0)] = 1, 0)"},
        {'u', "RWTexture2D<uint> r", "(r[int2(i, 0)] = 1, 0)"},
        {'u', "RWTexture2DArray<float4> r", "(r[int3(i, 0, 0)] = 1, 0)"},
        {'u', "RWTexture3D<float4> r", "(r[int3(i, 0, 0)] = 1, 0)"},
        {'u', "RWBuffer<float4> r", "(r[i] = 1, 0)"},
        {'u', "RWBuffer<uint> r", "(r[i] = 1, 0)"},
        {'u', "RWStructuredBuffer<float4> r", "(r[i] = 1, 0)"},
        {'u', "RWByteAddressBuffer r", "(r.Store(i * 4, 1), 0)"},
};

/// What a person may bind, whether it fits or not.
std::vector<ShaderResource> anything() {
    std::vector<ShaderResource> all{Handle<Texture>{}, Handle<Buffer>{}, Handle<RenderQueue>{}};
    for (const char* name : {"numbers", "depth", "ids", "unloaded"})
        all.emplace_back(TextureManager::getInstance()->handleOf(name));
    for (const char* name : {"short", "odd", "long", "unloaded", "gone"})
        all.emplace_back(BufferManager::getInstance()->handleOf(name));
    all.emplace_back(
            RenderQueueManager::getInstance()->handleOf(RenderQueueManager::DEFAULT_RENDER_QUEUE));
    return all;
}

TEST_F(Bindings, AnythingBoundToAnythingDraws) {
    makeTarget("depth", FORMAT::D32_FLOAT, RENDER_FLAG::DEPTH_TARGET);
    makeTarget("ids", FORMAT::R32_UINT, RENDER_FLAG::COLOR_TARGET);
    TextureManager::getInstance()->createOrRetrieve("unloaded");
    makeBuffer("short", 4, 1);
    makeBuffer("odd", 7, 3);
    makeBuffer("long", 16, 4096);
    makeBuffer("unloaded", 0, 0);
    makeBuffer("gone", 16, 16);
    const std::vector<ShaderResource> resources = anything();
    BufferManager::getInstance()->erase("gone");
    for (const Kind& kind : kinds) {
        SCOPED_TRACE(kind.declaration);
        const std::string declaration =
                std::string(kind.declaration) + " : register(" + kind.letter + "2);";
        Shader& drawn =
                makeReader(declaration, std::string("float4(") + kind.expression + ", 0, 0, 1)");
        Shader& computed = makeCompute(declaration +
                                       "RWStructuredBuffer<float> sink : register(u7);"
                                       "[numthreads(32, 1, 1)] void main(uint i : SV_GroupIndex)"
                                       "{ sink[i] = " +
                                       kind.expression + "; }");
        const std::uint32_t first = operations_->getPassCount();
        addDispatch(computed);
        addDraw(drawn);
        EXPECT_EQ(drawNumbers()[9], (std::array<float, 4>{kind.standIn, 0, 0, 1}));
        for (const ShaderResource& resource : resources) {
            for (Shader* shader : {&drawn, &computed}) {
                shader->forgetTexture(2, 0);
                shader->forgetUavBuffer(2, 0);
                shader->addTexture(resource, 2, 0);
                if (const auto* buffer = std::get_if<Handle<Buffer>>(&resource))
                    shader->addUavBuffer(*buffer, 2, 0);
            }
            EXPECT_EQ(drawNumbers()[9][3], 1);
        }
        operations_->erasePass(first);
        operations_->erasePass(first);
    }
}

TEST_F(Bindings, BeyondTheEndNothingIsReadOrWritten) {
    const Handle<Buffer> buffer = makeBuffer("short", 4, 4);
    const Handle<Buffer> neighbour = makeBuffer("neighbour", 4, 1024);
    // The same buffer is read and written, and far too much of it.
    Shader& writer = makeReader("RWStructuredBuffer<float> to : register(u0);"
                                "StructuredBuffer<float> from : register(t0);"
                                "float put(int i) { to[i * 100] = 7; return from[i * 1000 + 4]; }",
                                "put(i)");
    writer.addUavBuffer(buffer, 0, 0);
    writer.addTexture(buffer, 0, 0);
    addDraw(writer);
    const Numbers beyond = drawNumbers();
    for (const std::array<float, 4>& texel : beyond)
        EXPECT_EQ(texel[0], 0);
    Shader& reader = makeReader("StructuredBuffer<float> a : register(t0);"
                                "StructuredBuffer<float> b : register(t1);",
                                "float4(a[0], a[1], b[i * 32], 1)");
    reader.addTexture(buffer, 0, 0);
    reader.addTexture(neighbour, 1, 0);
    addDraw(reader);
    for (const std::array<float, 4>& texel : drawNumbers())
        EXPECT_EQ(texel, (std::array<float, 4>{7, 0, 0, 1}));
}

TEST_F(Bindings, WhatNobodyReadsIsLostFromPassToPass) {
    // Without a buffer each pass begins with zeros, whatever another one wrote.
    Shader& shader = makeReader("RWStructuredBuffer<float> b : register(u0);"
                                "float put(int i) { b[i] += i + 1; return b[i]; }",
                                "put(i)");
    addDraw(shader);
    addDraw(shader);
    for (int frame = 0; frame < 2; ++frame)
        EXPECT_EQ(drawNumbers()[4][0], 5);
}

TEST_F(Bindings, SettingsReachThePictureWithoutNewPipelines) {
    const Handle<Buffer> ones = filled("float", "1", 4);
    const Handle<Buffer> twos = filled("float", "2", 4);
    Shader& shader = makeReader("cbuffer C : register(b0) { float4 c; };"
                                "StructuredBuffer<float> b : register(t0);"
                                "Texture2D x : register(t1); SamplerState s : register(s0);",
                                "c.x + b[i] + 0 * x.SampleLevel(s, 0.5, 0)");
    ConstantBuffer& constants = *shader.addConstantBuffer(0, 0);
    constants.addPassMemorySlot()->setFromVector(10, 0, 0, 0);
    shader.addTexture(ones, 0, 0);
    addDraw(shader);
    EXPECT_EQ(drawNumbers()[0][0], 11);
    const std::uint64_t made = counts().pipelinesMade;
    const std::uint64_t build = shader.getProgram()->getBuild();
    shader.getConstantBuffer(0, 0)->getPassMemorySlot(0)->setFromVector(20, 0, 0, 0);
    EXPECT_EQ(drawNumbers()[0][0], 21);
    shader.setTexture(0, twos);
    EXPECT_EQ(drawNumbers()[0][0], 22);
    shader.addSampler(SamplerManager::getInstance()->handleOf(
                              &*SamplerManager::getInstance()->createOrRetrieve("s")),
                      0,
                      0);
    shader.changeTextureSlot(0, 5);
    EXPECT_EQ(drawNumbers()[0][0], 20);
    EXPECT_EQ(counts().pipelinesMade, made);
    EXPECT_EQ(shader.getProgram()->getBuild(), build);
}

/// Begins with a device whose stages before the pixels, and the pixels, cannot write.
class NoStores : public Bindings {
protected:
    void SetUp() override {
        setenv("VL_DEVICE_WITHOUT", "fragmentStoresAndAtomics vertexPipelineStoresAndAtomics", 1);
        Bindings::SetUp();
        unsetenv("VL_DEVICE_WITHOUT");
    }
};

TEST_F(NoStores, OnlyThreadsWriteAndALineSaysSo) {
    const Handle<Buffer> buffer = filled("float", "i", 4);
    Program& program = *ProgramManager::getInstance()->createOrRetrieve("writes");
    ProgramSourcesHolder sources;
    sources.setVertexMemory(place);
    sources.setPixelMemory("RWStructuredBuffer<float> marks : register(u0);"
                           "float4 main() : SV_TARGET { marks[0] = 1; return 1; }");
    program.setFromMemory(sources);
    ASSERT_TRUE(program.load().has_value());
    ProgramManager::getInstance()->waitForAll();
    EXPECT_FALSE(program.isUsable());
    EXPECT_EQ(logged("'marks': the device writes to no buffers in the pixel stage"), 1U);
    Shader& reader = makeReader("StructuredBuffer<float> b : register(t0);", "b[i]");
    reader.addTexture(buffer, 0, 0);
    addDraw(reader);
    EXPECT_EQ(drawNumbers()[9][0], 9);
}

} // namespace
} // namespace vlGraphics
