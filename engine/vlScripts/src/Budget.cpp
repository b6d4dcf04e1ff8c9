#include "Budget.h"

#include "StateAccess.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>

namespace vlScripts {
namespace {

using Clock = std::chrono::steady_clock;

/// A single instruction may take milliseconds (it joins two long texts): few of them between looks.
constexpr int instructionsBetweenLooks = 256;
constexpr std::size_t bytesBetweenLooks = 1U << 20U;

} // namespace

void Budget::begin(lua_State* state) {
    running_ = state;
    deadline_ = limits_.time.count() > 0 ? Clock::now() + limits_.time : Clock::time_point::max();
    instructions_ = 0;
    printed_ = 0;
    sinceLook_ = 0;
    refusedSize_ = 0;
    ending_ = Ending::none;
    endedAt_.clear();
    traceback_.clear();
    interrupted_ = false;
    lua_sethook(state, hook, LUA_MASKCOUNT, instructionsBetweenLooks);
}

void Budget::finish(lua_State* state) {
    running_ = nullptr;
    lua_sethook(state, nullptr, 0, 0);
}

std::string Budget::describeEnding() const {
    switch (ending_) {
    case Ending::instructions:
        return fmt::format("stopped after {} instructions", limits_.instructions);
    case Ending::time:
        return fmt::format("stopped after {} ms", limits_.time.count());
    case Ending::memory:
        return fmt::format("stopped: it needs more than {} MiB of memory", memoryLimit() >> 20U);
    case Ending::interrupted:
        return "interrupted";
    case Ending::none:
        break;
    }
    return {};
}

void Budget::check(lua_State* state, std::uint64_t instructions) {
    if (running_ == nullptr) return;
    instructions_ += instructions;
    look();
    if (ending_ != Ending::none) raise(state);
}

void Budget::look() {
    sinceLook_ = 0;
    if (interrupted_)
        end(Ending::interrupted);
    else if (limits_.instructions > 0 && instructions_ >= limits_.instructions)
        end(Ending::instructions);
    else if (Clock::now() >= deadline_)
        end(Ending::time);
}

void Budget::end(Ending ending) {
    if (ending_ == Ending::none) ending_ = ending;
    // Without this, a script that catches each error would get its next 256 instructions.
    if (running_ != nullptr) lua_sethook(running_, hook, LUA_MASKCOUNT, 1);
}

void Budget::raise(lua_State* state) {
    if (endedAt_.empty()) {
        endedAt_ = positionIn(state);
        traceback_ = tracebackOf(state);
    }
    lua_sethook(state, hook, LUA_MASKCOUNT, 1);
    // Not a text: making one could fail for want of memory. What it says is told by this object.
    lua_pushlightuserdata(state, this);
    lua_error(state);
    std::abort();
}

void Budget::hook(lua_State* state, lua_Debug*) {
    Budget& budget = budgetOf(state);
    budget.check(state, budget.ending_ == Ending::none ? instructionsBetweenLooks : 1);
}

Budget::InCoroutine::InCoroutine(Budget& budget, lua_State* coroutine)
    : budget_(budget), outer_(budget.running_) {
    budget_.running_ = coroutine;
    lua_sethook(coroutine, hook, LUA_MASKCOUNT, instructionsBetweenLooks);
}

void* Budget::allocate(void* budget, void* block, std::size_t oldSize, std::size_t newSize) {
    // Without a block, the old size tells what it is for.
    return static_cast<Budget*>(budget)->resize(block, block == nullptr ? 0 : oldSize, newSize);
}

void* Budget::resize(void* block, std::size_t oldSize, std::size_t newSize) {
    if (newSize == 0) {
        std::free(block);
        used_ -= oldSize;
        return nullptr;
    }
    if (newSize <= oldSize) {
        used_ -= oldSize - newSize;
        void* smaller = std::realloc(block, newSize);
        return smaller == nullptr ? block : smaller;
    }
    const std::size_t grown = newSize - oldSize;
    // What C++ makes between executions is not the scripts' doing, and nobody could catch its
    // error.
    const bool full = grown > memoryLimit() || used_ > memoryLimit() - grown;
    if (full && running_ != nullptr) {
        // Lua collects what is garbage and asks once more: the second refusal is final. A script
        // that lives on the brink spends its time on that, so the clock is looked at as well.
        look();
        if (refusedSize_ == newSize) end(Ending::memory);
        refusedSize_ = newSize;
        return nullptr;
    }
    void* bigger = std::realloc(block, newSize);
    if (bigger == nullptr) return nullptr;
    refusedSize_ = 0;
    used_ += grown;
    sinceLook_ += grown;
    if (running_ != nullptr && sinceLook_ > bytesBetweenLooks) look();
    return bigger;
}

std::string positionIn(lua_State* state) {
    lua_Debug record;
    for (int level = 0; lua_getstack(state, level, &record) != 0; ++level) {
        lua_getinfo(state, "Sl", &record);
        if (record.currentline > 0)
            return fmt::format("{}:{}", record.short_src, record.currentline);
    }
    return {};
}

std::string tracebackOf(lua_State* state) {
    constexpr int shownLevels = 20;
    std::string text;
    lua_Debug record;
    for (int level = 0; lua_getstack(state, level, &record) != 0; ++level) {
        if (level == shownLevels) return text + "...\n";
        lua_getinfo(state, "Sln", &record);
        if (*record.what == 'C' && record.name == nullptr) continue;
        text += record.short_src;
        if (record.currentline > 0) text += fmt::format(":{}", record.currentline);
        if (*record.what == 'm')
            text += ": in the script";
        else
            text += record.name != nullptr ? fmt::format(": in '{}'", record.name)
                                           : ": in a function";
        text += '\n';
    }
    return text;
}

} // namespace vlScripts
