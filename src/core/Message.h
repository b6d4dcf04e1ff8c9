#pragma once

namespace vlEditor {

/** A command that travels between the threads. Plain values only: names and ids, never widgets,
 *  surfaces or engine objects. Made by its producer, owned by a queue once posted, deleted by the
 *  thread that runs it. A half that has nothing to do has an empty body. */
class Message {
public:
    virtual ~Message() = default;
    /// Brings the UI's records and widgets up to date. UI thread.
    virtual void runOnUiThread() = 0;
    /// Changes the engine, and posts the outcome to the UI. Graphics thread.
    virtual void runOnGraphicsThread() = 0;
    /// It goes to and fro without anybody having done anything: the editor is at rest all the same.
    virtual bool isRoutine() const { return false; }

protected:
    Message() = default;
    Message(const Message&) = default;
    Message(Message&&) = default;
    Message& operator=(const Message&) = default;
    Message& operator=(Message&&) = default;
};

} // namespace vlEditor
