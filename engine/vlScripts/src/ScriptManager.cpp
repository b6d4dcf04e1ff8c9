#include <vlScripts/LogManager.h>
#include <vlScripts/ScriptManager.h>

#include <algorithm>

namespace vlScripts {
namespace {

bool isValidName(std::string_view name) {
    const auto isControl = [](char letter) {
        return static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F;
    };
    if (!name.empty() && name.size() <= 4096 && std::none_of(name.begin(), name.end(), isControl))
        return true;
    LogManager::getInstance().log("Refused the name '" + std::string(name.substr(0, 80)) +
                                  "' for a script: names are 1 to 4096 bytes without control "
                                  "characters");
    return false;
}

} // namespace

Script* ScriptManager::get(std::string_view name) const {
    const auto found = std::find_if(scripts_.begin(), scripts_.end(), [&](const auto& script) {
        return script->getName() == name;
    });
    return found == scripts_.end() ? nullptr : found->get();
}

Script* ScriptManager::createOrRetrieve(std::string_view name) {
    if (Script* known = get(name)) return known;
    if (!isValidName(name)) return nullptr;
    return scripts_.emplace_back(std::make_unique<Script>(name)).get();
}

bool ScriptManager::rename(std::string_view oldName, std::string_view newName) {
    Script* script = get(oldName);
    if (script == nullptr) return false;
    if (oldName == newName) return true;
    if (!isValidName(newName)) return false;
    // The text may be the name of the bearer that is about to be erased.
    std::string name(newName);
    erase(name);
    script->name_ = std::move(name);
    return true;
}

bool ScriptManager::erase(std::string_view name) {
    const auto found = std::find_if(scripts_.begin(), scripts_.end(), [&](const auto& script) {
        return script->getName() == name;
    });
    if (found == scripts_.end()) return false;
    scripts_.erase(found);
    return true;
}

Script* ScriptManager::getByIndex(std::size_t index) const {
    return index < scripts_.size() ? scripts_[index].get() : nullptr;
}

} // namespace vlScripts
