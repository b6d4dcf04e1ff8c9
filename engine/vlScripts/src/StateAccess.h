#pragma once
#include "Budget.h"

#include <cstring>

namespace vlScripts {

/** What the functions that Lua calls need of the interpreter. Every coroutine knows it, too. */
struct StateContext : std::enable_shared_from_this<StateContext> {
    using Kinds = std::vector<std::unique_ptr<ObjectKind>>;
    StateContext(const Limits& limits, const Kinds& kindList) : budget(limits), kinds(kindList) {}

    const ObjectKind* findKind(std::string_view name) const;

    Budget budget;
    lua_State* main = nullptr;
    const Kinds& kinds;
    /// Written where an error is raised, read where it has arrived.
    std::string errorPosition;
    std::string errorTraceback;
};

/** A function of a script, held in its state's registry. */
class FunctionReference final {
public:
    /// Takes the value from the top.
    explicit FunctionReference(lua_State* state);
    ~FunctionReference();
    FunctionReference(const FunctionReference&) = delete;
    FunctionReference& operator=(const FunctionReference&) = delete;

    static Function wrap(lua_State* state);
    /// Null for a function of another state, or of one that is gone.
    static const FunctionReference* of(const Function& function, const StateContext& context);
    void push(lua_State* state) const;

private:
    std::weak_ptr<StateContext> context_;
    int place_;
};

inline StateContext* findContext(lua_State* state) {
    StateContext* context = nullptr;
    std::memcpy(&context, lua_getextraspace(state), sizeof context);
    return context;
}
inline StateContext& contextOf(lua_State* state) {
    return *findContext(state);
}
/// False for a coroutine that was stopped.
inline bool hasContext(lua_State* state) {
    return findContext(state) != nullptr;
}
inline void setContext(lua_State* state, StateContext* context) {
    std::memcpy(lua_getextraspace(state), &context, sizeof context);
}
inline Budget& budgetOf(lua_State* state) {
    return contextOf(state).budget;
}

/// With the position of the calling script in front.
[[noreturn]] void raiseError(lua_State* state, std::string_view text);

/// One line of printable UTF-8, of a bounded length.
std::string onOneLine(std::string_view text);

/// The confined standard library as globals.
void openLibraries(lua_State* state);
/// find, match, gmatch and gsub, into the table on top.
void addPatternFunctions(lua_State* state);
/// What makes objects and vectors act; the global function vec.
void openObjects(lua_State* state);

/// May raise, like all that pushes.
void pushValue(lua_State* state, const Value& value);
/// Raises for what cannot cross.
Value toValue(lua_State* state, int index);
/// From that place of the stack to its top.
Values toValues(lua_State* state, int first);
/// Numbers and objects as userdata; null for anything else.
const Numbers* numbersAt(lua_State* state, int index);
void pushNumbers(lua_State* state, const Numbers& numbers);
bool objectAt(lua_State* state, int index, Object& object);
void pushObject(lua_State* state, const Object& object);

} // namespace vlScripts
