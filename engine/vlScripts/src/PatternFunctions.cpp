#include "Pattern.h"
#include "StateAccess.h"

#include <algorithm>
#include <cctype>

namespace vlScripts {
namespace {

using Place = std::optional<std::size_t>;

std::string_view viewAt(lua_State* state, int index) {
    std::size_t size = 0;
    const char* text = luaL_checklstring(state, index, &size);
    return {text, size};
}

/// The pattern functions' view of one subject and one pattern.
class Search {
public:
    Search(lua_State* state, std::string_view subject, std::string_view pattern)
        : state_(state), subject_(subject), anchored_(pattern.starts_with('^')),
          pattern_(subject, pattern.substr(anchored_ ? 1 : 0), state, progress, refuse) {}

    bool isAnchored() const { return anchored_; }
    Place matchAt(std::size_t start) { return pattern_.matchAt(start); }
    /// The first match from there on: where it starts; where it ends is put into the argument.
    Place find(std::size_t start, std::size_t& end) {
        for (; start <= subject_.size(); ++start) {
            if (const Place found = pattern_.matchAt(start)) {
                end = *found;
                return start;
            }
            if (anchored_) break;
        }
        return std::nullopt;
    }
    void pushCapture(std::size_t index, std::size_t start, std::size_t end) {
        if (index >= pattern_.getCaptureCount()) {
            if (index != 0) raiseError(state_, "invalid capture index");
            push(start, end - start);
            return;
        }
        const Pattern::Capture& capture = pattern_.getCapture(index);
        if (capture.state == Pattern::Capture::State::open)
            raiseError(state_, "unfinished capture");
        if (capture.state == Pattern::Capture::State::position)
            lua_pushinteger(state_, static_cast<lua_Integer>(capture.start) + 1);
        else
            push(capture.start, capture.length);
    }
    /// All captures; without any, the whole match if that is wanted.
    int pushCaptures(std::size_t start, std::size_t end, bool wholeIfNone) {
        const std::size_t count =
                std::max<std::size_t>(pattern_.getCaptureCount(), wholeIfNone ? 1 : 0);
        luaL_checkstack(state_, static_cast<int>(count), "too many captures");
        for (std::size_t i = 0; i < count; ++i)
            pushCapture(i, start, end);
        return static_cast<int>(count);
    }

private:
    static void progress(void* owner, std::uint64_t steps) {
        auto* state = static_cast<lua_State*>(owner);
        budgetOf(state).check(state, steps / 4);
    }
    static void refuse(void* owner, const char* why) {
        raiseError(static_cast<lua_State*>(owner), why);
    }
    void push(std::size_t start, std::size_t length) {
        lua_pushlstring(state_, subject_.data() + start, length);
    }

    lua_State* state_;
    std::string_view subject_;
    bool anchored_;
    Pattern pattern_;
};

/// Where a text is to be looked at from: counted from 1, or from the end below 0.
std::size_t startAt(lua_State* state, int index, std::size_t length) {
    const lua_Integer start = luaL_optinteger(state, index, 1);
    const auto size = static_cast<lua_Integer>(length);
    if (start > 0) return static_cast<std::size_t>(std::min(start - 1, size + 1));
    if (start == 0 || start < -size) return 0;
    return static_cast<std::size_t>(size + start);
}

bool isPlain(std::string_view pattern) {
    return pattern.find_first_of("^$*+?.([%-") == std::string_view::npos;
}

int findPlain(lua_State* state,
              std::string_view subject,
              std::string_view wanted,
              std::size_t start) {
    // Linear in both, which the standard library's search is not.
    const void* found = wanted.empty() ? subject.data() + start
                                       : memmem(subject.data() + start,
                                                subject.size() - start,
                                                wanted.data(),
                                                wanted.size());
    if (found == nullptr) {
        lua_pushnil(state);
        return 1;
    }
    const auto place = static_cast<const char*>(found) - subject.data();
    lua_pushinteger(state, place + 1);
    lua_pushinteger(state, place + static_cast<lua_Integer>(wanted.size()));
    return 2;
}

int find(lua_State* state) {
    budgetOf(state).check(state);
    const std::string_view subject = viewAt(state, 1);
    const std::string_view pattern = viewAt(state, 2);
    const std::size_t start = startAt(state, 3, subject.size());
    if (start > subject.size()) {
        lua_pushnil(state);
        return 1;
    }
    if (lua_toboolean(state, 4) != 0 || isPlain(pattern))
        return findPlain(state, subject, pattern, start);
    Search search(state, subject, pattern);
    std::size_t end = 0;
    const Place found = search.find(start, end);
    if (!found) {
        lua_pushnil(state);
        return 1;
    }
    lua_pushinteger(state, static_cast<lua_Integer>(*found) + 1);
    lua_pushinteger(state, static_cast<lua_Integer>(end));
    return 2 + search.pushCaptures(*found, end, false);
}

int match(lua_State* state) {
    budgetOf(state).check(state);
    const std::string_view subject = viewAt(state, 1);
    const std::string_view pattern = viewAt(state, 2);
    const std::size_t start = startAt(state, 3, subject.size());
    std::size_t end = 0;
    Search search(state, subject, pattern);
    if (start <= subject.size()) {
        if (const Place found = search.find(start, end))
            return search.pushCaptures(*found, end, true);
    }
    lua_pushnil(state);
    return 1;
}

/// Upvalues: subject, pattern, where to go on, where the last match ended (or -1).
int nextMatch(lua_State* state) {
    budgetOf(state).check(state);
    const std::string_view subject = viewAt(state, lua_upvalueindex(1));
    const auto last = lua_tointeger(state, lua_upvalueindex(4));
    Search search(state, subject, viewAt(state, lua_upvalueindex(2)));
    auto start = static_cast<std::size_t>(lua_tointeger(state, lua_upvalueindex(3)));
    for (; start <= subject.size(); ++start) {
        const Place end = search.matchAt(start);
        // An empty match right behind the last one is that match's end, not another.
        if (!end || static_cast<lua_Integer>(*end) == last) continue;
        lua_pushinteger(state, static_cast<lua_Integer>(*end));
        lua_copy(state, -1, lua_upvalueindex(3));
        lua_replace(state, lua_upvalueindex(4));
        return search.pushCaptures(start, *end, true);
    }
    lua_pushinteger(state, static_cast<lua_Integer>(subject.size()) + 1);
    lua_replace(state, lua_upvalueindex(3));
    return 0;
}

int matches(lua_State* state) {
    const std::string_view subject = viewAt(state, 1);
    const std::string_view pattern = viewAt(state, 2);
    // Here, an anchor would make no sense: the sign is a letter.
    const std::string escaped = pattern.starts_with('^') ? std::string("%").append(pattern) : "";
    const std::size_t start = startAt(state, 3, subject.size());
    lua_settop(state, 2);
    if (!escaped.empty()) {
        lua_pushlstring(state, escaped.data(), escaped.size());
        lua_replace(state, 2);
    }
    lua_pushinteger(state, static_cast<lua_Integer>(start));
    lua_pushinteger(state, -1);
    lua_pushcclosure(state, nextMatch, 4);
    return 1;
}

/// gsub, match by match.
class Substitution {
public:
    Substitution(lua_State* state, std::string_view subject, Search& search)
        : state_(state), subject_(subject), search_(search) {
        luaL_buffinit(state, &buffer_);
    }
    int run(lua_Integer most);

private:
    void append(std::size_t start, std::size_t end);
    bool replace(std::size_t start, std::size_t end);
    void expand(std::string_view text, std::size_t start, std::size_t end);

