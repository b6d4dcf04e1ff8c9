#include "StateAccess.h"

#include <algorithm>
#include <cmath>

namespace vlScripts {
namespace {

// Metatables stand in the registry under the addresses of these.
const char numbersKey = 0;
const char objectKey = 0;

bool hasMetatable(lua_State* state, int index, const void* key) {
    if (lua_type(state, index) != LUA_TUSERDATA || lua_getmetatable(state, index) == 0)
        return false;
    lua_rawgetp(state, LUA_REGISTRYINDEX, key);
    const bool same = lua_rawequal(state, -1, -2) != 0;
    lua_pop(state, 2);
    return same;
}

std::string textAt(lua_State* state, int index) {
    std::size_t size = 0;
    const char* text = lua_tolstring(state, index, &size);
    return {text, size};
}

// Vectors

/// What may stand where a vector is wanted, or nothing.
std::optional<Numbers> vectorAt(lua_State* state, int index) {
    if (const Numbers* numbers = numbersAt(state, index)) return *numbers;
    if (lua_type(state, index) != LUA_TTABLE) return std::nullopt;
    return toValue(state, index).asNumbers();
}

/// Component by component; a single number counts for each.
template <class Operation> int combine(lua_State* state, Operation operation) {
    std::array<Numbers, 2> sides;
    std::array<bool, 2> single{};
    for (int i = 0; i < 2; ++i) {
        const auto side = static_cast<std::size_t>(i);
        if (lua_type(state, i + 1) == LUA_TNUMBER) {
            single[side] = true;
            sides[side].values.fill(lua_tonumber(state, i + 1));
        } else if (const auto numbers = vectorAt(state, i + 1)) {
            sides[side] = *numbers;
        } else {
            raiseError(state,
                       std::string("a vector and a ") + luaL_typename(state, i + 1) +
                               " cannot be combined");
        }
    }
    if (!single[0] && !single[1] && sides[0].count != sides[1].count)
        raiseError(state, "the vectors have different lengths");
    Numbers result;
    result.count = single[0] ? sides[1].count : sides[0].count;
    for (std::size_t i = 0; i < result.count; ++i)
        result.values[i] = operation(sides[0].values[i], sides[1].values[i]);
    pushNumbers(state, result);
    return 1;
}

int addVectors(lua_State* state) {
    return combine(state, [](double a, double b) { return a + b; });
}
int subtractVectors(lua_State* state) {
    return combine(state, [](double a, double b) { return a - b; });
}
int multiplyVectors(lua_State* state) {
    return combine(state, [](double a, double b) { return a * b; });
}
int divideVectors(lua_State* state) {
    return combine(state, [](double a, double b) { return a / b; });
}
int negateVector(lua_State* state) {
    Numbers result = *numbersAt(state, 1);
    for (double& value : result.values)
        value = -value;
    pushNumbers(state, result);
    return 1;
}

int sameVectors(lua_State* state) {
    const Numbers* a = numbersAt(state, 1);
    const Numbers* b = numbersAt(state, 2);
    const bool same =
            a != nullptr && b != nullptr && a->count == b->count &&
            std::equal(a->values.begin(), a->values.begin() + a->count, b->values.begin());
    lua_pushboolean(state, same ? 1 : 0);
    return 1;
}

int readVector(lua_State* state) {
    const Numbers& numbers = *numbersAt(state, 1);
    std::size_t place = numbers.count;
    if (lua_isinteger(state, 2) != 0) {
        // Past the end is nil, so that ipairs() works.
        const lua_Integer wanted = lua_tointeger(state, 2);
        if (wanted < 1 || wanted > numbers.count) return 0;
        place = static_cast<std::size_t>(wanted - 1);
    } else if (lua_type(state, 2) == LUA_TSTRING) {
        const std::string name = textAt(state, 2);
        if (name.size() == 1) place = std::string_view("xyzw").find(name);
        if (place >= numbers.count) {
            raiseError(state,
                       "a vector of " + std::to_string(numbers.count) + " has no '" + name + "'");
        }
    } else {
        raiseError(state, std::string("a vector has nothing under a ") + luaL_typename(state, 2));
    }
    lua_pushnumber(state, numbers.values[place]);
    return 1;
}

int refuseVectorWrite(lua_State* state) {
    raiseError(state, "a vector is a value: write all of it, as in node.position = {0, 1, 0}");
}

int lengthOfVector(lua_State* state) {
    lua_pushinteger(state, numbersAt(state, 1)->count);
    return 1;
}

int printVector(lua_State* state) {
    const Numbers& numbers = *numbersAt(state, 1);
    std::string text = "{";
    for (std::size_t i = 0; i < numbers.count; ++i) {
        std::array<char, 40> number{};
        std::snprintf(
                number.data(), number.size(), "%s%.7g", i == 0 ? "" : ", ", numbers.values[i]);
        text += number.data();
    }
    text += "}";
    lua_pushlstring(state, text.data(), text.size());
    return 1;
}

int makeVector(lua_State* state) {
    const int count = lua_gettop(state);
    if (count == 1) {
        const auto numbers = vectorAt(state, 1);
        if (!numbers) raiseError(state, "vec expects two to four numbers");
        pushNumbers(state, *numbers);
        return 1;
    }
    if (count < 2 || count > 4) raiseError(state, "vec expects two to four numbers");
    Numbers numbers;
    numbers.count = static_cast<std::uint8_t>(count);
    for (int i = 0; i < count; ++i)
        numbers.values[static_cast<std::size_t>(i)] = luaL_checknumber(state, i + 1);
    pushNumbers(state, numbers);
    return 1;
}

// Objects

const ObjectKind& kindAt(lua_State* state, int index) {
    return **static_cast<const ObjectKind**>(lua_touserdata(state, index));
}

std::string nameAt(lua_State* state, int index) {
    lua_getiuservalue(state, index, 1);
    std::string name = textAt(state, -1);
    lua_pop(state, 1);
    return name;
}

void requireObject(lua_State* state, int index) {
    if (!hasMetatable(state, index, &objectKey))
        raiseError(state, "call it with a colon: object:method()");
}

template <class Entry>
const Entry* findNamed(const std::vector<Entry>& all, std::string_view name) {
    const auto found = std::find_if(
            all.begin(), all.end(), [&](const Entry& one) { return one.name == name; });
    return found == all.end() ? nullptr : &*found;
}

[[noreturn]] void raiseUnknown(lua_State* state, const ObjectKind& kind, const std::string& name) {
    std::string text = "a " + kind.name + " has no '" + onOneLine(name) + "'; it has";
    const char* comma = " ";
    for (const auto& field : kind.fields) {
        text += comma + field.name;
        comma = ", ";
    }
    for (const auto& method : kind.methods) {
        text += comma + method.name + "()";
        comma = ", ";
    }
    raiseError(state, text);
}

template <class Call> auto guarded(Call call) -> decltype(call()) {
    try {
        return call();
    } catch (const std::exception& error) {
        return vlCommon::fail(error.what());
    }
}

void pushField(lua_State* state,
               const ObjectKind& kind,
               const ObjectKind::Field& field,
               int index) {
    const std::string name = nameAt(state, index);
    const auto value = guarded([&] { return field.get(name); });
    if (!value) raiseError(state, kind.name + " '" + name + "': " + value.error().message);
    pushValue(state, *value);
}

int callMethod(lua_State* state) {
    requireObject(state, 1);
    const ObjectKind& kind = kindAt(state, 1);
    const std::string wanted = textAt(state, lua_upvalueindex(1));
    const auto* method = findNamed(kind.methods, wanted);
    if (method == nullptr) raiseUnknown(state, kind, wanted);
    const std::string name = nameAt(state, 1);
    const Values arguments = toValues(state, 2);
    const auto result = guarded([&] { return method->call(name, arguments); });
    budgetOf(state).check(state);
    if (!result) {
        raiseError(state, kind.name + " '" + name + "': " + wanted + ": " + result.error().message);
    }
    luaL_checkstack(state, static_cast<int>(result->size()) + 1, "too many values");
    for (const Value& value : *result)
        pushValue(state, value);
    return static_cast<int>(result->size());
}

int readObject(lua_State* state) {
    budgetOf(state).check(state);
    const ObjectKind& kind = kindAt(state, 1);
    const std::string wanted = lua_type(state, 2) == LUA_TSTRING ? textAt(state, 2) : "?";
    if (const auto* field = findNamed(kind.fields, wanted)) {
        pushField(state, kind, *field, 1);
        return 1;
    }
    if (findNamed(kind.methods, wanted) == nullptr) raiseUnknown(state, kind, wanted);
    lua_pushvalue(state, 2);
    lua_pushcclosure(state, callMethod, 1);
    return 1;
}

int writeObject(lua_State* state) {
    budgetOf(state).check(state);
    const ObjectKind& kind = kindAt(state, 1);
    const std::string wanted = lua_type(state, 2) == LUA_TSTRING ? textAt(state, 2) : "?";
    const auto* field = findNamed(kind.fields, wanted);
    if (field == nullptr) raiseUnknown(state, kind, wanted);
    const std::string name = nameAt(state, 1);
    const std::string place = kind.name + " '" + name + "': " + wanted;
    if (!field->set) raiseError(state, place + " cannot be written");
    const Value value = toValue(state, 3);
    const auto written = guarded([&] { return field->set(name, value); });
    if (!written) raiseError(state, place + ": " + written.error().message);
    return 0;
}

int nextField(lua_State* state) {
    requireObject(state, 1);
    const ObjectKind& kind = kindAt(state, 1);
    std::size_t place = 0;
    if (lua_type(state, 2) == LUA_TSTRING) {
        const auto* last = findNamed(kind.fields, textAt(state, 2));
        if (last == nullptr) return 0;
        place = static_cast<std::size_t>(last - kind.fields.data()) + 1;
    }
    if (place >= kind.fields.size()) return 0;
    const auto& field = kind.fields[place];
    lua_pushlstring(state, field.name.data(), field.name.size());
    pushField(state, kind, field, 1);
    return 2;
}

int listFields(lua_State* state) {
    lua_pushcfunction(state, nextField);
    lua_pushvalue(state, 1);
    lua_pushnil(state);
    return 3;
}

int sameObjects(lua_State* state) {
    Object a;
    Object b;
    const bool same = objectAt(state, 1, a) && objectAt(state, 2, b) && a == b;
    lua_pushboolean(state, same ? 1 : 0);
    return 1;
}

int printObject(lua_State* state) {
    const std::string text = kindAt(state, 1).name + " '" + nameAt(state, 1) + "'";
    lua_pushlstring(state, text.data(), text.size());
    return 1;
}

void makeMetatable(lua_State* state, const void* key, const char* name, const luaL_Reg* functions) {
    lua_newtable(state);
    luaL_setfuncs(state, functions, 0);
    lua_pushstring(state, name);
    lua_setfield(state, -2, "__name");
    lua_pushstring(state, name); // what getmetatable() gives instead of the table
    lua_setfield(state, -2, "__metatable");
    lua_rawsetp(state, LUA_REGISTRYINDEX, key);
}

} // namespace

const Numbers* numbersAt(lua_State* state, int index) {
    if (!hasMetatable(state, index, &numbersKey)) return nullptr;
    return static_cast<const Numbers*>(lua_touserdata(state, index));
}

void pushNumbers(lua_State* state, const Numbers& numbers) {
    void* place = lua_newuserdatauv(state, sizeof(Numbers), 0);
    new (place) Numbers(numbers);
    lua_rawgetp(state, LUA_REGISTRYINDEX, &numbersKey);
    lua_setmetatable(state, -2);
}

bool objectAt(lua_State* state, int index, Object& object) {
    if (!hasMetatable(state, index, &objectKey)) return false;
    object = {kindAt(state, index).name, nameAt(state, index)};
    return true;
}

void pushObject(lua_State* state, const Object& object) {
    const ObjectKind* kind = contextOf(state).findKind(object.kind);
    if (kind == nullptr) raiseError(state, "no kind of thing is called '" + object.kind + "'");
    void* place = lua_newuserdatauv(state, sizeof kind, 1);
    std::memcpy(place, &kind, sizeof kind);
    lua_pushlstring(state, object.name.data(), object.name.size());
    lua_setiuservalue(state, -2, 1);
    lua_rawgetp(state, LUA_REGISTRYINDEX, &objectKey);
    lua_setmetatable(state, -2);
}

void openObjects(lua_State* state) {
    constexpr luaL_Reg vectorFunctions[] = {{"__add", addVectors},
                                            {"__sub", subtractVectors},
                                            {"__mul", multiplyVectors},
                                            {"__div", divideVectors},
                                            {"__unm", negateVector},
                                            {"__eq", sameVectors},
                                            {"__index", readVector},
                                            {"__newindex", refuseVectorWrite},
                                            {"__len", lengthOfVector},
                                            {"__tostring", printVector},
                                            {nullptr, nullptr}};
    constexpr luaL_Reg objectFunctions[] = {{"__index", readObject},
                                            {"__newindex", writeObject},
                                            {"__pairs", listFields},
                                            {"__eq", sameObjects},
                                            {"__tostring", printObject},
                                            {nullptr, nullptr}};
    makeMetatable(state, &numbersKey, "vector", vectorFunctions);
    makeMetatable(state, &objectKey, "object", objectFunctions);
    lua_pushcfunction(state, makeVector);
    lua_setglobal(state, "vec");
}

} // namespace vlScripts
