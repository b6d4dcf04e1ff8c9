#pragma once
#include "core/MessageOrchestrator.h"
#include "interfaces/Interface.h"
#include "interfaces/kinds/Bindings.h"
#include "interfaces/kinds/CreationWindow.h"
#include "interfaces/kinds/KindWindow.h"
#include "interfaces/kinds/ResourceWindow.h"

#include <vlWinUi/System.h>

#include <memory>
#include <utility>

namespace vlEditor {

/** An editor window of one kind. It listens to the kind's tracker as long as it lives. UI thread
 *  only. */
template <class Kind>
class ResourceInterface final : public Interface, public ResourceUiListener<Kind> {
public:
    using Record = typename Kind::Record;
    using Tracker = ResourceUiDataTracker<Kind>;

    explicit ResourceInterface(const vlWinUi::Component& root)
        : Interface(root),
          window_(KindCommands<Kind>::get(), getRootName(), [this] { showSelected(true); }),
          bindings_(
                  getRootName(),
                  [this] { return window_.getSelectedNames(); },
                  [this] { showSelected(false); }) {
        Kind::bind(bindings_);
        window_.bindCallbacks();
        Tracker& tracker = Tracker::getInstance();
        std::vector<vlWinUi::ListEntry> entries;
        for (const Record* record : tracker.inOrder())
            entries.push_back({record->name, record});
        window_.setEntries(std::move(entries));
        for (const Record* record : tracker.inOrder()) {
            if (tracker.isChanged(record->name)) window_.setChanged(record->name, true);
            showFault(*record);
        }
        tracker.registerListener(*this);
        showSelected(true);
    }
    ~ResourceInterface() override {
        if (Tracker::hasInstance()) Tracker::getInstance().unregisterListener(*this);
    }

    std::string title() const override { return std::string(Kind::texts.title); }
    void resourceChanged(vlMemory::StringView name) override {
        if (window_.isSelected(std::string(name))) refresh(false);
    }

    void onResourceAdded(const Record& record) override {
        window_.addEntry(record.name, &record);
        window_.setChanged(record.name, Tracker::getInstance().isChanged(record.name));
        showFault(record);
    }
    void onResourceErased(const Record& record) override {
        bindings_.forget(record);
        const bool wasSelected = window_.isSelected(record.name);
        const bool wereSeveral = window_.areSeveralSelected();
        window_.eraseEntry(record.name);
        if (wasSelected) refresh(true, wereSeveral);
    }
    void onResourceRenamed(const std::string& oldName, const Record& record) override {
        // The one that bore the new name may have been selected, too, and the filter may hide this
        // one now.
        const bool wasShown = window_.isSelected(oldName) || window_.isSelected(record.name);
        window_.renameEntry(oldName, record.name);
        onResourceUpdated(record);
        if (wasShown) refresh(true);
    }
    void onResourceUpdated(const Record& record) override {
        window_.setChanged(record.name, Tracker::getInstance().isChanged(record.name));
        showFault(record);
        resourceChanged(record.name);
    }
    void onResourcesCleared() override {
        window_.clearEntries();
        showSelected(true);
    }

private:
    void showFault(const Record& record) {
        if constexpr (requires { Kind::faultOf(record); })
            window_.setFault(record.name, Kind::faultOf(record));
    }
    void refresh(bool isAnew) { refresh(isAnew, window_.areSeveralSelected()); }
    /// Of several selected resources each change would show all of them once more.
    void refresh(bool isAnew, bool isOfSeveral) {
        if (!isOfSeveral) {
            showSelected(isAnew);
            return;
        }
        isAnew_ = isAnew_ || isAnew;
        if (std::exchange(isRefreshing_, true)) return;
        MessageOrchestrator::getInstance().afterUiDrain([this, alive = std::weak_ptr(alive_)] {
            if (alive.expired()) return;
            isRefreshing_ = false;
            showSelected(std::exchange(isAnew_, false));
        });
    }
    /// The kind's panel for what is selected; anew where that is another resource than before.
    void showSelected(bool isAnew) {
        std::vector<const Record*> records;
        for (const std::string& name : window_.getSelectedNames()) {
            const Record* record = Tracker::getInstance().get(name);
            if (record != nullptr) records.push_back(record);
        }
        bindings_.show(records, isAnew);
        if (isAnew) window_.showName();
    }

