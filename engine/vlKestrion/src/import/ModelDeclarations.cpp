#include "ModelDeclarations.h"

#include <vlGraphics/DefaultNames.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace vlKestrion {

namespace {

using vlExport::Node;
using vlMemory::StringView;

Node named(StringView name) {
    Node node = Node::object();
    node.add("name", name);
    return node;
}

Node object(StringView member, StringView value) {
    Node node = Node::object();
    node.add(member, value);
    return node;
}

Node binding(StringView kind, StringView resource, std::uint32_t slot) {
    Node node = object(kind, resource);
    node.add("slot", slot);
    node.add("space", 0);
    return node;
}

Node vectorSlot(const Float3& value, float w) {
    Node node = object("type", "VECTOR");
    node.add("value", Node::array(std::array{value.x, value.y, value.z, w}));
    return node;
}

Node stage(StringView name, StringView file, const LitVariant& variant) {
    Node node = object("stage", name);
    node.add("file", file);
    Node macros = Node::array();
    const std::pair<bool, StringView> all[] = {{variant.diffuseMap, "USE_DIFFUSE_MAP"},
                                               {variant.normalMap, "USE_NORMAL_MAP"},
                                               {variant.alphaTest, "USE_ALPHA_TEST"}};
    for (const auto& [defined, macro] : all) {
        if (!defined) continue;
        Node define = named(macro);
        define.add("value", "1");
        macros.append(std::move(define));
    }
    node.add("macros", std::move(macros));
    return node;
}

/// Files hold colours as screens show them; light is added up in linear ones.
float toLinear(float value) {
    return value <= 0.04045F ? value / 12.92F : std::pow((value + 0.055F) / 1.055F, 2.4F);
}

Float3 toLinear(const Float3& color) {
    return {toLinear(color.x), toLinear(color.y), toLinear(color.z)};
}

Float3 mix(const Float3& a, const Float3& b, float amount) {
    return a * (1 - amount) + b * amount;
}

/// What a highlight of that exponent corresponds to.
float roughnessOf(const MtlMaterial& look) {
    if (look.roughness >= 0) return look.roughness;
    return std::sqrt(std::sqrt(2.0F / (look.exponent + 2.0F)));
}

} // namespace

vlMemory::String LitVariant::name() const {
    vlMemory::String text = "Lit";
    if (diffuseMap) text += " textured";
    if (normalMap) text += " bumped";
    if (alphaTest) text += " cut out";
    return text;
}

LitVariant variantOf(const ModelMaterial& material, const std::vector<ModelTexture>& textures) {
    LitVariant variant;
    variant.diffuseMap = material.diffuseTexture != ModelMaterial::noTexture;
    variant.normalMap = material.normalTexture != ModelMaterial::noTexture;
    variant.alphaTest = variant.diffuseMap && textures[material.diffuseTexture].hasHoles &&
                        !material.transparent();
    return variant;
}

