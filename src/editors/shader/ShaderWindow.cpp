#include "core/EditorLogger.h"
#include "editors/shader/ShaderBindingEdits.h"
#include "editors/shader/ShaderSlotEdits.h"
#include "editors/shader/ShaderWantedList.h"
#include "interfaces/PickLists.h"
#include "interfaces/kinds/ElementRows.h"
#include "interfaces/preview/PreviewRow.h"

#include <vlWinUi/ComponentManager.h>

#include <fmt/format.h>

namespace vlEditor {
namespace {

using Window = Bindings<ShaderKind>;
using Rows = ElementRows<ShaderKind>;

constexpr const char* unparsedAddress = "Can't parse new settings (space and / or slot). Aborting.";
constexpr const char* unparsedNumber = "Can't parse new settings (number). Aborting.";
constexpr const char* unusedRemark = "Not used by the program";

std::uint64_t keyOf(std::uint32_t slot, std::uint32_t space) {
    return std::uint64_t{space} << 32U | slot;
}

bool uses(const ShaderUiData& shader,
          std::string_view letter,
          std::uint32_t slot,
          std::uint32_t space) {
    if (!shader.reflected) return true;
    return std::ranges::any_of(shader.wanted, [&](const ShaderWantedUiData& wanted) {
        // No count is as many as there are.
        const bool isBehind = wanted.count == 0 || slot - wanted.slot < wanted.count;
        return wanted.letter == letter && wanted.space == space && slot >= wanted.slot && isBehind;
    });
}

std::string programsName(const ShaderUiData& shader,
                         std::string_view letter,
                         std::uint32_t slot,
                         std::uint32_t space) {
    for (const ShaderWantedUiData& wanted : shader.wanted)
        if (wanted.letter == letter && wanted.slot == slot && wanted.space == space)
            return wanted.name;
    return {};
}

/// "t1 albedo : rust", with what the program calls it where that is known.
template <class Family> std::vector<ListedElement> listBindings(const ShaderUiData& shader) {
    std::vector<ListedElement> all;
    for (const ShaderResourceBindingUiData& binding : shader.*Family::list) {
        std::string label = addressText(Family::letter, binding.slot, binding.space);
        const std::string name = programsName(shader, Family::letter, binding.slot, binding.space);
        if (!name.empty()) label += " " + name;
        label += " : " + (binding.resource.empty() ? "-" : binding.resource);
        const bool isUsed = uses(shader, Family::letter, binding.slot, binding.space);
        all.push_back({std::move(label),
                       keyOf(binding.slot, binding.space),
                       {{"index", static_cast<std::uint32_t>(all.size())},
                        {"slot", binding.slot},
                        {"space", binding.space}},
                       isUsed ? "" : unusedRemark});
    }
    return all;
}

std::vector<ListedElement> listBuffers(const ShaderUiData& shader) {
    std::vector<ListedElement> all;
    for (const ShaderConstantBufferUiData& buffer : shader.constantBuffers) {
        std::string label = addressText("b", buffer.slot, buffer.space);
        const std::string name = programsName(shader, "b", buffer.slot, buffer.space);
        if (!name.empty()) label += " " + name;
        const std::size_t count = buffer.slots.size();
        label += fmt::format(" : {} slot{}", count, count == 1 ? "" : "s");
        all.push_back({std::move(label),
                       keyOf(buffer.slot, buffer.space),
                       {{"index", static_cast<std::uint32_t>(all.size())},
                        {"slot", buffer.slot},
                        {"space", buffer.space}},
                       uses(shader, "b", buffer.slot, buffer.space) ? "" : unusedRemark});
    }
    return all;
}

std::vector<ListedElement> listPassSlots(const ShaderConstantBufferUiData& buffer) {
    std::vector<ListedElement> all;
    for (const ShaderPassSlotUiData& slot : buffer.slots) {
        const auto index = static_cast<std::uint32_t>(all.size());
        all.push_back({fmt::format("{}. {}", index, PassSlotTypes::labelInList(slot.type)),
                       index,
                       {{"slotIndex", index}, {"slot", buffer.slot}, {"space", buffer.space}},
                       {}});
    }
    return all;
}

std::vector<ListedElement> listInstanceSlots(const ShaderUiData& shader) {
    std::vector<ListedElement> all;
    constexpr std::uint32_t worldMatrix = 1;
    for (const std::uint32_t type : shader.instanceSlots) {
        const auto index = static_cast<std::uint32_t>(all.size());
        const char* label = type == worldMatrix ? "World matrix" : "UNKNOWN";
        all.push_back({fmt::format("{}. {}", index, label), index, {{"index", index}}, {}});
    }
    return all;
}

/// The entry of the list of textures and buffers that a binding's name stands in.
std::string entryWithName(const std::string& name) {
    const PickList* list = PickLists::getInstance().find("TEXTURE_BUFFER_POP_UP_LIST");
    if (list == nullptr) return {};
    for (const std::string& entry : list->getEntries())
        if (entry.size() == name.size() + 3 && entry.ends_with(name)) return entry;
    return {};
}

/// Space and slot, whose members the edits of all four kinds of address call alike.
template <class Edit>
std::vector<ElementBox<Edit, std::uint32_t>> addressBoxes(std::string prefix) {
    return {{prefix + "_SPACE_EDIT", [](Edit& edit) -> std::uint32_t& { return edit.newSpace; }},
            {prefix + "_SLOT_EDIT", [](Edit& edit) -> std::uint32_t& { return edit.newSlot; }}};
}

template <class Family, class Del, class Address, class Source>
std::shared_ptr<Rows> bindFamily(Window& window,
                                 const std::string& prefix,
                                 const std::string& pickList,
                                 std::function<std::string(const std::string&)> entryOf = {}) {
    auto rows = Rows::make(window, prefix + "_LIST", listBindings<Family>);
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

void bindUavs(Window& window) {
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
            rows->postToResource(ChangeShaderAddUav{},
                                 [&](ChangeShaderAddUav& each) { each.value = entry; });
        };
        PickListDialog::open(pickList, *anchor, rows->guarded(chosen));
    });
}

