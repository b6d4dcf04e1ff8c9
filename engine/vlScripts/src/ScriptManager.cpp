#include <vlMemory/Utf8.h>
#include <vlScripts/LogManager.h>
#include <vlScripts/ScriptManager.h>

#include <algorithm>

namespace vlScripts {
namespace {

constexpr std::size_t longestName = 4096;

bool isValidName(std::string_view name) {
    return !name.empty() && name.size() <= longestName && vlMemory::isPrintable(name);
}

void logRefused(std::string_view name, std::string_view why) {
    std::string line = "Refused the name '" + vlMemory::printable(name, 80) + "' for a script: ";
    LogManager::getInstance().log(line.append(why));
}

constexpr std::string_view invalidName =
        "names have 1 to 4096 bytes of UTF-8 without control characters.";
constexpr std::string_view hiddenBearer = "the one that bears it is not the project's.";

} // namespace

Script* ScriptManager::get(std::string_view name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : found->second.get();
}

Script* ScriptManager::createOrRetrieve(std::string_view name) {
    if (Script* known = get(name)) return known;
    if (!isValidName(name)) {
        logRefused(name, invalidName);
        return nullptr;
    }
    const auto [made, isNew] = byName_.emplace(name, std::make_unique<Script>(name));
    return order_.emplace_back(made->second.get());
}

bool ScriptManager::rename(std::string_view oldName, std::string_view newName) {
    const auto found = byName_.find(oldName);
    if (found == byName_.end()) return false;
    if (oldName == newName) return true;
    if (!isValidName(newName)) {
        logRefused(newName, invalidName);
        return false;
    }
    if (const Script* bearer = get(newName); bearer != nullptr && bearer->isHidden()) {
        logRefused(newName, hiddenBearer);
        return false;
    }
    // The text may be the name of the bearer that is about to be erased.
    std::string name(newName);
    erase(name);
    std::unique_ptr<Script> script = std::move(found->second);
    byName_.erase(found);
    script->name_ = name;
    byName_.emplace(std::move(name), std::move(script));
    return true;
}

bool ScriptManager::erase(std::string_view name) {
    const auto found = byName_.find(name);
    if (found == byName_.end()) return false;
    // Of many, the newest go first.
    const auto place = std::find(order_.rbegin(), order_.rend(), found->second.get());
    order_.erase(std::prev(place.base()));
    byName_.erase(found);
    return true;
}

Script* ScriptManager::getByIndex(std::size_t index) const {
    return index < order_.size() ? order_[index] : nullptr;
}

void ScriptManager::clear() {
    while (!order_.empty()) {
        const std::string name = order_.back()->getName();
        erase(name);
    }
}

} // namespace vlScripts
