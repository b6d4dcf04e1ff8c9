#pragma once
#include <vlCommon/SingletonClass.h>
#include <vlLog/LogManager.h>

namespace vlScripts {

/** Where the lines of vlScripts go. */
class LogManager final : public vlLog::LogManager, public vlCommon::SingletonClass<LogManager> {};

} // namespace vlScripts
