#include "content/ContentLoaderTest.h"

#include <vlExport/JsonExporter.h>

#include <fmt/format.h>

namespace vlGraphics {
namespace {

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
void fillSample(Buffer& buffer) {
    buffer.setSettings({4294967295U, 3, false, true});
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
    program.setBoundLoops(false);
    program.setFromMemory(sources);
}
void fillSample(Shader& shader) {
    shader.setProgram(ProgramManager::getInstance()->handleOf("lit"));
    shader.addTexture(TextureManager::getInstance()->handleOf("rust"), 3, 1);
    shader.addTexture(BufferManager::getInstance()->handleOf("dust"), 4, 0);
    shader.addTexture(RenderQueueManager::getInstance()->handleOf("queue"), 5, 0);
    shader.addSampler(SamplerManager::getInstance()->handleOf("soft"), 0, 0);
    shader.addUavBuffer(BufferManager::getInstance()->handleOf("dust"), 1, 2);
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
    ComputePass& compute = *operations.addComputePass(TargetOperations::atEnd);
    compute.setShader(ShaderManager::getInstance()->handleOf("lit"));
    compute.setY(4294967295U);
    compute.setZ(0);
    RenderScenePass& scene = *operations.addRenderScenePass(TargetOperations::atEnd);
    scene.setName("scene");
    scene.setRenderQueue(RenderQueueManager::getInstance()->handleOf("queue"));
    scene.setCullingCamera(CameraManager::getInstance()->handleOf("eye"));
    scene.setBlendState(BlendStateManager::getInstance()->handleOf("blend"));
    scene.setStencilReference(200);
    compositor.addNode();
}

void fillSample(vlScripts::Script& script) {
    script.setSources("local name = \"r\xC3\xA9sum\xC3\xA9\"\n\treturn name\n");
}

template <class T, class M> struct KindUnderTest {
    using Type = T;
    using Manager = M;
};

/// What a declaration cannot do without, besides its name.
template <class T> constexpr const char* neededMembers = "";
template <> constexpr const char* neededMembers<Texture> = R"(, "width": 1, "height": 1)";

template <class K> class EveryKind : public ContentLoaderTest {};

using Kinds = testing::Types<KindUnderTest<BlendState, BlendStateManager>,
                             KindUnderTest<DepthStencilState, DepthStencilStateManager>,
                             KindUnderTest<RasterState, RasterStateManager>,
                             KindUnderTest<Sampler, SamplerManager>,
                             KindUnderTest<Buffer, BufferManager>,
                             KindUnderTest<Camera, CameraManager>,
                             KindUnderTest<Viewport, ViewportManager>,
                             KindUnderTest<RenderQueue, RenderQueueManager>,
                             KindUnderTest<Texture, TextureManager>,
                             KindUnderTest<Mesh, MeshManager>,
                             KindUnderTest<Program, ProgramManager>,
                             KindUnderTest<Shader, ShaderManager>,
                             KindUnderTest<Compositor, CompositorManager>,
                             KindUnderTest<vlScripts::Script, vlScripts::ScriptManager>>;
TYPED_TEST_SUITE(EveryKind, Kinds);

TYPED_TEST(EveryKind, LoadsAndSavesByteByByte) {
    using T = typename TypeParam::Type;
    fs::create_directories(this->folder / "first");
    fs::create_directories(this->folder / "second");
    auto& manager = *TypeParam::Manager::getInstance();
    for (const bool filled : {false, true}) {
        T& sample = *manager.createOrRetrieve("sample");
        if (filled) fillSample(sample);
        ASSERT_TRUE(ContentLoader::saveObjectDeclaration(sample, "first/it.json"));
        manager.clear();
        const auto result = ContentLoader::loadDeclarations("first/it.json", ".", false);
        EXPECT_EQ(result.getErrors(), std::vector<vlMemory::String>());
        ASSERT_EQ(result.template getResources<T>().size(), 1U);
        T& loaded = *result.template getResources<T>()[0];
        EXPECT_EQ(&loaded, manager.get("sample"));
        ASSERT_TRUE(ContentLoader::saveObjectDeclaration(loaded, "second/it.json"));
        // Some kinds have a file beside the declaration.
        for (const auto& file : fs::directory_iterator(this->folder / "first")) {
            const std::string name = file.path().filename().string();
            EXPECT_EQ(this->read("first/" + name), this->read("second/" + name)) << name;
            EXPECT_NE(this->read("first/it.json"), "");
        }
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

TYPED_TEST(EveryKind, UnknownMembersAndSecondOnesAreNamedAndTheRestIsAdopted) {
    using T = typename TypeParam::Type;
    auto& manager = *TypeParam::Manager::getInstance();
    this->write("test.json",
                fmt::format(R"({{"formatVersion": 1, "{}": [
{{"name": "a", "colour": 3, "EDITOR_colour": 3{}}},
{{"name": "a"}},
{{"name": 5}},
{{"name": "b"{}}}]}})",
                            ContentLoader::getListName<T>(),
                            neededMembers<T>,
                            neededMembers<T>));
    const auto result = ContentLoader::loadDeclarations("test.json", {}, false);
    EXPECT_EQ(result.getErrors(),
              (std::vector<vlMemory::String>{
                      fmt::format("test.json:2: {} 'a': unknown member 'colour'", T::kindName),
                      fmt::format("test.json:3: {} 'a': is in this file already, and the first one "
                                  "stays",
                                  T::kindName),
                      fmt::format("test.json:4: {} 3 of the list: 'name' expected a string",
                                  T::kindName)}));
    EXPECT_EQ(result.template getResources<T>(),
              (std::vector<T*>{manager.get("a"), manager.get("b")}));
    EXPECT_EQ(manager.getCount(), 2U);
}

