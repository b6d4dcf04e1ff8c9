#pragma once
#include <string>
#include <string_view>

namespace vlMemory {

/** UTF-8 text that crosses into the engine's libraries. */
using StringView = std::string_view;
using String = std::string;

} // namespace vlMemory
