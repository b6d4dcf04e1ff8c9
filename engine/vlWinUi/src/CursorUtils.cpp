#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/CursorUtils.h>

#include <QCursor>

namespace vlWinUi {

void CursorUtils::setCursorPosition(Point screen) {
    vlCommon::assertUiThread();
    QCursor::setPos(screen.x, screen.y);
}

Point CursorUtils::getCursorPosition() {
    vlCommon::assertUiThread();
    const QPoint at = QCursor::pos();
    return {at.x(), at.y()};
}

} // namespace vlWinUi
