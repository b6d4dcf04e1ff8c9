#pragma once
#include <vlCommon/SingletonClass.h>
#include <vlLog/LogManager.h>

namespace vlWinUi {

/** Where the lines of vlWinUi go. */
class LogManager final : public vlLog::LogManager, public vlCommon::SingletonClass<LogManager> {};

} // namespace vlWinUi