    ResourceWindow window_;
    Bindings<Kind> bindings_;
    bool isRefreshing_ = false; ///< it was put off
    bool isAnew_ = false;
    std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true);
};

/** What the buttons of a window of the kind do, by the window's base name. */
template <class Kind> struct ResourceInterfaceCallbacks {
    static void onAddButton(const std::string& base) {
        ResourceWindow::onAddButton(KindCommands<Kind>::get(), base);
    }
    static void onDelButton(const std::string& base) {
        ResourceWindow::onDelButton(KindCommands<Kind>::get(), base);
    }
    static void onNameButton(const std::string& base) {
        ResourceWindow::onNameButton(KindCommands<Kind>::get(), base);
    }
    static void onSaveButton(const std::string& base) {
        ResourceWindow::onSaveButton(KindCommands<Kind>::get(), base);
    }
};

template <class Kind> struct ResourceInterfaceCreatorInternals {
    static vlWinUi::Component* createComponents(const std::string& base) {
        return createKindWindow(Kind::texts, Kind::layout(), base);
    }
};

template <class Kind> class ResourceInterfaceCreator {
public:
    /// With components named by a number that never comes again. Null, with lines in the log, where
    /// the layout is faulty.
    static std::unique_ptr<Interface> create() {
        const std::string base = std::string(Kind::texts.prefix) + std::to_string(number_++);
        const auto* root = ResourceInterfaceCreatorInternals<Kind>::createComponents(base);
        if (root == nullptr) return nullptr;
        auto window = std::make_unique<ResourceInterface<Kind>>(*root);
        _createCommonInterface();
        return window;
    }

private:
    static void _createCommonInterface() { CreationWindow::create(KindCommands<Kind>::get()); }
    inline static unsigned number_ = 0;
};

} // namespace vlEditor

/// The names that one kind's classes bear in the rest of the editor.
#define VL_RESOURCE_KIND_NAMES(K)                                                                  \
    using K##UiDataTracker = ResourceUiDataTracker<K##Kind>;                                       \
    using K##UiListener = ResourceUiListener<K##Kind>;                                             \
    using K##Interface = ResourceInterface<K##Kind>;                                               \
    using K##InterfaceCallbacks = ResourceInterfaceCallbacks<K##Kind>;                             \
    using K##InterfaceCreator = ResourceInterfaceCreator<K##Kind>;                                 \
    using K##InterfaceCreatorInternals = ResourceInterfaceCreatorInternals<K##Kind>;               \
    using Create##K##Message = CreateResourceMessage<K##Kind>;                                     \
    using Erase##K##Message = EraseResourceMessage<K##Kind>;                                       \
    using Rename##K##Message = RenameResourceMessage<K##Kind>;                                     \
    using Load##K##DeclMessage = LoadResourceDeclMessage<K##Kind>;                                 \
    using Save##K##DeclMessage = SaveResourceDeclMessage<K##Kind>

/// An edit of the kind K that sets one member of its record, and its message:
/// VL_FIELD_EDIT(RasterState, Cull, cullMode) makes RasterStateCull and RasterStateCullMessage.
#define VL_FIELD_EDIT(K, Edit, member)                                                             \
    struct K##Edit : SetField<K##Kind, &K##Record::member> {};                                     \
    using K##Edit##Message = ResourceEditMessage<K##Edit>
/// Likewise for one index of an indexed member.
#define VL_ELEMENT_EDIT(K, Edit, member)                                                           \
    struct K##Edit : SetElement<K##Kind, &K##Record::member> {};                                   \
    using K##Edit##Message = ResourceEditMessage<K##Edit>