TYPED_TEST(EveryKind, NoDeclarationChangesAHiddenResource) {
    using T = typename TypeParam::Type;
    auto& manager = *TypeParam::Manager::getInstance();
    T& sample = *manager.createOrRetrieve("sample");
    fillSample(sample);
    sample.setHidden(true);
    const vlExport::Node before = ContentLoader::getDeclaration(sample, "");
    this->write(
            "test.json",
            fmt::format(
                    R"({{"formatVersion": 1, "{}": [{{"name": "sample"{}}}, {{"name": "other"{}}}]}})",
                    ContentLoader::getListName<T>(),
                    neededMembers<T>,
                    neededMembers<T>));
    const auto result = ContentLoader::loadDeclarations("test.json", {}, false);
    EXPECT_EQ(result.getErrors(),
              std::vector<vlMemory::String>{fmt::format(
                      "test.json:1: {} 'sample': the one that bears this name is not the project's",
                      T::kindName)});
    EXPECT_EQ(result.template getResources<T>(), std::vector<T*>{manager.get("other")});
    EXPECT_EQ(ContentLoader::getDeclaration(sample, ""), before);
    EXPECT_FALSE(manager.rename("other", "sample"));
    EXPECT_EQ(manager.get("sample"), &sample);
}

TYPED_TEST(EveryKind, AFailedSaveIsOneLineAndLeavesTheFolderAsItWas) {
    using T = typename TypeParam::Type;
    T& sample = *TypeParam::Manager::getInstance()->createOrRetrieve("sample");
    fillSample(sample);
    this->write("it.json", "old");
    this->write("it.lua", "old too");
    fs::create_directories(this->folder / "taken.json");
    fs::create_directories(this->folder / "beside.lua");
    const auto before = this->listing();
    const auto expectFailure = [&](const char* path) {
        const auto saved = ContentLoader::saveObjectDeclaration(sample, path);
        ASSERT_FALSE(saved.has_value()) << path;
        EXPECT_EQ(saved.error().message.find('\n'), vlMemory::String::npos);
        EXPECT_EQ(this->listing(), before) << path;
        EXPECT_EQ(this->read("it.json"), "old");
        EXPECT_EQ(this->read("it.lua"), "old too");
    };
    for (const char* path : {"", "taken.json", "nowhere/it.json", "it.json/it.json"})
        expectFailure(path);
    {
        const FullDisk full;
        expectFailure("it.json");
    }
    if constexpr (std::is_same_v<T, vlScripts::Script>) expectFailure("beside.json");
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
    managers.compositors.createOrRetrieve("mine")->setHidden(true);
    EXPECT_FALSE(ContentLoader::processCompositorSources(
            R"({"compositors": [{"name": "a"}, {"name": "mine"}]})"));
    EXPECT_EQ(managers.compositors.getCount(), 1U);
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
