#include "interfaces/LogInterface.h"

#include "core/EditorLogger.h"
#include "interfaces/CommandCompletion.h"
#include "interfaces/CommandInterpreter.h"
#include "interfaces/LogEmphasis.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ContextMenu.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/System.h>

#include <cassert>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

namespace Keys {
constexpr std::uint32_t enter = 13;
constexpr std::uint32_t escape = 27;
constexpr std::uint32_t up = 38;
constexpr std::uint32_t down = 40;
} // namespace Keys

constexpr std::size_t mostOffered = 20;

template <class T> T& partOf(const std::string& root, std::string_view suffix) {
    T* part = ComponentManager::get<T>(root + std::string(suffix));
    assert(part != nullptr);
    return *part;
}

} // namespace

LogInterface::LogInterface(vlWinUi::Component& root) : Interface(root) {
    EditorLogger& logger = EditorLogger::getInstance();
    logger.addWindow(*this);
    for (const std::string& line : logger.getKeptLines())
        appendLine(line);
    root.setData(this);
}

LogInterface::~LogInterface() {
    if (EditorLogger::hasInstance()) EditorLogger::getInstance().removeWindow(*this);
    for (const char* menu : {"_MENU", "_COMPLETIONS"})
        ComponentManager::erase(getRootName() + menu);
}

void LogInterface::appendLine(const std::string& line) {
    partOf<vlWinUi::ListBox>(getRootName(), "_LOG").append({line, {}, emphasisOf(line)});
}

void LogInterface::launch() {
    auto& edit = partOf<vlWinUi::EditBox>(getRootName(), "_EDIT");
    const std::string command = edit.getText();
    if (command.empty()) return;
    EditorLogger::getInstance().log(command, "Editor");
    CommandInterpreter::getInstance().submit(command);
    edit.setText("");
    history_.add(command);
}

void LogInterface::handleKey(std::uint32_t virtualKey) {
    auto& edit = partOf<vlWinUi::EditBox>(getRootName(), "_EDIT");
    switch (virtualKey) {
    case Keys::enter:
        launch();
        break;
    case Keys::escape:
        edit.setText("");
        history_.stopBrowsing();
        break;
    case Keys::up:
        if (!history_.isBrowsing()) draft_ = edit.getText();
        if (const std::string* command = history_.older()) edit.setText(*command);
        break;
    case Keys::down:
        if (!history_.isBrowsing()) break;
        edit.setText(draft_);
        if (const std::string* command = history_.newer()) edit.setText(*command);
        break;
    default:
        break;
    }
}

bool LogInterface::complete() {
    const auto& edit = partOf<vlWinUi::EditBox>(getRootName(), "_EDIT");
    const bool asked = CommandCompletion::request(edit.getTextBeforeCursor(), getRootName());
    return asked || !edit.getText().empty();
}

void LogInterface::offerCompletions(const std::string& begin,
                                    const std::vector<std::string>& candidates) {
    auto& edit = partOf<vlWinUi::EditBox>(getRootName(), "_EDIT");
    if (!edit.getTextBeforeCursor().ends_with(begin)) return;
    if (candidates.empty()) {
        vlWinUi::System::showHint("No name begins with '" + begin + "'.");
        return;
    }
    vlWinUi::System::showHint({});
    const std::string common = CommandCompletion::commonBeginning(candidates);
    edit.insertAtCursor(common.substr(begin.size()));
    if (candidates.size() == 1 || common.size() > begin.size()) return;
    auto& menu = *ComponentManager::createOrRetrieve<vlWinUi::ContextMenu>(getRootName() +
                                                                           "_COMPLETIONS");
    menu.getMenu().clear();
    for (std::size_t i = 0; i < candidates.size() && i < mostOffered; ++i)
        menu.addItem(candidates[i], [&edit, rest = candidates[i].substr(begin.size())] {
            edit.insertAtCursor(rest);
        });
    if (candidates.size() > mostOffered)
        menu.addItem("...", [] {}).setEnabled(false, "Type more of the name.");
    menu.openAbove(edit.getPositionInScreen());
}

void LogInterface::setFilter(const std::string& text) {
    auto& list = partOf<vlWinUi::ListBox>(getRootName(), "_LOG");
    list.setPlaceHolder(text.empty() ? "Nothing has been logged yet"
                                     : "No line contains '" + text + "'");
    list.setFilter(text);
}

} // namespace vlEditor
