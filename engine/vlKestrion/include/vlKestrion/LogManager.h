#pragma once
#include <vlCommon/SingletonClass.h>
#include <vlLog/LogManager.h>

namespace vlKestrion {

/** Where the lines of vlKestrion go. */
class LogManager final : public vlLog::LogManager, public vlCommon::SingletonClass<LogManager> {};

} // namespace vlKestrion
