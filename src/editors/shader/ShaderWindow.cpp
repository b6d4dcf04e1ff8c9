#include "core/EditorLogger.h"
#include "editors/shader/ShaderSlotEdits.h"
#include "editors/shader/ShaderTabs.h"
#include "interfaces/PickListDialog.h"
#include "interfaces/PickLists.h"

#include <vlWinUi/ComponentManager.h>

#include <fmt/format.h>

namespace vlEditor {
namespace {

using Window = Bindings<ShaderKind>;

void logUnexpected(const char* what) {
    EditorLogger::getInstance().log(
            fmt::format("Unexpected behavior : selected {} invalid. Aborting.", what), "Editor");
}

void chooseProgram(Window& window, const Window::Names& shaders, const std::string& program) {
    auto& tracker = ShaderUiDataTracker::getInstance();
    for (const std::string& name : shaders) {
        if (tracker.get(name) != nullptr) continue;
        logUnexpected("Shader receiving Program");
        return;
    }
    const PickList* programs = PickLists::getInstance().find("SHADER_PROGRAM_POP_UP_LIST");
    if (programs == nullptr || !programs->has(program)) {
        logUnexpected("Program");
        return;
    }
    const History::Scope gesture;
    for (const std::string& name : shaders)
        postByUser(ChangeShaderProgramMessage(name, {program}));
    window.refresh();
}

void bindProgram(Window& window) {
    const std::string base = window.getBase();
    window.row<std::string>([](const ShaderUiData& shader) { return shader.programName; },
                            [base](const std::string* name, bool isMixed) {
                                const bool isNamed = name != nullptr && !name->empty();
                                std::string text = isNamed ? *name : "-";
                                if (isMixed) text = "Mixed values";
                                showLabel(base + "_PROGRAM_LABEL", text);
                            });
    const auto alive = std::make_shared<bool>(true);
    window.keep(alive);
    window.button("_PROGRAM_BUTTON",
                  [&window, base, alive = std::weak_ptr(alive)](const Window::Names& names) {
                      const auto* anchor = vlWinUi::ComponentManager::get(base + "_PROGRAM_BUTTON");
                      const ShaderUiData* first =
                              ShaderUiDataTracker::getInstance().get(names.front());
                      const auto chosen = [&window, alive, names](const std::string& program) {
                          if (!alive.expired()) chooseProgram(window, names, program);
                      };
                      PickListDialog::open("SHADER_PROGRAM_POP_UP_LIST",
                                           *anchor,
                                           chosen,
                                           first == nullptr ? "" : first->programName);
                  });
    window.eachTime([base](std::span<const ShaderUiData* const> shaders) {
        showAble(base + "_PROGRAM_BUTTON", shaders.empty() ? "No shader is selected." : "");
    });
}

void bindUsable(Window& window, const std::string& suffix, bool ShaderUiData::*flag) {
    const std::string box = window.getBase() + suffix;
    window.row<bool>(
            [flag](const ShaderUiData& shader) { return shader.*flag; },
            [box](const bool* value, bool isMixed) {
                showCheck(box, value == nullptr ? std::nullopt : std::optional(*value), isMixed);
            });
    // It says what is; nobody chooses it.
    showAble(box, "Follows from the program once that is compiled.");
}

} // namespace

KindLayout ShaderKind::layout() {
    const auto family = [](std::string_view file,
                           std::string_view prefix,
                           std::string_view tab,
                           std::string_view label,
                           std::string_view source,
                           std::string_view thing) {
        return KindLayout::Block{file,
                                 1,
                                 {{"$prefix$", prefix},
                                  {"$tab$", tab},
                                  {"$label$", label},
                                  {"$source$", source},
                                  {"$thing$", thing}}};
    };
    const auto textures = [&](std::string_view file) {
        return family(file, "_TEX", "_TEX_GROUP", "Textures", "Texture : ", "texture");
    };
    const auto samplers = [&](std::string_view file) {
        return family(file, "_SAMPLERS", "_SAMPLER_GROUP", "Samplers", "Sampler : ", "sampler");
    };
    const auto uavs = [&](std::string_view file) {
        return family(file, "_UAV", "_UAV_GROUP", "Uavs", "Resource : ", "buffer to write");
    };
    return {"shader.json",
            {textures("shader_binding.json"),
             textures("shader_preview.json"),
             samplers("shader_binding.json"),
             samplers("shader_preview.json"),
             uavs("shader_binding.json"),
             uavs("shader_plain.json"),
             {"shader_constant_buffers.json", 1, {}},
             {"shader_instances.json", 1, {}}}};
}

void ShaderKind::bind(Bindings<ShaderKind>& window) {
    bindUsable(window, "_TYPE_SCENE_CHECK", &ShaderUiData::usableScene);
    bindUsable(window, "_TYPE_POST_CHECK", &ShaderUiData::usablePost);
    bindUsable(window, "_TYPE_COMPUTE_CHECK", &ShaderUiData::usableCompute);
    bindUsable(window, "_TYPE_RAYTRACING_CHECK", &ShaderUiData::usableRaytracing);
    bindProgram(window);
    bindShaderTextures(window);
    bindShaderSamplers(window);
    bindShaderUavs(window);
    bindShaderBuffers(window);
    bindShaderInstances(window);
}

} // namespace vlEditor
