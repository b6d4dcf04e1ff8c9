#pragma once
#include <vlCommon/SingletonClass.h>
#include <vlScripts/Script.h>

#include <functional>
#include <unordered_map>
#include <vector>

namespace vlScripts {

/** Owns the scripts by unique name. Made and ended with the engine; one thread at a time (whoever
 *  owns the engine). */
class ScriptManager final : public vlCommon::MaybeSingletonClass<ScriptManager> {
public:
    /// The script of that name, or null.
    Script* get(std::string_view name) const;
    /// Null, with a log line, only when the name is not valid: names are 1 to 4096 bytes of UTF-8
    /// without control characters.
    Script* createOrRetrieve(std::string_view name);
    /// Gives the script another name; one that bore it is erased. False, with nothing changed, when
    /// there is no such script (silent), when the new name is not valid or when a hidden script
    /// bears it (log line).
    bool rename(std::string_view oldName, std::string_view newName);
    /// False when there is none.
    bool erase(std::string_view name);
    /// In order of creation; null past the last.
    Script* getByIndex(std::size_t index) const;
    std::size_t getCount() const { return order_.size(); }
    /// Erases every script, newest first.
    void clear();

private:
    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const {
            return std::hash<std::string_view>()(name);
        }
    };
    std::unordered_map<std::string, std::unique_ptr<Script>, NameHash, std::equal_to<>> byName_;
    std::vector<Script*> order_;
};

} // namespace vlScripts
