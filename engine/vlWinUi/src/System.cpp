#include "Display.h"
#include "QtMessages.h"
#include "Registry.h"
#include "Style.h"
#include "TerminationWatch.h"
#include "Text.h"
#include "Wakeup.h"
#include "WindowNative.h"
#include "WindowSheet.h"
#include "automation/Invoker.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/System.h>
#include <vlWinUi/ThemeManager.h>

#include <QApplication>
#include <QDeadlineTimer>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <clocale>
#include <optional>

namespace vlWinUi {
namespace {

/** The arguments in the form that Qt keeps pointing into, and Qt's application. */
struct Application {
    explicit Application(std::vector<std::string> given) : texts(std::move(given)) {
        if (texts.empty()) texts.emplace_back("vlEditor");
        for (std::string& text : texts)
            pointers.push_back(text.data());
        pointers.push_back(nullptr);
        count = static_cast<int>(texts.size());
        qt = std::make_unique<QApplication>(count, pointers.data());
    }

    std::vector<std::string> texts;
    std::vector<char*> pointers;
    int count = 0;
    std::unique_ptr<QApplication> qt;
    std::unique_ptr<TerminationWatch> termination;
    bool ending = false;
};

std::unique_ptr<Application>& application() {
    static std::unique_ptr<Application> instance;
    return instance;
}

/// Rows of 27 pixels are made for text of this size.
void setUpFont() {
    QFont font = QApplication::font();
    font.setPixelSize(12);
    QApplication::setFont(font);
}

} // namespace

vlCommon::Result<> System::initialize(const SystemOptions& options) {
    vlCommon::assertUiThread();
    if (isInitialized()) return {};
    const auto platform = choosePlatform(options);
    if (!platform) return tl::unexpected(platform.error());
    std::vector<std::string> arguments = options.arguments;
    if (arguments.empty()) arguments.push_back(options.applicationName);
    std::optional<MemoryScreen> memory;
    if (options.headless) memory.emplace();
    arguments.insert(arguments.begin() + 1, {"-platform", memory ? memory->platform() : *platform});

    installQtMessages();
    QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, !options.nativeDialogs);
    application() = std::make_unique<Application>(std::move(arguments));
    // Qt takes over the locale of the environment; texts with numbers in them stay C's.
    std::setlocale(LC_NUMERIC, "C");
    QLocale::setDefault(QLocale::c());
    QGuiApplication::setApplicationName(toQt(options.applicationName));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    Registry::slot() = std::make_unique<Registry>();
    auto* style = new Style;
    QApplication::setStyle(style);
    Registry::slot()->style = style;
    setUpFont();
    ThemeManager::setActiveTheme(ThemeManager::createOrRetrieve("EDITOR_DARK"));
    Wakeup::getInstance().open();
    Invoker::getInstance().open();
    return {};
}

bool System::isInitialized() {
    return application() != nullptr;
}

void System::run() {
    vlCommon::assertUiThread();
    if (!isInitialized() || application()->ending) return;
    QApplication::exec();
}

void System::processEvents() {
    vlCommon::assertUiThread();
    if (!isInitialized()) return;
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void System::settle() {
    vlCommon::assertUiThread();
    if (!isInitialized()) return;
    const auto stands = [] {
        const QWindowList windows = QGuiApplication::allWindows();
        return std::all_of(windows.begin(), windows.end(), [](const QWindow* window) {
            return !window->isVisible() || window->isExposed();
        });
    };
    constexpr int longestMs = 100;
    constexpr QEventLoop::ProcessEventsFlags noInput =
            QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers;
    const QDeadlineTimer deadline(longestMs);
    do {
        QCoreApplication::processEvents(noInput | QEventLoop::WaitForMoreEvents, 1);
    } while (!stands() && !deadline.hasExpired());
    QCoreApplication::processEvents(noInput);
}

void System::prepareForShutdown() {
    vlCommon::assertUiThread();
    if (!isInitialized()) return;
    application()->ending = true;
    QCoreApplication::exit(0);
}

void System::kill() {
    vlCommon::assertUiThread();
    if (!isInitialized()) return;
    application()->termination.reset();
    Wakeup::getInstance().close();
    Invoker::getInstance().close();
    Registry::slot()->close = nullptr;
    Registry::slot()->focus = nullptr;
    Registry::slot()->components.clear();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    Registry::slot().reset();
    forgetSheets();
    application().reset();
}

void System::setRunCallback(std::function<bool()> callback) {
    vlCommon::assertUiThread();
    Wakeup::getInstance().setCallback(std::move(callback));
}

void System::notifyEvent() {
    Wakeup::getInstance().notify();
}

void System::runLater(std::function<void()> callLater) {
    vlCommon::assertUiThread();
    if (!isInitialized()) return;
    QMetaObject::invokeMethod(qApp, std::move(callLater), Qt::QueuedConnection);
}

void System::runAfter(std::chrono::milliseconds delay, std::function<void()> callAfter) {
    vlCommon::assertUiThread();
    if (!isInitialized()) return;
    QTimer::singleShot(delay, qApp, std::move(callAfter));
}

void System::setTerminationCallback(std::function<void()> callback) {
    vlCommon::assertUiThread();
    if (!isInitialized()) return;
    application()->termination.reset();
    if (callback)
        application()->termination = std::make_unique<TerminationWatch>(std::move(callback));
}

void System::showHint(vlMemory::StringView text) {
    vlCommon::assertUiThread();
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        Component* component = Native::componentOf(widget);
        if (component != nullptr && component->getType() == ComponentType::Window)
            nativeAs<WindowNative>(*component).setHint(toQt(text));
    }
}

} // namespace vlWinUi
