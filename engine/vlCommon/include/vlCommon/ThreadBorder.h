#pragma once

namespace vlCommon {

/** Two threads carry the program, and no object belongs to both. The UI thread owns every widget
 * for the whole run; the engine belongs to one thread at a time: to the UI thread during start-up,
 * to the graphics thread from its start to its join, and to the UI thread again during shutdown.
 *  The assertions abort with a message on the wrong thread in debug builds and cost nothing in
 * release. */
class ThreadBorder {
public:
    /// The calling thread is the UI thread and owns the engine for now.
    static void claimUi();
    /// The calling thread owns the engine from now on; the earlier owner must have stopped using
    /// it.
    static void claimEngine();
    static bool onUiThread();
    static bool onEngineThread();
};

#ifdef NDEBUG
inline void assertUiThread() {
}
inline void assertGraphicsThread() {
}
#else
void assertUiThread();
/// The calling thread owns the engine at the moment.
void assertGraphicsThread();
#endif

} // namespace vlCommon
