#pragma once
#include <vlGraphics/Entity.h>
#include <vlGraphics/ResourceManager.h>
#include <vlGraphics/Shader.h>

#include <vector>

namespace vlKestrion {

/** A named look that entities share: the scene shader they are drawn with and whether they let
 * light through. A change reaches every entity that was given the material at once. Owned by
 * MaterialManager; graphics thread only. */
class Material final : public vlGraphics::Resource {
public:
    static constexpr vlMemory::StringView kindName = "material";

    vlGraphics::Handle<vlGraphics::Shader> getShader() const { return shader_; }
    void setShader(vlGraphics::Handle<vlGraphics::Shader> shader);
    bool getTransparent() const { return transparent_; }
    void setTransparent(bool value);

private:
    vlGraphics::Handle<vlGraphics::Shader> shader_;
    bool transparent_ = false;
};

/** Owns the materials and knows which entity was given which. An erased material leaves its
 * entities drawn as they are; one of the same name that is made again is theirs again. Owned by
 * System; graphics thread only. */
class MaterialManager final : public vlGraphics::ResourceManager<Material>,
                              public vlCommon::MaybeSingletonClass<MaterialManager> {
public:
    /// Draws the entity with the material and remembers which. A material that is not there yet
    /// leaves the entity without a shader until refresh(); a null handle takes the material off and
    /// leaves shader and transparency as they are.
    void assign(vlGraphics::Entity& entity, vlGraphics::Handle<Material> material);
    /// The material the entity was given; null handle for none.
    vlGraphics::Handle<Material> materialOf(const vlGraphics::Entity& entity) const;
    /// Gives shader and transparency to all entities that the material was assigned to.
    void refresh(const Material& material);

private:
    std::vector<vlGraphics::Handle<Material>>
            assigned_; ///< by materialId - 1; null: never assigned
};

} // namespace vlKestrion