    lua_State* state_;
    std::string_view subject_;
    Search& search_;
    luaL_Buffer buffer_{};
};

int Substitution::run(lua_Integer most) {
    std::size_t at = 0;
    Place last;
    lua_Integer count = 0;
    bool changed = false;
    while (count < most) {
        const Place end = search_.matchAt(at);
        if (end && end != last) {
            ++count;
            changed = replace(at, *end) || changed;
            at = *end;
            last = end;
        } else if (at < subject_.size()) {
            luaL_addchar(&buffer_, subject_[at]);
            ++at;
        } else {
            break;
        }
        if (search_.isAnchored()) break;
    }
    append(std::min(at, subject_.size()), subject_.size());
    luaL_pushresult(&buffer_);
    if (!changed) {
        lua_pop(state_, 1);
        lua_pushvalue(state_, 1);
    }
    lua_pushinteger(state_, count);
    return 2;
}

void Substitution::append(std::size_t start, std::size_t end) {
    luaL_addlstring(&buffer_, subject_.data() + start, end - start);
}

bool Substitution::replace(std::size_t start, std::size_t end) {
    switch (lua_type(state_, 3)) {
    case LUA_TFUNCTION: {
        lua_pushvalue(state_, 3);
        const int count = search_.pushCaptures(start, end, true);
        lua_call(state_, count, 1);
        break;
    }
    case LUA_TTABLE:
        search_.pushCapture(0, start, end);
        lua_gettable(state_, 3);
        break;
    default:
        expand(viewAt(state_, 3), start, end);
        return true;
    }
    if (lua_toboolean(state_, -1) == 0) {
        lua_pop(state_, 1);
        append(start, end);
        return false;
    }
    if (lua_isstring(state_, -1) == 0) {
        raiseError(state_,
                   std::string("invalid replacement value (a ") + luaL_typename(state_, -1) + ")");
    }
    luaL_addvalue(&buffer_);
    return true;
}

void Substitution::expand(std::string_view text, std::size_t start, std::size_t end) {
    for (std::size_t sign; (sign = text.find('%')) != std::string_view::npos;) {
        luaL_addlstring(&buffer_, text.data(), sign);
        const char what = sign + 1 < text.size() ? text[sign + 1] : '\0';
        if (what == '%') {
            luaL_addchar(&buffer_, '%');
        } else if (what == '0') {
            append(start, end);
        } else if (std::isdigit(static_cast<unsigned char>(what)) != 0) {
            search_.pushCapture(static_cast<std::size_t>(what - '1'), start, end);
            luaL_tolstring(state_, -1, nullptr);
            lua_remove(state_, -2);
            luaL_addvalue(&buffer_);
        } else {
            raiseError(state_, "invalid use of '%' in replacement string");
        }
        text.remove_prefix(sign + 2);
    }
    luaL_addlstring(&buffer_, text.data(), text.size());
}

int substitute(lua_State* state) {
    budgetOf(state).check(state);
    const std::string_view subject = viewAt(state, 1);
    const std::string_view pattern = viewAt(state, 2);
    const int kind = lua_type(state, 3);
    if (kind != LUA_TNUMBER && kind != LUA_TSTRING && kind != LUA_TFUNCTION && kind != LUA_TTABLE)
        raiseError(state, "gsub expects a text, a function or a table as the third argument");
    const lua_Integer most =
            luaL_optinteger(state, 4, static_cast<lua_Integer>(subject.size()) + 1);
    Search search(state, subject, pattern);
    return Substitution(state, subject, search).run(most);
}

} // namespace

void addPatternFunctions(lua_State* state) {
    constexpr luaL_Reg functions[] = {{"find", find},
                                      {"match", match},
                                      {"gmatch", matches},
                                      {"gsub", substitute},
                                      {nullptr, nullptr}};
    luaL_setfuncs(state, functions, 0);
}

} // namespace vlScripts
