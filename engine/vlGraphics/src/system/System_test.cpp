#include "render/EngineTest.h"
#include "resources/TestManagers.h"

#include <vlGraphics/MeshFile.h>
#include <vlImages/PngEncoder.h>
#include <vlResources/FileWriter.h>
#include <vlResources/ResourceManager.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace vlGraphics {
namespace {

class Life : public EngineTest {};

TEST_F(Life, EngineStartsAgainAfterItsEnd) {
    for (int life = 0; life < 3; ++life) {
        TestSurface surface(4, 4);
        RenderContext& context = makeContext(surface);
        addBackBuffer(makeCompositor(context), {1, 0, 0, 1});
        EXPECT_EQ(pixelAt(drawAndRead(context), 0, 0), (Rgba{255, 0, 0, 255}));
        System::shutdown();
        System::shutdown();
        EXPECT_EQ(System::getInstance(), nullptr);
        ASSERT_TRUE(System::initialize({}).has_value());
    }
}

TEST_F(Life, ResizedPictureHasTheNewSizeAndContent) {
    TestSurface surface(4, 4);
    RenderContext& context = makeContext(surface);
    addBackBuffer(makeCompositor(context), {0, 1, 0, 1});
    drawFrame(context);
    surface.size = {9, 3};
    context.resize(0, 0);
    ASSERT_TRUE(context.apply().has_value());
    EXPECT_FALSE(context.readBackBuffer().has_value());
    const vlImages::Image image = drawAndRead(context);
    EXPECT_EQ(image.width, 9U);
    EXPECT_EQ(image.height, 3U);
    EXPECT_EQ(pixelAt(image, 8, 2), (Rgba{0, 255, 0, 255}));
}

TEST_F(Life, AbsurdSizesAreRefusedAndChangeNothing) {
    TestSurface surface(4, 4);
    RenderContext& context = makeContext(surface);
    context.resize(1000000, 4);
    const auto applied = context.apply();
    ASSERT_FALSE(applied.has_value());
    EXPECT_NE(applied.error().message.find("1000000 by 4"), std::string::npos);
    EXPECT_EQ(context.getWidth(), 4U);
    Texture& texture = *TextureManager::getInstance()->createOrRetrieve("vast");
    texture.setWidth(20000);
    const auto loaded = texture.load();
    ASSERT_FALSE(loaded.has_value());
    EXPECT_NE(loaded.error().message.find("texture 'vast': 20000 by 1 pixels"), std::string::npos);
    EXPECT_FALSE(texture.isLoaded());
}

TEST_F(Life, UnloadedTexturesAndMeshesComeBackFromTheirFiles) {
    const auto folder = std::filesystem::temp_directory_path() / "vlGraphics_reload_test";
    std::filesystem::create_directories(folder);
    vlResources::ResourceManager& files = vlResources::ResourceManager::getInstance();
    const vlMemory::String before = files.getWorkingPath();
    files.setWorkingPath(folder.string());
    vlImages::Image image(3, 2, vlImages::PixelFormat::rgba8);
    image.pixels.data()[0] = std::byte{200};
    const auto png = vlImages::PngEncoder::encode(image.view());
    ASSERT_TRUE(png.has_value());
    ASSERT_TRUE(vlResources::FileWriter::writeFileWhole((folder / "a.png").string(), png->span()));
    Texture& texture = *TextureManager::getInstance()->createOrRetrieve("a");
    texture.setSourcePath("a.png");
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(texture.load().has_value());
        EXPECT_EQ(pixelAt(texture.convertToImage().value(), 0, 0)[0], 200);
        texture.unload();
    }
    ASSERT_TRUE(vlResources::FileWriter::writeFileWhole((folder / "a.vlmb").string(),
                                                        writeMeshFile(triangle()).span()));
    Mesh& mesh = *MeshManager::getInstance()->createOrRetrieve("a");
    mesh.setSourcePath("a.vlmb");
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(mesh.load().has_value());
        EXPECT_EQ(mesh.getIndexCount(), 3U);
        mesh.unload();
        EXPECT_FALSE(mesh.isLoaded());
    }
    texture.setSourcePath("gone.png");
    const auto gone = texture.load();
    ASSERT_FALSE(gone.has_value());
    EXPECT_NE(gone.error().message.find("texture 'a': "), std::string::npos);
    files.setWorkingPath(before);
}

