#pragma once
#include "core/FrameRenderer.h"
#include "core/RenderWindow.h"
#include "core/RenderingScript.h"
#include "core/StopToken.h"
#include "core/TurnClock.h"
#include "core/WindowOverlay.h"

#include <vlCommon/SingletonClass.h>

#include <atomic>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace vlEditor {

/** The graphics thread and the windows that it draws. Start and end belong to the UI thread; the
 *  list of windows belongs to the graphics thread from start() to join(). */
class EngineHandler final : public vlCommon::SingletonClass<EngineHandler> {
public:
    /// What a window's picture was drawn from.
    struct PictureState {
        std::uint64_t changeCount = 0;
        std::uint64_t windowRevision = 0;
        friend bool operator==(const PictureState&, const PictureState&) = default;
    };
    struct Registration {
        RenderWindow* window = nullptr;
        bool update = false; ///< draw it in every turn
        std::unique_ptr<WindowOverlay> overlay;
        std::optional<PictureState> drawn; ///< nothing before the first frame
    };

    EngineHandler() = default;
    ~EngineHandler();

    /// Starts the graphics thread, which owns the engine from here on. Once in a life.
    void start(std::unique_ptr<FrameRenderer> renderer,
               std::unique_ptr<TurnClock> clock = std::make_unique<TurnClock>(),
               double framesPerSecond = 60);
    /// The graphics thread ends after its current turn, in which scripts end early. May be called
    /// twice.
    void release();
    /// Released: nothing long is to be begun any more. Any thread.
    bool isLeaving() const { return leaving_; }
    /// Waits for its end; the engine is the UI thread's again. May be called twice, and without a
    /// start.
    void join();
    bool isRunning() const { return thread_.joinable(); }

    /// In the order of their registration.
    std::vector<Registration>& getWindows() { return windows_; }
    /// A window that is registered already stays as it is.
    void registerWindow(RenderWindow& window);
    /// Windows that are not registered are passed over, here and below.
    void unregisterWindow(const RenderWindow& window);
    void setUpdate(const RenderWindow& window, bool update);
    /// Nothing that can be drawn waits for a frame, but for what is drawn in every turn.
    bool isEveryPictureCurrent() const;
    void setOverlay(const RenderWindow& window, std::unique_ptr<WindowOverlay> overlay);

    /// The engine's, where scripts run; null before and after the engine's life. Whoever owns the
    /// engine; not owned.
    void setScriptEnvironment(vlScripts::Environment* environment);
    vlScripts::Environment* getScriptEnvironment() const { return scriptEnvironment_; }
    /// Runs in every turn, after the messages and before the windows.
    RenderingScript& getRenderingScript() { return renderingScript_; }

private:
    Registration* find(const RenderWindow& window);

    std::thread thread_;
    std::vector<Registration> windows_;
    vlScripts::Environment* scriptEnvironment_ = nullptr;
    RenderingScript renderingScript_;
    StopToken stopToken_;
    std::atomic<bool> leaving_ = false; ///< for what runs within a turn; the token ends the loop
    std::unique_ptr<FrameRenderer> renderer_;
    std::unique_ptr<TurnClock> clock_;
};

} // namespace vlEditor
