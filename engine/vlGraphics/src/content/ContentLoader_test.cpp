#include "resources/TestManagers.h"

#include <vlExport/JsonExporter.h>
#include <vlGraphics/MeshFile.h>
#include <vlImages/PngEncoder.h>
#include <vlResources/FileWriter.h>
#include <vlResources/ResourceManager.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vlGraphics {
namespace {

namespace fs = std::filesystem;

/// Ends the test where the manager has none of that name.
template <class Manager> auto& known(const Manager& manager, vlMemory::StringView name) {
    auto* resource = manager.get(name);
    if (resource == nullptr) throw std::runtime_error("missing: " + vlMemory::String(name));
    return *resource;
}

class ContentLoaderTest : public testing::Test {
protected:
    ContentLoaderTest()
        : folder(fs::canonical(testing::TempDir()) /
                 (std::string("content_") +
                  testing::UnitTest::GetInstance()->current_test_info()->name())) {
        fs::remove_all(folder);
        fs::create_directories(folder / "sub");
        vlResources::ResourceManager::getInstance().setWorkingPath(folder.string());
        writeMesh("stone.vlmb", triangle(2));
        writeBytes("stone.png",
                   vlImages::PngEncoder::encode(
                           vlImages::Image(4, 2, vlImages::PixelFormat::rgba8).view())
                           ->span());
    }
    ~ContentLoaderTest() override {
        vlResources::ResourceManager::destroyInstance();
        fs::remove_all(folder);
    }

    void writeBytes(const std::string& name, std::span<const std::byte> bytes) {
        ASSERT_TRUE(vlResources::FileWriter::writeFileWhole((folder / name).string(), bytes));
    }
    void writeMesh(const std::string& name, const MeshData& data) {
        writeBytes(name, writeMeshFile(data).span());
    }
    void write(const std::string& name, vlMemory::StringView text) {
        writeBytes(name, std::as_bytes(std::span(text)));
    }
    std::string read(const std::string& name) {
        std::ostringstream text;
        text << std::ifstream(folder / name, std::ios::binary).rdbuf();
        return text.str();
    }
    /// The lines of a file of that text.
    std::vector<vlMemory::String> load(vlMemory::StringView text) {
        write("test.json", text);
        return ContentLoader::loadDeclarations("test.json", {}, false).getErrors();
    }
    void expectErrors(vlMemory::StringView text, const std::vector<vlMemory::String>& expected) {
        EXPECT_EQ(load(text), expected);
    }

