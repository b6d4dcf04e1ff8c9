#pragma once
#include <vlMemory/String.h>

namespace vlGraphics {

/// Where things are kept from run to run: the folder that is configured, or the user's cache folder
/// where none is. Empty: nowhere.
vlMemory::String cacheFolder(vlMemory::StringView configured);

} // namespace vlGraphics
