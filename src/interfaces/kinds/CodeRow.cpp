#include "interfaces/kinds/CodeRow.h"

#include "core/EditorLogger.h"
#include "interfaces/history/History.h"

#include <vlWinUi/CodeEdit.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/InputSystem.h>
#include <vlWinUi/System.h>

#include <algorithm>
#include <iterator>

namespace vlEditor {
namespace {

using std::chrono::ceil;
using std::chrono::milliseconds;
using vlWinUi::CodeEdit;

CodeEdit* find(const std::string& component) {
    return vlWinUi::ComponentManager::get<CodeEdit>(component);
}

} // namespace

CodeRow::CodeRow(std::string component, Post post, Normal normal)
    : component_(std::move(component)), post_(std::move(post)), normal_(std::move(normal)) {
    CodeEdit* edit = find(component_);
    if (edit == nullptr) {
        EditorLogger::getInstance().log("The layout lacks '" + component_ + "'.", "Editor");
        return;
    }
    edit->setReadOnly(true);
    const auto bound = [this, alive = std::weak_ptr(alive_)](auto act) {
        return [this, alive, act] {
            if (!alive.expired()) act(*this);
        };
    };
    edit->setChangeCallback(bound([](CodeRow& row) { row.onChange(); }));
    edit->setEditedCallback(bound([](CodeRow& row) { row.flush(); }));
    // One history for all: what was typed before the last other change comes after it.
    edit->setUndoCallback([](bool redo) {
        History& history = History::getInstance();
        redo ? history.redo() : history.undo();
        return true;
    });
}

CodeRow::~CodeRow() {
    flush();
}

void CodeRow::showReadOnly(const std::optional<std::string>& text) {
    flush();
    release();
    put(text.value_or(std::string()), true, !text);
}

void CodeRow::setPart(Part part) {
    flush();
    part_ = part;
}

void CodeRow::showOf(const void* record, const std::string& name, const Texts& texts) {
    if (record != record_) {
        flush();
        release();
        record_ = record;
    }
    name_ = name;
    takeHome(texts);
    if (isTyped_) return;
    const auto posted = posted_.find(part_);
    if (posted == posted_.end())
        put(texts(part_), false, false);
    else if (shownPart_ != part_)
        put(posted->second.back(), false, false);
}

/// What the resource has of what was posted is not on its way any more.
void CodeRow::takeHome(const Texts& texts) {
    for (auto part = posted_.begin(); part != posted_.end();) {
        std::deque<std::string>& posted = part->second;
        const auto home = std::find(posted.begin(), posted.end(), texts(part->first));
        if (home != posted.end()) posted.erase(posted.begin(), home + 1);
        part = posted.empty() ? posted_.erase(part) : std::next(part);
    }
}

void CodeRow::put(const std::string& text, bool isReadOnly, bool isMixed) {
    shownPart_ = part_;
    CodeEdit* edit = find(component_);
    if (edit == nullptr) return;
    const std::string shown = edit->getText();
    // Nobody's text is set right under their hands.
    const bool isBeingTyped = !isReadOnly && vlWinUi::InputSystem::getFocused() == edit;
    if (shown != text && !(isBeingTyped && normal(shown) == text)) edit->setText(text);
    edit->setReadOnly(isReadOnly);
    edit->setPlaceHolder(isMixed ? "Mixed values" : "");
}

std::string CodeRow::normal(const std::string& typed) const {
    return normal_ ? normal_(typed) : typed;
}

void CodeRow::release() {
    record_ = nullptr;
    name_.clear();
    isTyped_ = false;
    posted_.clear();
}

void CodeRow::flush() {
    CodeEdit* edit = find(component_);
    if (!isTyped_ || edit == nullptr) return;
    isTyped_ = false;
    const std::string typed = edit->getText();
    posted_[shownPart_].push_back(normal(typed));
    post_(record_, shownPart_, name_, typed);
}

void CodeRow::onChange() {
    if (record_ == nullptr) return;
    isTyped_ = true;
    lastChange_ = Clock::now();
    if (!isWaiting_) wait(pause);
}

void CodeRow::wait(milliseconds time) {
    isWaiting_ = true;
    vlWinUi::System::runAfter(time, [this, alive = std::weak_ptr(alive_)] {
        if (!alive.expired()) onPause();
    });
}

void CodeRow::onPause() {
    isWaiting_ = false;
    if (!isTyped_) return;
    const auto rest = lastChange_ + pause - Clock::now();
    if (rest > Clock::duration::zero())
        wait(ceil<milliseconds>(rest));
    else
        flush();
}

} // namespace vlEditor
