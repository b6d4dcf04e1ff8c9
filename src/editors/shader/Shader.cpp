#include "core/EditorLogger.h"
#include "editors/AllKinds.h"
#include "editors/shader/ShaderBindingEdits.h"
#include "editors/shader/ShaderSlotEdits.h"
#include "editors/shader/ShaderWanted.h"
#include "interfaces/kinds/KindEntry.h"

#include <algorithm>

namespace vlEditor {

tl::unexpected<vlCommon::Error> refuseShader(const vlGraphics::Shader& shader,
                                             const std::string& reason) {
    return vlCommon::fail(thingNamed(ShaderKind::texts, shader.getName()) + ": " + reason);
}

std::string ShaderKind::savePath(std::string chosen) {
    const std::string path = withExtension(texts, std::move(chosen));
    EditorLogger::getInstance().log("Saving Shader file : " + path, "Save");
    return path;
}

void ShaderKind::keepShown(const Record& shown, Record& fresh) {
    for (ShaderConstantBufferUiData& buffer : fresh.constantBuffers) {
        const auto known = std::ranges::find_if(shown.constantBuffers, [&](const auto& other) {
            return other.slot == buffer.slot && other.space == buffer.space;
        });
        if (known == shown.constantBuffers.end() || known->slots.size() != buffer.slots.size())
            continue;
        for (std::size_t i = 0; i < buffer.slots.size(); ++i)
            if (known->slots[i] == buffer.slots[i]) buffer.slots[i] = known->slots[i];
    }
}

void ShaderKind::registerMessages(MessageRegistry& registry) {
    registry.add<CreateShaderScriptMessage>(MessageQueue::graphics);
}

const AnyKind& shaderKind() {
    static const KindEntry<ShaderKind,
                           ChangeShaderAddConstantBuffer,
                           ChangeShaderDelConstantBuffer,
                           ChangeShaderConstantBufferBindings,
                           ChangeShaderAddPassSlot,
                           ChangeShaderDelPassSlot,
                           ChangeShaderUpPassSlot,
                           ChangeShaderDownPassSlot,
                           ChangeShaderPassSlotType,
                           ChangeShaderUpdateVectorSlot,
                           ChangeShaderUpdateMatrixSlot,
                           ChangeShaderUpdateCameraSlot,
                           ChangeShaderUpdateTextureSlot,
                           ChangeShaderUpdateTimeModSlot,
                           ChangeShaderAddTexture,
                           ChangeShaderDelTexture,
                           ChangeShaderTextureBindings,
                           ChangeShaderTextureSource,
                           ChangeShaderAddSampler,
                           ChangeShaderDelSampler,
                           ChangeShaderSamplerBindings,
                           ChangeShaderSamplerSource,
                           ChangeShaderAddUav,
                           ChangeShaderDelUav,
                           ChangeShaderUavBindings,
                           ChangeShaderUavSource,
                           ChangeShaderAddInstanceSlot,
                           ChangeShaderDelInstanceSlot,
                           ChangeShaderUpInstanceSlot,
                           ChangeShaderDownInstanceSlot,
                           ChangeShaderMaxInstanceSlot,
                           ChangeShaderProgram,
                           ChangeShaderBindWanted>
            kind;
    return kind;
}

} // namespace vlEditor
