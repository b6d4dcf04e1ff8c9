#include "app/automation/Arguments.h"

#include <array>
#include <limits>

namespace vlEditor {
namespace {

using Automation = vlWinUi::Automation;

template <class E, std::size_t N>
bool choose(const std::string* text,
            const std::array<std::pair<std::string_view, E>, N>& words,
            E& value) {
    if (text == nullptr) return false;
    for (const auto& [word, meaning] : words) {
        if (word != *text) continue;
        value = meaning;
        return true;
    }
    return false;
}

template <class Int> bool fits(std::optional<std::int64_t> given, Int& value) {
    if (!given || !std::in_range<Int>(*given)) return false;
    value = static_cast<Int>(*given);
    return true;
}

} // namespace

const vlScripts::Value& Arguments::next() const {
    static const vlScripts::Value none;
    return next_ < given_.size() ? given_[next_] : none;
}

bool Arguments::expected(const char* what) {
    problem_ = "argument " + std::to_string(next_ + 1) + ": expected " + what + ", got " +
               next().describeKind();
    return false;
}

bool Arguments::take(std::string& value) {
    const std::string* text = next().asText();
    if (text == nullptr) return expected("a text");
    value = *text;
    ++next_;
    return true;
}

bool Arguments::take(std::int64_t& value) {
    if (!fits(next().asInteger(), value)) return expected("a whole number");
    ++next_;
    return true;
}

bool Arguments::take(int& value) {
    if (!fits(next().asInteger(), value)) return expected("a whole number");
    ++next_;
    return true;
}

bool Arguments::take(std::uint32_t& value) {
    if (!fits(next().asInteger(), value)) return expected("a whole number from 0");
    ++next_;
    return true;
}

bool Arguments::take(bool& value) {
    const auto given = next().asBool();
    if (!given) return expected("true or false");
    value = *given;
    ++next_;
    return true;
}

bool Arguments::take(vlScripts::Function& value) {
    const auto* given = next().asFunction();
    if (given == nullptr) return expected("a function");
    value = *given;
    ++next_;
    return true;
}

bool Arguments::take(vlScripts::Table& value) {
    const auto* given = next().asTable();
    if (given == nullptr) return expected("a table");
    value = *given;
    ++next_;
    return true;
}

bool Arguments::take(Automation::Button& value) {
    using Button = Automation::Button;
    constexpr std::array words{std::pair{std::string_view("left"), Button::Left},
                               std::pair{std::string_view("right"), Button::Right},
                               std::pair{std::string_view("middle"), Button::Middle},
                               std::pair{std::string_view("none"), Button::None}};
    if (!choose(next().asText(), words, value))
        return expected("\"left\", \"right\", \"middle\" or \"none\"");
    ++next_;
    return true;
}

bool Arguments::take(Automation::Phase& value) {
    using Phase = Automation::Phase;
    constexpr std::array words{std::pair{std::string_view("press"), Phase::Press},
                               std::pair{std::string_view("move"), Phase::Move},
                               std::pair{std::string_view("release"), Phase::Release}};
    if (!choose(next().asText(), words, value))
        return expected("\"press\", \"move\" or \"release\"");
    ++next_;
    return true;
}

bool Arguments::take(Automation::Labels& value) {
    while (!isEmpty()) {
        if (!take(value.emplace_back())) return false;
    }
    return true;
}

} // namespace vlEditor
