#include "QtMessages.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/LogManager.h>

#include <QCoreApplication>
#include <QString>

#include <cstdio>

namespace vlWinUi {
namespace {

/// Said on every start of a machine without a login session, or of windows that are drawn in
/// memory, and of no consequence.
bool isHarmless(const QString& text) {
    return text.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR")) ||
           text.startsWith(QLatin1String("This plugin does not support "));
}

void receive(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", text.toUtf8().constData());
        return;
    }
    if (type == QtDebugMsg || isHarmless(text)) return;
    const auto log = [line = text.toStdString()] { LogManager::getInstance().log(line); };
    // The receiver of this library's lines belongs to the UI thread.
    if (vlCommon::ThreadBorder::onUiThread()) return log();
    if (QCoreApplication* application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, log, Qt::QueuedConnection);
}

} // namespace

void installQtMessages() {
    LogManager::getInstance();
    qInstallMessageHandler(receive);
}

} // namespace vlWinUi
