#pragma once

namespace vlEditor {

/** The window that says which script runs once a turn. UI thread only. */
class RenderingPropertyWindow {
public:
    RenderingPropertyWindow() = delete;

    /// Once, hidden, after the main window.
    static void create();
    /// In front of the main window.
    static void show();
};

} // namespace vlEditor