/// The group whose type it is, and no other, can be seen.
void bindGroups(Window& window, Rows& slots) {
    struct Group {
        const char* suffix;
        bool (*isFor)(std::uint32_t type);
    };
    static constexpr std::array groups{
            Group{"_SLOT_VECTOR_WIN",
                  [](std::uint32_t type) { return type == PassSlotTypes::vector; }},
            Group{"_SLOT_MATRIX_WIN",
                  [](std::uint32_t type) { return type == PassSlotTypes::matrix; }},
            Group{"_SLOT_CAM_WIN", &PassSlotTypes::isCamera},
            Group{"_SLOT_TEX_WIN", &PassSlotTypes::isTexture},
            Group{"_SLOT_TIME_WIN",
                  [](std::uint32_t type) { return type == PassSlotTypes::time; }}};
    const auto typeOf = [](const ShaderUiData& shader, const ListedElement& element) {
        PassSlotPlace place;
        for (const auto& [name, value] : element.place) {
            if (name == "slot") place.slot = value;
            if (name == "space") place.space = value;
            if (name == "slotIndex") place.slotIndex = value;
        }
        const ShaderPassSlotUiData* slot = place.find(shader);
        return slot == nullptr ? 0 : slot->type;
    };
    slots.row<std::uint32_t>(typeOf, [base = window.getBase()](const std::uint32_t* type) {
        for (const Group& group : groups) {
            auto* shown = vlWinUi::ComponentManager::get(base + group.suffix);
            if (shown != nullptr) shown->setVisible(type != nullptr && group.isFor(*type));
        }
    });
}

void bindSlotValues(Rows& slots) {
    using Vector = ChangeShaderUpdateVectorSlot;
    std::vector<ElementBox<Vector, float>> vector;
    for (std::size_t i = 0; i < 4; ++i)
        vector.push_back({std::string("_SLOT_VECTOR_") + "XYZW"[i],
                          [i](Vector& edit) -> float& { return edit.value[i]; }});
    slots.numbers("_SLOT_VECTOR_OK", Vector{}, vector, unparsedNumber);

    using Matrix = ChangeShaderUpdateMatrixSlot;
    std::vector<ElementBox<Matrix, float>> matrix;
    for (std::size_t i = 0; i < 16; ++i)
        matrix.push_back({fmt::format("_SLOT_MATRIX_{}{}", i / 4, i % 4),
                          [i](Matrix& edit) -> float& { return edit.value[i]; }});
    slots.numbers("_SLOT_MATRIX_OK", Matrix{}, matrix, unparsedNumber);

    using Time = ChangeShaderUpdateTimeModSlot;
    const auto modulo = [](Time& edit) -> std::uint32_t& { return edit.value; };
    slots.numbers("_SLOT_TIME_OK",
                  Time{},
                  std::vector<ElementBox<Time, std::uint32_t>>{{"_SLOT_TIME_EDIT", modulo}},
                  unparsedNumber);
    slots.picks("_SLOT_CAM_NAME_LABEL",
                "_SLOT_CAM_SEARCH",
                "CAMERA_POP_UP_LIST",
                ChangeShaderUpdateCameraSlot{});
    slots.picks("_SLOT_TEX_NAME_LABEL",
                "_SLOT_TEX_SEARCH",
                "TEXTURE_POP_UP_LIST",
                ChangeShaderUpdateTextureSlot{});
}

