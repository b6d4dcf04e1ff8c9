#include "system/CacheFolder.h"

#include <cstdlib>

namespace vlGraphics {

vlMemory::String cacheFolder(vlMemory::StringView configured) {
    if (!configured.empty()) return vlMemory::String(configured);
    if (const char* cache = std::getenv("XDG_CACHE_HOME"); cache != nullptr && *cache == '/')
        return std::string(cache) + "/vlEditor";
    if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/')
        return std::string(home) + "/.cache/vlEditor";
    return {};
}

} // namespace vlGraphics
