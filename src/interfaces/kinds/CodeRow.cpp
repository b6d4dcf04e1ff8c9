#include "interfaces/kinds/CodeRow.h"

#include "core/EditorLogger.h"
#include "interfaces/history/History.h"

#include <vlWinUi/CodeEdit.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/System.h>

#include <algorithm>

namespace vlEditor {
namespace {

using std::chrono::ceil;
using std::chrono::milliseconds;
using vlWinUi::CodeEdit;

CodeEdit* find(const std::string& component) {
    return vlWinUi::ComponentManager::get<CodeEdit>(component);
}

} // namespace

CodeRow::CodeRow(std::string component, Post post)
    : component_(std::move(component)), post_(std::move(post)) {
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

void CodeRow::showReadOnly(const std::string& text, bool isMixed) {
    flush();
    release();
    put(isMixed ? std::string() : text, true, isMixed);
}

void CodeRow::showOf(const void* record, const std::string& name, const std::string& text) {
    if (record != record_) {
        flush();
        release();
        record_ = record;
    }
    name_ = name;
    const auto home = std::find(posted_.begin(), posted_.end(), text);
    if (home != posted_.end()) posted_.erase(posted_.begin(), home + 1);
    if (!isTyped_ && posted_.empty()) put(text, false, false);
}

void CodeRow::put(const std::string& text, bool isReadOnly, bool isMixed) {
    CodeEdit* edit = find(component_);
    if (edit == nullptr) return;
    if (edit->getText() != text) edit->setText(text);
    edit->setReadOnly(isReadOnly);
    edit->setPlaceHolder(isMixed ? "Mixed values" : "");
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
    posted_.push_back(edit->getText());
    post_(record_, name_, posted_.back());
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
