#pragma once
#include "interfaces/kinds/ResourceKind.h"

#include <vlWinUi/Component.h>

#include <string>

namespace vlEditor {

/// Creates the components of a window of a kind: what all kinds have, the kind's blocks, and its
/// main text, whose root is returned; null, with lines in the log, where that text has none. UI
/// thread.
vlWinUi::Component*
createKindWindow(const KindTexts& texts, const KindLayout& layout, const std::string& base);

} // namespace vlEditor
