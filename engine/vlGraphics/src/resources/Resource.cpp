#include <vlGraphics/ChangeCount.h>
#include <vlGraphics/LogManager.h>
#include <vlGraphics/Resource.h>
#include <vlGraphics/ResourceManager.h>
#include <vlMemory/Utf8.h>

#include <fmt/format.h>

namespace vlGraphics {

namespace {

constexpr std::size_t longestName = 4096;

} // namespace

void Resource::markChanged() {
    ++revision_;
    ChangeCount::bump();
}

bool isValidResourceName(vlMemory::StringView name) {
    if (name.empty() || name.size() > longestName) return false;
    while (!name.empty()) {
        const std::size_t size = vlMemory::utf8Length(name);
        if (size == 0 || vlMemory::startsWithControl(name)) return false;
        name.remove_prefix(size);
    }
    return true;
}

void logRefusedName(vlMemory::StringView kind, vlMemory::StringView name) {
    LogManager::getInstance().log(
            fmt::format("Refused the name '{}' for a {}: names have 1 to {} bytes of UTF-8 without "
                        "control characters.",
                        vlMemory::printable(name, 80),
                        kind,
                        longestName));
}

} // namespace vlGraphics
