#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/Clipboard.h>

#include <QClipboard>
#include <QGuiApplication>

namespace vlWinUi {

void Clipboard::setText(vlMemory::StringView text) {
    vlCommon::assertUiThread();
    QGuiApplication::clipboard()->setText(toQt(text));
}

std::string Clipboard::getText() {
    vlCommon::assertUiThread();
    return fromQt(QGuiApplication::clipboard()->text());
}

} // namespace vlWinUi
