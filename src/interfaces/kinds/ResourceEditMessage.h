#pragma once
#include "interfaces/kinds/EngineSide.h"
#include "interfaces/kinds/ResourceChange.h"

namespace vlEditor {

/// UI thread. The record becomes what was read, but for what it shows otherwise.
template <class Kind> void replaceRead(typename Kind::Record& record, typename Kind::Record fresh) {
    if constexpr (requires { Kind::keepShown(record, fresh); }) Kind::keepShown(record, fresh);
    record = std::move(fresh);
}

/** Carries one edit of one resource. A resource that the engine no longer holds is made again,
 *  empty, where the kind has it so; what the engine makes of a value that it cannot take is what
 *  the record then holds. */
template <ResourceEdit Edit> class ResourceEditMessage final : public RecordedMessage {
public:
    using Kind = typename Edit::Kind;

    ResourceEditMessage() = default;
    ResourceEditMessage(std::string resource, Edit what)
        : name(std::move(resource)), edit(std::move(what)) {}

    void runOnGraphicsThread() override {
        constexpr bool makes = Kind::hooks.editsMakeMissing;
        auto& manager = managerOf<Kind>();
        auto* engine = makes ? manager.createOrRetrieve(name) : manager.get(name);
        if (engine == nullptr) {
            postToUi(LogMessage(makes ? couldNotCreateLine(Kind::texts, name)
                                      : missingLine(Kind::texts, name)));
            return;
        }
        if (!mayChange<Kind>(*engine)) return;
        ResourceEditMessage outcome = *this;
        outcome.change.before = mementoOf<Kind>(*engine);
        outcome.isMade = changeResource<Kind>(*engine, [&] { return edit.applyTo(*engine); });
        outcome.change.setAfter(*engine);
        postToUi(std::move(outcome));
    }

    void runOnUiThread() override {
        auto& tracker = ResourceUiDataTracker<Kind>::getInstance();
        auto* record = tracker.get(name);
        if (record == nullptr || !change.record) return;
        if constexpr (requires { edit.applyTo(*record, *change.record); }) {
            if (isMade) edit.applyTo(*record, *change.record);
        }
        replaceRead<Kind>(*record, std::move(*change.record));
        recordStep<Kind>(gesture, std::move(change.before), std::move(change.after));
        tracker.notifyUpdated(name);
        if constexpr (requires { edit.onMade(*record); }) {
            if (isMade) edit.onMade(*record);
        }
    }

    static constexpr auto members() {
        return std::tuple{Member{"name", &ResourceEditMessage::name},
                          Inlined{&ResourceEditMessage::edit}};
    }

    std::string name;
    Edit edit;
    ResourceChange<Kind> change; ///< on its way back
    bool isMade = false;         ///< on its way back: the edit did not fail
};

/** How a resource was read again, though nobody has changed it: no step of undo. */
template <class Kind> class RereadResourceMessage final : public Message {
public:
    using Record = typename Kind::Record;
    RereadResourceMessage() = default;
    explicit RereadResourceMessage(Record fresh) : record(std::move(fresh)) {}

    void runOnGraphicsThread() override {}
    void runOnUiThread() override {
        auto& tracker = ResourceUiDataTracker<Kind>::getInstance();
        Record* held = tracker.get(record.name);
        if (held == nullptr) return;
        replaceRead<Kind>(*held, std::move(record));
        tracker.notifyUpdated(held->name);
    }

    static constexpr auto members() {
        return std::tuple{Member{"record", &RereadResourceMessage::record}};
    }

    Record record;
};

} // namespace vlEditor
