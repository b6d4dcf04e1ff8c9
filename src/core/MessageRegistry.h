#pragma once
#include "core/Members.h"
#include "core/MessageOrchestrator.h"

#include <vlCommon/Result.h>
#include <vlCommon/SingletonClass.h>

#include <deque>
#include <memory>
#include <string>
#include <typeindex>
#include <unordered_map>

namespace vlEditor {

enum class MessageQueue { ui, graphics };

/** Every kind of message by name, as journals, automation and tests know them: which queue it
 * enters first, and its request members as a tree. Filled by the UI thread at start-up; any thread
 * reads it afterwards. */
class MessageRegistry final : public vlCommon::SingletonClass<MessageRegistry> {
public:
    struct Entry {
        std::string name;
        MessageQueue first;
        std::type_index type;
        std::unique_ptr<Message> (*makeDefault)();
        /// Null, with the error's place and reason, when the tree does not fit.
        std::unique_ptr<Message> (*read)(const vlExport::Node& members, ReadError& error);
        vlExport::Node (*write)(const Message& message);
        bool (*same)(const Message& a, const Message& b);
    };

    /// M says its request members by name; what only the outcome carries stays out of them.
    template <class M> void add(MessageQueue first, std::string name = std::string(typeName<M>())) {
        addEntry({std::move(name),
                  first,
                  typeid(M),
                  []() -> std::unique_ptr<Message> { return std::make_unique<M>(); },
                  [](const vlExport::Node& members, ReadError& error) -> std::unique_ptr<Message> {
                      auto message = std::make_unique<M>();
                      if (!fromTree(members, *message, error)) return nullptr;
                      return message;
                  },
                  [](const Message& message) { return toTree(static_cast<const M&>(message)); },
                  [](const Message& a, const Message& b) {
                      return sameMembers(static_cast<const M&>(a), static_cast<const M&>(b));
                  }});
    }

    /// In the order of their registration.
    const std::deque<Entry>& entries() const { return entries_; }
    /// Null when there is none.
    const Entry* find(std::string_view name) const;
    const Entry* find(const Message& message) const;

    /// The error names the message and the member: "LogMessage: text: expected a text".
    vlCommon::Result<std::unique_ptr<Message>> create(std::string_view name,
                                                      const vlExport::Node& members) const;
    /// Makes it and puts it into the queue that its kind enters first.
    vlCommon::Result<> post(std::string_view name, const vlExport::Node& members) const;
    /// On one line: `EngineWindowChangeUpdateMessage {"surface": "A", "update": true}`.
    std::string print(const Message& message) const;
    /// Of the same kind, with the same request.
    bool same(const Message& a, const Message& b) const;

private:
    void addEntry(Entry entry);

    std::deque<Entry> entries_;
    std::unordered_map<std::string_view, const Entry*> byName_;
    std::unordered_map<std::type_index, const Entry*> byType_;
};

} // namespace vlEditor
