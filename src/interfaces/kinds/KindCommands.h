#pragma once
#include "interfaces/history/PendingEdit.h"
#include "interfaces/kinds/CopyMessages.h"
#include "interfaces/kinds/FindUsersMessage.h"
#include "interfaces/kinds/ResourceCommands.h"

namespace vlEditor {

/// Posts what a person, or a script in a person's name, asked for. UI thread.
template <class M> void postByUser(M message) {
    PendingEdit::flushAll();
    message.gesture = History::getInstance().current();
    postToGraphics(std::move(message));
}

template <class Kind> class KindCommands final : public ResourceCommands {
public:
    static const KindCommands& get() {
        static const KindCommands commands;
        return commands;
    }

    const KindTexts& texts() const override { return Kind::texts; }
    bool hasFiles() const override { return isHooked<Kind::hooks.load>; }
    bool isKnown(const std::string& name) const override {
        return ResourceUiDataTracker<Kind>::getInstance().get(name) != nullptr;
    }
    void create(const std::string& name) const override {
        postByUser(CreateResourceMessage<Kind>(name));
    }
    void load(const std::string& path) const override {
        if constexpr (isHooked<Kind::hooks.load>) postByUser(LoadResourceDeclMessage<Kind>(path));
    }
    void erase(const std::string& name) const override {
        postByUser(EraseResourceMessage<Kind>(name));
    }
    void rename(const std::string& oldName, const std::string& newName) const override {
        postByUser(RenameResourceMessage<Kind>(oldName, newName));
    }
    void save(const std::string& name, const std::string& path) const override {
        if constexpr (isHooked<Kind::hooks.load>) {
            PendingEdit::flushAll();
            std::string target = path;
            if constexpr (isHooked<Kind::hooks.savePath>) target = Kind::hooks.savePath(path);
            postToGraphics(SaveResourceDeclMessage<Kind>(name, std::move(target)));
        }
    }
    void duplicate(const std::string& name) const override {
        postByUser(DuplicateResourceMessage<Kind>(name));
    }
    void copy(const std::string& name) const override {
        PendingEdit::flushAll();
        postToGraphics(CopyResourceMessage<Kind>(name));
    }
    void findUsers(const std::vector<std::string>& names,
                   const std::string& question) const override {
        postToGraphics(FindUsersMessage<Kind>(names, question));
    }
    void paste(const std::string& name, const std::string& text) const override {
        postByUser(PasteResourceMessage<Kind>(name, text));
    }
};

} // namespace vlEditor
