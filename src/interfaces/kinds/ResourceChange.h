#pragma once
#include "core/MessageOrchestrator.h"
#include "interfaces/history/History.h"
#include "interfaces/kinds/ResourceKind.h"
#include "interfaces/kinds/ResourceUiDataTracker.h"

#include <memory>
#include <optional>
#include <utility>

namespace vlEditor {

template <class Kind> class RestoreResourceMessage;

/// What a step of undo is called, from the resource as a tree before and after; null for none.
std::string
describeChange(const KindTexts& texts, const vlExport::Node& before, const vlExport::Node& after);

/// What a value holds on to beside its own size, in bytes, roughly.
std::size_t heldBytes(const vlExport::Node& tree);
template <class T> std::size_t heldBytes(const T& value) {
    std::size_t sum = 0;
    if constexpr (HasMembers<T>) {
        forEachMember(value, [&](std::string_view, const auto& member) {
            sum += heldBytes(member);
            return true;
        });
    } else if constexpr (detail::isOptional<T>) {
        if (value) sum = heldBytes(*value);
    } else if constexpr (detail::isVector<T>) {
        for (const auto& element : value)
            sum += sizeof(element) + heldBytes(element);
    } else if constexpr (std::is_same_v<T, std::string>) {
        sum = value.size();
    }
    return sum;
}

/** What a message did to a resource, found out on the graphics thread and carried to the UI. */
template <class Kind> struct ResourceChange {
    std::optional<Memento<Kind>> before;         ///< none: there was no such resource
    std::optional<Memento<Kind>> after;          ///< none: there is no such resource any more
    std::optional<typename Kind::Record> record; ///< as it is after

    /// Graphics thread.
    void setAfter(const typename Kind::Engine& engine) {
        after = mementoOf<Kind>(engine);
        record = recordOf<Kind>(engine);
    }
};

/** A resource before and after a change: the undo step of every kind. */
template <class Kind> class ResourceStep final : public UndoStep {
public:
    using State = std::optional<Memento<Kind>>;
    ResourceStep(State before, State after)
        : before_(std::move(before)), after_(std::move(after)) {}

    void goBack() const override { lead(after_, before_); }
    void goForward() const override { lead(before_, after_); }
    bool absorb(const UndoStep& next) override {
        const auto* same = dynamic_cast<const ResourceStep*>(&next);
        if (same == nullptr || !after_ || !same->before_) return false;
        if (after_->name != same->before_->name) return false;
        after_ = same->after_;
        return true;
    }
    std::string describe() const override {
        return describeChange(Kind::texts, toTree(before_), toTree(after_));
    }
    std::size_t getBytes() const override {
        return sizeof(*this) + heldBytes(before_) + heldBytes(after_);
    }

private:
    static void lead(const State& from, const State& to) {
        RestoreResourceMessage<Kind> message;
        message.from = from;
        message.to = to;
        postToGraphics(std::move(message));
    }

    State before_;
    State after_;
};

/// UI thread. What changed nothing is no step.
template <class Kind>
void recordStep(Gesture gesture,
                std::optional<Memento<Kind>> before,
                std::optional<Memento<Kind>> after) {
    if (gesture == Gesture::none || before == after) return;
    History::getInstance().record(
            gesture, std::make_unique<ResourceStep<Kind>>(std::move(before), std::move(after)));
}

/// UI thread. A record that is held already stays the same one.
template <class Kind> void adoptRecord(typename Kind::Record record) {
    auto& tracker = ResourceUiDataTracker<Kind>::getInstance();
    const std::string name = record.name;
    if (auto* held = tracker.get(name))
        *held = std::move(record);
    else
        tracker.add(std::move(record));
    tracker.notifyUpdated(name);
}

} // namespace vlEditor
