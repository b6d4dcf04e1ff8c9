#pragma once
#include <vlWinUi/LogManager.h>

#include <fmt/format.h>

namespace vlWinUi {

template <class... A> void logLine(fmt::format_string<A...> text, A&&... arguments) {
    LogManager::getInstance().log(fmt::format(text, std::forward<A>(arguments)...));
}

} // namespace vlWinUi
