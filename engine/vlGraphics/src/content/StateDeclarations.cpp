#include "content/KindLoader.h"
#include "resources/EnumTexts.h"

#include <vlGraphics/DepthStencilState.h>

namespace vlGraphics {

namespace {

template <class Enum> constexpr const auto& texts = EnumTexts<Enum>::table;

template <class Archive, class Face> void describeFace(Archive& archive, Face& face) {
    archive.optional("fail", face.fail, texts<STENCIL_OP>);
    archive.optional("depthFail", face.depthFail, texts<STENCIL_OP>);
    archive.optional("pass", face.pass, texts<STENCIL_OP>);
    archive.optional("function", face.function, texts<COMPARISON_FUNCTION>);
}

template <class Archive, class Target> void describeTarget(Archive& archive, Target& target) {
    archive.optional("enabled", target.enabled);
    archive.optional("src", target.src, texts<BLEND>);
    archive.optional("dest", target.dest, texts<BLEND>);
    archive.optional("op", target.op, texts<BLEND_OP>);
    archive.optional("srcAlpha", target.srcAlpha, texts<BLEND>);
    archive.optional("destAlpha", target.destAlpha, texts<BLEND>);
    archive.optional("opAlpha", target.opAlpha, texts<BLEND_OP>);
    archive.optional("writeMask", target.writeMask, texts<COLOR_WRITE_ENABLE>);
}

} // namespace

template <> struct Declared<BlendState> {
    using Manager = BlendStateManager;
    static constexpr vlMemory::StringView list = "blendStates";
    struct Values {
        bool alphaToCoverage = false;
        bool independentBlend = false;
        std::vector<BlendState::Target> targets; ///< what is missing at the end is as at the start
    };
    template <class Archive, class V> static void describe(Archive& archive, V& values) {
        archive.optional("alphaToCoverage", values.alphaToCoverage);
        archive.optional("independentBlend", values.independentBlend);
        archive.optionalArray(
                "targets",
                values.targets,
                [](auto& child, auto& target) { describeTarget(child, target); },
                BlendState::targetCount);
    }
    static Values from(const BlendState& state, const DeclarationFolders&) {
        Values values{state.getAlphaToCoverage(), state.getIndependentBlend(), {}};
        for (std::uint32_t index = 0; index < BlendState::targetCount; ++index) {
            values.targets.push_back(state.getTarget(index));
        }
        while (values.targets.size() > 1 && values.targets.back() == BlendState::Target{}) {
            values.targets.pop_back();
        }
        return values;
    }
    static vlCommon::Result<> prepare(Values& values, const DeclarationFolders&) {
        values.targets.resize(BlendState::targetCount);
        return {};
    }
    static void apply(BlendState& state, const Values& values) {
        state.setAlphaToCoverage(values.alphaToCoverage);
        state.setIndependentBlend(values.independentBlend);
        for (std::uint32_t index = 0; index < BlendState::targetCount; ++index) {
            state.setTarget(values.targets[index], index);
        }
    }
};

/** Kinds whose declaration is nothing but their settings. */
template <class T> struct DeclaredSettings {
    using Values = typename T::Settings;
    static Values from(const T& resource, const DeclarationFolders&) {
        return resource.getSettings();
    }
    static vlCommon::Result<> prepare(Values&, const DeclarationFolders&) { return {}; }
    static void apply(T& resource, const Values& values) { resource.setSettings(values); }
};

template <> struct Declared<DepthStencilState> : DeclaredSettings<DepthStencilState> {
    using Manager = DepthStencilStateManager;
    static constexpr vlMemory::StringView list = "depthStencilStates";
    template <class Archive, class V> static void describe(Archive& archive, V& values) {
        archive.optional("depthEnabled", values.depthEnabled);
        archive.optional("depthWriteMask", values.depthWriteMask, texts<DEPTH_WRITE_MASK>);
        archive.optional("depthFunction", values.depthFunction, texts<COMPARISON_FUNCTION>);
        archive.optional("stencilEnabled", values.stencilEnabled);
        archive.optional("stencilReadMask", values.stencilReadMask);
        archive.optional("stencilWriteMask", values.stencilWriteMask);
        archive.optionalObject("front", [&](auto& child) { describeFace(child, values.front); });
        archive.optionalObject("back", [&](auto& child) { describeFace(child, values.back); });
    }
};

template <> struct Declared<RasterState> : DeclaredSettings<RasterState> {
    using Manager = RasterStateManager;
    static constexpr vlMemory::StringView list = "rasterStates";
    template <class Archive, class V> static void describe(Archive& archive, V& values) {
        archive.optional("fillMode", values.fillMode, texts<FILL_MODE>);
        archive.optional("cullMode", values.cullMode, texts<CULL_MODE>);
        archive.optional("frontCounterClockwise", values.frontCounterClockwise);
        archive.optional("depthBias", values.depthBias);
        archive.optional("depthBiasClamp", values.depthBiasClamp);
        archive.optional("slopeScaledDepthBias", values.slopeScaledDepthBias);
        archive.optional("depthClip", values.depthClip);
        archive.optional("scissor", values.scissor);
        archive.optional("multiSampling", values.multiSampling);
        archive.optional("lineAntiAliasing", values.lineAntiAliasing);
    }
};

template <> struct Declared<Sampler> : DeclaredSettings<Sampler> {
    using Manager = SamplerManager;
    static constexpr vlMemory::StringView list = "samplers";
    template <class Archive, class V> static void describe(Archive& archive, V& values) {
        archive.optional("filter", values.filter, texts<FILTER>);
        archive.optional("addressU", values.addressU, texts<TEXTURE_ADDRESS_MODE>);
        archive.optional("addressV", values.addressV, texts<TEXTURE_ADDRESS_MODE>);
        archive.optional("addressW", values.addressW, texts<TEXTURE_ADDRESS_MODE>);
        archive.optional("anisotropy", values.anisotropy, 1U, 16U);
        archive.optional("lodBias", values.lodBias);
        archive.optional("minLod", values.minLod);
        archive.optional("maxLod", values.maxLod);
        archive.check(values.minLod <= values.maxLod, "maxLod", "is below 'minLod'");
        archive.optional("comparison", values.comparison, texts<COMPARISON_FUNCTION>);
        archive.optional("borderColor", values.borderColor);
    }
};

template <> struct Declared<Buffer> : DeclaredSettings<Buffer> {
    using Manager = BufferManager;
    static constexpr vlMemory::StringView list = "buffers";
    template <class Archive, class V> static void describe(Archive& archive, V& values) {
        archive.optional("elementByteSize", values.elementByteSize);
        archive.optional("elementCount", values.elementCount);
        archive.optional("unorderedAccess", values.unorderedAccess);
        archive.optional("shaderResource", values.shaderResource);
    }
};

template <> struct Declared<Camera> : DeclaredSettings<Camera> {
    using Manager = CameraManager;
    static constexpr vlMemory::StringView list = "cameras";
    template <class Archive, class V> static void describe(Archive& archive, V& values) {
        archive.optional("position", values.position, 3);
        archive.optional("orientation", values.orientation);
        archive.optional("orthographic", values.orthographic);
        archive.optional("fieldOfView", values.fieldOfView);
        archive.optional("nearDistance", values.nearDistance);
        archive.optional("farDistance", values.farDistance);
        archive.optional("orthographicHeight", values.orthographicHeight);
    }
    static vlCommon::Result<> prepare(Values& values, const DeclarationFolders&) {
        Camera camera;
        if (camera.setSettings(values)) return {};
        return vlCommon::fail("these values make no camera: the field of view lies between 0 and "
                              "pi, the near distance below the far one and above 0 in perspective");
    }
};

template <> struct Declared<Viewport> {
    using Manager = ViewportManager;
    using Values = Viewport::Area;
    static constexpr vlMemory::StringView list = "viewports";
    template <class Archive, class V> static void describe(Archive& archive, V& values) {
        archive.optional("x", values.x, 0, 1);
        archive.optional("y", values.y, 0, 1);
        archive.optional("width", values.width, 0, 1);
        archive.optional("height", values.height, 0, 1);
        archive.optional("minDepth", values.minDepth, 0, 1);
        archive.optional("maxDepth", values.maxDepth, 0, 1);
    }
    static Values from(const Viewport& viewport, const DeclarationFolders&) {
        return viewport.getArea();
    }
    static vlCommon::Result<> prepare(Values&, const DeclarationFolders&) { return {}; }
    static void apply(Viewport& viewport, const Values& values) { viewport.setArea(values); }
};

template <> struct Declared<RenderQueue> {
    using Manager = RenderQueueManager;
    static constexpr vlMemory::StringView list = "renderQueues";
    struct Values {
        bool raytraced = false;
        float lodQualityFactor = 1;
        bool useLodSystem = true;
        bool orderQueue = true;
        bool frustumCull = true;
    };
    template <class Archive, class V> static void describe(Archive& archive, V& values) {
        archive.optional("raytraced", values.raytraced);
        archive.optional("lodQualityFactor", values.lodQualityFactor);
        archive.optional("useLodSystem", values.useLodSystem);
        archive.optional("orderQueue", values.orderQueue);
        archive.optional("frustumCull", values.frustumCull);
    }
    static Values from(const RenderQueue& queue, const DeclarationFolders&) {
        const DefaultRenderStrategy& strategy = queue.getRenderStrategy();
        return {queue.getRaytraced(),
                strategy.getLodQualityFactor(),
                strategy.getUseLodSystem(),
                strategy.getOrderQueue(),
                strategy.getFrustumCull()};
    }
    static vlCommon::Result<> prepare(Values&, const DeclarationFolders&) { return {}; }
    static void apply(RenderQueue& queue, const Values& values) {
        queue.setRaytraced(values.raytraced);
        DefaultRenderStrategy& strategy = queue.getRenderStrategy();
        strategy.setLodQualityFactor(values.lodQualityFactor);
        strategy.setUseLodSystem(values.useLodSystem);
        strategy.setOrderQueue(values.orderQueue);
        strategy.setFrustumCull(values.frustumCull);
    }
};

} // namespace vlGraphics

VL_DECLARED_KIND(BlendState);
VL_DECLARED_KIND(DepthStencilState);
VL_DECLARED_KIND(RasterState);
VL_DECLARED_KIND(Sampler);
VL_DECLARED_KIND(Buffer);
VL_DECLARED_KIND(Camera);
VL_DECLARED_KIND(Viewport);
VL_DECLARED_KIND(RenderQueue);
