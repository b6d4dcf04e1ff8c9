#pragma once
#include "interfaces/kinds/EngineSide.h"
#include "interfaces/kinds/ResourceChange.h"

namespace vlEditor {

/** Makes a resource be `to`: creates, renames, rewrites or erases it, whatever leads there from
 *  `from`. Undo and redo post nothing else. */
template <class Kind> class RestoreResourceMessage final : public RecordedMessage {
public:
    using State = std::optional<Memento<Kind>>;

    void runOnGraphicsThread() override {
        RestoreResourceMessage outcome = *this;
        auto* engine = from ? managerOf<Kind>().get(from->name) : nullptr;
        auto* bearer = to ? managerOf<Kind>().get(to->name) : nullptr;
        for (const auto* touched : {engine, bearer})
            if (touched != nullptr && !mayChange<Kind>(*touched)) return;
        if (engine != nullptr) outcome.change.before = mementoOf<Kind>(*engine);
        if (bearer != nullptr && bearer != engine) {
            auto& lost = engine == nullptr ? outcome.change.before : outcome.replaced;
            lost = mementoOf<Kind>(*bearer);
        }
        if (!to) {
            if (from) managerOf<Kind>().erase(from->name);
        } else {
            engine = lead(engine);
            if (engine == nullptr) return;
            outcome.change.setAfter(*engine);
        }
        postToUi(std::move(outcome));
    }

    void runOnUiThread() override {
        auto& tracker = ResourceUiDataTracker<Kind>::getInstance();
        if (from && !change.record) tracker.erase(from->name);
        if (change.record) {
            if (from && from->name != change.record->name)
                tracker.rename(from->name, change.record->name);
            adoptRecord<Kind>(*change.record);
        }
        // Where something else had changed the resource meanwhile, undoing must not lose that: then
        // this is a change like any other.
        const bool isSurprised = gesture == Gesture::none && (replaced || change.before != from);
        const Gesture recorded = isSurprised ? History::nextGesture() : gesture;
        if (replaced) recordStep<Kind>(recorded, std::move(replaced), std::nullopt);
        recordStep<Kind>(recorded, std::move(change.before), std::move(change.after));
    }

    static constexpr auto members() {
        return std::tuple{Member{"from", &RestoreResourceMessage::from},
                          Member{"to", &RestoreResourceMessage::to}};
    }

    State from;                  ///< what the poster believes is there; none: nothing
    State to;                    ///< none: it is to be erased
    State replaced;              ///< on its way back: who bore the name
    ResourceChange<Kind> change; ///< on its way back

private:
    /// Null when the engine refuses the name.
    typename Kind::Engine* lead(typename Kind::Engine* engine) const {
        auto& manager = managerOf<Kind>();
        if (engine != nullptr && from->name != to->name && !manager.rename(from->name, to->name))
            return nullptr;
        engine = manager.get(to->name);
        const bool isFresh = engine == nullptr;
        if (isFresh) engine = makeResource<Kind>(to->name);
        if (engine == nullptr) return nullptr;
        const auto put = [&] { return putMemento<Kind>(*to, *engine); };
        isFresh ? fillResource<Kind>(*engine, put) : changeResource<Kind>(*engine, put);
        return engine;
    }
};

} // namespace vlEditor
