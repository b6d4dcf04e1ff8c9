// The least that a desktop program of this kind can be: one empty window, which ends the program
// once it was painted.
#include <QApplication>
#include <QPainter>
#include <QTimer>
#include <QWidget>

#include <cstdio>

namespace {

class Window final : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(), Qt::darkGray);
        // Not before the event loop has put the picture on the display.
        QTimer::singleShot(0, this, [] {
            std::puts("drawn\ncomplete");
            std::fflush(stdout);
            QCoreApplication::quit();
        });
    }
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    Window window;
    window.resize(1280, 800);
    window.show();
    return QApplication::exec();
}
