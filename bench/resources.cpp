// Ten thousand resources of one kind through their editor: created and erased by message with a
// window open, a second window opened on them, filtered, one renamed; against a plain list view of
// the widget toolkit that is told the same by queued calls. And how long an edit takes from the
// click to the refreshed widget of another window.
#include "Report.h"
#include "core/EditorLogger.h"
#include "core/MessageOrchestrator.h"
#include "editors/AllKinds.h"
#include "interfaces/PickListDialog.h"
#include "interfaces/PickLists.h"
#include "interfaces/history/History.h"

#include <vlCommon/ThreadBorder.h>
#include <vlGraphics/BlendState.h>
#include <vlWinUi/CheckBox.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/System.h>
#include <vlWinUi/Window.h>

#include <QApplication>
#include <QCheckBox>
#include <QListView>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTimer>
#include <fmt/format.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <map>
#include <thread>

namespace bench {
namespace {

using vlEditor::AnyKind;
using vlEditor::History;
using vlEditor::MessageOrchestrator;
using vlWinUi::ComponentManager;

constexpr int count = 10'000;
constexpr std::chrono::milliseconds longestDrain{4}; // as the editor has it
constexpr std::chrono::microseconds engineTurn{1000};

std::string nameOf(int number) {
    return fmt::format("blend_{}", number);
}

struct Timing {
    double totalMs = 0;
    double stallMs = 0; ///< the longest time that the event loop did nothing else
};

/// Starts something and runs the event loop until it is done, feeling its pulse.
Timing measure(const std::function<void()>& begin, const std::function<bool()>& isDone) {
    Timing timing;
    const double start = nowMs();
    double last = start;
    QTimer pulse;
    QObject::connect(&pulse, &QTimer::timeout, [&] {
        const double now = nowMs();
        timing.stallMs = std::max(timing.stallMs, now - last);
        last = now;
        if (isDone()) QCoreApplication::exit();
    });
    pulse.start(1);
    QTimer::singleShot(0, begin);
    QCoreApplication::exec();
    timing.totalMs = nowMs() - start;
    return timing;
}

using Timings = std::map<std::string, Timing>;

const AnyKind& kind() {
    return *vlEditor::findKind("BlendState");
}

std::unique_ptr<vlEditor::Interface> openWindow() {
    auto shown = kind().createInterface();
    auto& root = *ComponentManager::get<vlWinUi::Window>(shown->getRootName());
    root.setRectangle({0, 0, 1280, 800});
    root.load();
    vlWinUi::System::processEvents();
    return shown;
}

vlWinUi::ListBox& listOf(const vlEditor::Interface& window) {
    return *ComponentManager::get<vlWinUi::ListBox>(window.getRootName() + "_LIST");
}

Timings throughTheEditor() {
    Timings timings;
    vlEditor::PickLists::getInstance().createFirstGroup();
    vlEditor::PickListDialog::createAll();
    vlWinUi::System::setRunCallback([] {
        MessageOrchestrator::getInstance().drainUiFor(longestDrain);
        return true;
    });
    vlGraphics::BlendStateManager engine;
    std::atomic<bool> isRunning = true;
    std::thread graphics([&] {
        vlCommon::ThreadBorder::claimEngine();
        while (isRunning) {
            MessageOrchestrator::getInstance().drainGraphics();
            std::this_thread::sleep_for(engineTurn);
        }
    });
    std::unique_ptr<vlEditor::Interface> first;
    timings["window opened on none"] =
            measure([&] { first = openWindow(); }, [&] { return first != nullptr; });
    vlWinUi::ListBox& list = listOf(*first);
    const auto& commands = kind().commands();
    const auto holds = [&](std::size_t wanted) {
        return [&list, wanted] { return list.getEntryCount() == wanted; };
    };
    timings["created"] = measure(
            [&] {
                for (int i = 0; i < count; ++i)
                    commands.create(nameOf(i));
            },
            holds(count));
    std::unique_ptr<vlEditor::Interface> second;
    timings["window opened on them"] =
            measure([&] { second = openWindow(); }, [&] { return second != nullptr; });
    const auto filter = [&] {
        list.setFilter("99");
        vlWinUi::System::processEvents();
    };
    timings["filtered"] = measure(filter, [&] { return list.getShownCount() < count; });
    list.setFilter("");
    timings["one renamed"] = measure([&] { commands.rename(nameOf(count / 2), "renamed"); },
                                     [&] { return list.find("renamed").has_value(); });
    timings["all erased"] = measure(
            [&] {
                const History::Scope gesture;
                for (const std::string& name : kind().names())
                    commands.erase(name);
            },
            holds(0));
    timings["all brought back by undo"] =
            measure([] { History::getInstance().undo(); }, holds(count));
    isRunning = false;
    graphics.join();
    vlCommon::ThreadBorder::claimEngine();
    second.reset();
    first.reset();
    kind().clear();
    History::destroyInstance();
    vlEditor::PickLists::destroyInstance();
    return timings;
}

/// A list view with its own filter, told each thing by a queued call.
Timings throughAListView() {
    Timings timings;
    QListView view;
    QStandardItemModel model;
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&model);
    view.setModel(&proxy);
    view.setUniformItemSizes(true);
    view.resize(1280, 800);
    view.show();
    vlWinUi::System::processEvents();
    const auto later = [&](auto call) {
        QMetaObject::invokeMethod(&view, call, Qt::QueuedConnection);
    };
    const auto fill = [&] {
        for (int i = 0; i < count; ++i)
            later([&, i] {
                model.appendRow(new QStandardItem(QString::fromStdString(nameOf(i))));
            });
    };
    timings["created"] = measure(fill, [&] { return model.rowCount() == count; });
    const auto filter = [&] {
        proxy.setFilterFixedString("99");
        vlWinUi::System::processEvents();
    };
    timings["filtered"] = measure(filter, [&] { return proxy.rowCount() < count; });
    proxy.setFilterFixedString("");
    const auto rename = [&] { later([&] { model.item(count / 2)->setText("renamed"); }); };
    timings["one renamed"] =
            measure(rename, [&] { return model.item(count / 2)->text() == "renamed"; });
    const auto erase = [&] {
        for (int i = 0; i < count; ++i)
            later([&] { model.removeRow(0); });
    };
    timings["all erased"] = measure(erase, [&] { return model.rowCount() == 0; });
    timings["all brought back by undo"] = measure(fill, [&] { return model.rowCount() == count; });
    return timings;
}

QCheckBox& boxNamed(const std::string& name) {
    for (QWidget* widget : QApplication::allWidgets()) {
        auto* box = qobject_cast<QCheckBox*>(widget);
        if (box != nullptr && box->objectName() == QString::fromStdString(name)) return *box;
    }
    fmt::print(stderr, "resources: there is no check box '{}'\n", name);
    std::exit(1);
}

/// Milliseconds from each click until a second window shows it, both threads' halves run at once.
Samples editsAlone(int rounds) {
    Samples samples;
    vlGraphics::BlendStateManager engine;
    vlEditor::PickLists::getInstance().createFirstGroup();
    auto& queues = MessageOrchestrator::getInstance();
    const auto turn = [&] {
        queues.drainGraphics();
        queues.drainUi();
    };
    auto first = openWindow();
    auto second = openWindow();
    kind().commands().create("a");
    turn();
    for (const auto* window : {first.get(), second.get()}) {
        listOf(*window).select(0);
        window->getRoot();
    }
    first->resourceChanged("a");
    second->resourceChanged("a");
    QCheckBox& clicked = boxNamed(first->getRootName() + "_TARGET_ENABLE_3");
    const QCheckBox& shown = boxNamed(second->getRootName() + "_TARGET_ENABLE_3");
    for (int round = 0; round < rounds; ++round) {
        const bool wanted = !clicked.isChecked();
        const double start = nowMs();
        clicked.click();
        turn();
        samples.add(nowMs() - start);
        if (shown.isChecked() != wanted) {
            fmt::print(stderr, "resources: the other window does not follow\n");
            std::exit(1);
        }
    }
    first.reset();
    second.reset();
    kind().clear();
    History::destroyInstance();
    vlEditor::PickLists::destroyInstance();
    return samples;
}

Samples clicksOfTheToolkit(int rounds) {
    Samples samples;
    QWidget window;
    QCheckBox clicked(&window);
    QCheckBox shown(&window);
    QObject::connect(&clicked, &QCheckBox::toggled, &shown, &QCheckBox::setChecked);
    window.show();
    vlWinUi::System::processEvents();
    for (int round = 0; round < rounds; ++round) {
        const double start = nowMs();
        clicked.click();
        samples.add(nowMs() - start);
    }
    return samples;
}

/// In a widget library of its own.
template <class Run> auto inNewLife(Run run) {
    vlWinUi::SystemOptions options;
    options.headless = true;
    if (const auto started = vlWinUi::System::initialize(options); !started) {
        fmt::print(stderr, "resources: {}\n", started.error().message);
        std::exit(1);
    }
    const auto result = run();
    vlWinUi::System::kill();
    return result;
}

void compare(int rounds) {
    std::map<std::string, std::pair<Samples, Samples>> totals;
    std::map<std::string, std::pair<Samples, Samples>> stalls;
    for (int round = 0; round < rounds; ++round) {
        const Timings ours = inNewLife(throughTheEditor);
        const Timings theirs = inNewLife(throughAListView);
        for (const auto& [what, timing] : ours) {
            // The editor's window is far more than its list.
            const bool isWindow = what.starts_with("window opened");
            const Timing& peer = isWindow ? ours.at("window opened on none") : theirs.at(what);
            totals[what].first.add(timing.totalMs);
            totals[what].second.add(peer.totalMs);
            stalls[what].first.add(timing.stallMs);
            stalls[what].second.add(peer.stallMs);
        }
    }
    for (const auto& [what, pair] : totals) {
        const std::string line = fmt::format("{} resources: {}", count, what);
        summarise(line,
                  withSpread(pair.first) + " ms",
                  withSpread(pair.second) + " ms",
                  pairedRatios(pair.first, pair.second));
        const auto& [stall, peerStall] = stalls[what];
        summarise(line + ", longest stall",
                  withSpread(stall) + " ms",
                  withSpread(peerStall) + " ms",
                  pairedRatios(stall, peerStall),
                  "below 50 ms");
    }
    constexpr int clicks = 2000;
    const Samples ours = inNewLife([] { return editsAlone(clicks); });
    const Samples theirs = inNewLife([] { return clicksOfTheToolkit(clicks); });
    summarise("an edit, from the click to another window's widget",
              withSpread(ours) + " ms",
              withSpread(theirs) + " ms",
              pairedRatios(ours, theirs),
              "below 2 ms");
}

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    vlCommon::ThreadBorder::claimUi();
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 5;
    if (rounds < 1) {
        fmt::print(stderr, "resources [ROUNDS]\n");
        return 2;
    }
    vlEditor::EditorLogger::getInstance().setEnabled(false);
    bench::compare(rounds);
    bench::MessageOrchestrator::getInstance().discard();
    // Before the libraries' logs end, which it listens to.
    vlEditor::EditorLogger::destroyInstance();
}
