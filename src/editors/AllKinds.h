#pragma once
#include "interfaces/kinds/AnyKind.h"

#include <span>

namespace vlEditor {

// Adding a kind: its folder, and a line here and in AllKinds.cpp.
const AnyKind& blendStateKind();
const AnyKind& bufferKind();
const AnyKind& depthStencilStateKind();
const AnyKind& rasterStateKind();
const AnyKind& samplerKind();
const AnyKind& cameraKind();
const AnyKind& scriptKind();
const AnyKind& shaderProgramKind();
const AnyKind& shaderKind();

/// Every kind of resource that has an editor. What one refers to comes before it.
std::span<const AnyKind* const> allKinds();
/// Null when there is none of that name: "BlendState".
const AnyKind* findKind(std::string_view name);

void registerKindMessages(MessageRegistry& registry);

} // namespace vlEditor
