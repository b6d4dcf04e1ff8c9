#pragma once
#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"
#include "interfaces/kinds/ResourceKind.h"

#include <string>
#include <utility>

namespace vlEditor {

// The engine's side of every kind. Graphics thread only.

/// Relative to the working directory where it lies inside.
std::string fromWorkingDirectory(const std::string& path);
/// The names of the resources that a declaration file lists under that member; none where it cannot
/// be read, which whoever loads it says.
std::vector<std::string> declaredNames(const std::string& path, vlMemory::StringView listName);

template <class Kind> typename Kind::Manager& managerOf() {
    return *Kind::Manager::getInstance();
}

/// Sends the line of a failure to the log, and passes on whether there was none.
inline bool logFailure(const vlCommon::Result<>& result) {
    if (!result) postToUi(LogMessage(result.error().message));
    return result.has_value();
}

/// Null, with its line, when the engine refuses the name.
template <class Kind> typename Kind::Engine* makeResource(const std::string& name) {
    auto* engine = managerOf<Kind>().createOrRetrieve(name);
    if (engine == nullptr) {
        postToUi(LogMessage(couldNotCreateLine(Kind::texts, name)));
        return nullptr;
    }
    if constexpr (isHooked<Kind::hooks.created>) Kind::hooks.created(*engine);
    return engine;
}

/// False, with a line in the log, for what the engine or the editor made for itself.
template <class Kind> bool mayChange(const typename Kind::Engine& engine) {
    if (!engine.isHidden()) return true;
    postToUi(LogMessage(reservedLine(Kind::texts, engine.getName())));
    return false;
}

/// Runs a change, which returns void or a Result, and makes the device side anew. What fails is
/// logged; false says that the change did.
template <class Kind, class Change>
bool changeResource(typename Kind::Engine& engine, Change change) {
    bool isChanged = true;
    if constexpr (Kind::hooks.reload == Reload::aroundChange) engine.unload();
    if constexpr (std::is_void_v<decltype(change())>) {
        change();
    } else {
        isChanged = logFailure(change());
    }
    if constexpr (Kind::hooks.reload == Reload::afterChange) engine.unload();
    if constexpr (Kind::hooks.reload != Reload::never) logFailure(engine.load());
    return isChanged;
}

/// The same for one that was just made: it is loaded then, whatever its kind.
template <class Kind, class Change> bool fillResource(typename Kind::Engine& fresh, Change change) {
    const bool isFilled = changeResource<Kind>(fresh, std::move(change));
    if constexpr (Kind::hooks.reload == Reload::never) logFailure(fresh.load());
    return isFilled;
}

} // namespace vlEditor
