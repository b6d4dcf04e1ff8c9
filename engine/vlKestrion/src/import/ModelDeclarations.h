#pragma once
#include "ModelMaterials.h"

#include <vlExport/Node.h>
#include <vlGraphics/Camera.h>
#include <vlMaths/BoundingBox.h>

#include <cstdint>
#include <set>
#include <vector>

namespace vlKestrion {

/** What a lit material needs of its program. */
struct LitVariant {
    bool diffuseMap = false;
    bool normalMap = false;
    bool alphaTest = false;

    vlMemory::String name() const; ///< "Lit", "Lit textured", ...
    auto operator<=>(const LitVariant&) const = default;
};

LitVariant variantOf(const ModelMaterial& material, const std::vector<ModelTexture>& textures);

/** The declarations of an imported model, in the form that vlGraphics and this library read. Each
 * makes one file's whole tree; names start with the model's. */
namespace ModelDeclarations {

/// A file with one list, which is empty.
vlExport::Node file(vlMemory::StringView list);
/// Appends to the list of such a file.
vlExport::Node& add(vlExport::Node& file, vlExport::Node declaration);

vlExport::Node mesh(vlMemory::StringView name, vlMemory::StringView file);
vlExport::Node texture(const ModelTexture& texture, vlMemory::StringView file);
vlExport::Node sampler(vlMemory::StringView name);
vlExport::Node
program(vlMemory::StringView name, const LitVariant& variant, vlMemory::StringView folder);
vlExport::Node shader(vlMemory::StringView name,
                      const ModelMaterial& material,
                      const std::vector<ModelTexture>& textures,
                      vlMemory::StringView program,
                      vlMemory::StringView sampler);
vlExport::Node material(vlMemory::StringView name, bool transparent);
vlExport::Node camera(vlMemory::StringView name, const vlGraphics::Camera::Settings& settings);
vlExport::Node blendState(vlMemory::StringView name);
/// Names of the states that an imported model is seen with.
struct ViewStates {
    vlMemory::String blend;
    vlMemory::String raster;
    vlMemory::String depthStencil;
};
/// Both sides of every face: models have faces that turn the wrong way.
vlExport::Node rasterState(vlMemory::StringView name);
/// Neutral grey, the scene, and what lets light through over it.
vlExport::Node compositor(vlMemory::StringView name, const ViewStates& states);
/// Tests depth and leaves it alone.
vlExport::Node depthStencilState(vlMemory::StringView name);

} // namespace ModelDeclarations

/// Sees the whole box from the front, a little from the right and from above.
vlGraphics::Camera::Settings cameraFor(const vlMaths::BoundingBox& box);

} // namespace vlKestrion
