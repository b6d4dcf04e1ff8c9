#pragma once
#include <vlMaths/Vector.h>
#include <vlMemory/String.h>

#include <optional>

namespace vlGraphics {

// Colours stand in declarations as four numbers in one text, "0.0, 0.25, 0.5, 1.0", whatever the
// locale.

vlMemory::String colorText(const vlMaths::Vector& color);
/// Nothing where the text is not four finite numbers.
std::optional<vlMaths::Vector> parseColor(vlMemory::StringView text);

} // namespace vlGraphics
