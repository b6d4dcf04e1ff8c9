#include "StateAccess.h"

#include <vlScripts/Interpreter.h>

#include <algorithm>
#include <deque>
#include <mutex>

namespace vlScripts {
namespace {

/// A native function by its place in the globals.
struct NamedFunction {
    std::string path;
    NativeFunction function;
};

vlCommon::Result<Values> callGuarded(const NativeFunction& function, const Values& arguments) {
    try {
        return function(arguments);
    } catch (const std::exception& error) {
        return vlCommon::fail(error.what());
    }
}

int callNative(lua_State* state) {
    const auto& native = *static_cast<NamedFunction*>(lua_touserdata(state, lua_upvalueindex(1)));
    budgetOf(state).check(state);
    const Values arguments = toValues(state, 1);
    const auto result = callGuarded(native.function, arguments);
    budgetOf(state).check(state);
    if (!result) raiseError(state, result.error().message);
    luaL_checkstack(state, static_cast<int>(result->size()) + 1, "too many values");
    for (const Value& value : *result)
        pushValue(state, value);
    return static_cast<int>(result->size());
}

/// The handler that sees an error where it was raised, before the calls are unwound.
int noteError(lua_State* state) {
    StateContext& context = contextOf(state);
    if (context.budget.ending() == Budget::Ending::none) {
        context.errorPosition = positionIn(state);
        context.errorTraceback = tracebackOf(state);
    }
    return 1;
}

struct Invocation {
    const CompiledScript* script = nullptr;
    const FunctionReference* function = nullptr;
    std::span<const Value> arguments;
    Values returned;
};

/// Runs protected, since each of its steps may want memory.
int invoke(lua_State* state) {
    auto& invocation = *static_cast<Invocation*>(lua_touserdata(state, 1));
    lua_settop(state, 0);
    if (invocation.script != nullptr) {
        const std::string& text = invocation.script->getText();
        const std::string name = std::string("=").append(invocation.script->getName());
        if (luaL_loadbufferx(state, text.data(), text.size(), name.c_str(), "t") != LUA_OK)
            lua_error(state);
    } else {
        invocation.function->push(state);
    }
    luaL_checkstack(state, static_cast<int>(invocation.arguments.size()) + 1, "too many values");
    for (const Value& argument : invocation.arguments)
        pushValue(state, argument);
    lua_call(state, static_cast<int>(invocation.arguments.size()), LUA_MULTRET);
    invocation.returned = toValues(state, 1);
    return 0;
}

int describeError(lua_State* state) {
    luaL_tolstring(state, 1, nullptr);
    return 1;
}

} // namespace

class Interpreter::State final {
public:
    explicit State(const Limits& limits) : limits_(limits) { open(); }
    ~State() { close(); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    const Limits& limits() const { return limits_; }
    void setLimits(const Limits& limits) {
        limits_ = limits;
        context_->budget.setLimits(limits);
    }
    void add(std::string_view path, NativeFunction function);
    void add(ObjectKind kind);
    ExecutionResult run(Invocation invocation);
    const FunctionReference* find(const Function& function) const {
        return FunctionReference::of(function, *context_);
    }
    void interrupt();

private:
    void open();
    void close();
    void place(NamedFunction& function);
    ExecutionResult fail(lua_State* state, int status);
    std::string textOfError(lua_State* state, int status);
    void tidy(ExecutionResult& result);

    Limits limits_;
    StateContext::Kinds kinds_;
    std::deque<NamedFunction> functions_; ///< addresses stay
    std::mutex contextLock_;              ///< for interrupt(), which may come while it is renewed
    std::shared_ptr<StateContext> context_;
};

void Interpreter::State::open() {
    auto context = std::make_shared<StateContext>(limits_, kinds_);
    lua_State* state = lua_newstate(Budget::allocate, &context->budget);
    if (state == nullptr) throw std::bad_alloc();
    context->main = state;
    setContext(state, context.get());
    openLibraries(state);
    openObjects(state);
    const std::lock_guard guard(contextLock_);
    context_ = std::move(context);
    for (NamedFunction& function : functions_)
        place(function);
}

void Interpreter::State::close() {
    const std::lock_guard guard(contextLock_);
    lua_State* state = context_->main;
    // References to its functions end before the state does.
    const std::shared_ptr<StateContext> context = std::move(context_);
    lua_close(state);
}

void Interpreter::State::interrupt() {
    const std::lock_guard guard(contextLock_);
    if (context_) context_->budget.interrupt();
}

void Interpreter::State::add(std::string_view path, NativeFunction function) {
    const auto known = std::find_if(functions_.begin(), functions_.end(), [&](const auto& entry) {
        return entry.path == path;
    });
    if (known != functions_.end()) {
        known->function = std::move(function);
        return;
    }
    place(functions_.emplace_back(NamedFunction{std::string(path), std::move(function)}));
}

void Interpreter::State::place(NamedFunction& function) {
    lua_State* state = context_->main;
    lua_pushglobaltable(state);
    std::string_view path = function.path;
    for (std::size_t dot; (dot = path.find('.')) != std::string_view::npos;) {
        const std::string part(path.substr(0, dot));
        if (lua_getfield(state, -1, part.c_str()) != LUA_TTABLE) {
            lua_pop(state, 1);
            lua_newtable(state);
            lua_pushvalue(state, -1);
            lua_setfield(state, -3, part.c_str());
        }
        lua_remove(state, -2);
        path.remove_prefix(dot + 1);
    }
    lua_pushlightuserdata(state, &function);
    lua_pushcclosure(state, callNative, 1);
    lua_setfield(state, -2, std::string(path).c_str());
    lua_pop(state, 1);
}

void Interpreter::State::add(ObjectKind kind) {
    const auto known = std::find_if(kinds_.begin(), kinds_.end(), [&](const auto& entry) {
        return entry->name == kind.name;
    });
    if (known != kinds_.end())
        **known = std::move(kind);
    else
        kinds_.push_back(std::make_unique<ObjectKind>(std::move(kind)));
}

ExecutionResult Interpreter::State::run(Invocation invocation) {
    Budget& budget = context_->budget;
    const bool nested = budget.isRunning();
    lua_State* state = nested ? budget.running() : context_->main;
    if (lua_checkstack(state, 8) == 0) return {false, "too many calls within calls", {}, {}};
    if (!nested) budget.begin(state);
    context_->errorPosition.clear();
    context_->errorTraceback.clear();
    const int base = lua_gettop(state);
    lua_pushcfunction(state, noteError);
    lua_pushcfunction(state, invoke);
    lua_pushlightuserdata(state, &invocation);
    const int status = lua_pcall(state, 1, 0, base + 1);
    ExecutionResult result;
    if (status == LUA_OK && budget.ending() == Budget::Ending::none)
        result.returned = std::move(invocation.returned);
    else
        result = fail(state, status);
    lua_settop(state, base);
    if (!nested) {
        budget.finish(state);
        tidy(result);
    }
    return result;
}

ExecutionResult Interpreter::State::fail(lua_State* state, int status) {
    ExecutionResult result;
    result.succeeded = false;
    result.message = onOneLine(textOfError(state, status));
    result.traceback = context_->errorTraceback;
    // Also when the time went by while the error said what it was.
    const Budget& budget = context_->budget;
    if (budget.ending() == Budget::Ending::none) return result;
    const std::string& where = budget.endedAt();
    result.message = onOneLine((where.empty() ? "" : where + ": ") + budget.describeEnding());
    result.traceback = budget.traceback();
    return result;
}

std::string Interpreter::State::textOfError(lua_State* state, int status) {
    const std::string where = context_->errorPosition.empty() ? "" : context_->errorPosition + ": ";
    if (status == LUA_ERRMEM) return where + "not enough memory";
    if (lua_type(state, -1) == LUA_TSTRING) {
        // Names with a NUL byte in them would end it early.
        std::size_t size = 0;
        const char* text = lua_tolstring(state, -1, &size);
        return {text, size};
    }
    const std::string kind = luaL_typename(state, -1);
    const bool speaks = luaL_getmetafield(state, -1, "__tostring") != LUA_TNIL;
    if (speaks) {
        lua_pop(state, 1);
        lua_pushcfunction(state, describeError);
        lua_pushvalue(state, -2);
        if (lua_pcall(state, 1, 1, 0) == LUA_OK && lua_type(state, -1) == LUA_TSTRING)
            return where + lua_tostring(state, -1);
    }
    return where + "the error is no text but " + (kind == "nil" ? kind : "a " + kind);
}

void Interpreter::State::tidy(ExecutionResult& result) {
    const Budget& budget = context_->budget;
    if (budget.ending() != Budget::Ending::memory) return;
    lua_gc(context_->main, LUA_GCCOLLECT);
    if (budget.usedMemory() < budget.memoryLimit() / 2) return;
    // Whatever runs next would find the memory full.
    close();
    open();
    result.message += "; all global values of scripts were dropped";
}

Interpreter::Interpreter(const Limits& limits) : state_(std::make_unique<State>(limits)) {
}

Interpreter::~Interpreter() = default;

void Interpreter::addFunction(std::string_view path, NativeFunction function) {
    state_->add(path, std::move(function));
}

void Interpreter::addKind(ObjectKind kind) {
    state_->add(std::move(kind));
}

void Interpreter::setLimits(const Limits& limits) {
    state_->setLimits(limits);
}

const Limits& Interpreter::getLimits() const {
    return state_->limits();
}

ExecutionResult Interpreter::execute(const CompiledScript& script) {
    Invocation invocation;
    invocation.script = &script;
    return state_->run(std::move(invocation));
}

ExecutionResult Interpreter::call(const Function& function, std::span<const Value> arguments) {
    Invocation invocation;
    invocation.function = state_->find(function);
    if (invocation.function == nullptr)
        return {false, "the function belongs to an interpreter that is gone", {}, {}};
    invocation.arguments = arguments;
    return state_->run(std::move(invocation));
}

void Interpreter::interrupt() {
    state_->interrupt();
}

} // namespace vlScripts
