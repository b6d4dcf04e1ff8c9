#pragma once

namespace vlWinUi {

/// The style sheet of all widgets; {{name}} stands for a colour of the Shades.
extern const char* const THEME_SHEET;

} // namespace vlWinUi
