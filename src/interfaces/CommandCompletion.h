#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vlEditor {

/** Completes names in a command line. Names of the script environment are the graphics thread's,
 *  which is asked by a message; names of resources, within quotes, are those of the pick lists. UI
 *  thread only. */
class CommandCompletion {
public:
    CommandCompletion() = delete;

    /// What stands before a cursor and can be completed.
    struct Place {
        std::vector<std::string> tables; ///< that lead to the name: "a.b.c" has a and b
        std::string begin;               ///< of the name
        bool quoted = false;
    };
    /// Nothing when no name stands there.
    static std::optional<Place> find(std::string_view textBeforeCursor);

    /// The log window of that root gets the answer, at once or later. False when there is nothing
    /// to complete.
    static bool request(std::string_view textBeforeCursor, const std::string& root);

    /// What all have in common from their beginning on; at least one.
    static std::string commonBeginning(const std::vector<std::string>& names);
};

} // namespace vlEditor
