#pragma once
#include <vlCommon/SingletonClass.h>
#include <vlLog/LogManager.h>

namespace vlTasks {

/** Where the lines of vlTasks go. */
class LogManager final : public vlLog::LogManager, public vlCommon::SingletonClass<LogManager> {};

} // namespace vlTasks
