#include "app/automation/EditorTable.h"

#include "app/MainWindow.h"
#include "app/automation/Arguments.h"
#include "app/automation/AutomationFramesMessage.h"
#include "app/automation/AutomationPixelMessage.h"
#include "app/automation/AutomationScriptMessage.h"
#include "app/automation/AutomationSyncMessage.h"
#include "app/automation/ScriptTrees.h"
#include "app/automation/UiCall.h"
#include "core/EditorLogger.h"
#include "core/MessageOrchestrator.h"
#include "core/MessageRegistry.h"
#include "editors/AllKinds.h"
#include "interfaces/CommonWindowInit.h"
#include "interfaces/InterfaceContainerCreator.h"
#include "interfaces/history/History.h"

#include <algorithm>

namespace vlEditor {
namespace {

using Answer = Answers::Answer;
using vlScripts::Values;

constexpr std::int64_t usualSyncMs = 60'000;
constexpr std::int64_t usualFramesMs = 30'000;
/// The window system may keep a window from the display for as long as it likes.
constexpr std::chrono::seconds longestSettling{2};

Answers::Time deadlineIn(std::optional<std::int64_t> ms, std::int64_t usual) {
    return std::chrono::steady_clock::now() +
           std::chrono::milliseconds(std::clamp<std::int64_t>(ms.value_or(usual), 0, 86'400'000));
}

/// UI thread. Nothing, and why, where that view is not available.
Answer openView(std::int64_t number) {
    const auto* const known =
            std::ranges::find(viewMenuEntries, number, [](const ViewMenuEntry& entry) {
                return static_cast<std::int64_t>(entry.type);
            });
    if (known == viewMenuEntries.end())
        return vlCommon::fail("editor.open: there is no view of type " + std::to_string(number));
    auto& containers = InterfaceContainerCreator::getInstance();
    const Answer unavailable =
            Values{vlScripts::Value(), std::string(known->label) + " is not available"};
    if (!containers.isAvailable(known->type)) return unavailable;
    vlWinUi::TabWindow& tabs = MainWindow::getInstance().getTabs();
    const auto selected = tabs.getSelected();
    const bool isEmpty = !selected || tabs.getPage(*selected)->getLayout() == nullptr;
    vlWinUi::Window& page =
            isEmpty ? CommonWindowInit::createNewTab(tabs, true) : *tabs.getPage(*selected);
    vlWinUi::Window& container = CommonWindowInit::addContainer(page);
    if (!containers.createInterface(container, known->type)) return unavailable;
    return Values{containers.getInterface(container)->getRootName()};
}

/// UI thread.
Answer keptLines() {
    vlScripts::Table lines;
    for (const std::string& line : EditorLogger::getInstance().getKeptLines())
        lines.items.emplace_back(line);
    return Values{lines};
}

/// UI thread.
Answer record(const std::string& kindName, const std::string& name) {
    const AnyKind* kind = findKind(kindName);
    if (kind == nullptr) return vlCommon::fail("no kind of resource is named '" + kindName + "'");
    return Values{valueOf(kind->record(name))};
}

/// UI thread.
Answer names(const std::string& kindName) {
    const AnyKind* kind = findKind(kindName);
    if (kind == nullptr) return vlCommon::fail("no kind of resource is named '" + kindName + "'");
    vlScripts::Table list;
    for (const std::string& name : kind->names())
        list.items.emplace_back(name);
    return Values{list};
}

/// The registry is filled before any script runs, and only read from then on.
Answer post(const std::string& name, const std::optional<vlScripts::Table>& fields) {
    const auto& registry = MessageRegistry::getInstance();
    const MessageRegistry::Entry* entry = registry.find(name);
    if (entry == nullptr) return vlCommon::fail("no message is named '" + name + "'");
    auto members =
            withFields(entry->write(*entry->makeDefault()), fields.value_or(vlScripts::Table()));
    if (!members) return vlCommon::fail(name + ": " + members.error().message);
    auto message = registry.create(name, *members);
    if (!message) return tl::unexpected(message.error());
    // A script acts in a person's place: what it posts can be undone.
    if (auto* recorded = dynamic_cast<RecordedMessage*>(message->get()))
        recorded->gesture = History::nextGesture();
    auto& queues = MessageOrchestrator::getInstance();
    entry->first == MessageQueue::ui ? queues.postToUi(std::move(*message))
                                     : queues.postToGraphics(std::move(*message));
    return Values{};
}

/// Posts a message that answers a ticket of its own.
template <class M> Answer ask(M message, std::optional<Answers::Time> deadline, const char* late) {
    Answers& answers = Answers::getInstance();
    message.ticket = answers.open();
    const std::uint64_t ticket = message.ticket;
    postToGraphics(std::move(message));
    return answers.wait(ticket, deadline, late);
}

/// Round after round through both threads, until one found all at rest and nothing else was posted
/// since the round before.
Answer sync(std::optional<std::int64_t> ms) {
    const auto deadline = deadlineIn(ms, usualSyncMs);
    const auto settled = std::chrono::steady_clock::now() + longestSettling;
    std::optional<std::int64_t> before;
    while (true) {
        const Answer round = ask(
                AutomationSyncMessage(), deadline, "editor.sync: the editor does not come to rest");
        if (!round) return round;
        const auto posted = (*round)[1].asInteger();
        const bool stands =
                (*round)[2].asBool().value_or(false) || std::chrono::steady_clock::now() >= settled;
        if ((*round)[0].asBool().value_or(false) && stands && posted == before) return Values{};
        before = posted;
        if (std::chrono::steady_clock::now() >= deadline)
            return vlCommon::fail("editor.sync: the editor does not come to rest");
    }
}

Answer frames(std::uint32_t count, std::optional<std::int64_t> ms) {
    constexpr const char* late = "editor.frames: too few frames were drawn; an idle editor draws "
                                 "none unless a view is rendered continuously";
    const auto deadline = deadlineIn(ms, usualFramesMs);
    std::optional<std::int64_t> wanted;
    while (true) {
        const Answer drawn = ask(AutomationFramesMessage(), deadline, late);
        if (!drawn) return drawn;
        const std::int64_t now = drawn->front().asInteger().value_or(0);
        if (!wanted) wanted = now + count;
        if (now >= *wanted) return Values{};
        if (std::chrono::steady_clock::now() >= deadline) return vlCommon::fail(late);
    }
}

Answer pixel(const std::string& window, std::int64_t x, std::int64_t y) {
    if (x < 0 || y < 0 || x > INT32_MAX || y > INT32_MAX)
        return vlCommon::fail("'" + window + "' has no pixel at (" + std::to_string(x) + ", " +
                              std::to_string(y) + ")");
    AutomationPixelMessage message;
    message.window = window;
    message.x = static_cast<std::uint32_t>(x);
    message.y = static_cast<std::uint32_t>(y);
    return ask(std::move(message), {}, "");
}

Answer script(const std::string& text) {
    AutomationScriptMessage message;
    message.text = text;
    return ask(std::move(message), {}, "");
}

} // namespace

void EditorTable::addTo(vlScripts::Interpreter& scripts) {
    addFunction<std::int64_t>(scripts, "editor.open", [](std::int64_t type) {
        return UiCall::read([=] { return openView(type); });
    });
    addFunction<std::string, std::optional<vlScripts::Table>>(scripts, "editor.post", post);
    addFunction<std::string, std::string>(
            scripts, "editor.record", [](const std::string& kind, const std::string& name) {
                return UiCall::read([&] { return record(kind, name); });
            });
    addFunction<std::string>(scripts, "editor.names", [](const std::string& kind) {
        return UiCall::read([&] { return names(kind); });
    });
    addFunction<>(scripts, "editor.log", [] { return UiCall::read(keptLines); });
    addFunction<std::optional<std::int64_t>>(scripts, "editor.sync", sync);
    addFunction<std::uint32_t, std::optional<std::int64_t>>(scripts, "editor.frames", frames);
    addFunction<std::string, std::int64_t, std::int64_t>(scripts, "editor.pixel", pixel);
    addFunction<std::string>(scripts, "editor.script", script);
}

} // namespace vlEditor