namespace ModelDeclarations {

Node file(StringView list) {
    Node node = Node::object();
    node.add("formatVersion", 1);
    node.add(list, Node::array());
    return node;
}

Node& add(Node& file, Node declaration) {
    return file.members().back().value.append(std::move(declaration));
}

Node mesh(StringView name, StringView file) {
    Node node = named(name);
    node.add("file", file);
    return node;
}

Node texture(const ModelTexture& texture, StringView file) {
    Node node = named(texture.resource);
    node.add("file", file);
    node.add("mipCount", 0);
    node.add("gammaCorrected", texture.use == TextureUse::color);
    return node;
}

Node sampler(StringView name) {
    Node node = named(name);
    node.add("filter", "ANISOTROPIC");
    for (const StringView axis : {"addressU", "addressV", "addressW"})
        node.add(axis, "WRAP");
    node.add("anisotropy", 8);
    return node;
}

Node program(StringView name, const LitVariant& variant, StringView folder) {
    Node node = named(name);
    node.add("type", "PIPELINE");
    Node& stages = node.add("stages", Node::array());
    const vlMemory::String prefix = vlMemory::String(folder) + "/";
    stages.append(stage("VERTEX", prefix + "vertexShader.hlsl", variant));
    stages.append(stage("PIXEL", prefix + "pixelShader.hlsl", variant));
    return node;
}

Node shader(StringView name,
            const ModelMaterial& material,
            const std::vector<ModelTexture>& textures,
            StringView program,
            StringView sampler) {
    Node node = named(name);
    node.add("program", program);
    Node bound = Node::array();
    if (material.diffuseTexture != ModelMaterial::noTexture)
        bound.append(binding("texture", textures[material.diffuseTexture].resource, 0));
    if (material.normalTexture != ModelMaterial::noTexture)
        bound.append(binding("texture", textures[material.normalTexture].resource, 1));
    node.add("textures", std::move(bound));
    Node samplers = Node::array();
    if (material.hasTexture()) samplers.append(binding("sampler", sampler, 0));
    node.add("samplers", std::move(samplers));

    const MtlMaterial& look = material.look;
    const Float3 diffuse = toLinear(look.diffuse);
    const Float3 reflectance = mix(look.specular * 0.08F, diffuse, look.metalness);
    Node buffer = Node::object();
    buffer.add("slot", 0);
    buffer.add("space", 0);
    Node& slots = buffer.add("slots", Node::array());
    for (const StringView type : {"VIEW_MATRIX", "PROJECTION_MATRIX", "CAMERA_POSITION"})
        slots.append(object("type", type));
    slots.append(vectorSlot(diffuse * (1 - look.metalness), look.opacity));
    slots.append(vectorSlot(reflectance, roughnessOf(look)));
    slots.append(vectorSlot(toLinear(look.emission), 0));
    node.add("constantBuffers", Node::array()).append(std::move(buffer));
    node.add("instanceSlots", Node::array()).append(object("type", "WORLD_MATRIX"));
    return node;
}

Node material(StringView name, bool transparent) {
    Node node = named(name);
    node.add("shader", name);
    node.add("transparent", transparent);
    return node;
}

Node camera(StringView name, const vlGraphics::Camera::Settings& settings) {
    Node node = named(name);
    const auto& [x, y, z, w] = settings.position;
    node.add("position", Node::array(std::array{x, y, z}));
    const auto& turn = settings.orientation;
    node.add("orientation", Node::array(std::array{turn.x, turn.y, turn.z, turn.w}));
    node.add("fieldOfView", settings.fieldOfView);
    node.add("nearDistance", settings.nearDistance);
    node.add("farDistance", settings.farDistance);
    return node;
}

Node blendState(StringView name) {
    Node node = named(name);
    Node target = Node::object();
    target.add("enabled", true);
    target.add("src", "SRC_ALPHA");
    target.add("dest", "INV_SRC_ALPHA");
    target.add("srcAlpha", "ONE");
    target.add("destAlpha", "INV_SRC_ALPHA");
    node.add("targets", Node::array()).append(std::move(target));
    return node;
}

Node depthStencilState(StringView name) {
    Node node = named(name);
    node.add("depthWriteMask", "ZERO");
    return node;
}

Node rasterState(StringView name) {
    Node node = named(name);
    node.add("cullMode", "NONE");
    return node;
}

Node compositor(StringView name, const ViewStates& states) {
    Node clear = object("type", "clearTargets");
    clear.add("clearColor", true);
    clear.add("clearDepth", true);
    clear.add("clearColorValue", "0.06, 0.065, 0.075, 1.0");
    Node opaque = object("type", "renderScene");
    opaque.add("transparent", false);
    opaque.add("rasterState", states.raster);
    Node transparent = object("type", "renderScene");
    transparent.add("transparent", true);
    transparent.add("blendState", states.blend);
    transparent.add("rasterState", states.raster);
    transparent.add("depthStencilState", states.depthStencil);

    Node operation = Node::object();
    operation.add("colorTargets", Node::array()).append(vlGraphics::DefaultNames::backBuffer);
    operation.add("depthTarget", vlGraphics::DefaultNames::depthBuffer);
    Node& passes = operation.add("passes", Node::array());
    for (Node* pass : {&clear, &opaque, &transparent})
        passes.append(std::move(*pass));
    Node step = Node::object();
    step.add("operations", Node::array()).append(std::move(operation));
    Node node = named(name);
    node.add("nodes", Node::array()).append(std::move(step));
    return node;
}

} // namespace ModelDeclarations

vlGraphics::Camera::Settings cameraFor(const vlMaths::BoundingBox& box) {
    using vlMaths::Vector;
    constexpr float aspect = 4.0F / 3.0F; // wider pictures see it too
    constexpr float margin = 1.02F;
    vlGraphics::Camera::Settings settings;
    settings.fieldOfView = 0.7853982F;
    const Vector forward = vlMaths::normalised(Vector{-0.55F, -0.42F, 1.0F});
    settings.orientation = vlMaths::Quaternion::lookAt({}, forward);
    const Vector right = vlMaths::rotate(settings.orientation, {1, 0, 0});
    const Vector up = vlMaths::rotate(settings.orientation, {0, 1, 0});
    const float tangent = std::tan(settings.fieldOfView / 2);
    const Vector half = box.size() * 0.5F;
    float away = 0;
    for (int corner = 0; corner < 8; ++corner) {
        const Vector point{(corner & 1) != 0 ? half.x : -half.x,
                           (corner & 2) != 0 ? half.y : -half.y,
                           (corner & 4) != 0 ? half.z : -half.z};
        const float needed = std::max(std::fabs(vlMaths::dot(point, right)) / (tangent * aspect),
                                      std::fabs(vlMaths::dot(point, up)) / tangent);
        away = std::max(away, needed - vlMaths::dot(point, forward));
    }
    if (!std::isfinite(away)) return settings;
    away *= margin;
    settings.position = (box.center() - forward * away).withW(1);
    settings.nearDistance = away * 1e-3F;
    settings.farDistance = away * 50;
    return settings;
}

} // namespace vlKestrion
