#pragma once
#include <vlCommon/Result.h>
#include <vlMemory/String.h>
#include <vlWinUi/SystemOptions.h>

#include <chrono>
#include <functional>

namespace vlWinUi {

/** The widget library as a whole: its start, its event loop and its end. UI thread only, except
 *  notifyEvent(). One life at a time; after kill() it may be initialised again. */
class System {
public:
    /// Fails with one line when there is no display to show windows on; nothing is left behind
    /// then.
    static vlCommon::Result<> initialize(const SystemOptions& options = {});
    static bool isInitialized();

    /// The event loop; returns after prepareForShutdown(), at once when that came before.
    static void run();
    /// Runs what is waiting, and returns. For automation and tests.
    static void processEvents();
    /// Returns once the windows that were shown stand on the display in their sizes, or after a
    /// tenth of a second. What the user does meanwhile waits for run().
    static void settle();
    /// Makes run() return. Components live on until kill().
    static void prepareForShutdown();
    /// Destroys every component, theme and window; harmless without a system. The callbacks are
    /// forgotten.
    static void kill();

    /// Called in the event loop after each notifyEvent(), once for all that came together. While a
    /// dialog's loop runs it may be called from inside itself. False ends run().
    static void setRunCallback(std::function<bool()> callback);
    /// Any thread, at any time, also before initialize() and after kill(). Never waits for the UI
    /// thread.
    static void notifyEvent();

    /// Calls it in the event loop's next turn; not at all when kill() comes first.
    static void runLater(std::function<void()> call);
    /// Calls it in the event loop once that time has passed; not at all when kill() comes first.
    static void runAfter(std::chrono::milliseconds delay, std::function<void()> call);

    /// SIGINT or SIGTERM arrived; called in the event loop, like a close of the main window.
    static void setTerminationCallback(std::function<void()> callback);

    /// A passing line in the status bar of the active window, in front of its status text; empty
    /// ends it.
    static void showHint(vlMemory::StringView text);
};

} // namespace vlWinUi