    fs::path folder;
    TestManagers managers;
};

// A sample of each kind that sets whatever its declaration can say.

void fillSample(BlendState& state) {
    state.setIndependentBlend(true);
    state.setBlendEnabled(true, 2);
    state.setSrcBlend(BLEND::SRC_ALPHA, 2);
    state.setWriteMask(static_cast<COLOR_WRITE_ENABLE>(5), 2);
}
void fillSample(DepthStencilState& state) {
    state.setDepthFunction(COMPARISON_FUNCTION::GREATER_EQUAL);
    state.setStencilReadMask(17);
    state.setBackPass(STENCIL_OP::INCR_SAT);
    state.setFrontFunction(COMPARISON_FUNCTION::NOT_EQUAL);
}
void fillSample(RasterState& state) {
    state.setFillMode(FILL_MODE::WIREFRAME);
    state.setDepthBias(-3);
    state.setSlopeScaledDepthBias(0.1F);
}
void fillSample(Sampler& sampler) {
    sampler.setFilter(FILTER::COMPARISON_ANISOTROPIC);
    sampler.setAddressModeW(TEXTURE_ADDRESS_MODE::MIRROR_ONCE);
    sampler.setAnisotropy(8);
    sampler.setLodRange(0.5F, 3);
    sampler.setBorderColor(0.1F, 0.2F, 0.3F, 1);
}
void fillSample(Camera& camera) {
    Camera::Settings settings;
    settings.nearDistance = 0.25F;
    ASSERT_TRUE(camera.setSettings(settings));
    camera.setPosition({1, 2.5F, -3});
    camera.lookAt({7, 1, 0.3F}, {});
}
void fillSample(Viewport& viewport) {
    ASSERT_TRUE(viewport.setArea({.x = 0.5F, .width = 0.25F, .maxDepth = 0.1F}));
}
void fillSample(RenderQueue& queue) {
    queue.setRaytraced(true);
    queue.getRenderStrategy().setLodQualityFactor(0.7F);
    queue.getRenderStrategy().setOrderQueue(false);
}
void fillSample(Texture& texture) {
    texture.setWidth(640);
    texture.setHeight(360);
    texture.setFormat(FORMAT::R32_UINT);
    texture.setRenderFlag(RENDER_FLAG::COLOR_TARGET);
    texture.setGammaCorrected(false);
}
void fillSample(Mesh& mesh) {
    ASSERT_TRUE(mesh.setData(*readMeshFile(
            vlResources::ResourceManager::getInstance().getAbsoluteFromWorkingDir("stone.vlmb"))));
    mesh.setSourcePath("stone.vlmb");
}
void fillSample(Program& program) {
    ProgramSourcesHolder sources;
    sources.setVertexMemory("float4 main() : SV_POSITION {\n\treturn 0; // \"zero\"\n}\n");
    sources.addDefineMacroVertex("LIGHTS", "4");
    sources.addDefineMacroPixel("FLAG", "");
    program.setType(PROGRAM_TYPE::GEOMETRY);
    program.setActivateCrossCompilerDefines(false);
    program.setFromMemory(sources);
}
void fillSample(Shader& shader) {
    shader.setProgram(ProgramManager::getInstance()->handleOf("lit"));
    shader.addTexture(TextureManager::getInstance()->handleOf("rust"), 3, 1);
    shader.addSampler(SamplerManager::getInstance()->handleOf("soft"), 0, 0);
    ConstantBuffer& buffer = *shader.addConstantBuffer(2, 0);
    const auto camera = CameraManager::getInstance()->handleOf("eye");
    buffer.addPassMemorySlot()->setFromVector(1, 0.1F, 0, 0);
    buffer.addPassMemorySlot()->setFromMatrix(vlMaths::Matrix::translation({1, 2, 3}));
    buffer.addPassMemorySlot()->setAsCamCornersWorld(camera);
    buffer.addPassMemorySlot()->setAsCamCornersView();
    buffer.addPassMemorySlot()->setAsTargetSize();
    buffer.addPassMemorySlot()->setAsProjectionParameters(camera);
    buffer.addPassMemorySlot()->setAsTextureSize(TextureManager::getInstance()->handleOf("rust"));
    buffer.addPassMemorySlot()->setAsViewMatrix();
    buffer.addPassMemorySlot()->setAsViewMatrixInv(camera);
    buffer.addPassMemorySlot()->setAsProjectionMatrix();
    buffer.addPassMemorySlot()->setAsProjectionMatrixInv();
    buffer.addPassMemorySlot()->setAsCameraPosition();
    buffer.addPassMemorySlot()->setAsCameraDirectionWorld();
    buffer.addPassMemorySlot()->setAsTime(250);
    shader.addInstanceMemorySlot()->setAsWorldMatrix();
    shader.setMaxInstancePerBuffer(77);
}
void fillSample(Compositor& compositor) {
    CompositorNode& node = *compositor.addNode();
    node.setName("main");
    node.setActive(false);
    TargetOperations& operations = *node.addOperations();
    operations.addColorTarget({TextureManager::getInstance()->handleOf("glow"), 0});
    operations.setToBackBuffer(1);
    operations.setToChainDepthBuffer();
    operations.setOverloadedViewport(ViewportManager::getInstance()->handleOf("left"));
    ClearTargetsPass& clear = *operations.addClearTargetsPass(TargetOperations::atEnd);
    clear.setClearColor({0.0011F, 0.009F, 0.035F, 1});
    clear.setShouldClearDepth(false);
    clear.setClearStencil(12);
    operations.addPass(TargetOperations::atEnd);
    RenderScenePass& scene = *operations.addRenderScenePass(TargetOperations::atEnd);
    scene.setName("scene");
    scene.setRenderQueue(RenderQueueManager::getInstance()->handleOf("queue"));
    scene.setCullingCamera(CameraManager::getInstance()->handleOf("eye"));
    scene.setBlendState(BlendStateManager::getInstance()->handleOf("blend"));
    scene.setStencilReference(200);
    compositor.addNode();
}

template <class T, class M> struct KindUnderTest {
    using Type = T;
    using Manager = M;
};

template <class K> class EveryKind : public ContentLoaderTest {};

using Kinds = testing::Types<KindUnderTest<BlendState, BlendStateManager>,
                             KindUnderTest<DepthStencilState, DepthStencilStateManager>,
                             KindUnderTest<RasterState, RasterStateManager>,
                             KindUnderTest<Sampler, SamplerManager>,
                             KindUnderTest<Camera, CameraManager>,
                             KindUnderTest<Viewport, ViewportManager>,
                             KindUnderTest<RenderQueue, RenderQueueManager>,
                             KindUnderTest<Texture, TextureManager>,
                             KindUnderTest<Mesh, MeshManager>,
                             KindUnderTest<Program, ProgramManager>,
                             KindUnderTest<Shader, ShaderManager>,
                             KindUnderTest<Compositor, CompositorManager>>;
TYPED_TEST_SUITE(EveryKind, Kinds);

TYPED_TEST(EveryKind, LoadsAndSavesByteByByte) {
    using T = typename TypeParam::Type;
    auto& manager = *TypeParam::Manager::getInstance();
    for (const bool filled : {false, true}) {
        T& sample = *manager.createOrRetrieve("sample");
        if (filled) fillSample(sample);
        ASSERT_TRUE(ContentLoader::saveObjectDeclaration(sample, "first.json"));
        manager.clear();
        const auto result = ContentLoader::loadDeclarations("first.json", {}, false);
        EXPECT_EQ(result.getErrors(), std::vector<vlMemory::String>());
        ASSERT_EQ(result.template getResources<T>().size(), 1U);
        T& loaded = *result.template getResources<T>()[0];
        EXPECT_EQ(&loaded, manager.get("sample"));
        ASSERT_TRUE(ContentLoader::saveObjectDeclaration(loaded, "second.json"));
        EXPECT_EQ(this->read("first.json"), this->read("second.json"));
        EXPECT_NE(this->read("first.json"), "");
        manager.clear();
    }
}

TYPED_TEST(EveryKind, MementoRestoresAnotherResourceOfTheKind) {
    using T = typename TypeParam::Type;
    auto& manager = *TypeParam::Manager::getInstance();
    T& sample = *manager.createOrRetrieve("sample");
    fillSample(sample);
    const vlExport::Node memento = ContentLoader::getDeclaration(sample, "");
    T& other = *manager.createOrRetrieve("other");
    ASSERT_TRUE(ContentLoader::fillFromDeclaration(other, memento, ""));
    EXPECT_EQ(other.getName(), "other");
    vlExport::Node again = ContentLoader::getDeclaration(other, "");
    again.add("name", "sample");
    EXPECT_EQ(vlExport::JsonExporter::exportTreeIntoString(memento),
              vlExport::JsonExporter::exportTreeIntoString(again));
}

TYPED_TEST(EveryKind, FaultyDeclarationLeavesAnExistingResourceAsItWas) {
    using T = typename TypeParam::Type;
    auto& manager = *TypeParam::Manager::getInstance();
    T& sample = *manager.createOrRetrieve("sample");
    fillSample(sample);
    const vlExport::Node before = ContentLoader::getDeclaration(sample, "");
    // Every member in turn becomes something that it cannot be.
    for (std::size_t index = 1; index < before.members().size(); ++index) {
        vlExport::Node broken = before;
        broken.members()[index].value = vlExport::Node::array();
        broken.members()[index].value.append(vlExport::Node());
        vlExport::Node tree = vlExport::Node::object();
        tree.add("formatVersion", 1);
        tree.add(ContentLoader::getListName<T>(), vlExport::Node::array()).append(broken);
        const auto result =
                ContentLoader::loadDeclarations(tree, "f", this->folder.string(), {}, false);
        ASSERT_EQ(result.getErrors().size(), 1U) << before.members()[index].name;
        EXPECT_NE(result.getErrors()[0].find(std::string(T::kindName) + " 'sample': "),
                  vlMemory::String::npos)
                << result.getErrors()[0];
        EXPECT_TRUE(result.template getResources<T>().empty());
        EXPECT_EQ(ContentLoader::getDeclaration(sample, ""), before);
        EXPECT_FALSE(ContentLoader::fillFromDeclaration(sample, broken, ""));
        EXPECT_EQ(ContentLoader::getDeclaration(sample, ""), before);
    }
}

TEST_F(ContentLoaderTest, NamesFileLineKindAndNameOfEachFaultAndAdoptsTheRest) {
    expectErrors(
            R"({
  "formatVersion": 1,
  "novelties": [],
  "rasterStates": [
    {"name": "a", "cullMode": "SIDEWAYS"},
    {"name": "b", "colour": 3, "EDITOR_note": true, "depthBias": 5},
    {"name": "b", "depthBias": 6},
    {"name": ""},
    7
  ],
  "cameras": {}
})",
            {"test.json:3: unknown member 'novelties'",
             "test.json:5: raster state 'a': 'cullMode' expected one of \"NONE\", \"FRONT\", "
             "\"BACK\"",
             "test.json:6: raster state 'b': unknown member 'colour'",
             "test.json:7: raster state 'b': is in this file already, and the first one stays",
             "test.json:8: raster state 4 of the list: 'name' expected 1 to 4096 bytes without "
             "control characters",
             "test.json:9: raster state 5 of the list: expected an object",
             "test.json:11: 'cameras' expected an array"});
    EXPECT_EQ(managers.rasterStates.getCount(), 1U);
    EXPECT_EQ(known(managers.rasterStates, "b").getDepthBias(), 5);
}

