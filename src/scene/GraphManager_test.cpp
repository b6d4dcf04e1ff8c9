#include "scene/GraphManager.h"

#include <vlGraphics/Entity.h>
#include <vlGraphics/Mesh.h>
#include <vlGraphics/Node.h>
#include <vlGraphics/RenderQueue.h>

#include <gmock/gmock.h>

namespace vlEditor {
namespace {

class GraphManagerTest : public testing::Test {
protected:
    vlGraphics::Node& node(const char* name, vlGraphics::Node* parent = nullptr) {
        vlGraphics::Node& made = *nodes.createOrRetrieve(name);
        made.setParentNode(parent);
        return made;
    }
    vlGraphics::Entity& entity(vlGraphics::Node& on) {
        vlGraphics::Entity& made =
                *queues.createOrRetrieve(vlGraphics::RenderQueueManager::DEFAULT_RENDER_QUEUE)
                         ->addEntity();
        made.setParentNode(&on);
        return made;
    }

    vlGraphics::MeshManager meshes;
    vlGraphics::NodeManager nodes;
    vlGraphics::RenderQueueManager queues;
    GraphManager graph;
};

TEST_F(GraphManagerTest, FirstIdsLeaveRoomForTheGizmoAndNeverMeet) {
    EXPECT_EQ(graph.nextEntityId(), 4U);
    EXPECT_EQ(graph.nextNodeId(), 4294901761U);
    EXPECT_EQ(graph.nextNodeId(), 4294901762U);
}

TEST_F(GraphManagerTest, EntersASceneParentsFirstAndOnlyOnce) {
    vlGraphics::Node& root = node("root");
    vlGraphics::Node& left = node("left", &root);
    vlGraphics::Node& right = node("right", &root);
    root.setPosition({1, 2, 3, 1});
    left.setPosition({1, 0, 0, 1});
    entity(left);
    entity(right);
    const std::vector<SceneElement> elements = graph.enter(root);
    std::vector<std::string> names;
    for (const SceneElement& element : elements)
        names.push_back(element.name);
    EXPECT_THAT(names, testing::ElementsAre("root", "left", "Entity 4", "right", "Entity 5"));
    EXPECT_EQ(elements[0].parent, SceneElement::noParent);
    EXPECT_EQ(elements[1].parent, elements[0].id);
    EXPECT_EQ(elements[2].parent, elements[1].id);
    EXPECT_FALSE(elements[2].isNode);
    EXPECT_EQ(elements[1].transform.position.x, 1);
    EXPECT_EQ(elements[1].transform.worldPosition.x, 2);
    EXPECT_TRUE(graph.enter(root).empty());
    entity(right);
    EXPECT_EQ(graph.enter(root).size(), 1U);
}

TEST_F(GraphManagerTest, SelectsAnEntityWithItsNode) {
    vlGraphics::Node& root = node("root");
    vlGraphics::Entity& shown = entity(root);
    graph.enter(root);
    graph.select(graph.getId(shown));
    EXPECT_EQ(graph.getSelectedEntity(), &shown);
    EXPECT_EQ(graph.getSelectedNode(), &root);
    graph.select(77);
    EXPECT_EQ(graph.getSelectedEntity(), nullptr);
    EXPECT_EQ(graph.getSelectedNode(), nullptr);
}

TEST_F(GraphManagerTest, ForgettingClearsTheSelection) {
    vlGraphics::Node& root = node("root");
    vlGraphics::Entity& shown = entity(root);
    graph.enter(root);
    const std::uint32_t id = graph.getId(shown);
    graph.select(id);
    graph.forget(shown);
    graph.forget(shown);
    EXPECT_EQ(graph.getSelectedEntity(), nullptr);
    EXPECT_EQ(graph.getEntity(id), nullptr);
    EXPECT_EQ(graph.getId(shown), 0U);
}

} // namespace
} // namespace vlEditor
