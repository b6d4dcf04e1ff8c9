#include "TestFolder.h"

#include <vlGraphics/System.h>
#include <vlImages/Image.h>
#include <vlImages/PngEncoder.h>
#include <vlKestrion/Material.h>
#include <vlKestrion/ModelImporter.h>
#include <vlKestrion/ProjectLoader.h>
#include <vlKestrion/System.h>
#include <vlScripts/Environment.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace vlKestrion {
namespace {

class SystemTest : public testing::Test {
protected:
    SystemTest() {
        vlGraphics::Configuration configuration;
        configuration.validation = true;
        configuration.cacheFolder = folder_.path("cache");
        const auto started = System::initialize(configuration);
        started_ = started.has_value();
        EXPECT_TRUE(started_) << started.error().message;
    }
    ~SystemTest() override { System::shutdown(); }

    TestFolder folder_;
    bool started_ = false;
};

TEST_F(SystemTest, StartsAndStopsAsOftenAsItIsAsked) {
    ASSERT_TRUE(started_);
    EXPECT_TRUE(System::initialize({}).has_value());
    EXPECT_NE(MaterialManager::getInstance(), nullptr);
    System::shutdown();
    System::shutdown();
    EXPECT_EQ(System::getInstance(), nullptr);
    EXPECT_EQ(MaterialManager::getInstance(), nullptr);
    EXPECT_EQ(vlGraphics::System::getInstance(), nullptr);
    ASSERT_TRUE(System::initialize({}).has_value());
    EXPECT_NE(System::getInstance(), nullptr);
}

TEST_F(SystemTest, ScriptsReachTheRunningEngine) {
    ASSERT_TRUE(started_);
    vlScripts::CompilationResult compilation;
    const auto script = vlScripts::CompiledScript::compile(
            "test",
            "assert(engine.timeMs() >= 0) "
            "assert(engine.texture('VORLANE_DEFAULT_TEXTURE').width == 8) "
            "local sampler = engine.sampler('VORLANE_DEFAULT_SAMPLER') "
            "for field, value in pairs(sampler) do end "
            "for _, texture in ipairs(engine.textures()) do texture:load() end",
            compilation);
    vlScripts::Environment& environment = System::getInstance()->getScriptEnvironment();
    EXPECT_TRUE(script != nullptr && environment.execute(*script))
            << environment.getLastExecutionResult().message;
}

TEST_F(SystemTest, EveryKindOfImportedMaterialCompiles) {
    ASSERT_TRUE(started_);
    vlImages::Image image(4, 4, vlImages::PixelFormat::rgba8); // black, all holes
    folder_.write("holes.png", vlImages::PngEncoder::encode(image.view())->text());
    for (std::size_t place = 3; place < image.pixels.size(); place += 4)
        image.pixels.data()[place] = std::byte{255};
    folder_.write("skin.png", vlImages::PngEncoder::encode(image.view())->text());
    folder_.write("m.mtl",
                  "newmtl a\nnewmtl b\nmap_Kd skin.png\nnewmtl c\nnorm skin.png\n"
                  "newmtl d\nmap_Kd skin.png\nnorm skin.png\nd 0.5\n"
                  "newmtl e\nmap_Kd holes.png\nnewmtl f\nmap_Kd holes.png\nnorm skin.png\n");
    vlMemory::String model = "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\n";
    for (const char name : {'a', 'b', 'c', 'd', 'e', 'f'})
        model += vlMemory::String("usemtl ") + name + "\nf 1 2 3\n";
    folder_.write("m.obj", model);
    const auto report = importModel(folder_.path("m.obj"), folder_.path("p.vls"));
    ASSERT_TRUE(report.has_value()) << report.error().message;

    const auto messages = vlGraphics::System::getValidationMessageCount();
    auto& loader = System::getInstance()->getProjectLoader();
    const auto result = loader.load(ProjectLoadQuery(folder_.path("p.vls")));
    EXPECT_THAT(result.errors, testing::IsEmpty());
    EXPECT_EQ(result.resources.getPrograms().size(), 6U);
    vlGraphics::ProgramManager::getInstance()->waitForAll();
    for (const vlGraphics::Program* program : result.resources.getPrograms())
        EXPECT_EQ(program->getLastCompilationResult().getErrorMessage(), "") << program->getName();
    for (const Material* material : result.materials) {
        const auto* shader =
                vlGraphics::ShaderManager::getInstance()->resolve(material->getShader());
        EXPECT_TRUE(shader != nullptr && shader->isUsableScene()) << material->getName();
    }
    EXPECT_EQ(vlGraphics::System::getValidationMessageCount(), messages);
}

} // namespace
} // namespace vlKestrion
