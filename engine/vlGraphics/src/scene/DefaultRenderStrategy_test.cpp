#include "resources/TestManagers.h"

#include <gtest/gtest.h>

namespace vlGraphics {
namespace {

class DefaultRenderStrategyTest : public testing::Test {
protected:
    DefaultRenderStrategyTest() {
        for (const char* name : {"ball", "box"}) {
            EXPECT_TRUE(managers.meshes.createOrRetrieve(name)->setData(triangle()));
        }
        managers.shaders.createOrRetrieve("red");
        managers.shaders.createOrRetrieve("blue");
        // Nothing is on a device here.
        view.onlyReady = false;
    }

    Entity& add(vlMemory::StringView mesh, vlMemory::StringView shader, float z = 0) {
        Node* node = managers.nodes.createOrRetrieve("node" + std::to_string(nodeCount++));
        node->setPosition({0, 0, z});
        Entity& entity = *queue.addEntity();
        entity.setParentNode(node);
        entity.setMesh(managers.meshes.handleOf(mesh));
        entity.setShader(managers.shaders.handleOf(shader));
        return entity;
    }

    const DrawList& collect() {
        queue.updateTransforms();
        list.clear();
        queue.getRenderStrategy().collect(queue, view, list);
        return list;
    }

    TestManagers managers;
    RenderQueue& queue = *managers.renderQueues.createOrRetrieve("queue");
    StrategyView view;
    DrawList list;
    int nodeCount = 0;
};

TEST_F(DefaultRenderStrategyTest, MergesEqualShaderAndMeshIntoRuns) {
    add("ball", "red");
    add("box", "red");
    add("ball", "blue");
    add("ball", "red");
    const DrawList& drawn = collect();
    ASSERT_EQ(drawn.runs.size(), 3U);
    EXPECT_EQ(drawn.order.size(), 4U);
    std::uint32_t next = 0;
    for (const DrawRun& run : drawn.runs) {
        EXPECT_EQ(run.first, next);
        next += run.count;
        for (std::uint32_t index = run.first; index < next; ++index) {
            const EntityRenderInfo& info = queue.arrays().infos[drawn.order[index]];
            EXPECT_EQ(managers.meshes.resolve(info.mesh), run.mesh);
            EXPECT_EQ(managers.shaders.resolve(info.shader), run.shader);
        }
    }
    EXPECT_EQ(next, 4U);
}

TEST_F(DefaultRenderStrategyTest, SplitsRunsAtTheShadersBuffer) {
    managers.shaders.get("red")->setMaxInstancePerBuffer(4);
    for (int i = 0; i < 10; ++i)
        add("ball", "red");
    const DrawList& drawn = collect();
    ASSERT_EQ(drawn.runs.size(), 3U);
    EXPECT_EQ(drawn.runs[0].count, 4U);
    EXPECT_EQ(drawn.runs[1].count, 4U);
    EXPECT_EQ(drawn.runs[2].count, 2U);
    EXPECT_EQ(drawn.runs[2].first, 8U);
}

TEST_F(DefaultRenderStrategyTest, LeavesOutWhatTheCameraCannotSeeUnlessToldNotTo) {
    Camera camera;
    view.frustum = vlMaths::Frustum(camera.getViewProjectionMatrix());
    add("ball", "red", 10);
    add("ball", "red", -10);
    EXPECT_EQ(collect().order.size(), 1U);
    queue.getRenderStrategy().setFrustumCull(false);
    EXPECT_EQ(collect().order.size(), 2U);
}

TEST_F(DefaultRenderStrategyTest, LeavesOutInvisibleAndErasedThings) {
    Entity& entity = add("ball", "red");
    add("box", "blue");
    EntityRenderInfo info = entity.getRenderInfo();
    info.visible = false;
    entity.setRenderInfo(info);
    EXPECT_EQ(collect().order.size(), 1U);
    managers.meshes.erase("box");
    EXPECT_TRUE(collect().runs.empty());
    info.visible = true;
    entity.setRenderInfo(info);
    EXPECT_EQ(collect().order.size(), 1U);
    managers.shaders.erase("red");
    EXPECT_TRUE(collect().runs.empty());
    managers.shaders.createOrRetrieve("red");
    EXPECT_EQ(collect().order.size(), 1U);
}

TEST_F(DefaultRenderStrategyTest, PassesOverWhatHasNoDeviceSide) {
    add("ball", "red");
    view.onlyReady = true;
    EXPECT_TRUE(collect().order.empty());
    EXPECT_TRUE(collect().runs.empty());
}

TEST_F(DefaultRenderStrategyTest, DrawsTransparentEntitiesFarToNearAndOnlyInTheirPass) {
    for (const float z : {3.0F, 9.0F, 1.0F, 6.0F}) {
        Entity& entity = add(z > 4 ? "ball" : "box", "red", z);
        EntityRenderInfo info = entity.getRenderInfo();
        info.transparent = true;
        entity.setRenderInfo(info);
    }
    add("ball", "red", 5);
    EXPECT_EQ(collect().order.size(), 1U);
    view.transparentPass = true;
    EXPECT_EQ(collect().order, (std::vector<std::uint32_t>{1, 3, 0, 2}));
    EXPECT_EQ(list.runs.size(), 2U);
    view.cameraPosition = {0, 0, 100, 1};
    EXPECT_EQ(collect().order, (std::vector<std::uint32_t>{2, 0, 3, 1}));
}

TEST_F(DefaultRenderStrategyTest, WithoutOrderDrawsInTheOrderOfJoining) {
    Entity& first = add("ball", "red");
    add("box", "blue");
    add("ball", "red");
    add("ball", "red");
    queue.removeEntity(first); // the last moves into its place
    queue.getRenderStrategy().setOrderQueue(false);
    EXPECT_EQ(collect().order, (std::vector<std::uint32_t>{1, 2, 0}));
    EXPECT_EQ(list.runs.size(), 2U);
}

} // namespace
} // namespace vlGraphics
