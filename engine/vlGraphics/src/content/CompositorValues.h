#pragma once
#include "content/ColorText.h"
#include "resources/EnumTexts.h"

#include <vlCommon/Result.h>
#include <vlExport/Node.h>
#include <vlGraphics/Compositor.h>

#include <vector>

namespace vlGraphics {

/** What declarations say of a compositor. Only the members of the pass's type count. */
struct PassValues {
    PASS_TYPE type = PASS_TYPE::NONE;
    vlMemory::String name;
    bool clearsColor = true;
    bool clearsDepth = true;
    vlMaths::Vector color{0, 0, 0, 1};
    float depth = 1;
    std::uint32_t stencil = 0;
    std::uint32_t colorTargetIndex = 0;
    vlMemory::String renderQueue;
    bool transparent = false;
    vlMemory::String renderCamera;
    vlMemory::String cullingCamera;
    vlMemory::String lodCamera;
    vlMemory::String blendState;
    vlMemory::String rasterState;
    vlMemory::String depthStencilState;
    std::uint8_t stencilReference = 0;
    vlMemory::String shader;
    std::uint32_t x = 1;
    std::uint32_t y = 1;
    std::uint32_t z = 1;
};

struct OperationValues {
    vlMemory::String name;
    std::vector<vlMemory::String> colorTargets; ///< by render index
    vlMemory::String depthTarget;               ///< empty: none
    vlMemory::String viewport;                  ///< empty: the whole target
    std::vector<PassValues> passes;
};

struct NodeValues {
    vlMemory::String name;
    bool active = true;
    std::vector<OperationValues> operations;
};

std::vector<NodeValues> compositorValues(const Compositor& compositor);
/// What the description cannot say: no target twice.
vlCommon::Result<> checkCompositorValues(const std::vector<NodeValues>& nodes);
std::unique_ptr<CompositorNode> makeCompositorNode(const NodeValues& values);

/// A text that is left out while it is empty.
template <class Archive, class Text>
void describeName(Archive& archive, vlMemory::StringView member, Text& text) {
    if (Archive::reading || !text.empty()) archive.optional(member, text);
}

template <class Archive, class Color>
void describeColor(Archive& archive, vlMemory::StringView member, Color& color) {
    if constexpr (Archive::reading) {
        vlMemory::String text = colorText(color);
        archive.optional(member, text);
        const auto read = parseColor(text);
        archive.check(read.has_value(), member, "expected four numbers as \"0.0, 0.0, 0.0, 1.0\"");
        if (read) color = *read;
    } else {
        archive.optional(member, colorText(color));
    }
}

/// Files once gave the colour as "clearColor", or the flags as "shouldClearColor" and
/// "shouldClearDepth".
template <class Archive, class V> void describeClearColor(Archive& archive, V& pass) {
    if constexpr (Archive::reading) {
        vlExport::Node value(pass.clearsColor);
        archive.optional("clearColor", value);
        archive.check(value.isBool() || value.isString(),
                      "clearColor",
                      "expected true, false or a text of four numbers");
        if (value.isString()) {
            pass.clearsColor = true;
            describeColor(archive, "clearColor", pass.color);
        } else if (value.isBool()) {
            pass.clearsColor = *value.asBool();
        }
        archive.optional("shouldClearColor", pass.clearsColor);
        archive.optional("shouldClearDepth", pass.clearsDepth);
    } else {
        archive.optional("clearColor", pass.clearsColor);
    }
}

template <class Archive, class V> void describePass(Archive& archive, V& pass) {
    archive.required("type", pass.type, EnumTexts<PASS_TYPE>::table);
    describeName(archive, "name", pass.name);
    switch (pass.type) {
    case PASS_TYPE::NONE:
        return;
    case PASS_TYPE::CLEAR_TARGETS:
        describeClearColor(archive, pass);
        archive.optional("clearDepth", pass.clearsDepth);
        describeColor(archive, "clearColorValue", pass.color);
        archive.optional("clearDepthValue", pass.depth, 0, 1);
        archive.optional("clearStencilValue", pass.stencil);
        archive.optional("colorTargetIndex", pass.colorTargetIndex);
        return;
    case PASS_TYPE::COMPUTE:
        describeName(archive, "shader", pass.shader);
        archive.optional("x", pass.x);
        archive.optional("y", pass.y);
        archive.optional("z", pass.z);
        return;
    case PASS_TYPE::RENDER_SCENE:
        describeName(archive, "renderQueue", pass.renderQueue);
        archive.optional("transparent", pass.transparent);
        describeName(archive, "renderCamera", pass.renderCamera);
        describeName(archive, "cullingCamera", pass.cullingCamera);
        describeName(archive, "lodCamera", pass.lodCamera);
        describeName(archive, "blendState", pass.blendState);
        describeName(archive, "rasterState", pass.rasterState);
        describeName(archive, "depthStencilState", pass.depthStencilState);
        if (Archive::reading || pass.stencilReference != 0)
            archive.optional("stencilReference", pass.stencilReference);
        return;
    default:
        archive.fail("this engine has no pass of type '" + vlMemory::String(enumText(pass.type)) +
                     "'");
    }
}

template <class Archive, class Nodes> void describeNodes(Archive& archive, Nodes& nodes) {
    archive.optionalArray("nodes", nodes, [](auto& nodeArchive, auto& node) {
        describeName(nodeArchive, "name", node.name);
        nodeArchive.optional("active", node.active);
        nodeArchive.optionalArray("operations", node.operations, [](auto& child, auto& operation) {
            describeName(child, "name", operation.name);
            child.optional("colorTargets", operation.colorTargets);
            describeName(child, "depthTarget", operation.depthTarget);
            describeName(child, "viewport", operation.viewport);
            child.optionalArray("passes", operation.passes, [](auto& passArchive, auto& pass) {
                describePass(passArchive, pass);
            });
        });
    });
}

} // namespace vlGraphics
