#pragma once
#include "app/WindowLayout.h"

#include <optional>
#include <string>

namespace vlEditor {

/** Keeps the window's layout between runs, in the person's settings folder
 *  ($XDG_CONFIG_HOME/vlEditor/layout.json, otherwise below ~/.config). Neither reads nor writes
 *  anything until it is enabled. UI thread only. */
class LayoutFile {
public:
    static constexpr std::size_t largestFile = 1U << 20U; ///< bytes

    LayoutFile() = delete;

    static void setEnabled(bool enabled);
    static bool isEnabled();
    /// Empty when the environment names no folder.
    static std::string path();

    /// Nothing when there is no file, and, with one line in the log, when it is broken.
    static std::optional<WindowLayout> load();
    /// A failure is one line on standard error.
    static void save(const WindowLayout& layout);
};

} // namespace vlEditor
