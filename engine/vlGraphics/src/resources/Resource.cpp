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
    return !name.empty() && name.size() <= longestName && vlMemory::isPrintable(name);
}

void logRefusedName(vlMemory::StringView kind, vlMemory::StringView name) {
    LogManager::getInstance().log(
            fmt::format("Refused the name '{}' for a {}: names have 1 to {} bytes of UTF-8 without "
                        "control characters.",
                        vlMemory::printable(name, 80),
                        kind,
                        longestName));
}

void logHiddenBearer(vlMemory::StringView kind, vlMemory::StringView name) {
    LogManager::getInstance().log(fmt::format(
            "Refused the name '{}' for a {}: the one that bears it is not the project's.",
            vlMemory::printable(name, 80),
            kind));
}

} // namespace vlGraphics
