#include "WindowSheet.h"

#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <vector>

namespace vlWinUi {
namespace {

struct Worn {
    QString sheet;
    std::vector<QPointer<QWidget>> windows;
};

Worn& worn() {
    static Worn instance;
    return instance;
}

} // namespace

void wearSheet(QWidget& window) {
    auto& windows = worn().windows;
    std::erase_if(windows, [](const QPointer<QWidget>& one) { return one.isNull(); });
    if (std::ranges::find(windows, &window, &QPointer<QWidget>::data) != windows.end()) return;
    windows.emplace_back(&window);
    window.setStyleSheet(worn().sheet);
}

void setSheet(const QString& sheet) {
    worn().sheet = sheet;
    for (const QPointer<QWidget>& window : worn().windows) {
        if (!window.isNull()) window->setStyleSheet(sheet);
    }
}

void forgetSheets() {
    worn().windows.clear();
}

} // namespace vlWinUi
