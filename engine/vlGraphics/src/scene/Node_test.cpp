#include "resources/TestManagers.h"

#include <gtest/gtest.h>

#include <limits>

namespace vlGraphics {
namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

void expectNear(const vlMaths::Vector& a, const vlMaths::Vector& b) {
    EXPECT_NEAR(a.x, b.x, 1e-4F);
    EXPECT_NEAR(a.y, b.y, 1e-4F);
    EXPECT_NEAR(a.z, b.z, 1e-4F);
}

Node& make(NodeManager& nodes, int number) {
    return *nodes.createOrRetrieve(std::to_string(number));
}

TEST(Node, RefusesValuesThatAreNoPlace) {
    NodeManager nodes;
    Node& node = make(nodes, 0);
    ASSERT_TRUE(node.setPosition({1, 2, 3}));
    EXPECT_FALSE(node.setPosition({notANumber, 0, 0}));
    EXPECT_FALSE(node.setScale({1, std::numeric_limits<float>::infinity(), 1}));
    EXPECT_FALSE(node.setOrientation({0, 0, 0, 0}));
    EXPECT_FALSE(node.setOrientation({0, notANumber, 0, 1}));
    EXPECT_EQ(node.getPosition(), (vlMaths::Vector{1, 2, 3, 1}));
    EXPECT_EQ(node.getOrientation(), vlMaths::Quaternion());
}

TEST(Node, ParentsMoveTurnAndScaleWhatIsBelow) {
    NodeManager nodes;
    Node& parent = make(nodes, 0);
    Node& child = make(nodes, 1);
    ASSERT_TRUE(child.setParentNode(&parent));
    child.setPosition({0, 0, 1});
    parent.setPosition({10, 0, 0});
    parent.setScale({2, 2, 2});
    parent.setOrientation(vlMaths::Quaternion::fromAxisAngle({0, 1, 0}, 1.5707964F));
    expectNear(child.getPositionAbsolute(), {12, 0, 0});
    expectNear(child.getScaleAbsolute(), {2, 2, 2});
    parent.setPosition({0, 5, 0});
    expectNear(child.getPositionAbsolute(), {2, 5, 0});
}

TEST(Node, CannotHangBelowItself) {
    NodeManager nodes;
    Node& a = make(nodes, 0);
    Node& b = make(nodes, 1);
    Node& c = make(nodes, 2);
    ASSERT_TRUE(b.setParentNode(&a));
    ASSERT_TRUE(c.setParentNode(&b));
    EXPECT_FALSE(a.setParentNode(&a));
    EXPECT_FALSE(a.setParentNode(&c));
    EXPECT_EQ(a.getParentNode(), nullptr);
    EXPECT_EQ(a.getChildNode(0), &b);
    EXPECT_EQ(a.getChildNode(1), nullptr);
}

TEST(Node, ErasedLeavesChildrenAsRootsAndEntitiesWithoutANode) {
    TestManagers managers;
    Node& root = make(managers.nodes, 0);
    Node& middle = make(managers.nodes, 1);
    Node& leaf = make(managers.nodes, 2);
    middle.setParentNode(&root);
    leaf.setParentNode(&middle);
    root.setPosition({5, 0, 0});
    RenderQueue& queue = *managers.renderQueues.createOrRetrieve("queue");
    Entity& entity = *queue.addEntity();
    entity.setParentNode(&middle);
    queue.updateTransforms();
    EXPECT_EQ(queue.arrays().worlds[0](0, 3), 5);

    managers.nodes.erase("1");
    EXPECT_EQ(leaf.getParentNode(), nullptr);
    EXPECT_EQ(root.getChildNode(0), nullptr);
    EXPECT_EQ(entity.getParentNode(), nullptr);
    expectNear(leaf.getPositionAbsolute(), {0, 0, 0});
    queue.updateTransforms();
    EXPECT_EQ(queue.arrays().worlds[0], vlMaths::Matrix());
}

TEST(Node, ChainsOfAHundredThousandMoveAndEnd) {
    constexpr int count = 100000;
    NodeManager nodes;
    Node* last = nullptr;
    for (int number = 0; number < count; ++number) {
        Node& node = make(nodes, number);
        ASSERT_TRUE(node.setParentNode(last));
        last = &node;
    }
    Node& first = *nodes.get("0");
    first.setPosition({1, 0, 0});
    expectNear(last->getPositionAbsolute(), {1, 0, 0});
    first.setPosition({2, 0, 0});
    expectNear(last->getPositionAbsolute(), {2, 0, 0});
    EXPECT_FALSE(first.setParentNode(last));
}

} // namespace
} // namespace vlGraphics
