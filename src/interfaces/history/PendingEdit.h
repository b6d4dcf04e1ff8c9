#pragma once

namespace vlEditor {

/** What a person has changed in a widget and the widget has not posted yet. Whoever asks for
 *  something in a person's name posts it first, so that nothing typed is lost or comes too late. UI
 *  thread only. */
class PendingEdit {
public:
    PendingEdit(const PendingEdit&) = delete;
    PendingEdit& operator=(const PendingEdit&) = delete;

    /// Posts it, if there is anything.
    virtual void flush() = 0;

    /// All that there are.
    static void flushAll();

protected:
    PendingEdit();
    virtual ~PendingEdit();
};

} // namespace vlEditor
