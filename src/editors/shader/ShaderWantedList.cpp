#include "editors/shader/ShaderWantedList.h"

#include "editors/shader/ShaderBindingEdits.h"
#include "editors/shader/ShaderWanted.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ListBox.h>

#include <fmt/format.h>

#include <algorithm>

namespace vlEditor {
namespace {

using Rows = ElementRows<ShaderKind>;
using vlWinUi::ListBox;

using Wanted = std::vector<ShaderWantedUiData>;

constexpr std::uint32_t enterKey = 13;

Wanted unbound(const ShaderUiData& shader, const std::string& letter) {
    Wanted all;
    for (const ShaderWantedUiData& wanted : shader.wanted)
        if (!wanted.unboundSlots.empty() && wanted.letter == letter) all.push_back(wanted);
    return all;
}

/// "t1 albedo - Texture2D"
std::string labelOf(const ShaderWantedUiData& wanted) {
    std::string label = fmt::format("{} {} - {}",
                                    addressText(wanted.letter, wanted.slot, wanted.space),
                                    wanted.name,
                                    wanted.shape);
    const std::size_t missing = wanted.unboundSlots.size();
    if (missing < wanted.count) label += fmt::format(", {} of {} unbound", missing, wanted.count);
    return label;
}

std::string placeHolderOf(const ShaderUiData* shader, const std::string& letter) {
    if (shader == nullptr || shader->programName.empty()) return "No program";
    if (!shader->reflected) return "The program is not compiled";
    const bool usesAny = std::ranges::find(shader->wanted, letter, &ShaderWantedUiData::letter) !=
                         shader->wanted.end();
    return usesAny ? "All is bound" : "The program uses none";
}

void bindTo(Rows& rows, const ShaderWantedUiData& wanted, const std::string& source) {
    rows.followNew();
    rows.postToResource(ChangeShaderBindWanted{}, [&](ChangeShaderBindWanted& each) {
        each = {{wanted.slot, wanted.space}, wanted.letter, source};
    });
}

void bindOrAsk(Rows& rows,
               const vlWinUi::Component& anchor,
               const ShaderWantedUiData& wanted,
               const std::string& pickList) {
    if (!wanted.needsBuffer) {
        bindTo(rows, wanted, {});
        return;
    }
    const auto chosen = [&rows, wanted, of = rows.getRecord()->name](const std::string& entry) {
        const ShaderUiData* now = rows.getRecord();
        if (now != nullptr && now->name == of) bindTo(rows, wanted, entry);
    };
    // Of the list for t registers only the buffers; that for u registers has nothing else.
    const auto isBuffer = [](const std::string& entry) { return entry.starts_with("B. "); };
    const bool isMixed = wanted.letter == ShaderTextures::letter;
    PickListDialog::open(pickList,
                         anchor,
                         rows.guarded(chosen),
                         {},
                         isMixed ? PickListDialog::Offers(isBuffer) : nullptr);
}

} // namespace

void bindWanted(Bindings<ShaderKind>& window,
                Rows& rows,
                const std::string& prefix,
                const std::string& letter,
                const std::string& pickList) {
    const std::string component = window.getBase() + prefix + "_WANTED_LIST";
    auto* list = vlWinUi::ComponentManager::get<ListBox>(component);
    if (list == nullptr) {
        EditorLogger::getInstance().log("The layout lacks '" + component + "'.", "Editor");
        return;
    }
    struct Shown {
        Wanted wanted;
        /// The mouse button was pressed as the second of a double click, which is meant for the
        /// entry that has just gone.
        bool isSecond = false;
    };
    const auto shown = std::make_shared<Shown>();
    window.keep(shown);
    window.eachTime([list, letter, shown, &rows](auto) {
        const ShaderUiData* shader = rows.getRecord();
        Wanted wanted = shader == nullptr ? Wanted() : unbound(*shader, letter);
        list->setPlaceHolder(placeHolderOf(shader, letter));
        if (wanted == shown->wanted) return;
        shown->wanted = std::move(wanted);
        std::vector<vlWinUi::ListEntry> entries;
        for (const ShaderWantedUiData& each : shown->wanted)
            entries.push_back({labelOf(each), {}});
        list->setEntries(std::move(entries));
        list->select(std::nullopt);
    });
    const auto take = [list, shown, pickList, &rows] {
        const auto index = list->getSelectedIndex();
        if (!index || *index >= shown->wanted.size() || rows.getRecord() == nullptr) return;
        bindOrAsk(rows, *list, shown->wanted[*index], pickList);
    };
    list->setKeyFilter([take](const vlWinUi::KeyEvent& key) {
        const bool isEnter = key.pressed && key.virtualKey == enterKey;
        if (isEnter) take();
        return isEnter;
    });
    list->setClickCallback([take, shown](const vlWinUi::ClickEvent& click) {
        if (click.button != vlWinUi::ClickEvent::LEFT) return;
        if (click.pressed)
            shown->isSecond = click.doubleClick;
        else if (!shown->isSecond)
            take();
    });
}

} // namespace vlEditor
