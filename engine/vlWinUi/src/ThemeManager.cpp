#include "Log.h"
#include "Registry.h"
#include "Shades.h"
#include "Style.h"
#include "ThemeSheet.h"
#include "WindowSheet.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ThemeManager.h>

#include <QApplication>

#include <cassert>

namespace vlWinUi {

Theme::Theme(std::string name)
    : name_(std::move(name)), colors_{{{12, 12, 12, 255},
                                       {138, 56, 54, 255},
                                       {81, 69, 21, 255},
                                       {163, 139, 43, 255},
                                       {191, 191, 191, 255}}} {
}

Theme& ThemeManager::createOrRetrieve(vlMemory::StringView name) {
    vlCommon::assertUiThread();
    assert(Registry::slot() != nullptr);
    return Registry::slot()->themes.try_emplace(std::string(name), std::string(name)).first->second;
}

Theme* ThemeManager::get(vlMemory::StringView name) {
    vlCommon::assertUiThread();
    if (!Registry::slot()) return nullptr;
    const auto found = Registry::slot()->themes.find(name);
    return found == Registry::slot()->themes.end() ? nullptr : &found->second;
}

void ThemeManager::setActiveTheme(const Theme& theme) {
    vlCommon::assertUiThread();
    if (get(theme.getName()) != &theme) {
        logLine("theme '{}' is not one of the theme manager's", theme.getName());
        return;
    }
    Registry::slot()->activeTheme = &theme;
    const Shades shades(theme);
    Registry::slot()->style->setShades(shades);
    QApplication::setPalette(shades.palette());
    setSheet(shades.fillIn(QString::fromUtf8(THEME_SHEET)));
}

const Theme* ThemeManager::getActiveTheme() {
    vlCommon::assertUiThread();
    return Registry::slot() ? Registry::slot()->activeTheme : nullptr;
}

} // namespace vlWinUi
