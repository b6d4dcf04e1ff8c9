#include "StateAccess.h"

#include <vlScripts/CompiledScript.h>

namespace vlScripts {
namespace {

/// Far above what a compiled script of the longest text takes.
constexpr std::size_t compilerMemory = 256U << 20U;
constexpr std::size_t longestText = 16U << 20U;

struct Closer {
    void operator()(lua_State* state) const { lua_close(state); }
};

} // namespace

std::shared_ptr<const CompiledScript>
CompiledScript::compile(std::string_view name, std::string_view text, CompilationResult& result) {
    const auto refuse = [&](std::uint32_t kind, const std::string& why) {
        result = {kind, onOneLine(why)};
        return nullptr;
    };
    const std::string quoted = "script '" + std::string(name) + "': ";
    if (text.size() > longestText)
        return refuse(CompilationResult::notLoaded, quoted + "it is longer than 16 MiB");
    Budget budget({.instructions = 0,
                   .time = std::chrono::milliseconds(0),
                   .memory = compilerMemory,
                   .printedLines = 0});
    const std::unique_ptr<lua_State, Closer> state(lua_newstate(Budget::allocate, &budget));
    if (!state) return refuse(CompilationResult::notLoaded, quoted + "not enough memory");
    budget.begin(state.get());
    const std::string chunk = std::string("=").append(name);
    const int status = luaL_loadbufferx(state.get(), text.data(), text.size(), chunk.c_str(), "t");
    if (status != LUA_OK) {
        const bool syntax = status == LUA_ERRSYNTAX;
        const char* why = lua_tostring(state.get(), -1);
        return refuse(syntax ? CompilationResult::syntaxError : CompilationResult::notLoaded,
                      syntax ? why : quoted + (why == nullptr ? "it cannot be compiled" : why));
    }
    result = {CompilationResult::success, {}};
    return std::shared_ptr<const CompiledScript>(new CompiledScript(name, text));
}

} // namespace vlScripts
