#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>
#include <vector>

namespace vlEditor {

/** Tells the UI of resources that have come to the engine, for the list of their kind. A list that
 *  does not exist is passed over. */
class AddPickListEntriesMessage final : public Message {
public:
    AddPickListEntriesMessage() = default;
    AddPickListEntriesMessage(std::string_view listName, std::vector<std::string> entryNames)
        : list(listName), entries(std::move(entryNames)) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override {}

    static constexpr auto members() {
        return std::tuple{Member{"list", &AddPickListEntriesMessage::list},
                          Member{"entries", &AddPickListEntriesMessage::entries}};
    }

    std::string list;
    std::vector<std::string> entries;
};

} // namespace vlEditor
