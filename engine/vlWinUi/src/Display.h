#pragma once
#include <vlCommon/Result.h>
#include <vlWinUi/SystemOptions.h>

#include <string>

namespace vlWinUi {

/// The Qt platform to start with, empty for Qt's own choice. Fails where Qt would end the process:
/// without a display that answers.
vlCommon::Result<std::string> choosePlatform(const SystemOptions& options);

/** A screen of common size for what is drawn in memory: Qt's own is so small that windows come up
 *  cramped on it. To be kept until Qt's application has been made. */
class MemoryScreen {
public:
    MemoryScreen();
    ~MemoryScreen();
    MemoryScreen(const MemoryScreen&) = delete;
    MemoryScreen& operator=(const MemoryScreen&) = delete;

    /// The platform with this screen, as Qt takes it; with Qt's screen where there is no place to
    /// describe another.
    std::string platform() const;

private:
    int file_ = -1; ///< in memory
};

} // namespace vlWinUi
