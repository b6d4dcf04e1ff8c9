#include "StateAccess.h"

#include <vlScripts/LogManager.h>

#include <array>

namespace vlScripts {
namespace {

/// Beyond this, one call of a table function would keep Lua from looking at the clock for too long.
constexpr lua_Integer longestTable = 1 << 22;

// A function of Lua's own, after a look at the clock: one call can take milliseconds.
int callWatched(lua_State* state) {
    budgetOf(state).check(state);
    return lua_tocfunction(state, lua_upvalueindex(1))(state);
}

/// Wraps these members of the table on top.
template <std::size_t count>
void watch(lua_State* state, const std::array<const char*, count>& names) {
    for (const char* name : names) {
        lua_getfield(state, -1, name);
        lua_pushcclosure(state, callWatched, 1);
        lua_setfield(state, -2, name);
    }
}

/// Puts our function in front of the one of that name in the table on top, which becomes its
/// upvalue.
void precede(lua_State* state, const char* name, lua_CFunction function) {
    lua_getfield(state, -1, name);
    lua_pushcclosure(state, function, 1);
    lua_setfield(state, -2, name);
}

int callPreceded(lua_State* state) {
    return lua_tocfunction(state, lua_upvalueindex(1))(state);
}

template <std::size_t count>
void remove(lua_State* state, const std::array<const char*, count>& names) {
    for (const char* name : names) {
        lua_pushnil(state);
        lua_setfield(state, -2, name);
    }
}

// Globals

int setMetatable(lua_State* state) {
    // Finalizers run where no hook reaches, also when the interpreter ends.
    if (lua_type(state, 2) == LUA_TTABLE) {
        lua_pushliteral(state, "__gc");
        if (lua_rawget(state, 2) != LUA_TNIL) raiseError(state, "__gc is not available to scripts");
        lua_pop(state, 1);
    }
    return callPreceded(state);
}

int handleError(lua_State* state) {
    // A hook's error finds hooks switched off: the script's handler could go on for ever.
    if (budgetOf(state).ending() != Budget::Ending::none) return 1;
    lua_pushvalue(state, lua_upvalueindex(1));
    lua_insert(state, 1);
    lua_call(state, lua_gettop(state) - 1, 1);
    return 1;
}

int protectedCall(lua_State* state) {
    luaL_checktype(state, 2, LUA_TFUNCTION);
    lua_pushvalue(state, 2);
    lua_pushcclosure(state, handleError, 1);
    lua_replace(state, 2);
    return callPreceded(state);
}

int loadText(lua_State* state) {
    budgetOf(state).check(state);
    if (lua_gettop(state) < 3) lua_settop(state, 3);
    // Bytecode is not verified: it could do anything.
    lua_pushliteral(state, "t");
    lua_replace(state, 3);
    return callPreceded(state);
}

int countGarbage(lua_State* state) {
    const std::string_view option = luaL_optstring(state, 1, "count");
    if (option != "count") raiseError(state, "collectgarbage knows \"count\" only");
    const double bytes = static_cast<double>(budgetOf(state).usedMemory());
    lua_pushnumber(state, bytes / 1024);
    return 1;
}

/// What one print() hands to the log; it stands outside the memory that is watched.
constexpr std::size_t longestPrint = 1U << 20U;

void printLines(std::string_view text, Budget& budget) {
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        if (!budget.takeLine()) {
            if (budget.isFirstLineTooMany())
                LogManager::getInstance().log("further lines of this script are left out");
            return;
        }
        LogManager::getInstance().log(onOneLine(text.substr(start, end - start)));
        start = end + 1;
    }
}

int print(lua_State* state) {
    Budget& budget = budgetOf(state);
    std::string text;
    const int count = lua_gettop(state);
    for (int i = 1; i <= count && text.size() < longestPrint; ++i) {
        std::size_t size = 0;
        const char* part = luaL_tolstring(state, i, &size);
        // What is too long for a line of the log is not worth copying.
        text += (i == 1 ? "" : "  ") + std::string(part, std::min<std::size_t>(size, 1U << 16U));
        lua_pop(state, 1);
    }
    printLines(text, budget);
    budget.check(state, 100);
    return 0;
}

// Coroutines: each has hooks of its own, and none is resumed any more once the script has ended.

int resumeWatched(lua_State* state, lua_State* coroutine) {
    Budget& budget = budgetOf(state);
    // Each resumption begins to count anew: what it did not get to count is charged here.
    budget.check(state, 16);
    lua_pushvalue(state, lua_upvalueindex(1));
    lua_insert(state, 1);
    {
        const Budget::InCoroutine guard(budget, coroutine);
        lua_call(state, lua_gettop(state) - 1, LUA_MULTRET);
    }
    // One that a hook's error has ended keeps its hooks switched off for ever: closing it later
    // would run its pending handlers without them.
    if (budget.ending() != Budget::Ending::none && lua_status(coroutine) > LUA_YIELD)
        setContext(coroutine, nullptr);
    budget.check(state);
    return lua_gettop(state);
}

int resume(lua_State* state) {
    luaL_checktype(state, 1, LUA_TTHREAD);
    lua_State* coroutine = lua_tothread(state, 1);
    if (!hasContext(coroutine)) raiseError(state, "the coroutine was stopped");
    return resumeWatched(state, coroutine);
}

int resumeWrapped(lua_State* state) {
    lua_State* coroutine = lua_tothread(state, lua_upvalueindex(2));
    if (!hasContext(coroutine)) raiseError(state, "the coroutine was stopped");
    lua_pushvalue(state, lua_upvalueindex(2));
    lua_insert(state, 1);
    const int count = resumeWatched(state, coroutine);
    if (lua_toboolean(state, 1) == 0) {
        lua_settop(state, 2);
        lua_error(state);
    }
    return count - 1;
}

int wrapCoroutine(lua_State* state) {
    luaL_checktype(state, 1, LUA_TFUNCTION);
    lua_State* coroutine = lua_newthread(state);
    lua_pushvalue(state, 1);
    lua_xmove(state, coroutine, 1);
    lua_pushvalue(state, lua_upvalueindex(1));
    lua_insert(state, -2);
    lua_pushcclosure(state, resumeWrapped, 2);
    return 1;
}

int closeCoroutine(lua_State* state) {
    luaL_checktype(state, 1, LUA_TTHREAD);
    lua_State* coroutine = lua_tothread(state, 1);
    if (!hasContext(coroutine)) raiseError(state, "the coroutine was stopped");
    return resumeWatched(state, coroutine);
}

// Tables

void requireLength(lua_State* state) {
    luaL_checkany(state, 1);
    if (luaL_len(state, 1) > longestTable) raiseError(state, "the table is too long for this");
    // Lua's own function asks once more, and may be told another length.
    if (luaL_getmetafield(state, 1, "__len") != LUA_TNIL)
        raiseError(state, "a table that tells its own length is not for this");
}

int watchLength(lua_State* state) {
    budgetOf(state).check(state);
    requireLength(state);
    return callPreceded(state);
}

/// The arguments there and behind say from where to where; without them, it is the whole table.
int watchRange(lua_State* state, int first) {
    const lua_Integer from = luaL_optinteger(state, first, 1);
    const lua_Integer to = lua_isnoneornil(state, first + 1) ? luaL_len(state, 1)
                                                             : luaL_checkinteger(state, first + 1);
    // As unsigned numbers, so that the difference cannot overflow.
    if (to > from && static_cast<lua_Unsigned>(to) - static_cast<lua_Unsigned>(from) >
                             static_cast<lua_Unsigned>(longestTable))
        raiseError(state, "the range is too long for this");
    budgetOf(state).check(state);
    return callPreceded(state);
}
int watchJoined(lua_State* state) {
    if (lua_isnoneornil(state, 4)) {
        // Asked once only: the second answer may be another.
        const lua_Integer length = luaL_len(state, 1);
        lua_settop(state, 3);
        lua_pushinteger(state, length);
    }
    return watchRange(state, 3);
}
int watchMoved(lua_State* state) {
    return watchRange(state, 2);
}

int isLess(lua_State* state) {
    budgetOf(state).check(state, 1);
    lua_pushboolean(state, lua_compare(state, 1, 2, LUA_OPLT));
    return 1;
}

/// A comparison by a function that is none of a script's, so that no hook counts it.
int comparesWatched(lua_State* state) {
    budgetOf(state).check(state, 1);
    lua_pushvalue(state, lua_upvalueindex(1));
    lua_insert(state, 1);
    lua_call(state, lua_gettop(state) - 1, 1);
    return 1;
}

int sort(lua_State* state) {
    requireLength(state);
    lua_settop(state, 2);
    if (lua_isnil(state, 2)) {
        lua_pushcfunction(state, isLess);
        lua_replace(state, 2);
    } else if (lua_iscfunction(state, 2) != 0) {
        lua_pushcclosure(state, comparesWatched, 1);
    }
    return callPreceded(state);
}

// Texts

int repeat(lua_State* state) {
    std::size_t length = 0;
    std::size_t between = 0;
    luaL_checklstring(state, 1, &length);
    luaL_checkinteger(state, 2);
    luaL_optlstring(state, 3, "", &between);
    budgetOf(state).check(state);
    if (length + between > 0) return callPreceded(state);
    // Lua's own would count to the end, and memory never ends it.
    lua_pushliteral(state, "");
    return 1;
}

void openLibrary(lua_State* state, const char* name, lua_CFunction open) {
    luaL_requiref(state, name, open, 1);
}

void confineBase(lua_State* state) {
    openLibrary(state, LUA_GNAME, luaopen_base);
    remove(state, std::array{"dofile", "loadfile", "warn"});
    precede(state, "setmetatable", setMetatable);
    precede(state, "xpcall", protectedCall);
    precede(state, "load", loadText);
    watch(state, std::array{"select", "tostring", "tonumber", "next"});
    lua_pushcfunction(state, countGarbage);
    lua_setfield(state, -2, "collectgarbage");
    lua_pushcfunction(state, print);
    lua_setfield(state, -2, "print");
    lua_pop(state, 1);
}

void confineTables(lua_State* state) {
    openLibrary(state, LUA_TABLIBNAME, luaopen_table);
    precede(state, "insert", watchLength);
    precede(state, "remove", watchLength);
    precede(state, "sort", sort);
    precede(state, "concat", watchJoined);
    precede(state, "move", watchMoved);
    watch(state, std::array{"pack", "unpack"});
    lua_pop(state, 1);
}

void confineTexts(lua_State* state) {
    openLibrary(state, LUA_STRLIBNAME, luaopen_string);
    remove(state, std::array{"dump"});
    precede(state, "rep", repeat);
    watch(state,
          std::array{"byte",
                     "char",
                     "format",
                     "lower",
                     "pack",
                     "packsize",
                     "reverse",
                     "sub",
                     "unpack",
                     "upper"});
    addPatternFunctions(state);
    lua_pop(state, 1);
    // All texts share one metatable: nobody changes it for the others.
    lua_pushliteral(state, "");
    lua_getmetatable(state, -1);
    lua_pushliteral(state, "string");
    lua_setfield(state, -2, "__metatable");
    lua_pop(state, 2);
    openLibrary(state, LUA_UTF8LIBNAME, luaopen_utf8);
    watch(state, std::array{"char", "codepoint", "len", "offset"});
    lua_pop(state, 1);
}

void confineCoroutines(lua_State* state) {
    openLibrary(state, LUA_COLIBNAME, luaopen_coroutine);
    precede(state, "close", closeCoroutine);
    precede(state, "resume", resume);
    // It resumes as resume() does, but without what we put in front.
    lua_getfield(state, -1, "resume");
    lua_getupvalue(state, -1, 1);
    lua_pushcclosure(state, wrapCoroutine, 1);
    lua_setfield(state, -3, "wrap");
    lua_pop(state, 2);
}

/// Makes a global table of some members of a library, which itself is forgotten.
template <std::size_t count>
void openPart(lua_State* state,
              const char* name,
              lua_CFunction open,
              const std::array<const char*, count>& names) {
    luaL_requiref(state, name, open, 0);
    lua_newtable(state);
    for (const char* member : names) {
        lua_getfield(state, -2, member);
        lua_setfield(state, -2, member);
    }
    watch(state, names);
    lua_setglobal(state, name);
    lua_pop(state, 1);
}

} // namespace

void openLibraries(lua_State* state) {
    confineBase(state);
    confineTables(state);
    confineTexts(state);
    confineCoroutines(state);
    openLibrary(state, LUA_MATHLIBNAME, luaopen_math);
    lua_pop(state, 1);
    openPart(state, LUA_OSLIBNAME, luaopen_os, std::array{"clock", "time", "date", "difftime"});
    openPart(state, LUA_DBLIBNAME, luaopen_debug, std::array{"traceback"});
    // The table of loaded libraries still knows what was taken away.
    lua_pushnil(state);
    lua_setfield(state, LUA_REGISTRYINDEX, LUA_LOADED_TABLE);
}

} // namespace vlScripts
