#pragma once
#include <cstdint>
#include <string>

namespace vlScripts {

/** How the last loading of a script ended. */
struct CompilationResult {
    static constexpr std::uint32_t success = 1;
    static constexpr std::uint32_t notLoaded = 2; ///< not loaded yet, or failed for another reason
    static constexpr std::uint32_t syntaxError = 3;

    std::uint32_t kind = notLoaded;
    std::string message = "the script is not loaded"; ///< one line; empty on success
};

} // namespace vlScripts
