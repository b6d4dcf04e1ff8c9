#include "core/EditorLogger.h"

#include <vlCommon/ThreadBorder.h>
#include <vlGraphics/LogManager.h>
#include <vlKestrion/LogManager.h>
#include <vlScripts/LogManager.h>
#include <vlTasks/LogManager.h>
#include <vlWinUi/LogManager.h>

#include <algorithm>

namespace vlEditor {
namespace {

void setReceivers(vlLog::Logger* graphicsThread, vlLog::Logger* uiThread) {
    vlKestrion::LogManager::getInstance().setReceiver(graphicsThread);
    vlGraphics::LogManager::getInstance().setReceiver(graphicsThread);
    vlScripts::LogManager::getInstance().setReceiver(graphicsThread);
    vlTasks::LogManager::getInstance().setReceiver(graphicsThread);
    vlWinUi::LogManager::getInstance().setReceiver(uiThread);
}

} // namespace

EditorLogger::~EditorLogger() {
    detach();
}

void EditorLogger::attach() {
    setReceivers(&graphicsThreadLogger_, &uiThreadLogger_);
}

void EditorLogger::detach() {
    setReceivers(nullptr, nullptr);
    windows_.clear();
    keptLines_.clear();
}

void EditorLogger::log(std::string_view text, std::string_view source) {
    if (!enabled_) return;
    std::string line = "[";
    line.append(source).append("] ").append(text);
    addLine(line);
}

void EditorLogger::addLine(const std::string& line) {
    vlCommon::assertUiThread();
    if (!enabled_) return;
    keptLines_.push_back(line);
    if (keptLines_.size() > keptLineCount) keptLines_.pop_front();
    // By index: showing a line may log another one, or close a window.
    for (std::size_t i = 0; i < windows_.size(); ++i)
        windows_[i]->appendLine(line);
}

void EditorLogger::addWindow(LogWindow& window) {
    windows_.push_back(&window);
}

void EditorLogger::removeWindow(const LogWindow& window) {
    const auto found = std::find(windows_.begin(), windows_.end(), &window);
    if (found != windows_.end()) windows_.erase(found);
}

} // namespace vlEditor
