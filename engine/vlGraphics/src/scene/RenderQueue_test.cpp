#include "resources/TestManagers.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace vlGraphics {
namespace {

/// What the queues should hold, kept the simple way.
struct Model {
    struct Item {
        std::size_t queue = 0;
        Node* node = nullptr;
        std::uint32_t material = 0;
    };
    std::map<Entity*, Item> items;
};

void expectAsModel(RenderQueue& queue, std::size_t number, const Model& model) {
    queue.updateTransforms();
    std::size_t count = 0;
    for (const auto& [entity, item] : model.items)
        count += item.queue == number ? 1 : 0;
    ASSERT_EQ(queue.getEntityCount(), count);
    ASSERT_EQ(queue.entities().size(), count);
    ASSERT_EQ(queue.arrays().worlds.size(), count);
    EXPECT_EQ(queue.getEntity(count), nullptr);
    for (std::size_t index = 0; index < count; ++index) {
        Entity* entity = queue.getEntity(index);
        ASSERT_TRUE(model.items.contains(entity));
        const Model::Item& item = model.items.at(entity);
        EXPECT_EQ(&entity->getRenderQueue(), &queue);
        EXPECT_EQ(item.queue, number);
        EXPECT_EQ(entity->getParentNode(), item.node);
        EXPECT_EQ(entity->getRenderInfo().materialId, item.material);
        const vlMaths::Matrix world =
                item.node == nullptr ? vlMaths::Matrix() : item.node->getAbsoluteTransform();
        EXPECT_EQ(queue.arrays().worlds[index], world);
    }
}

TEST(RenderQueue, KeepsItsBooksOverRandomOperations) {
    TestManagers managers;
    RenderQueue* queues[] = {managers.renderQueues.createOrRetrieve("a"),
                             managers.renderQueues.createOrRetrieve("b")};
    std::vector<Node*> nodes;
    for (int i = 0; i < 8; ++i) {
        nodes.push_back(managers.nodes.createOrRetrieve(std::to_string(i)));
    }
    std::mt19937 random(7);
    const auto below = [&](std::size_t end) { return random() % end; };
    Model model;
    const auto pick = [&] {
        return std::next(model.items.begin(),
                         static_cast<std::ptrdiff_t>(below(model.items.size())));
    };
    for (int step = 0; step < 4000; ++step) {
        const std::size_t action = below(7);
        if (model.items.empty() || action == 0) {
            const std::size_t queue = below(2);
            model.items[queues[queue]->addEntity()] = {queue, nullptr, 0};
        } else if (action == 1) {
            const auto item = pick();
            queues[item->second.queue]->removeEntity(*item->first);
            model.items.erase(item);
        } else if (action == 2) {
            const auto item = pick();
            item->second.queue = below(2);
            queues[item->second.queue]->adoptEntity(*item->first);
        } else if (action == 3) {
            const auto item = pick();
            item->second.node = below(4) == 0 ? nullptr : nodes[below(nodes.size())];
            item->first->setParentNode(item->second.node);
        } else if (action == 4) {
            const auto item = pick();
            item->second.material = static_cast<std::uint32_t>(below(100));
            EntityRenderInfo info = item->first->getRenderInfo();
            info.materialId = item->second.material;
            item->first->setRenderInfo(info);
        } else if (action == 5) {
            nodes[below(nodes.size())]->setPosition({static_cast<float>(below(100)), 1, 2});
        } else {
            nodes[below(nodes.size())]->setParentNode(nodes[below(nodes.size())]);
        }
        if (step % 97 != 0) continue;
        expectAsModel(*queues[0], 0, model);
        expectAsModel(*queues[1], 1, model);
    }
    queues[0]->reset();
    EXPECT_EQ(queues[0]->getEntityCount(), 0U);
}

TEST(RenderQueue, SpheresFollowNodesMeshesAndTheirBounds) {
    TestManagers managers;
    RenderQueue& queue = *managers.renderQueues.createOrRetrieve("queue");
    Node& node = *managers.nodes.createOrRetrieve("node");
    Entity& entity = *queue.addEntity();
    entity.setParentNode(&node);
    entity.setMesh(managers.meshes.handleOf("mesh"));
    const auto radius = [&] {
        queue.updateTransforms();
        return queue.arrays().spheres[0].radius;
    };
    EXPECT_LT(radius(), 0);
    Mesh* mesh = managers.meshes.createOrRetrieve("mesh");
    ASSERT_TRUE(mesh->setData(triangle(1)));
    const float one = mesh->getBoundingSphere().radius;
    EXPECT_EQ(radius(), one);
    ASSERT_TRUE(mesh->setData(triangle(4)));
    EXPECT_NEAR(radius(), 4 * one, 1e-4F);
    node.setScale({2, 2, 2});
    EXPECT_NEAR(radius(), 8 * one, 1e-4F);
    managers.meshes.erase("mesh");
    EXPECT_LT(radius(), 0);
}

TEST(RenderQueue, StructureRevisionGrowsWithWhatIsDrawnAndNotWithWhereItIs) {
    TestManagers managers;
    RenderQueue& queue = *managers.renderQueues.createOrRetrieve("queue");
    Node& node = *managers.nodes.createOrRetrieve("node");
    Entity& entity = *queue.addEntity();
    entity.setParentNode(&node);
    queue.updateTransforms();
    const std::uint64_t before = queue.getStructureRevision();
    node.setPosition({1, 0, 0});
    queue.updateTransforms();
    entity.setRenderInfo(entity.getRenderInfo());
    EXPECT_EQ(queue.getStructureRevision(), before);
    entity.setShader(managers.shaders.handleOf("shader"));
    EXPECT_GT(queue.getStructureRevision(), before);
}

} // namespace
} // namespace vlGraphics
