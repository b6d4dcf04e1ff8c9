#pragma once
// Duplicate, copy and paste. What is copied is the text of a declaration file, so that it can be
// pasted into one, and taken from one.
#include "interfaces/kinds/ResourceMessages.h"

namespace vlEditor {

/// The text of a declaration file that lists one resource.
std::string declarationText(vlMemory::StringView listName, vlExport::Node declaration);
/// The first resource that such a text lists; fails, saying why, where there is none.
vlCommon::Result<vlExport::Node>
firstDeclaration(const std::string& text, const KindTexts& texts, vlMemory::StringView listName);
/// "a_2", or "a_3" where the name ends so already.
std::string nextName(const std::string& name);
/// UI thread.
void setClipboard(const std::string& text);

/** Makes a resource like another one, under the next free name. */
template <class Kind> class DuplicateResourceMessage final : public RecordedMessage {
public:
    DuplicateResourceMessage() = default;
    explicit DuplicateResourceMessage(std::string resource) : name(std::move(resource)) {}

    void runOnGraphicsThread() override {
        auto& manager = managerOf<Kind>();
        const auto* source = manager.get(name);
        if (source == nullptr) return;
        std::string copyName = nextName(name);
        while (manager.get(copyName) != nullptr)
            copyName = nextName(copyName);
        Memento<Kind> settings = mementoOf<Kind>(*source);
        if constexpr (requires { Kind::separate(settings.declaration); })
            Kind::separate(settings.declaration);
        auto* copy = makeResource<Kind>(copyName);
        if (copy == nullptr) return;
        fillResource<Kind>(*copy, [&] { return putMemento<Kind>(settings, *copy); });
        DuplicateResourceMessage outcome = *this;
        outcome.change.setAfter(*copy);
        postToUi(std::move(outcome));
    }

    void runOnUiThread() override {
        if (!change.record) return;
        adoptRecord<Kind>(std::move(*change.record));
        recordStep<Kind>(gesture, std::nullopt, std::move(change.after));
    }

    static constexpr auto members() {
        return std::tuple{Member{"name", &DuplicateResourceMessage::name}};
    }

    std::string name;
    ResourceChange<Kind> change; ///< on its way back
};

/** Brings the declaration of a resource to the clipboard. */
template <class Kind> class CopyResourceMessage final : public Message {
public:
    CopyResourceMessage() = default;
    explicit CopyResourceMessage(std::string resource) : name(std::move(resource)) {}

    void runOnGraphicsThread() override {
        const auto* engine = managerOf<Kind>().get(name);
        if (engine == nullptr) return;
        using Loader = vlGraphics::ContentLoader;
        CopyResourceMessage outcome = *this;
        vlExport::Node declaration = Loader::getDeclaration(*engine, {});
        if constexpr (requires { Kind::detach(declaration); }) Kind::detach(declaration);
        outcome.text = declarationText(Loader::getListName<typename Kind::Engine>(),
                                       std::move(declaration));
        postToUi(std::move(outcome));
    }
    void runOnUiThread() override {
        if (!text.empty()) setClipboard(text);
    }

    static constexpr auto members() {
        return std::tuple{Member{"name", &CopyResourceMessage::name}};
    }

    std::string name;
    std::string text; ///< on its way back
};

/** Gives a resource the settings that a declaration file's text lists first. */
template <class Kind> class PasteResourceMessage final : public RecordedMessage {
public:
    PasteResourceMessage() = default;
    PasteResourceMessage(std::string resource, std::string settings)
        : name(std::move(resource)), text(std::move(settings)) {}

    void runOnGraphicsThread() override {
        using Loader = vlGraphics::ContentLoader;
        auto* engine = managerOf<Kind>().get(name);
        if (engine == nullptr || !mayChange<Kind>(*engine)) return;
        const auto declaration =
                firstDeclaration(text, Kind::texts, Loader::getListName<typename Kind::Engine>());
        if (!declaration) {
            postToUi(LogMessage(declaration.error().message));
            return;
        }
        PasteResourceMessage outcome = *this;
        outcome.change.before = mementoOf<Kind>(*engine);
        // Whoever wrote the text may name files of the working directory and no others.
        changeResource<Kind>(*engine,
                             [&] { return putDeclaration<Kind>(*declaration, ".", *engine); });
        outcome.change.setAfter(*engine);
        postToUi(std::move(outcome));
    }

    void runOnUiThread() override {
        if (!change.record) return;
        adoptRecord<Kind>(std::move(*change.record));
        recordStep<Kind>(gesture, std::move(change.before), std::move(change.after));
    }

    static constexpr auto members() {
        return std::tuple{Member{"name", &PasteResourceMessage::name},
                          Member{"text", &PasteResourceMessage::text}};
    }

    std::string name;
    std::string text;
    ResourceChange<Kind> change; ///< on its way back
};

} // namespace vlEditor