void bindBuffers(Window& window) {
    const auto buffers = Rows::make(window, "_CBUF_LIST", listBuffers);
    buffers->adds("_CBUF_ADD", ChangeShaderAddConstantBuffer{});
    buffers->deletes("_CBUF_DEL", ChangeShaderDelConstantBuffer{});
    buffers->numbers("_CBUF_UPDATE",
                     ChangeShaderConstantBufferBindings{},
                     addressBoxes<ChangeShaderConstantBufferBindings>("_CBUF"),
                     unparsedAddress);
    bindWanted(window, *buffers, "_CBUF", "b", {});

    // Both are kept as long as the window.
    Rows* around = buffers.get();
    const auto slots = Rows::make(
            window,
            "_CBUF_SLOT_LIST",
            [around](const ShaderUiData& shader) {
                const auto index = around->getSelectedIndex();
                if (!index || *index >= shader.constantBuffers.size())
                    return std::vector<ListedElement>();
                return listPassSlots(shader.constantBuffers[*index]);
            },
            [around] { return around->getSelected() == nullptr ? 0 : around->getSelected()->key; });
    const auto add = [around] { around->post(ChangeShaderAddPassSlot{}, [](auto&) {}); };
    slots->addsBy("_CBUF_SLOT_ADD", add);
    // More than a shader is needed.
    slots->able(window.getBase() + "_CBUF_SLOT_ADD", [around] { return around->whyNone(); });
    slots->deletes("_CBUF_SLOT_DEL", ChangeShaderDelPassSlot{});
    slots->moves("_CBUF_SLOT_UP",
                 ChangeShaderUpPassSlot{},
                 "_CBUF_SLOT_DOWN",
                 ChangeShaderDownPassSlot{});
    slots->combo("_CBUF_SLOT_TYPE_COMBO", ChangeShaderPassSlotType{}, PassSlotTypes::choices());
    bindSlotValues(*slots);
    bindGroups(window, *slots);
}

void bindInstances(Window& window) {
    const auto slots = Rows::make(window, "_INSTANCE_SLOT_LIST", listInstanceSlots);
    slots->adds("_INSTANCE_SLOT_ADD", ChangeShaderAddInstanceSlot{});
    slots->deletes("_INSTANCE_SLOT_DEL", ChangeShaderDelInstanceSlot{});
    slots->moves("_INSTANCE_SLOT_UP",
                 ChangeShaderUpInstanceSlot{},
                 "_INSTANCE_SLOT_DOWN",
                 ChangeShaderDownInstanceSlot{});
    const std::string combo = window.getBase() + "_INSTANCE_SLOT_TYPE_COMBO";
    // There is nothing else to choose yet.
    bindCombo(combo, {{"WORLD_MATRIX", 1}}, [](const std::string&, std::uint32_t) {});
    slots->row<std::uint32_t>(
            [](const ShaderUiData& shader, const ListedElement& element) {
                return shader.instanceSlots[element.key];
            },
            [combo](const std::uint32_t* type) {
                showCombo(combo, type == nullptr ? std::nullopt : std::optional(*type), false);
            });
    slots->able(combo, [rows = slots.get()] { return rows->whyNone(); });
}

void bindMaximum(Window& window) {
    const std::string box = window.getBase() + "_INSTANCE_MAX_EDIT";
    const auto known = window.row<std::uint32_t>(
            [](const ShaderUiData& shader) { return shader.maxInstancesPerBuffer; },
            [box](const std::uint32_t* count, bool isMixed) {
                showEdit(box,
                         count == nullptr ? std::nullopt : std::optional(showNumber(*count)),
                         isMixed);
            });
    const auto pressed = [&window, box, known] {
        const auto text = editText(box);
        if (!text || window.selectedNames().empty()) return;
        const auto count = readNumber<std::uint32_t>(*text);
        if (!count || *count == 0) {
            EditorLogger::getInstance().log(
                    fmt::format(
                            "Number '{}' could not be parsed or is 0 or less. This is incorrect.",
                            *text),
                    "Editor");
            return;
        }
        window.post(ChangeShaderMaxInstanceSlot{},
                    [&](ChangeShaderMaxInstanceSlot& each) { each.value = *count; });
        *known = false;
    };
    bindButton(window.getBase() + "_INSTANCE_MAX_OK", pressed);
    bindEdit(box, pressed);
}

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
    const auto textures = bindFamily<ShaderTextures,
                                     ChangeShaderDelTexture,
                                     ChangeShaderTextureBindings,
                                     ChangeShaderTextureSource>(
            window, "_TEX", "TEXTURE_BUFFER_POP_UP_LIST", entryWithName);
    textures->adds("_TEX_ADD", ChangeShaderAddTexture{});
    bindPreview<ShaderTextures>(window, *textures, "_TEX", PreviewKind::texture);
    const auto samplers =
            bindFamily<ShaderSamplers,
                       ChangeShaderDelSampler,
                       ChangeShaderSamplerBindings,
                       ChangeShaderSamplerSource>(window, "_SAMPLERS", "SAMPLER_POP_UP_LIST");
    samplers->adds("_SAMPLERS_ADD", ChangeShaderAddSampler{});
    bindPreview<ShaderSamplers>(window, *samplers, "_SAMPLERS", PreviewKind::sampler);
    bindUavs(window);
    bindBuffers(window);
    bindInstances(window);
    bindMaximum(window);
}

} // namespace vlEditor
