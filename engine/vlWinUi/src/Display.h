#pragma once
#include <vlCommon/Result.h>
#include <vlWinUi/SystemOptions.h>

#include <string>

namespace vlWinUi {

/// The Qt platform to start with, empty for Qt's own choice. Fails where Qt would end the process:
/// without a display that answers.
vlCommon::Result<std::string> choosePlatform(const SystemOptions& options);

} // namespace vlWinUi
