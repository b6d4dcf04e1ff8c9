#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>
#include <vector>

namespace vlEditor {

/** Asks which names of the script environment begin so, for the command line of a log window. */
class CompleteCommandMessage final : public Message {
public:
    CompleteCommandMessage() = default;
    CompleteCommandMessage(std::string windowRoot,
                           std::vector<std::string> tableNames,
                           std::string nameBegin)
        : window(std::move(windowRoot)), tables(std::move(tableNames)),
          begin(std::move(nameBegin)) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"window", &CompleteCommandMessage::window},
                          Member{"tables", &CompleteCommandMessage::tables},
                          Member{"begin", &CompleteCommandMessage::begin}};
    }

    std::string window;              ///< name of the log window's root
    std::vector<std::string> tables; ///< that lead to the name, the outermost first
    std::string begin;
    std::vector<std::string> candidates; ///< the answer, in alphabetical order
};

} // namespace vlEditor
