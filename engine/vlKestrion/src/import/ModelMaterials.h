#pragma once
#include "MtlFile.h"
#include "ObjFile.h"
#include "Textures.h"

#include <cstdint>
#include <vector>

namespace vlKestrion {

/** A material of the model as the project will have it. */
struct ModelMaterial {
    static constexpr std::size_t noTexture = static_cast<std::size_t>(-1);

    MtlMaterial look;
    vlMemory::String name;                  ///< clean and unlike that of any other material
    std::size_t diffuseTexture = noTexture; ///< index
    std::size_t normalTexture = noTexture;

    bool hasTexture() const { return diffuseTexture != noTexture || normalTexture != noTexture; }
    bool transparent() const { return look.opacity < 1.0F; }
};

/** All materials of a model, by the numbers that the OBJ file uses, and the textures they share. */
struct ModelMaterials {
    std::vector<ModelMaterial> materials;
    std::vector<ModelTexture> textures;

    /// Takes textures that turned out to be faulty away from the materials; a warning each.
    void dropFaulty(std::vector<vlMemory::String>& warnings);
};

/// Reads the libraries beside the model. What is missing gets a warning and looks like grey paint.
ModelMaterials findMaterials(const ObjFile& file,
                             const ModelFolder& folder,
                             vlMemory::StringView modelName,
                             std::vector<vlMemory::String>& warnings);

} // namespace vlKestrion
