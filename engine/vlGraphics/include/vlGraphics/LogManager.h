#pragma once
#include <vlCommon/SingletonClass.h>
#include <vlLog/LogManager.h>

namespace vlGraphics {

/** Where the lines of vlGraphics go. */
class LogManager final : public vlLog::LogManager, public vlCommon::SingletonClass<LogManager> {};

} // namespace vlGraphics
