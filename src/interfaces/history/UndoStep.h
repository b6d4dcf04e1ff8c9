#pragma once
#include <cstddef>
#include <string>

namespace vlEditor {

/** One change, kept as what leads back and forth. Owned by the History. UI thread only. */
class UndoStep {
public:
    UndoStep() = default;
    UndoStep(const UndoStep&) = delete;
    UndoStep& operator=(const UndoStep&) = delete;
    virtual ~UndoStep() = default;

    /// Posts what makes the change undone; what comes back of it is no step of its own.
    virtual void goBack() const = 0;
    /// Posts what makes the change once more.
    virtual void goForward() const = 0;
    /// Takes the step that followed within the same gesture into this one, where both change the
    /// same thing. False leaves both as they are.
    virtual bool absorb(const UndoStep& next) = 0;
    /// For a person, as the end of "Undo ...": "Change blend state 'a': write mask".
    virtual std::string describe() const = 0;
    /// What it holds on to, in bytes, roughly.
    virtual std::size_t getBytes() const = 0;
};

} // namespace vlEditor