TEST_F(ContentLoaderTest, RefusesFilesOfNoneOrANewerFormat) {
    EXPECT_EQ(load(R"({"rasterStates": [{"name": "a"}]})").size(), 1U);
    EXPECT_EQ(load(R"({"formatVersion": 2, "rasterStates": [{"name": "a"}]})").size(), 1U);
    EXPECT_EQ(load("[]").size(), 1U);
    EXPECT_EQ(load("{\"formatVersion\": 1").size(), 1U);
    EXPECT_EQ(load(vlMemory::String(1000000, '[')).size(), 1U);
    EXPECT_EQ(managers.rasterStates.getCount(), 0U);
    const auto missing = ContentLoader::loadDeclarations("missing.json", {}, false);
    ASSERT_EQ(missing.getErrors().size(), 1U);
    EXPECT_NE(missing.getErrors()[0].find("missing.json"), vlMemory::String::npos);
}

TEST_F(ContentLoaderTest, ValidationMakesNothing) {
    write("test.json", R"({"formatVersion": 1,
"textures": [{"name": "good", "file": "stone.png"}, {"name": "bad", "file": "gone.png"}],
"shaders": [{"name": "s", "textures": [{"texture": "t", "slot": 0}, {"texture": "u", "slot": 0}]}]})");
    const auto errors = ContentLoader::validateDeclarations("test.json", {});
    ASSERT_EQ(errors.size(), 2U);
    EXPECT_EQ(errors[0].find("test.json:2: texture 'bad': "), 0U) << errors[0];
    EXPECT_EQ(errors[1], "test.json:3: shader 's': 'textures' has slot 0 of space 0 twice");
    EXPECT_EQ(managers.textures.getCount() + managers.shaders.getCount(), 0U);
}

