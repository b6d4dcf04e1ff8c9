#include "resources/TestManagers.h"

#include <gtest/gtest.h>

namespace vlGraphics {
namespace {

/// Names of all colour targets by render index; the back buffer is "*".
std::vector<vlMemory::String> targetsOf(const TargetOperations& operations) {
    std::vector<vlMemory::String> names(operations.getColorTargetCount(), "?");
    if (operations.isToBackBuffer()) names[operations.getBackBufferViewIndex()] = "*";
    for (std::uint32_t i = 0; const auto* target = operations.getColorTarget(i); ++i) {
        EXPECT_EQ(operations.getColorTargetRenderIndex(i), target->renderIndex);
        names[target->renderIndex] = TextureManager::getInstance()->nameOf(target->texture);
    }
    return names;
}

using Names = std::vector<vlMemory::String>;

TEST(TargetOperations, RenderIndicesStayWithoutGaps) {
    TestManagers managers;
    TargetOperations operations;
    for (const char* name : {"a", "b"}) {
        EXPECT_TRUE(operations.addColorTarget({managers.textures.handleOf(name), 7}));
    }
    EXPECT_TRUE(operations.setToBackBuffer(operations.getColorTargetCount()));
    EXPECT_EQ(targetsOf(operations), (Names{"a", "b", "*"}));
    EXPECT_TRUE(operations.swapColorTargets(2, 1));
    EXPECT_EQ(targetsOf(operations), (Names{"a", "*", "b"}));
    EXPECT_TRUE(operations.setToBackBuffer(0));
    EXPECT_EQ(targetsOf(operations), (Names{"*", "a", "b"}));
    EXPECT_TRUE(operations.replaceColorTarget(1, {managers.textures.handleOf("c"), 0}));
    EXPECT_TRUE(operations.eraseColorTarget(0));
    EXPECT_EQ(targetsOf(operations), (Names{"c", "b"}));
    EXPECT_FALSE(operations.isToBackBuffer());
    EXPECT_FALSE(operations.eraseColorTarget(2));
    EXPECT_FALSE(operations.swapColorTargets(0, 2));
    EXPECT_EQ(operations.getColorTarget(2), nullptr);
}

TEST(TargetOperations, HoldsEightColourTargetsTheBackBufferIncluded) {
    TestManagers managers;
    TargetOperations operations;
    EXPECT_TRUE(operations.setToBackBuffer(3));
    EXPECT_EQ(operations.getBackBufferViewIndex(), 0U);
    for (int i = 0; i < 7; ++i) {
        const auto texture = managers.textures.handleOf(std::to_string(i));
        EXPECT_TRUE(operations.addColorTarget({texture, 0}));
    }
    EXPECT_FALSE(operations.addColorTarget({managers.textures.handleOf("x"), 0}));
    EXPECT_TRUE(operations.eraseColorTarget(0));
    EXPECT_TRUE(operations.addColorTarget({managers.textures.handleOf("x"), 0}));
    EXPECT_FALSE(operations.setToBackBuffer(0));
}

TEST(TargetOperations, AnotherKindOfPassTakesThePlaceAndTheName) {
    TestManagers managers;
    TargetOperations operations;
    operations.addPass(TargetOperations::atEnd);
    EXPECT_EQ(operations.getPassCount(), 1U);
    EXPECT_EQ(operations.getPass(0), nullptr);
    operations.addRenderScenePass(0)->setName("scene");
    EXPECT_EQ(operations.getPassCount(), 1U);
    operations.addClearTargetsPass(0);
    EXPECT_EQ(operations.getPass(0)->getType(), PASS_TYPE::CLEAR_TARGETS);
    EXPECT_EQ(operations.getPass(0)->getName(), "scene");
    operations.addPass(0);
    EXPECT_EQ(operations.getPass(0), nullptr);
    EXPECT_TRUE(operations.swapPasses(0, 1));
    EXPECT_FALSE(operations.erasePass(2));
    EXPECT_TRUE(operations.erasePass(1));
    EXPECT_EQ(operations.getPass(0)->getName(), "scene");
}

TEST(Compositor, CopiesAreDeepAndOfItselfToo) {
    TestManagers managers;
    Compositor& from = *managers.compositors.createOrRetrieve("from");
    Compositor& to = *managers.compositors.createOrRetrieve("to");
    to.addNode()->setName("old");
    CompositorNode& node = *from.addNode();
    node.setName("node");
    node.setActive(false);
    TargetOperations& operations = *node.addOperations();
    operations.setName("operations");
    operations.setToBackBuffer(0);
    operations.setToChainDepthBuffer();
    operations.addPass(TargetOperations::atEnd);
    operations.addClearTargetsPass(TargetOperations::atEnd)->setClearColor({1, 2, 3, 4});
    to.copyStructure(from);
    to.copyStructure(to);
    from.clear();
    ASSERT_EQ(to.getNodeCount(), 1U);
    EXPECT_EQ(to.getNode(0)->getName(), "node");
    EXPECT_FALSE(to.getNode(0)->getActive());
    const TargetOperations& copy = *to.getNode(0)->getOperations(0);
    EXPECT_EQ(copy.getName(), "operations");
    EXPECT_TRUE(copy.isToBackBuffer());
    EXPECT_TRUE(copy.isToChainDepthBuffer());
    EXPECT_EQ(copy.getPass(0), nullptr);
    const auto& clear = static_cast<const ClearTargetsPass&>(*copy.getPass(1));
    EXPECT_EQ(clear.getClearColor(), (vlMaths::Vector{1, 2, 3, 4}));
}

TEST(Compositor, DefaultClearsAndDrawsBothKindsOfEntities) {
    TestManagers managers;
    const Compositor* compositor = managers.compositors.getDefaultCompositor();
    EXPECT_TRUE(compositor->isHidden());
    EXPECT_EQ(managers.compositors.getDefaultCompositor(), compositor);
    const TargetOperations& operations = *compositor->getNode(0)->getOperations(0);
    EXPECT_TRUE(operations.isToBackBuffer());
    ASSERT_EQ(operations.getPassCount(), 3U);
    EXPECT_EQ(operations.getPass(0)->getType(), PASS_TYPE::CLEAR_TARGETS);
    EXPECT_FALSE(static_cast<const RenderScenePass*>(operations.getPass(1))->getTransparentPass());
    EXPECT_TRUE(static_cast<const RenderScenePass*>(operations.getPass(2))->getTransparentPass());
}

} // namespace
} // namespace vlGraphics
