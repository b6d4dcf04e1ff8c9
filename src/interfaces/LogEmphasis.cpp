#include "interfaces/LogEmphasis.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

namespace vlEditor {
namespace {

constexpr std::string_view commandErrors = "[CommandLineInterpreter] ";
constexpr std::array<std::string_view, 15> errorWords{"error",
                                                      "errors",
                                                      "failed",
                                                      "failure",
                                                      "cannot",
                                                      "could not",
                                                      "not found",
                                                      "invalid",
                                                      "refused",
                                                      "aborting",
                                                      "is missing",
                                                      "was lost",
                                                      "attempt to",
                                                      "traceback",
                                                      "does not exist"};
constexpr std::array<std::string_view, 7> warningWords{
        "warning", "warnings", "ignored", "left out", "not available", "deprecated", "was dropped"};
// Nobody writes them further behind, and the longest line must not cost more than a short one.
constexpr std::size_t longestLook = 512;

bool isLetter(char c) {
    return c >= 'a' && c <= 'z';
}

bool hasWord(std::string_view text, std::string_view word) {
    for (std::size_t at = text.find(word); at != std::string_view::npos;
         at = text.find(word, at + 1)) {
        const std::size_t end = at + word.size();
        const bool begins = at == 0 || !isLetter(text[at - 1]);
        if (begins && (end == text.size() || !isLetter(text[end]))) return true;
    }
    return false;
}

bool hasAny(std::string_view text, std::span<const std::string_view> words) {
    return std::ranges::any_of(words, [&](std::string_view word) { return hasWord(text, word); });
}

} // namespace

vlWinUi::Emphasis emphasisOf(std::string_view line) {
    if (line.starts_with(commandErrors)) return vlWinUi::Emphasis::Error;
    std::string text(line.substr(0, longestLook));
    std::ranges::transform(text, text.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    if (hasAny(text, errorWords)) return vlWinUi::Emphasis::Error;
    return hasAny(text, warningWords) ? vlWinUi::Emphasis::Warning : vlWinUi::Emphasis::None;
}

} // namespace vlEditor
