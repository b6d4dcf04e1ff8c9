#pragma once
#include <vlGraphics/Enumerations.h>
#include <vlMemory/String.h>

#include <memory>

namespace vlGraphics {

class PassRecorder;

/** One step of a target operation. Owned by its operation. */
class Pass {
public:
    virtual ~Pass() = default;
    virtual PASS_TYPE getType() const = 0;
    virtual std::unique_ptr<Pass> clone() const = 0;
    /// Records its work of this frame, to the targets that the operation has.
    virtual void record(PassRecorder& recorder) const = 0;

    const vlMemory::String& getName() const { return name_; }
    void setName(vlMemory::StringView name);

protected:
    Pass() = default;
    Pass(const Pass&) = default;
    Pass& operator=(const Pass&) = default;
    /// To be called by every setter: marks every picture out of date.
    static void markChanged();

private:
    vlMemory::String name_;
};

} // namespace vlGraphics
