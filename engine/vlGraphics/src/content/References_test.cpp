#include "resources/TestManagers.h"

#include <vlGraphics/References.h>
#include <vlGraphics/RenderScenePass.h>

#include <gtest/gtest.h>

namespace vlGraphics {
namespace {

using Lines = std::vector<vlMemory::String>;

class ReferencesTest : public testing::Test {
protected:
    ReferencesTest() {
        Compositor& compositor = *managers.compositors.createOrRetrieve("main");
        compositor.addNode()->addOperations()->addClearTargetsPass(TargetOperations::atEnd);
        TargetOperations& second = *compositor.addNode()->addOperations();
        second.addColorTarget({managers.textures.handleOf("glow"), 0});
        second.setDepthTarget(managers.textures.handleOf("depth"));
        second.setOverloadedViewport(managers.viewports.handleOf("left"));
        second.addPass(TargetOperations::atEnd);
        RenderScenePass& pass = *second.addRenderScenePass(TargetOperations::atEnd);
        pass.setBlendState(managers.blendStates.handleOf("state"));
        pass.setDepthStencilState(managers.depthStencilStates.handleOf("state"));
        pass.setRasterState(managers.rasterStates.handleOf("state"));
        pass.setRenderQueue(managers.renderQueues.handleOf("queue"));
        pass.setRenderCamera(managers.cameras.handleOf("eye"));
        pass.setCullingCamera(managers.cameras.handleOf("eye"));
        pass.setLodCamera(managers.cameras.handleOf("far"));

        Shader& shader = *managers.shaders.createOrRetrieve("rust");
        shader.setProgram(managers.programs.handleOf("lit"));
        shader.addTexture(managers.textures.handleOf("glow"), 0, 0);
        shader.addSampler(managers.samplers.handleOf("soft"), 0, 0);
        ConstantBuffer& buffer = *shader.addConstantBuffer(0, 0);
        buffer.addPassMemorySlot()->setAsViewMatrix(managers.cameras.handleOf("eye"));
        buffer.addPassMemorySlot()->setAsTextureSize(managers.textures.handleOf("size"));
    }

    template <class Manager> static Lines usersOfNew(Manager& manager, vlMemory::StringView name) {
        return usersOf(*manager.createOrRetrieve(name));
    }

    TestManagers managers;
};

TEST_F(ReferencesTest, EveryReferenceIsFoundByItsKindAndPlace) {
    const Lines pass{"compositor 'main', pass 3"};
    const Lines operation{"compositor 'main', operation 2"};
    const Lines shader{"shader 'rust'"};
    EXPECT_EQ(usersOfNew(managers.blendStates, "state"), pass);
    EXPECT_EQ(usersOfNew(managers.depthStencilStates, "state"), pass);
    EXPECT_EQ(usersOfNew(managers.rasterStates, "state"), pass);
    EXPECT_EQ(usersOfNew(managers.renderQueues, "queue"), pass);
    EXPECT_EQ(usersOfNew(managers.cameras, "far"), pass);
    EXPECT_EQ(usersOfNew(managers.cameras, "eye"), (Lines{pass[0], shader[0]}));
    EXPECT_EQ(usersOfNew(managers.viewports, "left"), operation);
    EXPECT_EQ(usersOfNew(managers.textures, "glow"), (Lines{operation[0], shader[0]}));
    EXPECT_EQ(usersOfNew(managers.textures, "depth"), operation);
    EXPECT_EQ(usersOfNew(managers.textures, "size"), shader);
    EXPECT_EQ(usersOfNew(managers.programs, "lit"), shader);
    EXPECT_EQ(usersOfNew(managers.samplers, "soft"), shader);
    EXPECT_EQ(usersOfNew(managers.samplers, "state"), Lines());
    EXPECT_EQ(usersOfNew(managers.buffers, "state"), Lines());
    EXPECT_EQ(usersOfNew(managers.scripts, "state"), Lines());
}

TEST_F(ReferencesTest, AReferenceFollowsARenameAndHiddenUsersAreLeftOut) {
    managers.rasterStates.createOrRetrieve("state");
    RasterState& other = *managers.rasterStates.createOrRetrieve("other");
    EXPECT_EQ(usersOf(other), Lines());
    managers.rasterStates.rename("other", "state");
    EXPECT_EQ(usersOf(other), Lines{"compositor 'main', pass 3"});
    managers.compositors.get("main")->setHidden(true);
    EXPECT_EQ(usersOf(other), Lines());
}

} // namespace
} // namespace vlGraphics
