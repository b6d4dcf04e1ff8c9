#pragma once
#include "core/MessageRegistry.h"
#include "interfaces/ContainerType.h"
#include "interfaces/Interface.h"
#include "interfaces/kinds/ResourceCommands.h"

#include <vlGraphics/ContentLoader.h>

#include <memory>
#include <string>
#include <vector>

namespace vlEditor {

/** A kind without its types: what the list of all kinds, start-up, scripts, project loading and the
 *  tests over all kinds know of it. Lives as long as the program. */
class AnyKind {
public:
    AnyKind(const AnyKind&) = delete;
    AnyKind& operator=(const AnyKind&) = delete;

    virtual const KindTexts& texts() const = 0;
    virtual ContainerType containerType() const = 0;
    virtual const ResourceCommands& commands() const = 0;
    virtual void registerMessages(MessageRegistry& registry) const = 0;

    // UI thread.
    virtual std::unique_ptr<Interface> createInterface() const = 0;
    /// In the order of their coming.
    virtual std::vector<std::string> names() const = 0;
    /// The record as a tree; null where there is none.
    virtual vlExport::Node record(const std::string& name) const = 0;
    /// Whether no file holds the resource as it is now.
    virtual bool isChanged(const std::string& name) const = 0;
    /// Drops all records.
    virtual void clear() const = 0;

    // Graphics thread.
    /// The resource as the engine has it, as a tree like the record's; null where there is none.
    virtual vlExport::Node engineRecord(const std::string& name) const = 0;
    /// Its declaration; null where there is none.
    virtual vlExport::Node declaration(const std::string& name) const = 0;
    /// Tells the UI how the resource is now, where something that it refers to has changed.
    virtual void reread(const std::string& name) const = 0;
    /// Tells the UI of the resources of the kind that were loaded with others.
    virtual void adopt(const vlGraphics::DeclarationLoadResult& loaded) const = 0;

protected:
    AnyKind() = default;
    ~AnyKind() = default;
};

} // namespace vlEditor
