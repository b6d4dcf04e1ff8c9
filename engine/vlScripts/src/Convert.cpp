#include "StateAccess.h"

#include <vlMemory/Utf8.h>

#include <algorithm>

namespace vlScripts {
namespace {

constexpr int deepestTable = 32;

/// Values live outside the memory that is watched, and one text may stand in a thousand places:
/// what crosses at once takes no more than all of the interpreter's own values may.
class Reader {
public:
    explicit Reader(lua_State* state) : state_(state) {}
    Value read(int index, int depth);

private:
    void charge(std::size_t bytes);
    Table readTable(int index, int depth);

    lua_State* state_;
    std::size_t bytes_ = 0;
};

void Reader::charge(std::size_t bytes) {
    bytes_ += bytes;
    if (bytes_ > budgetOf(state_).memoryLimit())
        raiseError(state_, "it is too large to be handed over");
}

Value Reader::read(int index, int depth) {
    charge(sizeof(Value));
    switch (lua_type(state_, index)) {
    case LUA_TNONE:
    case LUA_TNIL:
        return {};
    case LUA_TBOOLEAN:
        return Value(lua_toboolean(state_, index) != 0);
    case LUA_TNUMBER:
        if (lua_isinteger(state_, index) != 0)
            return Value(std::int64_t{lua_tointeger(state_, index)});
        return Value(lua_tonumber(state_, index));
    case LUA_TSTRING: {
        std::size_t size = 0;
        const char* text = lua_tolstring(state_, index, &size);
        charge(size);
        return Value(std::string(text, size));
    }
    case LUA_TFUNCTION:
        lua_pushvalue(state_, index);
        return Value(FunctionReference::wrap(state_));
    case LUA_TTABLE:
        return Value(readTable(index, depth));
    default:
        break;
    }
    if (const Numbers* numbers = numbersAt(state_, index)) return Value(*numbers);
    Object object;
    if (objectAt(state_, index, object)) return Value(std::move(object));
    raiseError(state_, std::string("a ") + luaL_typename(state_, index) + " cannot be handed over");
}

Table Reader::readTable(int index, int depth) {
    if (depth >= deepestTable)
        raiseError(state_, "a table that nests too deep, or holds itself, cannot be handed over");
    luaL_checkstack(state_, 4, "a table nests too deep");
    index = lua_absindex(state_, index);
    Table table;
    const auto length = static_cast<lua_Integer>(lua_rawlen(state_, index));
    for (lua_Integer i = 1; i <= length; ++i) {
        lua_rawgeti(state_, index, i);
        table.items.push_back(read(-1, depth + 1));
        lua_pop(state_, 1);
    }
    for (lua_pushnil(state_); lua_next(state_, index) != 0; lua_pop(state_, 1)) {
        if (lua_type(state_, -2) != LUA_TSTRING) continue;
        std::size_t size = 0;
        const char* name = lua_tolstring(state_, -2, &size);
        charge(size + sizeof(std::string));
        table.members.emplace_back(std::string(name, size), read(-1, depth + 1));
    }
    std::sort(table.members.begin(), table.members.end(), [](const auto& a, const auto& b) {
        return a.first < b.first;
    });
    return table;
}

void pushTable(lua_State* state, const Table& table) {
    luaL_checkstack(state, 4, "a table nests too deep");
    lua_createtable(state, 0, 0);
    lua_Integer place = 0;
    for (const Value& item : table.items) {
        pushValue(state, item);
        lua_rawseti(state, -2, ++place);
    }
    for (const auto& [name, member] : table.members) {
        lua_pushlstring(state, name.data(), name.size());
        pushValue(state, member);
        lua_rawset(state, -3);
    }
}

} // namespace

Value toValue(lua_State* state, int index) {
    return Reader(state).read(index, 0);
}

Values toValues(lua_State* state, int first) {
    Reader reader(state);
    Values values;
    const int count = lua_gettop(state);
    for (int i = first; i <= count; ++i)
        values.push_back(reader.read(i, 0));
    return values;
}

void pushValue(lua_State* state, const Value& value) {
    if (value.isNil())
        lua_pushnil(state);
    else if (const auto boolean = value.asBool())
        lua_pushboolean(state, *boolean ? 1 : 0);
    else if (const std::string* text = value.asText())
        lua_pushlstring(state, text->data(), text->size());
    else if (const Table* table = value.asTable())
        pushTable(state, *table);
    else if (const Object* object = value.asObject())
        pushObject(state, *object);
    else if (const Function* function = value.asFunction()) {
        const auto* reference = FunctionReference::of(*function, contextOf(state));
        if (reference == nullptr) raiseError(state, "a function of another interpreter");
        reference->push(state);
    } else if (const auto numbers = value.asNumbers())
        pushNumbers(state, *numbers);
    else if (value.isWhole())
        lua_pushinteger(state, *value.asInteger());
    else
        lua_pushnumber(state, *value.asNumber());
}

FunctionReference::FunctionReference(lua_State* state)
    : context_(contextOf(state).weak_from_this()), place_(luaL_ref(state, LUA_REGISTRYINDEX)) {
}

FunctionReference::~FunctionReference() {
    if (const auto context = context_.lock()) luaL_unref(context->main, LUA_REGISTRYINDEX, place_);
}

Function FunctionReference::wrap(lua_State* state) {
    return Function(std::make_shared<const FunctionReference>(state));
}

const FunctionReference* FunctionReference::of(const Function& function,
                                               const StateContext& context) {
    const FunctionReference* reference = function.reference_.get();
    if (reference == nullptr || reference->context_.lock().get() != &context) return nullptr;
    return reference;
}

void FunctionReference::push(lua_State* state) const {
    lua_rawgeti(state, LUA_REGISTRYINDEX, place_);
}

const ObjectKind* StateContext::findKind(std::string_view name) const {
    const auto found = std::find_if(
            kinds.begin(), kinds.end(), [&](const auto& kind) { return kind->name == name; });
    return found == kinds.end() ? nullptr : found->get();
}

void raiseError(lua_State* state, std::string_view text) {
    luaL_where(state, 1);
    lua_pushlstring(state, text.data(), text.size());
    lua_concat(state, 2);
    lua_error(state);
    std::abort();
}

std::string onOneLine(std::string_view text) {
    std::string line(text);
    const auto isSpace = [](char letter) {
        return letter == '\n' || letter == '\t' || letter == '\r';
    };
    std::replace_if(line.begin(), line.end(), isSpace, ' ');
    return vlMemory::printable(line);
}

} // namespace vlScripts
