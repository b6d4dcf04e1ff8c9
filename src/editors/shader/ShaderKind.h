#pragma once
#include "core/MessageRegistry.h"
#include "editors/shader/EditorTextureSizeSlot.h"
#include "editors/shader/ShaderSnapshot.h"
#include "interfaces/ContainerType.h"
#include "interfaces/kinds/ResourceInterface.h"
#include "interfaces/kinds/ResourceMessages.h"

#include <vlGraphics/ContentLoader.h>

namespace vlEditor {

struct ShaderKind {
    using Record = ShaderUiData;
    using Engine = vlGraphics::Shader;
    using Manager = vlGraphics::ShaderManager;
    using Memento = TreeMemento<ShaderKind>;

    /// With the kind's extension, and a line in the log.
    static std::string savePath(std::string chosen);

    static constexpr ContainerType containerType = ContainerType::shader;
    static constexpr KindTexts texts{
            .kind = "Shader",
            .title = "Shaders",
            .prefix = "EDITOR_SHADER_",
            .creation = "SHADER_CREATION",
            .creationTitle = "Shader Creation",
            .explorer = "EDITOR_SHADER_EXPLO",
            .filterLabel = "Shader Decl Files",
            .extension = "vlsh",
            .pickLists = {{{"SHADER_POP_UP_LIST"}}},
            .subject = "Shader",
            .deleteStart = "Deleting Shader '",
            .renameButton = "_NAME_CHANGE",
            .lineEnd = "",
            .savesUnderOwnName = true,
    };
    // A shader has no device side of its own.
    static constexpr KindHooks<Engine> hooks{
            .reload = Reload::never,
            .editsMakeMissing = false,
            .load = &vlGraphics::ContentLoader::loadShaderDeclaration,
            .restored = &EditorTextureSizeSlot::putInto,
            .savePath = &savePath};
    static constexpr std::tuple fields{
            ReadOnlyField{"programName", &Record::programName, &ShaderSnapshot::programName},
            ReadOnlyField{"programType", &Record::programType, &ShaderSnapshot::programType},
            ReadOnlyField{"textures", &Record::textures, &ShaderSnapshot::textures},
            ReadOnlyField{"samplers", &Record::samplers, &ShaderSnapshot::samplers},
            ReadOnlyField{"uavs", &Record::uavs, &ShaderSnapshot::uavs},
            ReadOnlyField{
                    "constantBuffers", &Record::constantBuffers, &ShaderSnapshot::constantBuffers},
            ReadOnlyField{"maxInstancesPerBuffer",
                          &Record::maxInstancesPerBuffer,
                          &Engine::getMaxInstancePerBuffer},
            ReadOnlyField{"instanceSlots", &Record::instanceSlots, &ShaderSnapshot::instanceSlots},
            ReadOnlyField{"usableScene", &Record::usableScene, &Engine::isUsableScene},
            ReadOnlyField{"usablePost", &Record::usablePost, &Engine::isUsablePost},
            ReadOnlyField{"usableCompute", &Record::usableCompute, &Engine::isUsableCompute},
            ReadOnlyField{
                    "usableRaytracing", &Record::usableRaytracing, &Engine::isUsableRaytracing},
            ReadOnlyField{"reflected", &Record::reflected, &ShaderSnapshot::isReflected},
            ReadOnlyField{"wanted", &Record::wanted, &ShaderSnapshot::wanted},
    };
    static KindLayout layout();
    static void bind(Bindings<ShaderKind>& window);
    static void registerMessages(MessageRegistry& registry);
    /// What a slot that no edit has touched shows stays as it is.
    static void keepShown(const Record& shown, Record& fresh);
};

VL_RESOURCE_KIND_NAMES(Shader);

/** The creation that scripts ask for: like that by name. */
class CreateShaderScriptMessage final : public CreateShaderMessage {
public:
    using CreateShaderMessage::CreateShaderMessage;
};

/// "shader 'a': ..."
tl::unexpected<vlCommon::Error> refuseShader(const vlGraphics::Shader& shader,
                                             const std::string& reason);

} // namespace vlEditor
