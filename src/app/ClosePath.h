#pragma once

namespace vlWinUi {
class Component;
}

namespace vlEditor {

/** How windows close, and with the main window the program. UI thread only. */
class ClosePath {
public:
    ClosePath() = delete;
    /// The main window ends the program; any other one is hidden. Always true: the window is dealt
    /// with.
    static bool close(vlWinUi::Component& component);
    /// As if the main window were closed.
    static void leave();
};

} // namespace vlEditor
