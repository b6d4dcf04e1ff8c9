// A burst of log lines from another thread into a log window that is open, as when a project with a
// hundred thousand faults is opened, against a plain text view of the widget toolkit that is told
// each line.
#include "Report.h"
#include "core/EditorLogger.h"
#include "core/MessageOrchestrator.h"
#include "interfaces/LogInterface.h"
#include "interfaces/LogInterfaceCreator.h"

#include <vlCommon/ThreadBorder.h>
#include <vlGraphics/LogManager.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/System.h>
#include <vlWinUi/Window.h>

#include <QCoreApplication>
#include <QPlainTextEdit>
#include <QTimer>
#include <fmt/format.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace bench {
namespace {

using vlEditor::EditorLogger;
using vlEditor::MessageOrchestrator;

constexpr std::chrono::milliseconds longestDrain{8}; // as the editor has it

struct Burst {
    double totalMs = 0;  ///< from the first line's making until the last is in the view
    double stallMs = 0;  ///< the longest time that the event loop did nothing else
    double memoryMb = 0; ///< resident memory that came with it, at its highest
};

std::string lineOf(std::size_t number) {
    const char* outcome = number % 10 == 0 ? "could not be read" : "was read";
    return fmt::format("texture 'rust_{}' of the material 'rusty_metal' {}", number, outcome);
}

double residentMb() {
    std::ifstream file("/proc/self/statm");
    double size = 0;
    double resident = 0;
    file >> size >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20U);
}

/// Runs the event loop while another thread hands over the lines, and feels its pulse.
Burst measure(std::size_t count,
              const std::function<void(std::string)>& log,
              const std::function<bool()>& isComplete) {
    Burst burst;
    const double memoryBefore = residentMb();
    const double start = nowMs();
    double last = start;
    QTimer pulse;
    QObject::connect(&pulse, &QTimer::timeout, [&] {
        const double now = nowMs();
        burst.stallMs = std::max(burst.stallMs, now - last);
        burst.memoryMb = std::max(burst.memoryMb, residentMb() - memoryBefore);
        last = now;
        if (isComplete()) QCoreApplication::exit();
    });
    pulse.start(1);
    std::thread producer([&] {
        for (std::size_t i = 1; i <= count; ++i)
            log(lineOf(i));
    });
    QCoreApplication::exec();
    burst.totalMs = nowMs() - start;
    producer.join();
    return burst;
}

Burst intoLogWindow(std::size_t count) {
    EditorLogger::getInstance().attach();
    auto shown = vlEditor::LogInterfaceCreator::create();
    auto& window = *vlWinUi::ComponentManager::createOrRetrieve<vlWinUi::Window>("LOG");
    vlWinUi::GridLayout layout(1, 1);
    layout.addComponent(*shown->getRoot(), 0, 0);
    window.setLayout(std::move(layout));
    window.load();
    vlWinUi::System::settle();
    vlWinUi::System::setRunCallback([] {
        MessageOrchestrator::getInstance().drainUiFor(longestDrain);
        return true;
    });
    const auto* list =
            vlWinUi::ComponentManager::get<vlWinUi::ListBox>(shown->getRootName() + "_LOG");
    const std::string last = "[GraphicsThread] " + lineOf(count);
    const Burst burst = measure(
            count,
            [](const std::string& line) { vlGraphics::LogManager::getInstance().log(line); },
            [&] {
                const std::size_t entries = list->getEntryCount();
                return entries > 0 && list->getEntry(entries - 1).label == last;
            });
    shown.reset();
    EditorLogger::destroyInstance();
    return burst;
}

Burst intoTextView(std::size_t count) {
    QPlainTextEdit view;
    view.setReadOnly(true);
    view.setMaximumBlockCount(vlEditor::LogInterface::mostLines);
    view.resize(1280, 800);
    view.show();
    vlWinUi::System::settle();
    std::size_t shown = 0;
    const auto log = [&](const std::string& line) {
        QMetaObject::invokeMethod(
                &view,
                [&, line] {
                    view.appendPlainText(QString::fromStdString(line));
                    ++shown;
                },
                Qt::QueuedConnection);
    };
    return measure(count, log, [&] { return shown == count; });
}

/// In a widget library of its own.
template <class Run> Burst inNewLife(Run run, std::size_t count) {
    vlWinUi::SystemOptions options;
    options.headless = true;
    if (const auto started = vlWinUi::System::initialize(options); !started) {
        fmt::print(stderr, "log_burst: {}\n", started.error().message);
        std::exit(1);
    }
    const Burst burst = run(count);
    vlWinUi::System::kill();
    return burst;
}

void compare(std::size_t count, int rounds) {
    Samples ourTotal, ourStall, ourMemory, theirTotal, theirStall, theirMemory;
    for (int round = 0; round < rounds; ++round) {
        const Burst ours = inNewLife(intoLogWindow, count);
        const Burst theirs = inNewLife(intoTextView, count);
        ourTotal.add(ours.totalMs);
        ourStall.add(ours.stallMs);
        ourMemory.add(ours.memoryMb);
        theirTotal.add(theirs.totalMs);
        theirStall.add(theirs.stallMs);
        theirMemory.add(theirs.memoryMb);
    }
    fmt::print("{} lines: memory at its highest {} MB, of the text view {} MB\n",
               count,
               withSpread(ourMemory),
               withSpread(theirMemory));
    const std::string what = fmt::format("log: {} lines, ", count);
    summarise(what + "until the last is shown",
              withSpread(ourTotal) + " ms",
              withSpread(theirTotal) + " ms",
              pairedRatios(ourTotal, theirTotal));
    summarise(what + "longest stall",
              withSpread(ourStall) + " ms",
              withSpread(theirStall) + " ms",
              pairedRatios(ourStall, theirStall),
              "below 50 ms");
}

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    vlCommon::ThreadBorder::claimUi();
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 5;
    if (rounds < 1) {
        fmt::print(stderr, "log_burst [ROUNDS]\n");
        return 2;
    }
    bench::compare(100'000, rounds);
    bench::MessageOrchestrator::getInstance().discard();
}
