#pragma once
#include <vlWinUi/ListEntry.h>

#include <string_view>

namespace vlEditor {

/// How much a log line is to stand out. Lines carry no severity of their own: their words say it.
vlWinUi::Emphasis emphasisOf(std::string_view line);

} // namespace vlEditor
