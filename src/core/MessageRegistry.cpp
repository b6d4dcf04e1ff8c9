#include "core/MessageRegistry.h"

#include <vlExport/JsonExporter.h>

#include <cassert>

namespace vlEditor {
namespace {

// The exporter writes for files: the line feeds and the indent after them go.
std::string onOneLine(std::string_view text) {
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\n') {
            line += text[i];
            continue;
        }
        while (i + 1 < text.size() && text[i + 1] == ' ')
            ++i;
        if (i + 1 == text.size()) break;
        const bool opened = !line.empty() && (line.back() == '{' || line.back() == '[');
        const bool closes = text[i + 1] == '}' || text[i + 1] == ']';
        if (!opened && !closes) line += ' ';
    }
    return line;
}

} // namespace

void MessageRegistry::addEntry(Entry entry) {
    assert(find(entry.name) == nullptr && "two kinds of message share a name");
    assert(!byType_.contains(entry.type) && "a kind of message is registered twice");
    entries_.push_back(std::move(entry));
    byName_.emplace(entries_.back().name, &entries_.back());
    byType_.emplace(entries_.back().type, &entries_.back());
}

const MessageRegistry::Entry* MessageRegistry::find(std::string_view name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : found->second;
}

const MessageRegistry::Entry* MessageRegistry::find(const Message& message) const {
    const auto found = byType_.find(typeid(message));
    return found == byType_.end() ? nullptr : found->second;
}

vlCommon::Result<std::unique_ptr<Message>>
MessageRegistry::create(std::string_view name, const vlExport::Node& members) const {
    const Entry* entry = find(name);
    if (entry == nullptr) return vlCommon::fail("no message is named '" + std::string(name) + "'");
    ReadError error;
    std::unique_ptr<Message> message = entry->read(members, error);
    if (!message) return vlCommon::fail(entry->name + ": " + error);
    return message;
}

vlCommon::Result<> MessageRegistry::post(std::string_view name,
                                         const vlExport::Node& members) const {
    auto message = create(name, members);
    if (!message) return tl::unexpected(std::move(message.error()));
    auto& queues = MessageOrchestrator::getInstance();
    if (find(name)->first == MessageQueue::ui)
        queues.postToUi(std::move(*message));
    else
        queues.postToGraphics(std::move(*message));
    return {};
}

std::string MessageRegistry::print(const Message& message) const {
    const Entry* entry = find(message);
    if (entry == nullptr) return "a message of an unregistered kind";
    const std::string text = vlExport::JsonExporter::exportTreeIntoString(entry->write(message));
    return entry->name + " " + onOneLine(text);
}

bool MessageRegistry::same(const Message& a, const Message& b) const {
    const Entry* entry = find(a);
    return entry != nullptr && entry == find(b) && entry->same(a, b);
}

} // namespace vlEditor
