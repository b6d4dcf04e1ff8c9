#include "DevicelessTest.h"
#include "TestFolder.h"

#include <vlKestrion/ModelImporter.h>
#include <vlKestrion/ProjectLoader.h>
#include <vlResources/ResourceManager.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vlKestrion {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using vlMemory::String;
using vlMemory::StringView;

class ProjectLoaderTest : public DevicelessTest {
protected:
    ProjectLoadResult load(const String& text) {
        return ProjectLoader().load(ProjectLoadQuery(folder_.write("p.vls", text)));
    }
    vlGraphics::Entity& entity(std::size_t index) {
        const auto* queue = queues_.get(vlGraphics::RenderQueueManager::DEFAULT_RENDER_QUEUE);
        return existing(existing(queue).getEntity(index));
    }

    TestFolder folder_;
};

TEST_F(ProjectLoaderTest, BuildsTheSceneBelowItsParents) {
    const auto result = load(R"({"formatVersion": 1, "scene": {"nodes": [
        {"name": "house", "position": [1, 2, 3], "orientation": [0, 0, 0, 4], "scale": [2, 2, 2],
         "nodes": [{"name": "door", "position": [1, 0, 0]}, {"name": "roof"}]},
        {"name": "tree"}]}})");
    EXPECT_TRUE(result.opened);
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_THAT(result.rootNodes, ElementsAre(nodes_.get("house"), nodes_.get("tree")));
    EXPECT_EQ(existing(nodes_.get("door")).getParentNode(), nodes_.get("house"));
    EXPECT_FLOAT_EQ(existing(nodes_.get("door")).getPositionAbsolute().x, 3);
    EXPECT_FLOAT_EQ(existing(nodes_.get("house")).getOrientation().w, 1);
}

TEST_F(ProjectLoaderTest, LoadingAgainAddsNodesUnderOtherNames) {
    const String text =
            R"({"formatVersion": 1, "scene": {"nodes": [{"name": "a"}, {"name": "a"}]}})";
    load(text);
    const auto second = load(text);
    EXPECT_THAT(second.errors, IsEmpty());
    EXPECT_EQ(nodes_.getCount(), 4U);
    EXPECT_THAT(second.rootNodes, ElementsAre(nodes_.get("a (3)"), nodes_.get("a (4)")));
}

TEST_F(ProjectLoaderTest, AFaultyPartIsNamedAndTheRestIsLoaded) {
    const auto result = load("{\"formatVersion\": 1, \"declarations\": [\"gone.vlca\"],\n"
                             "\"camera\": \"Eye\", \"scene\": {\"nodes\": [\n"
                             "{\"name\": \"a\", \"position\": \"here\", \"nodes\": [{}]},\n"
                             "{\"name\": \"b\", \"entities\": [{\"mesh\": \"floor\"}, 5]}]}}");
    EXPECT_TRUE(result.opened);
    EXPECT_THAT(result.errors,
                ElementsAre(HasSubstr("p.vls:3: 'position'"),
                            HasSubstr("p.vls:4: an entity expected"),
                            HasSubstr("gone.vlca"),
                            HasSubstr("p.vls:2: project: camera 'Eye' not found"),
                            HasSubstr("p.vls:4: node 'b': mesh 'floor' not found")));
    EXPECT_EQ(nodes_.getCount(), 1U);
    EXPECT_EQ(entity(0).getParentNode(), nodes_.get("b"));
}

TEST_F(ProjectLoaderTest, WhatIsNoProjectChangesNothing) {
    for (const char* text :
         {"", "{\"formatVersion\": 1, \"scene\": {\"nodes\": [{\"name\": \"a\"}]}", "[]"}) {
        const auto result = load(text);
        EXPECT_FALSE(result.opened);
        EXPECT_EQ(result.errors.size(), 1U);
    }
    EXPECT_FALSE(ProjectLoader().load(ProjectLoadQuery(folder_.path("gone.vls"))).opened);
    EXPECT_EQ(nodes_.getCount(), 0U);
}

TEST_F(ProjectLoaderTest, MaterialsReachTheirEntitiesWhateverTheOrder) {
    folder_.write(
            "a.vlma",
            R"({"formatVersion": 1, "materials": [{"name": "red", "shader": "paint", "transparent": true}],
                      "shaders": [{"name": "paint"}]})");
    const auto result =
            load(R"({"formatVersion": 1, "declarations": ["a.vlma"], "scene": {"nodes": [
        {"entities": [{"material": "red"}, {"material": "red", "transparent": false, "visible": false}]}]}})");
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_THAT(result.materials, ElementsAre(materials_.get("red")));
    EXPECT_THAT(result.resources.getShaders(), ElementsAre(shaders_.get("paint")));
    EXPECT_EQ(entity(0).getRenderInfo().shader, shaders_.handleOf("paint"));
    EXPECT_TRUE(entity(0).getRenderInfo().transparent);
    EXPECT_FALSE(entity(1).getRenderInfo().transparent);
    EXPECT_FALSE(entity(1).getRenderInfo().visible);
}