TEST_F(Life, ContextGoesWhileItsFramesAreInFlight) {
    auto surface = std::make_unique<TestSurface>(256, 256);
    RenderContext& context = makeContext(*surface);
    addBackBuffer(makeCompositor(context), {1, 1, 1, 1});
    for (int i = 0; i < 4; ++i)
        drawFrame(context);
    System::getInstance()->tickForNewFrame(context);
    EXPECT_TRUE(RenderContextManager::getInstance()->eraseFor(*surface));
    EXPECT_FALSE(RenderContextManager::getInstance()->eraseFor(*surface));
    System::getInstance()->getRenderer().beginFrame();
    EXPECT_EQ(System::getInstance()->getRenderer().getActiveContext(), nullptr);
    System::getInstance()->getRenderer().endFrame();
}

TEST_F(Life, EachPictureReachesItsSurface) {
    TestSurface surface(5, 4, PresentSurface::Kind::picture);
    RenderContext& context = makeContext(surface);
    ClearTargetsPass* clear = static_cast<ClearTargetsPass*>(
            addBackBuffer(makeCompositor(context), {1, 0, 0, 1}).getPass(0));
    drawFrame(context);
    clear->setClearColor({0, 0, 1, 1});
    drawFrame(context);
    ASSERT_EQ(surface.pictures.size(), 2U);
    EXPECT_EQ(pixelAt(surface.pictures[0], 4, 3), (Rgba{255, 0, 0, 255}));
    EXPECT_EQ(pixelAt(surface.pictures[1], 4, 3), (Rgba{0, 0, 255, 255}));
}

TEST_F(Life, ContextsDrawnInTurnKeepTheirOwnPictures) {
    TestSurface left(4, 4);
    TestSurface right(6, 2);
    RenderContext& first = makeContext(left);
    RenderContext& second = makeContext(right);
    addBackBuffer(makeCompositor(first, "first"), {1, 0, 0, 1});
    addBackBuffer(makeCompositor(second, "second"), {0, 0, 1, 1});
    for (int turn = 0; turn < 3; ++turn) {
        drawFrame(first);
        drawFrame(second);
    }
    EXPECT_EQ(pixelAt(first.readBackBuffer().value(), 3, 3), (Rgba{255, 0, 0, 255}));
    EXPECT_EQ(pixelAt(second.readBackBuffer().value(), 5, 1), (Rgba{0, 0, 255, 255}));
    TestSurface& taken = left;
    EXPECT_FALSE(RenderContextManager::getInstance()
                         ->createRenderContext(RenderContextDescriptor(taken))
                         .has_value());
}

TEST_F(Life, NothingIsDrawnForASurfaceThatNobodySees) {
    TestSurface surface(5, 4, PresentSurface::Kind::picture);
    RenderContext& context = makeContext(surface);
    addBackBuffer(makeCompositor(context), {1, 0, 0, 1});
    surface.exposed = false;
    drawFrame(context);
    surface.exposed = true;
    surface.size = {0, 4};
    drawFrame(context);
    EXPECT_TRUE(surface.pictures.empty());
    EXPECT_EQ(System::getInstance()->getRenderer().getCounts().frames, 0U);
}

TEST_F(Life, DamagedPipelineFileIsIgnored) {
    const auto folder = std::filesystem::temp_directory_path() / "vlGraphics_pipelines_test";
    Configuration configuration;
    configuration.cacheFolder = folder.string();
    const auto run = [&configuration] {
        System::shutdown();
        return System::initialize(configuration).has_value();
    };
    ASSERT_TRUE(run());
    ASSERT_TRUE(run());
    const auto file = folder / "pipelines.bin";
    ASSERT_TRUE(std::filesystem::exists(file));
    std::fstream(file, std::ios::in | std::ios::out | std::ios::binary).seekp(60).put('\x7F');
    EXPECT_TRUE(run());
    System::shutdown();
    std::filesystem::resize_file(file, 40);
    EXPECT_TRUE(System::initialize(configuration).has_value());
}

TEST(LifeDeathTest, MissingDriverIsOneClearLine) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
            {
                setenv("VK_DRIVER_FILES", "/nonexistent", 1);
                setenv("VK_ICD_FILENAMES", "/nonexistent", 1);
                Configuration configuration;
                configuration.validation = false;
                const auto started = System::initialize(configuration);
                std::fputs(started ? "started" : started.error().message.c_str(), stderr);
                std::_Exit(System::getInstance() == nullptr ? 0 : 1);
            },
            testing::ExitedWithCode(0),
            "No Vulkan driver was found");
}

TEST(LifeDeathTest, DeviceThatIsNotThereIsNamed) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
            {
                setenv("VL_DEVICE", "Abacus", 1);
                Configuration configuration;
                configuration.validation = false;
                const auto started = System::initialize(configuration);
                std::fputs(started ? "started" : started.error().message.c_str(), stderr);
                std::_Exit(0);
            },
            testing::ExitedWithCode(0),
            "No Vulkan device has 'Abacus' in its name");
}

} // namespace
} // namespace vlGraphics
