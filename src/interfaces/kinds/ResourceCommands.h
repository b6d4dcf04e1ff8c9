#pragma once
#include "interfaces/kinds/KindTexts.h"

#include <string>
#include <vector>

namespace vlEditor {

/** What a person can ask of the resources of one kind by name: each call posts the kind's message,
 *  as part of the gesture that is being made. Lives as long as the program. UI thread only. */
class ResourceCommands {
public:
    virtual const KindTexts& texts() const = 0;
    /// Whether there are declaration files of the kind.
    virtual bool hasFiles() const = 0;
    virtual bool isKnown(const std::string& name) const = 0;
    virtual void create(const std::string& name) const = 0;
    virtual void load(const std::string& path) const = 0;
    virtual void erase(const std::string& name) const = 0;
    virtual void rename(const std::string& oldName, const std::string& newName) const = 0;
    /// The kind may complete the path.
    virtual void save(const std::string& name, const std::string& path) const = 0;
    virtual void duplicate(const std::string& name) const = 0;
    virtual void copy(const std::string& name) const = 0;
    /// Shows who uses them under the question, while it is being asked.
    virtual void findUsers(const std::vector<std::string>& names,
                           const std::string& question) const = 0;
    virtual void paste(const std::string& name, const std::string& text) const = 0;

protected:
    ResourceCommands() = default;
    ResourceCommands(const ResourceCommands&) = default;
    ResourceCommands& operator=(const ResourceCommands&) = default;
    ~ResourceCommands() = default;
};

} // namespace vlEditor
