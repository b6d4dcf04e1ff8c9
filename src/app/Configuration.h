#pragma once
#include <vlMemory/String.h>

#include <optional>
#include <string>

namespace vlEditor {

/** The configuration file in the working directory: which folder resources and projects are
 * relative to. UI thread only. */
class Configuration {
public:
    static constexpr vlMemory::StringView fileName = "vlEditor_cfg.json";

    Configuration() = delete;

    /// Gives the resource manager the folder that the file names. A file that is missing, or that
    /// says nothing useful, changes nothing.
    static void load();
    /// Writes the resource manager's folder, whole; a failure is one line on standard error.
    static void save();

    /// The folder that a configuration text names; nothing where it names none.
    static std::optional<std::string> resourceFolderFrom(vlMemory::StringView text);
};

} // namespace vlEditor
