#include "Display.h"

#include <fmt/format.h>
#include <sys/mman.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>

namespace vlWinUi {
namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

std::string requestedPlatform(const SystemOptions& options) {
    const auto found = std::ranges::find_if(options.arguments, [](const std::string& a) {
        return a == "-platform" || a == "--platform";
    });
    if (found != options.arguments.end() && found + 1 != options.arguments.end())
        return *(found + 1);
    return environment("QT_QPA_PLATFORM");
}

bool xServerAnswers() {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
}

constexpr std::string_view offscreen = "offscreen";

constexpr std::string_view screenDescription = R"({"screens": [{"name": "memory", "x": 0, "y": 0,
    "width": 1600, "height": 1000, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";

} // namespace

MemoryScreen::MemoryScreen() : file_(memfd_create("screen", MFD_CLOEXEC)) {
    if (file_ < 0) return;
    const auto written = write(file_, screenDescription.data(), screenDescription.size());
    if (written == static_cast<ssize_t>(screenDescription.size())) return;
    ::close(file_);
    file_ = -1;
}

MemoryScreen::~MemoryScreen() {
    if (file_ >= 0) ::close(file_);
}

std::string MemoryScreen::platform() const {
    if (file_ < 0) return std::string(offscreen);
    return fmt::format("{}:configfile=/proc/self/fd/{}", offscreen, file_);
}

vlCommon::Result<std::string> choosePlatform(const SystemOptions& options) {
    if (options.headless) return std::string(offscreen);
    const std::string requested = requestedPlatform(options);
    if (!requested.empty() && !requested.starts_with("xcb")) return requested;
    const std::string display = environment("DISPLAY");
    if (!display.empty() && xServerAnswers()) return requested.empty() ? "xcb" : requested;
    if (requested.empty() && !environment("WAYLAND_DISPLAY").empty()) return "wayland";
    if (display.empty())
        return vlCommon::fail(
                "no display to show windows on: neither DISPLAY nor WAYLAND_DISPLAY is set");
    return vlCommon::fail(
            fmt::format("no display to show windows on: '{}' does not answer", display));
}

} // namespace vlWinUi
