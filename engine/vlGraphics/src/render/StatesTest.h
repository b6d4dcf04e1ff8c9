#pragma once
#include "render/EngineTest.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace vlGraphics {

/// A rectangle of clip space at one depth, or from a left to a right depth.
struct Rectangle {
    float left = -1, right = 1, top = 1, bottom = -1;
    float leftDepth = 0.5F, rightDepth = 0.5F;
    bool clockwise = true;
};

inline constexpr Rgba black{0, 0, 0, 255};
inline constexpr Rgba white{255, 255, 255, 255};
inline constexpr Rgba red{255, 0, 0, 255};
inline constexpr Rgba green{0, 255, 0, 255};

/** A picture of 16 by 16 pixels, cleared to black, and passes over it in a visible order, each with
 *  states of its own. */
class StatesTest : public EngineTest {
protected:
    static constexpr std::uint32_t side = 16;
    void SetUp() override {
        EngineTest::SetUp();
        if (HasFatalFailure()) return;
        context_ = &makeContext(surface_);
        operations_ = &addBackBuffer(makeCompositor(*context_), {0, 0, 0, 1});
        clear_ = static_cast<ClearTargetsPass*>(operations_->getPass(0));
    }

    /// A pixel stage that writes one colour.
    static std::string colored(std::string_view color) {
        return "float4 main() : SV_TARGET { return float4(" + std::string(color) + "); }";
    }
    static const Mesh& meshOf(const Rectangle& at) {
        std::vector<vlMaths::Vector> corners{{at.left, at.top, at.leftDepth},
                                             {at.right, at.top, at.rightDepth},
                                             {at.right, at.bottom, at.rightDepth},
                                             {at.left, at.top, at.leftDepth},
                                             {at.right, at.bottom, at.rightDepth},
                                             {at.left, at.bottom, at.leftDepth}};
        if (!at.clockwise) std::reverse(corners.begin(), corners.end());
        return makeMesh(newName(), corners);
    }
    RenderScenePass& addPass(const Rectangle& at, std::string_view color) {
        return addDraw(*operations_, meshOf(at), makeShader(newName(), place, colored(color)));
    }

    static RasterState& rasterOf(RenderScenePass& pass) {
        RasterStateManager& manager = *RasterStateManager::getInstance();
        RasterState& state = *manager.createOrRetrieve(newName());
        pass.setRasterState(manager.handleOf(state.getName()));
        return state;
    }
    static DepthStencilState& depthOf(RenderScenePass& pass) {
        DepthStencilStateManager& manager = *DepthStencilStateManager::getInstance();
        DepthStencilState& state = *manager.createOrRetrieve(newName());
        pass.setDepthStencilState(manager.handleOf(state.getName()));
        return state;
    }
    static BlendState& blendOf(RenderScenePass& pass) {
        BlendStateManager& manager = *BlendStateManager::getInstance();
        BlendState& state = *manager.createOrRetrieve(newName());
        pass.setBlendState(manager.handleOf(state.getName()));
        return state;
    }

    static Texture& makeTarget(FORMAT format,
                               RENDER_FLAG flag,
                               std::uint32_t width = side,
                               std::uint32_t height = side) {
        return EngineTest::makeTarget(newName(), format, flag, width, height);
    }

    Rgba drawnAt(std::uint32_t x, std::uint32_t y) { return pixelAt(drawAndRead(*context_), x, y); }

    TestSurface surface_{side, side};
    RenderContext* context_ = nullptr;
    TargetOperations* operations_ = nullptr;
    ClearTargetsPass* clear_ = nullptr;
};

} // namespace vlGraphics
