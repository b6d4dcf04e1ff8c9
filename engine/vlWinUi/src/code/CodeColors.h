#pragma once
#include "Shades.h"
#include "code/CodeRules.h"

namespace vlWinUi {

/// Each kind of token in a hue of its own that can be read on the ground of fields.
QColor colorOf(TokenKind kind, const Shades& shades);

} // namespace vlWinUi
