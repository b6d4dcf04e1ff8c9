#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vlEditor {

/** A line of a source that includes a file. */
struct IncludeLine {
    std::uint32_t line = 1; ///< from 1
    std::string name;       ///< of the file, as it is written there
    friend bool operator==(const IncludeLine&, const IncludeLine&) = default;
};

/// In their order; also those that are commented out over several lines or switched off.
std::vector<IncludeLine> includeLines(std::string_view source);

/// The line through which a source comes to include that file: the one that names it, or else the
/// first one, whose file may include it in turn. 0 when the source includes nothing.
std::uint32_t lineLeadingTo(std::string_view file, std::string_view source);

} // namespace vlEditor
