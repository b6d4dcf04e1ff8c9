#pragma once
#include "interfaces/history/Gesture.h"
#include "interfaces/history/UndoStep.h"

#include <vlCommon/SingletonClass.h>

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vlEditor {

/** What was done and can be undone, gesture by gesture. Bounded: the oldest gestures are forgotten
 *  once there are too many or they hold too much. UI thread only, but for nextGesture(). */
class History final : public vlCommon::SingletonClass<History> {
public:
    static constexpr std::size_t mostGestures = 1000;
    static constexpr std::size_t mostBytes = std::size_t{64} << 20U;

    /** All that is posted while a scope lives is one gesture. Scopes nest: the outermost counts. */
    class Scope {
    public:
        Scope();
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
    };

    /// The gesture of the open scope; outside of one, a gesture of its own at each call.
    Gesture current();
    /// One that belongs to no scope. Any thread.
    static Gesture nextGesture();

    /// What was undone can no longer be made again. Steps of no gesture are passed over.
    void record(Gesture gesture, std::unique_ptr<UndoStep> step);

    /// Take back, or make again, the last gesture. The request goes round through the graphics
    /// thread first, so that every change posted before it has come home and is in the history.
    void undo();
    void redo();
    bool canUndo() const { return !done_.empty(); }
    bool canRedo() const { return !undone_.empty(); }
    /// Empty when there is nothing to undo, or redo.
    std::string describeUndo() const;
    std::string describeRedo() const;

    std::size_t getDepth() const { return done_.size(); }
    std::size_t getBytes() const { return bytes_; }
    void clear();
    /// Called after each change of what can be undone or redone.
    void setChangeCallback(std::function<void()> callback) { changed_ = std::move(callback); }

private:
    friend class UndoMessage;
    struct Group {
        Gesture gesture;
        std::vector<std::unique_ptr<UndoStep>> steps;
        std::size_t bytes = 0;
        std::string describe() const;
        void add(std::unique_ptr<UndoStep> step);
    };
    void stepBack();
    void stepForward();
    void forget(std::deque<Group>& groups);
    void bound();
    void notify() const;

    std::deque<Group> done_;
    std::deque<Group> undone_;
    std::size_t bytes_ = 0; ///< of both
    Gesture scopeGesture_ = Gesture::none;
    int openScopes_ = 0;
    std::function<void()> changed_;
};

} // namespace vlEditor
