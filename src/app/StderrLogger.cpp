#include "app/StderrLogger.h"

#include <vlGraphics/LogManager.h>
#include <vlKestrion/LogManager.h>
#include <vlScripts/LogManager.h>
#include <vlTasks/LogManager.h>

#include <iostream>

namespace vlEditor {
namespace {

void setReceivers(vlLog::Logger* logger) {
    vlKestrion::LogManager::getInstance().setReceiver(logger);
    vlGraphics::LogManager::getInstance().setReceiver(logger);
    vlScripts::LogManager::getInstance().setReceiver(logger);
    vlTasks::LogManager::getInstance().setReceiver(logger);
}

} // namespace

StderrLogger::StderrLogger() {
    setReceivers(this);
}

StderrLogger::~StderrLogger() {
    setReceivers(nullptr);
}

void StderrLogger::log(vlMemory::StringView text) {
    // In one piece, since several threads log.
    std::cerr << std::string(text) + "\n";
}

} // namespace vlEditor