TEST_F(ContentLoaderTest, OneKindLoadsAloneAndMustBeThere) {
    write("test.json",
          R"({"formatVersion": 1, "samplers": [{"name": "s"}], "viewports": [{"name": "v"}]})");
    EXPECT_EQ(ContentLoader::loadSamplerDeclaration("test.json", false).getSamplers().size(), 1U);
    EXPECT_EQ(managers.viewports.getCount(), 0U);
    const auto cameras = ContentLoader::loadCameraDeclaration("test.json", false);
    EXPECT_EQ(cameras.getErrors(), std::vector<vlMemory::String>{"test.json: has no 'cameras'"});
}

TEST_F(ContentLoaderTest, ReferredFilesStayInsideTheRoot) {
    const auto text = [](const char* file) {
        return std::string(R"({"formatVersion": 1, "meshes": [{"name": "m", "file": ")") + file +
               "\"}]}";
    };
    fs::create_symlink("/etc", folder / "sub" / "link");
    for (const char* file : {"../stone.vlmb", "/etc/passwd", "link/passwd", "../../x", ""}) {
        write("sub/test.json", text(file));
        const auto result = ContentLoader::loadDeclarations("sub/test.json", {}, false);
        EXPECT_EQ(result.getErrors().size(), *file == '\0' ? 0U : 1U) << file;
    }
    write("sub/test.json", text("../stone.vlmb"));
    const auto result = ContentLoader::loadDeclarations("sub/test.json", ".", false);
    ASSERT_TRUE(result.getErrors().empty()) << result.getErrors()[0];
    EXPECT_EQ(known(managers.meshes, "m").getSourcePath(), "stone.vlmb");
    EXPECT_EQ(known(managers.meshes, "m").getVertexCount(), 3U);
}

