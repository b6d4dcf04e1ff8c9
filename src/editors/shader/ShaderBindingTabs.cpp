#include "editors/shader/ShaderBindingEdits.h"
#include "editors/shader/ShaderLists.h"
#include "editors/shader/ShaderTabs.h"
#include "editors/shader/ShaderWantedList.h"
#include "interfaces/PickLists.h"
#include "interfaces/preview/PreviewRow.h"

#include <vlWinUi/ComponentManager.h>

namespace vlEditor {
namespace {

using Window = Bindings<ShaderKind>;
using Rows = ElementRows<ShaderKind>;

/// The entry of the list of textures and buffers that a binding's name stands in.
std::string entryWithName(const std::string& name) {
    const PickList* list = PickLists::getInstance().find("TEXTURE_BUFFER_POP_UP_LIST");
    if (list == nullptr) return {};
    for (const std::string& entry : list->getEntries())
        if (entry.size() == name.size() + 3 && entry.ends_with(name)) return entry;
    return {};
}

template <class Family, class Del, class Address, class Source>
std::shared_ptr<Rows> bindFamily(Window& window,
                                 const std::string& prefix,
                                 const std::string& pickList,
                                 std::function<std::string(const std::string&)> entryOf = {}) {
    const auto list = [](const ShaderUiData& shader) {
        return listBindings(shader, Family::letter, shader.*Family::list);
    };
    auto rows = Rows::make(window, prefix + "_LIST", list);
    rows->deletes(prefix + "_DEL", Del{});
    rows->numbers(prefix + "_UPDATE", Address{}, addressBoxes<Address>(prefix), unparsedAddress);
    rows->picks(prefix + "_SRC_NAME_LABEL",
                prefix + "_SRC_BUTTON",
                pickList,
                Source{},
                std::move(entryOf));
    bindWanted(window, *rows, prefix, std::string(Family::letter), pickList);
    return rows;
}

/// Why there is nothing to be seen of what is bound; empty where there is.
std::string whyNoPicture(PreviewKind kind, const std::string& name) {
    if (name.empty()) return "Nothing is bound";
    const PickList* list = PickLists::getInstance().find("TEXTURE_BUFFER_POP_UP_LIST");
    if (kind != PreviewKind::texture || list == nullptr || list->has("T. " + name)) return {};
    return entryWithName(name).empty() ? "" : "Only textures have a picture";
}

/// Shows what is bound where the selected entry says.
template <class Family>
void bindPreview(Window& window, Rows& rows, const std::string& prefix, PreviewKind kind) {
    const auto preview = std::make_shared<PreviewRow>(window.getBase() + prefix + "_PREVIEW", kind);
    window.keep(preview);
    rows.row<std::string>(
            [](const ShaderUiData& shader, const ListedElement& element) {
                for (const ShaderResourceBindingUiData& binding : shader.*Family::list)
                    if (keyOf(binding.slot, binding.space) == element.key) return binding.resource;
                return std::string();
            },
            [preview, kind](const std::string* name) {
                if (name == nullptr) return preview->show({});
                const std::string reason = whyNoPicture(kind, *name);
                reason.empty() ? preview->show(*name) : preview->show({}, reason);
            });
}

} // namespace

void bindShaderTextures(Window& window) {
    const auto textures = bindFamily<ShaderTextures,
                                     ChangeShaderDelTexture,
                                     ChangeShaderTextureBindings,
                                     ChangeShaderTextureSource>(
            window, "_TEX", "TEXTURE_BUFFER_POP_UP_LIST", entryWithName);
    textures->adds("_TEX_ADD", ChangeShaderAddTexture{});
    bindPreview<ShaderTextures>(window, *textures, "_TEX", PreviewKind::texture);
}

void bindShaderSamplers(Window& window) {
    const auto samplers =
            bindFamily<ShaderSamplers,
                       ChangeShaderDelSampler,
                       ChangeShaderSamplerBindings,
                       ChangeShaderSamplerSource>(window, "_SAMPLERS", "SAMPLER_POP_UP_LIST");
    samplers->adds("_SAMPLERS_ADD", ChangeShaderAddSampler{});
    bindPreview<ShaderSamplers>(window, *samplers, "_SAMPLERS", PreviewKind::sampler);
}

void bindShaderUavs(Window& window) {
    const std::string pickList = "UAV_POP_UP_LIST";
    const auto uavs = bindFamily<ShaderUavs,
                                 ChangeShaderDelUav,
                                 ChangeShaderUavBindings,
                                 ChangeShaderUavSource>(window, "_UAV", pickList);
    const std::string button = "_UAV_ADD";
    Rows* rows = uavs.get();
    rows->addsBy(button, [rows, pickList, component = window.getBase() + button] {
        const auto* anchor = vlWinUi::ComponentManager::get(component);
        if (anchor == nullptr || rows->getRecord() == nullptr) return;
        const std::string of = rows->getRecord()->name;
        const auto chosen = [rows, of](const std::string& entry) {
            const ShaderUiData* now = rows->getRecord();
            if (now == nullptr || now->name != of) return;
            rows->followNew();
            rows->postToResource(ChangeShaderAddUav{},
                                 [&](ChangeShaderAddUav& each) { each.value = entry; });
        };
        PickListDialog::open(pickList, *anchor, rows->guarded(chosen));
    });
}

} // namespace vlEditor
