#pragma once
#include <vlWinUi/Component.h>
#include <vlWinUi/Theme.h>

#include <QWidget>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace vlWinUi {

class Style;

/** What lives from the library's start to its end besides the widget system itself. Null outside.
 */
struct Registry {
    struct Entry {
        std::unique_ptr<Component> component;
        std::uint64_t serial = 0; ///< in the order of making
    };

    static std::unique_ptr<Registry>& slot();

    std::unique_ptr<QWidget> parking; ///< holds surfaces that are out of view
    std::map<std::string, Entry, std::less<>> components;
    std::uint64_t nextSerial = 0;
    std::map<std::string, Theme, std::less<>> themes;
    const Theme* activeTheme = nullptr;
    Style* style = nullptr; ///< the application's; not owned
    std::function<bool(Component&)> close;
    std::function<void(Component*)> focus;
};

} // namespace vlWinUi