TEST_F(ContentLoaderTest, BrokenMeshDataAndPicturesAreNamedAndKeepWhatWasThere) {
    ASSERT_TRUE(load(R"({"formatVersion": 1, "meshes": [{"name": "m", "file": "stone.vlmb"}],
"textures": [{"name": "t", "file": "stone.png", "mipCount": 1}]})")
                        .empty());
    EXPECT_EQ(known(managers.textures, "t").getWidth(), 4U);
    write("broken.vlmb", "VLMB");
    write("broken.png", "PNG");
    const auto errors =
            load(R"({"formatVersion": 1, "meshes": [{"name": "m", "file": "broken.vlmb"}],
"textures": [{"name": "t", "file": "broken.png", "mipCount": 2}]})");
    ASSERT_EQ(errors.size(), 2U);
    EXPECT_EQ(errors[0].find("test.json:2: texture 't': "), 0U) << errors[0];
    EXPECT_EQ(errors[1].find("test.json:1: mesh 'm': "), 0U) << errors[1];
    EXPECT_EQ(known(managers.meshes, "m").getVertexCount(), 3U);
    EXPECT_EQ(known(managers.textures, "t").getMipCount(), 1U);
}

TEST_F(ContentLoaderTest, TexturesOfFilesKeepTheirFileWhenSaved) {
    write("first.json", R"({
  "formatVersion": 1,
  "textures": [
    {
      "name": "t",
      "file": "../stone.png",
      "mipCount": 0,
      "gammaCorrected": true
    }
  ]
}
)");
    fs::rename(folder / "first.json", folder / "sub" / "first.json");
    const auto result = ContentLoader::loadDeclarations("sub/first.json", ".", false);
    ASSERT_TRUE(result.getErrors().empty()) << result.getErrors()[0];
    ASSERT_TRUE(
            ContentLoader::saveObjectDeclaration(known(managers.textures, "t"), "sub/second.json"));
    EXPECT_EQ(read("sub/first.json"), read("sub/second.json"));
}

TEST_F(ContentLoaderTest, ProgramsOfAFolderOfFilesStayFiles) {
    fs::create_directories(folder / "lit_src");
    write("lit_src/vertexShader.hlsl", "float4 main() : SV_POSITION { return 0; }");
    write("lit_src/pixelShader.hlsl", "float4 main() : SV_TARGET { return 1; }");
    ASSERT_TRUE(load(R"({"formatVersion": 1, "programs": [{"name": "lit", "stages": [
{"stage": "VERTEX", "file": "lit_src/vertexShader.hlsl"},
{"stage": "PIXEL", "file": "lit_src/pixelShader.hlsl", "macros": [{"name": "A", "value": "1 2"}]}]}]})")
                        .empty());
    const Program& program = known(managers.programs, "lit");
    EXPECT_TRUE(program.isFromFile());
    EXPECT_EQ(program.getFolder(), "lit_src");
    EXPECT_EQ(program.getMemory().getPixelMemory(), "float4 main() : SV_TARGET { return 1; }");
    ASSERT_EQ(program.getMemory().getDefineMacrosPixel().size(), 1U);
    const auto declaration = ContentLoader::getDeclaration(program, folder.string());
    EXPECT_EQ(*declaration.find("stages")->elements()[1].find("file"), "lit_src/pixelShader.hlsl");
    EXPECT_EQ(declaration.find("stages")->elements()[1].find("source"), nullptr);
    // What was typed since is in a memento, not only in the files.
    const auto memento = ContentLoader::getDeclaration(program, "");
    EXPECT_NE(memento.find("stages")->elements()[1].find("source"), nullptr);
    EXPECT_EQ(*memento.find("folder"), "lit_src");
}

