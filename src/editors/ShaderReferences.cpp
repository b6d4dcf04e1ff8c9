#include "editors/ShaderReferences.h"

#include "editors/AllKinds.h"
#include "editors/buffer/Buffer.h"
#include "editors/camera/Camera.h"
#include "editors/sampler/Sampler.h"
#include "editors/shader/ShaderKind.h"
#include "editors/shader_program/ShaderProgramKind.h"

#include <algorithm>

namespace vlEditor {
namespace {

bool isAmong(const std::vector<ShaderResourceBindingUiData>& bindings, const std::string& name) {
    return std::ranges::find(bindings, name, &ShaderResourceBindingUiData::resource) !=
           bindings.end();
}

bool binds(const ShaderUiData& shader, const std::string& name) {
    return shader.programName == name || isAmong(shader.textures, name) ||
           isAmong(shader.samplers, name) || isAmong(shader.uavs, name);
}

bool hasSlotOf(const ShaderUiData& shader, const std::string& name) {
    for (const ShaderConstantBufferUiData& buffer : shader.constantBuffers)
        for (const ShaderPassSlotUiData& slot : buffer.slots)
            if (slot.engine.resourceName == name || slot.resourceName == name) return true;
    return false;
}

void rereadUsers(const std::string& name) {
    std::vector<std::string> shaders;
    for (const ShaderUiData* shader : ResourceUiDataTracker<ShaderKind>::getInstance().inOrder())
        if (binds(*shader, name) || hasSlotOf(*shader, name)) shaders.push_back(shader->name);
    if (!shaders.empty()) postToGraphics(ShaderReferencesChangedMessage(std::move(shaders)));
}

template <class Kind> class NameListener final : public ResourceUiListener<Kind> {
public:
    using Record = typename Kind::Record;
    using Tracker = ResourceUiDataTracker<Kind>;

    NameListener() { Tracker::getInstance().registerListener(*this); }
    ~NameListener() override {
        if (Tracker::hasInstance()) Tracker::getInstance().unregisterListener(*this);
    }

    /// What has gone is still named, and an undo may bring it back.
    void onResourceAdded(const Record& record) override { rereadUsers(record.name); }
    void onResourceErased(const Record& record) override { rereadUsers(record.name); }
    void onResourceRenamed(const std::string& oldName, const Record& record) override {
        if (oldName == record.name) return;
        rereadUsers(oldName);
        // It may have taken the place of another one.
        rereadUsers(record.name);
    }
    void onResourceUpdated(const Record&) override {}
    void onResourcesCleared() override {}
};

} // namespace

struct ShaderReferences::Listeners {
    NameListener<ShaderProgramKind> programs;
    NameListener<BufferKind> buffers;
    NameListener<SamplerKind> samplers;
    NameListener<CameraKind> cameras;
};

ShaderReferences::ShaderReferences() : listeners_(std::make_unique<Listeners>()) {
}

ShaderReferences::~ShaderReferences() = default;

void ShaderReferencesChangedMessage::runOnGraphicsThread() {
    for (const std::string& name : shaders)
        shaderKind().reread(name);
}

} // namespace vlEditor
