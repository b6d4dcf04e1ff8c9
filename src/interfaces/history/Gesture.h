#pragma once
#include "core/Message.h"

#include <cstdint>

namespace vlEditor {

/** One movement of a person's hand, as a number that never comes again. What one gesture changes is
 *  undone together. `none` is what nobody did: it is never recorded. */
enum class Gesture : std::uint64_t { none };

/** A message whose outcome is a step that undo takes back. The gesture belongs to the envelope and
 *  is no member of the request. */
class RecordedMessage : public Message {
public:
    Gesture gesture = Gesture::none;
};

} // namespace vlEditor