constexpr vlMemory::StringView pickingNodes = R"({"nodes": [
  {"name": "PICK", "operations": [{"colorTargets": ["pick", "select"], "depthTarget": "depth",
    "passes": [
      {"type": "clearTargets", "clearColor": "0, 0, 0, 1", "colorTargetIndex": 0},
      {"type": "clearTargets", "shouldClearColor": false, "shouldClearDepth": true}]}]},
  {"name": "AXIS", "active": false, "operations": [{"colorTargets": ["VORLANE_BACK_BUFFER"],
    "depthTarget": "VORLANE_DEPTH_BUFFER",
    "passes": [{"type": "renderScene", "renderQueue": "axis"}]}]}]})";

TEST_F(ContentLoaderTest, AppendsCompositorNodesOfOlderSpellings) {
    Compositor& compositor = *managers.compositors.createOrRetrieve("c");
    compositor.addNode()->setName("first");
    ASSERT_TRUE(ContentLoader::appendCompositorNodeFromSources(compositor, pickingNodes));
    ASSERT_EQ(compositor.getNodeCount(), 3U);
    const TargetOperations& pick = *compositor.getNode(1)->getOperations(0);
    EXPECT_EQ(pick.getColorTargetCount(), 2U);
    const auto& color = static_cast<const ClearTargetsPass&>(*pick.getPass(0));
    EXPECT_TRUE(color.getShouldClearColor());
    EXPECT_EQ(color.getClearColor(), (vlMaths::Vector{0, 0, 0, 1}));
    const auto& depth = static_cast<const ClearTargetsPass&>(*pick.getPass(1));
    EXPECT_FALSE(depth.getShouldClearColor());
    EXPECT_TRUE(depth.getShouldClearDepth());
    EXPECT_FALSE(compositor.getNode(2)->getActive());
    EXPECT_TRUE(compositor.getNode(2)->getOperations(0)->isToChainDepthBuffer());
}

TEST_F(ContentLoaderTest, FaultyCompositorNodesAppendNothing) {
    Compositor& compositor = *managers.compositors.createOrRetrieve("c");
    const auto errorOf = [&](vlMemory::StringView text) {
        const auto result = ContentLoader::appendCompositorNodeFromSources(compositor, text);
        EXPECT_EQ(compositor.getNodeCount(), 0U);
        return result ? vlMemory::String() : result.error().message;
    };
    EXPECT_EQ(
            errorOf(R"({"nodes": [{}, {"operations": [{"passes": [{"type": "monoMaterial"}]}]}]})"),
            "compositor nodes:1: nodes[1].operations[0].passes[0]: this engine has no pass of type "
            "'monoMaterial'");
    EXPECT_NE(errorOf(R"({"nodes": [{"operations": [{"passes": [
{"type": "clearTargets", "clearColor": "1, 2, 3"}]}]}]})")
                      .find("'clearColor' expected four numbers"),
              vlMemory::String::npos);
    EXPECT_NE(errorOf(R"({"nodes": [{"operations": [{"colorTargets": ["a", "a"]}]}]})")
                      .find("has 'a' twice"),
              vlMemory::String::npos);
    EXPECT_NE(errorOf(R"({"nodes": [{"op": []}]})").find("unknown member 'op'"),
              vlMemory::String::npos);
    EXPECT_FALSE(errorOf("{").empty());
}

TEST_F(ContentLoaderTest, CompositorSourcesMakeAllOrNothing) {
    EXPECT_FALSE(ContentLoader::processCompositorSources(
            R"({"compositors": [{"name": "a"}, {"name": "b", "nodes": 3}]})"));
    EXPECT_EQ(managers.compositors.getCount(), 0U);
    EXPECT_TRUE(ContentLoader::processCompositorSources(
            R"({"compositors": [{"name": "a"}, {"name": "b", "nodes": [{"name": "n"}]}]})"));
    EXPECT_EQ(known(managers.compositors, "b").getNodeCount(), 1U);
}

TEST_F(ContentLoaderTest, SavingIntoAMissingFolderIsAnErrorAndLeavesNothing) {
    RasterState& state = *managers.rasterStates.createOrRetrieve("a");
    EXPECT_FALSE(ContentLoader::saveObjectDeclaration(state, "nowhere/a.vlra"));
    EXPECT_FALSE(fs::exists(folder / "nowhere"));
}

} // namespace
} // namespace vlGraphics
