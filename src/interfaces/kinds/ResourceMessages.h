#pragma once
// The messages that every kind has. The graphics half touches the engine by name and posts a copy
// with the outcome; the UI half brings the tracker up to date and leaves a step in the history.
#include "core/EditorLogger.h"
#include "interfaces/kinds/EngineSide.h"
#include "interfaces/kinds/ResourceChange.h"
#include "interfaces/kinds/RestoreResourceMessage.h"

#include <map>

namespace vlEditor {

/// UI thread.
inline void logEditorLine(const std::string& line) {
    EditorLogger::getInstance().log(line, "Editor");
}

/** Makes a resource. A name that the engine knows already gives nothing and no line. */
template <class Kind> class CreateResourceMessage : public RecordedMessage {
public:
    CreateResourceMessage() = default;
    explicit CreateResourceMessage(std::string wanted) : name(std::move(wanted)) {}

    void runOnGraphicsThread() override {
        if (managerOf<Kind>().get(name) != nullptr) return;
        auto* engine = makeResource<Kind>(name);
        if (engine == nullptr) return;
        logFailure(engine->load());
        CreateResourceMessage outcome = *this;
        outcome.change.setAfter(*engine);
        postToUi(std::move(outcome));
    }

    void runOnUiThread() override {
        if (!change.record) return;
        auto& tracker = ResourceUiDataTracker<Kind>::getInstance();
        if (tracker.get(name) != nullptr) {
            logEditorLine(alreadyExistsLine(Kind::texts, name));
            return;
        }
        tracker.add(std::move(*change.record));
        recordStep<Kind>(gesture, std::nullopt, std::move(change.after));
        if (Kind::texts.tellsSuccess) logEditorLine(createdLine(Kind::texts, name));
    }

    static constexpr auto members() {
        return std::tuple{Member{"name", &CreateResourceMessage::name}};
    }

    std::string name;
    ResourceChange<Kind> change; ///< on its way back
};

template <class Kind> class EraseResourceMessage final : public RecordedMessage {
public:
    EraseResourceMessage() = default;
    explicit EraseResourceMessage(std::string unwanted) : name(std::move(unwanted)) {}

    void runOnGraphicsThread() override {
        EraseResourceMessage outcome = *this;
        if (const auto* engine = managerOf<Kind>().get(name)) {
            if (!mayChange<Kind>(*engine)) return;
            outcome.change.before = mementoOf<Kind>(*engine);
            managerOf<Kind>().erase(name);
        }
        postToUi(std::move(outcome));
    }

    void runOnUiThread() override {
        ResourceUiDataTracker<Kind>::getInstance().erase(name);
        recordStep<Kind>(gesture, std::move(change.before), std::nullopt);
    }

    static constexpr auto members() {
        return std::tuple{Member{"name", &EraseResourceMessage::name}};
    }

    std::string name;
    ResourceChange<Kind> change; ///< on its way back
};

/** Gives a resource another name; one that bore it is replaced. The engine decides whether the name
 *  will do, and says why where it will not. */
template <class Kind> class RenameResourceMessage final : public RecordedMessage {
public:
    RenameResourceMessage() = default;
    RenameResourceMessage(std::string from, std::string to)
        : oldName(std::move(from)), newName(std::move(to)) {}

    void runOnGraphicsThread() override {
        auto& manager = managerOf<Kind>();
        const auto* engine = manager.get(oldName);
        if (engine == nullptr || !mayChange<Kind>(*engine)) return;
        RenameResourceMessage outcome = *this;
        outcome.change.before = mementoOf<Kind>(*engine);
        const auto* bearer = manager.get(newName);
        if (bearer != nullptr && bearer != engine) {
            if (!mayChange<Kind>(*bearer)) return;
            outcome.replaced = mementoOf<Kind>(*bearer);
        }
        if (!manager.rename(oldName, newName)) return;
        outcome.change.setAfter(*engine);
        postToUi(std::move(outcome));
    }

    void runOnUiThread() override {
        auto& tracker = ResourceUiDataTracker<Kind>::getInstance();
        tracker.rename(oldName, newName);
        if (change.record && tracker.get(newName) != nullptr)
            adoptRecord<Kind>(std::move(*change.record));
        if (replaced) recordStep<Kind>(gesture, std::move(replaced), std::nullopt);
        recordStep<Kind>(gesture, std::move(change.before), std::move(change.after));
    }

    static constexpr auto members() {
        return std::tuple{Member{"oldName", &RenameResourceMessage::oldName},
                          Member{"newName", &RenameResourceMessage::newName}};
    }

    std::string oldName;
    std::string newName;
    std::optional<Memento<Kind>> replaced; ///< on its way back: who bore the name
    ResourceChange<Kind> change;           ///< on its way back
};

/** Loads the kind's resources of a declaration file. Each comes back in a message of its own. */
template <class Kind> class LoadResourceDeclMessage final : public RecordedMessage {
public:
    LoadResourceDeclMessage() = default;
    explicit LoadResourceDeclMessage(std::string file) : path(std::move(file)) {}

    void runOnGraphicsThread() override {
        using Engine = typename Kind::Engine;
        const std::string file = fromWorkingDirectory(path);
        std::map<std::string, Memento<Kind>, std::less<>> before;
        for (const std::string& name :
             declaredNames(file, vlGraphics::ContentLoader::getListName<Engine>())) {
            const auto* engine = managerOf<Kind>().get(name);
            if (engine != nullptr) before.emplace(name, mementoOf<Kind>(*engine));
        }
        const vlGraphics::DeclarationLoadResult loaded = Kind::hooks.load(file, true);
        for (const std::string& error : loaded.getErrors())
            postToUi(LogMessage(error));
        for (Engine* engine : loaded.template getResources<Engine>()) {
            noteRestored<Kind>(*engine);
            LoadResourceDeclMessage outcome = *this;
            const auto known = before.find(engine->getName());
            if (known != before.end()) outcome.change.before = known->second;
            outcome.change.setAfter(*engine);
            postToUi(std::move(outcome));
        }
    }

    void runOnUiThread() override {
        if (!change.record) return;
        auto& tracker = ResourceUiDataTracker<Kind>::getInstance();
        const std::string name = change.record->name;
        const typename Kind::Record loaded = *change.record;
        if (auto* held = tracker.get(name))
            *held = loaded;
        else
            tracker.add(loaded);
        tracker.markSaved(loaded);
        tracker.notifyUpdated(name);
        recordStep<Kind>(gesture, std::move(change.before), std::move(change.after));
        if (Kind::texts.tellsSuccess) logEditorLine(loadedLine(Kind::texts, name));
    }

    static constexpr auto members() {
        return std::tuple{Member{"path", &LoadResourceDeclMessage::path}};
    }

    std::string path;
    ResourceChange<Kind> change; ///< on its way back
};

template <class Kind> class SaveResourceDeclMessage final : public Message {
public:
    SaveResourceDeclMessage() = default;
    SaveResourceDeclMessage(std::string resource, std::string file)
        : name(std::move(resource)), path(std::move(file)) {}

    void runOnGraphicsThread() override {
        auto* engine = managerOf<Kind>().createOrRetrieve(name);
        vlCommon::Result<> saved = vlCommon::fail(couldNotCreateLine(Kind::texts, name));
        if (engine != nullptr) saved = save(*engine, fromWorkingDirectory(path));
        if (!saved) {
            logFailure(saved);
            postToUi(LogMessage(notSavedLine(Kind::texts, name, path)));
            return;
        }
        if (Kind::texts.tellsSuccess) postToUi(LogMessage(savedLine(Kind::texts, name, path)));
        SaveResourceDeclMessage outcome = *this;
        outcome.record = recordOf<Kind>(*engine);
        postToUi(std::move(outcome));
    }

    void runOnUiThread() override {
        if (!record) return;
        auto& tracker = ResourceUiDataTracker<Kind>::getInstance();
        tracker.markSaved(*record);
        if constexpr (isHooked<Kind::hooks.save>) {
            // It may say of the resource where it was saved.
            if (auto* held = tracker.get(name)) *held = *record;
        }
        tracker.notifyUpdated(name);
    }

    static constexpr auto members() {
        return std::tuple{Member{"name", &SaveResourceDeclMessage::name},
                          Member{"path", &SaveResourceDeclMessage::path}};
    }

    std::string name;
    std::string path;
    std::optional<typename Kind::Record> record; ///< on its way back: what was saved

private:
    static vlCommon::Result<> save(typename Kind::Engine& engine, const std::string& file) {
        if constexpr (isHooked<Kind::hooks.save>)
            return Kind::hooks.save(engine, file);
        else
            return vlGraphics::ContentLoader::saveObjectDeclaration(engine, file);
    }
};

/** Tells the UI of resources that have come together, with a project. They are as their files hold
 *  them, and no step of undo. */
template <class Kind> class AdoptResourcesMessage final : public Message {
public:
    AdoptResourcesMessage() = default;
    explicit AdoptResourcesMessage(std::vector<typename Kind::Record> list)
        : records(std::move(list)) {}

    void runOnGraphicsThread() override {}
    void runOnUiThread() override {
        for (auto& record : records) {
            const typename Kind::Record loaded = record;
            adoptRecord<Kind>(std::move(record));
            ResourceUiDataTracker<Kind>::getInstance().markSaved(loaded);
        }
    }

    static constexpr auto members() {
        return std::tuple{Member{"records", &AdoptResourcesMessage::records}};
    }

    std::vector<typename Kind::Record> records;
};

} // namespace vlEditor
