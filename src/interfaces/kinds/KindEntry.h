#pragma once
#include "interfaces/kinds/AnyKind.h"
#include "interfaces/kinds/ResourceInterface.h"

namespace vlEditor {

/** Makes an AnyKind of a kind and its edits. One source file a kind instantiates it. */
template <class Kind, ResourceEdit... Edits> class KindEntry final : public AnyKind {
public:
    const KindTexts& texts() const override { return Kind::texts; }
    ContainerType containerType() const override { return Kind::containerType; }
    const ResourceCommands& commands() const override { return KindCommands<Kind>::get(); }

    void registerMessages(MessageRegistry& registry) const override {
        const std::string kind(Kind::texts.kind);
        const auto add = [&]<class M>(std::type_identity<M>, const std::string& name) {
            registry.add<M>(MessageQueue::graphics, name);
        };
        add(std::type_identity<CreateResourceMessage<Kind>>(), "Create" + kind + "Message");
        add(std::type_identity<EraseResourceMessage<Kind>>(), "Erase" + kind + "Message");
        add(std::type_identity<RenameResourceMessage<Kind>>(), "Rename" + kind + "Message");
        add(std::type_identity<RestoreResourceMessage<Kind>>(), "Restore" + kind + "Message");
        add(std::type_identity<DuplicateResourceMessage<Kind>>(), "Duplicate" + kind + "Message");
        add(std::type_identity<CopyResourceMessage<Kind>>(), "Copy" + kind + "Message");
        add(std::type_identity<PasteResourceMessage<Kind>>(), "Paste" + kind + "Message");
        add(std::type_identity<FindUsersMessage<Kind>>(), "Find" + kind + "UsersMessage");
        if constexpr (isHooked<Kind::hooks.load>) {
            add(std::type_identity<LoadResourceDeclMessage<Kind>>(), "Load" + kind + "DeclMessage");
            add(std::type_identity<SaveResourceDeclMessage<Kind>>(), "Save" + kind + "DeclMessage");
        }
        (add(std::type_identity<ResourceEditMessage<Edits>>(),
             std::string(typeName<Edits>()) + "Message"),
         ...);
        if constexpr (requires { Kind::registerMessages(registry); })
            Kind::registerMessages(registry);
        registry.add<AdoptResourcesMessage<Kind>>(MessageQueue::ui, "Adopt" + kind + "sMessage");
        registry.add<RereadResourceMessage<Kind>>(MessageQueue::ui, "Reread" + kind + "Message");
    }

    std::unique_ptr<Interface> createInterface() const override {
        return ResourceInterfaceCreator<Kind>::create();
    }
    std::vector<std::string> names() const override {
        std::vector<std::string> all;
        for (const auto* record : ResourceUiDataTracker<Kind>::getInstance().inOrder())
            all.push_back(record->name);
        return all;
    }
    vlExport::Node record(const std::string& name) const override {
        const auto* held = ResourceUiDataTracker<Kind>::getInstance().get(name);
        return held == nullptr ? vlExport::Node() : toTree(*held);
    }
    bool isChanged(const std::string& name) const override {
        return ResourceUiDataTracker<Kind>::getInstance().isChanged(name);
    }
    void clear() const override { ResourceUiDataTracker<Kind>::getInstance().clear(); }

    vlExport::Node engineRecord(const std::string& name) const override {
        const auto* engine = managerOf<Kind>().get(name);
        return engine == nullptr ? vlExport::Node() : toTree(recordOf<Kind>(*engine));
    }
    vlExport::Node declaration(const std::string& name) const override {
        const auto* engine = managerOf<Kind>().get(name);
        if (engine == nullptr) return {};
        return vlGraphics::ContentLoader::getDeclaration(*engine, {});
    }
    void reread(const std::string& name) const override {
        const auto* engine = managerOf<Kind>().get(name);
        if (engine != nullptr && !engine->isHidden())
            postToUi(RereadResourceMessage<Kind>(recordOf<Kind>(*engine)));
    }
    void adopt(const vlGraphics::DeclarationLoadResult& loaded) const override {
        std::vector<typename Kind::Record> records;
        for (auto* engine : loaded.template getResources<typename Kind::Engine>()) {
            if (engine->isHidden()) continue;
            noteRestored<Kind>(*engine);
            records.push_back(recordOf<Kind>(*engine));
        }
        if (!records.empty()) postToUi(AdoptResourcesMessage<Kind>(std::move(records)));
    }
};

} // namespace vlEditor
