#include <vlGraphics/RenderQueue.h>
#include <vlKestrion/Material.h>

namespace vlKestrion {

namespace {

void show(vlGraphics::Entity& entity, const Material& material) {
    vlGraphics::EntityRenderInfo info = entity.getRenderInfo();
    info.shader = material.getShader();
    info.transparent = material.getTransparent();
    entity.setRenderInfo(info);
}

} // namespace

void Material::setShader(vlGraphics::Handle<vlGraphics::Shader> shader) {
    if (shader_ == shader) return;
    shader_ = shader;
    markChanged();
    if (MaterialManager* manager = MaterialManager::getInstance()) manager->refresh(*this);
}

void Material::setTransparent(bool value) {
    if (transparent_ == value) return;
    transparent_ = value;
    markChanged();
    if (MaterialManager* manager = MaterialManager::getInstance()) manager->refresh(*this);
}

void MaterialManager::assign(vlGraphics::Entity& entity, vlGraphics::Handle<Material> material) {
    vlGraphics::EntityRenderInfo info = entity.getRenderInfo();
    info.materialId = 0;
    if (!material.isNull()) {
        if (assigned_.size() <= material.index()) assigned_.resize(material.index() + 1);
        assigned_[material.index()] = material;
        info.materialId = material.index() + 1;
        const Material* known = resolve(material);
        info.shader =
                known == nullptr ? vlGraphics::Handle<vlGraphics::Shader>{} : known->getShader();
        info.transparent = known != nullptr && known->getTransparent();
    }
    entity.setRenderInfo(info);
}

vlGraphics::Handle<Material> MaterialManager::materialOf(const vlGraphics::Entity& entity) const {
    const std::uint32_t id = entity.getRenderInfo().materialId;
    return id == 0 || id > assigned_.size() ? vlGraphics::Handle<Material>{} : assigned_[id - 1];
}

void MaterialManager::refresh(const Material& material) {
    const auto* queues = vlGraphics::RenderQueueManager::getInstance();
    if (queues == nullptr || assigned_.empty()) return;
    for (std::size_t place = 0; place < queues->getCount(); ++place) {
        for (vlGraphics::Entity* entity : queues->getByIndex(place)->entities()) {
            const vlGraphics::Handle<Material> given = materialOf(*entity);
            if (!given.isNull() && resolve(given) == &material) show(*entity, material);
        }
    }
}

} // namespace vlKestrion
