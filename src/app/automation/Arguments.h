#pragma once
#include "app/automation/Answers.h"

#include <vlScripts/Interpreter.h>
#include <vlWinUi/Automation.h>

#include <span>
#include <string>
#include <tuple>
#include <utility>

namespace vlEditor {

/** The arguments of a call from a script, taken one after the other. Each take() is false, with
 * what is wrong kept, where the next one is of another kind. */
class Arguments {
public:
    explicit Arguments(std::span<const vlScripts::Value> given) : given_(given) {}

    bool take(std::string& value);
    bool take(std::int64_t& value);
    bool take(int& value);
    bool take(std::uint32_t& value);
    bool take(bool& value);
    bool take(vlScripts::Function& value);
    bool take(vlScripts::Table& value);
    /// "left", "right", "middle" or "none".
    bool take(vlWinUi::Automation::Button& value);
    /// "press", "move" or "release".
    bool take(vlWinUi::Automation::Phase& value);
    /// All that is left, each a text.
    bool take(vlWinUi::Automation::Labels& value);
    /// Nothing where the script gave none, or nil.
    template <class T> bool take(std::optional<T>& value) {
        if (next_ < given_.size() && !given_[next_].isNil()) return take(value.emplace());
        ++next_;
        return true;
    }

    bool isEmpty() const { return next_ >= given_.size(); }
    const std::string& getProblem() const { return problem_; }

private:
    const vlScripts::Value& next() const;
    bool expected(const char* what);

    std::span<const vlScripts::Value> given_;
    std::size_t next_ = 0;
    std::string problem_;
};

/// A function for scripts that takes its arguments by their types.
template <class... A, class F>
vlScripts::NativeFunction withArguments(std::string name, F function) {
    return [name = std::move(name), function = std::move(function)](
                   std::span<const vlScripts::Value> given) -> Answers::Answer {
        Arguments arguments(given);
        std::tuple<A...> values;
        const auto takeAll = [&](auto&... value) { return (arguments.take(value) && ...); };
        if (!std::apply(takeAll, values))
            return vlCommon::fail(name + ": " + arguments.getProblem());
        if (!arguments.isEmpty()) return vlCommon::fail(name + ": too many arguments");
        return std::apply(function, std::move(values));
    };
}

/// Under its path, with arguments of these types.
template <class... A, class F>
void addFunction(vlScripts::Interpreter& interpreter, const char* path, F function) {
    interpreter.addFunction(path, withArguments<A...>(path, std::move(function)));
}

} // namespace vlEditor