TEST_F(ProjectLoaderTest, AChangedMaterialShowsOnItsEntitiesAndAnErasedOneLeavesThemAlone) {
    Material* material = materials_.createOrRetrieve("red");
    vlGraphics::RenderQueue* queue = queues_.createOrRetrieve("queue");
    vlGraphics::Entity& painted = *queue->addEntity();
    vlGraphics::Entity& plain = *queue->addEntity();
    const auto handle = materials_.handleOf(material);
    materials_.assign(painted, handle);
    const auto shader = shaders_.handleOf("paint");
    material->setShader(shader);
    material->setTransparent(true);
    EXPECT_EQ(painted.getRenderInfo().shader, shader);
    EXPECT_TRUE(painted.getRenderInfo().transparent);
    EXPECT_TRUE(plain.getRenderInfo().shader.isNull());
    EXPECT_TRUE(materials_.materialOf(plain).isNull());

    materials_.erase("red");
    EXPECT_EQ(painted.getRenderInfo().shader, shader);
    EXPECT_EQ(materials_.materialOf(painted), handle);
    materials_.createOrRetrieve("red")->setShader(shaders_.handleOf("other"));
    EXPECT_EQ(painted.getRenderInfo().shader, shaders_.handleOf("other"));
    materials_.assign(painted, {});
    EXPECT_TRUE(materials_.materialOf(painted).isNull());
}

TEST_F(ProjectLoaderTest, BuffersAndScriptsAreResourcesOfAProject) {
    folder_.write("tools/data.vlbu",
                  R"({"formatVersion": 1, "buffers": [{"name": "sparks", "elementCount": 7}]})");
    folder_.write("tools/day.vlsc",
                  R"({"formatVersion": 1, "scripts": [{"name": "day", "file": "day.lua"}]})");
    folder_.write("tools/day.lua", "return 1");
    const auto result =
            load(R"({"formatVersion": 1, "declarations": ["tools/data.vlbu", "tools/day.vlsc"]})");
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_THAT(result.resources.getBuffers(), ElementsAre(buffers_.get("sparks")));
    EXPECT_THAT(result.resources.getScripts(), ElementsAre(scripts_.get("day")));
    EXPECT_EQ(existing(buffers_.get("sparks")).getElementCount(), 7U);
    EXPECT_EQ(existing(scripts_.get("day")).getSources(), "return 1");
}

TEST_F(ProjectLoaderTest, WhatIsHiddenIsNotDeclaredOver) {
    for (const char* name : {"EDITOR_GIZMO", "mine"})
        existing(materials_.createOrRetrieve(name)).setTransparent(true);
    existing(materials_.get("EDITOR_GIZMO")).setHidden(true);
    folder_.write("a.vlma", R"({"formatVersion": 1, "materials": [{"name": "EDITOR_GIZMO"},
                               {"name": "mine"}]})");
    const auto result = load(R"({"formatVersion": 1, "declarations": ["a.vlma"]})");
    EXPECT_THAT(result.errors,
                ElementsAre(HasSubstr("a.vlma:1: material 'EDITOR_GIZMO': the one that bears")));
    EXPECT_THAT(result.materials, ElementsAre(materials_.get("mine")));
    EXPECT_TRUE(existing(materials_.get("EDITOR_GIZMO")).getTransparent());
    EXPECT_FALSE(existing(materials_.get("mine")).getTransparent());
}

TEST_F(ProjectLoaderTest, AnImportedModelLoadsFromItsOwnFolder) {
    folder_.write("box.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl x\nf 1 2 3\n");
    ASSERT_TRUE(importModel(folder_.path("box.obj"), folder_.path("sub/p.vls")).has_value());
    const String workingPath = vlResources::ResourceManager::getInstance().getWorkingPath();
    const auto result = ProjectLoader().load(ProjectLoadQuery(folder_.path("sub/p.vls")));
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_EQ(vlResources::ResourceManager::getInstance().getWorkingPath(), workingPath);
    EXPECT_EQ(result.camera, "box_CAMERA");
    EXPECT_EQ(result.compositor, "box_COMPOSITOR");
    EXPECT_EQ(result.resources.getMeshes().size(), 1U);
    EXPECT_EQ(existing(meshes_.get("box/box")).getVertexCount(), 3U);
    EXPECT_EQ(result.resources.getPrograms().front()->getMemory().getDefineMacrosPixel().size(),
              0U);
    const auto& info = entity(0).getRenderInfo();
    EXPECT_EQ(info.mesh, meshes_.handleOf("box/box"));
    EXPECT_EQ(info.shader, shaders_.handleOf("box/x"));
    EXPECT_EQ(existing(existing(shaders_.get("box/x")).getConstantBufferPerIndex(0)).getByteSize(),
              192U);
}

TEST_F(ProjectLoaderTest, ASceneOfVeryManyNodesLoads) {
    String text = R"({"formatVersion": 1, "scene": {"nodes": [)";
    for (int node = 0; node < 20000; ++node)
        text += node == 0 ? "{\"entities\": [{}]}" : ",\n{\"entities\": [{}]}";
    const auto result = load(text + "]}}");
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_EQ(nodes_.getCount(), 20000U);
    EXPECT_EQ(result.rootNodes.back()->getName(), "Node (20000)");
}

} // namespace
} // namespace vlKestrion
