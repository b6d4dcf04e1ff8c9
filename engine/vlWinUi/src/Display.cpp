#include "Display.h"

#include <fmt/format.h>
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

} // namespace

vlCommon::Result<std::string> choosePlatform(const SystemOptions& options) {
    if (options.headless) return "offscreen";
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
