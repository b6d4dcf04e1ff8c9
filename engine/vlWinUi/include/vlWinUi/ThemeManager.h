#pragma once
#include <vlMemory/String.h>
#include <vlWinUi/Theme.h>

namespace vlWinUi {

/** Owns the themes, each under its unique name, and dresses the widgets in one of them. Themes live
 * from System::initialize(), which makes one active, to System::kill(). UI thread only. */
class ThemeManager {
public:
    static Theme& createOrRetrieve(vlMemory::StringView name);
    /// Null when there is none.
    static Theme* get(vlMemory::StringView name);
    /// Shows the theme's colours as they are now; later changes of them show at the next call.
    static void setActiveTheme(const Theme& theme);
    static const Theme* getActiveTheme();
};

} // namespace vlWinUi
