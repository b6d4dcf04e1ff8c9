#pragma once
#include <vlMemory/String.h>

namespace vlLog {

/** A receiver of log lines. The library that logs calls it on whichever thread it runs. */
class Logger {
public:
    virtual ~Logger() = default;
    virtual void log(vlMemory::StringView text) = 0;

protected:
    Logger() = default;
    Logger(const Logger&) = default;
    Logger& operator=(const Logger&) = default;
};

} // namespace vlLog
