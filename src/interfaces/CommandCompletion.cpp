#include "interfaces/CommandCompletion.h"

#include "core/MessageOrchestrator.h"
#include "interfaces/CompleteCommandMessage.h"
#include "interfaces/PickLists.h"

#include <algorithm>
#include <set>

namespace vlEditor {
namespace {

bool isNamePart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// Where the text that is still open begins, behind its quote.
std::optional<std::size_t> openQuote(std::string_view text) {
    std::optional<std::size_t> open;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (open && text[i] == '\\')
            ++i;
        else if (open && text[i] == text[*open - 1])
            open.reset();
        else if (!open && (text[i] == '"' || text[i] == '\''))
            open = i + 1;
    }
    return open;
}

std::vector<std::string> resourcesBeginningWith(const std::string& begin) {
    std::set<std::string> names;
    for (const auto& list : PickLists::getInstance().all()) {
        for (const std::string& name : list->getEntries()) {
            if (name.starts_with(begin)) names.insert(name);
        }
    }
    return {names.begin(), names.end()};
}

} // namespace

std::optional<CommandCompletion::Place> CommandCompletion::find(std::string_view text) {
    if (const auto quote = openQuote(text))
        return Place{{}, std::string(text.substr(*quote)), true};
    Place place;
    std::size_t end = text.size();
    for (bool last = true;; last = false) {
        std::size_t begin = end;
        while (begin > 0 && isNamePart(text[begin - 1]))
            --begin;
        std::string name(text.substr(begin, end - begin));
        // "1." is a number and "f()." a call: what follows them is not known here.
        const bool isName = !name.empty() && !(name[0] >= '0' && name[0] <= '9');
        if (!isName && !(last && name.empty())) return std::nullopt;
        if (last)
            place.begin = std::move(name);
        else
            place.tables.push_back(std::move(name));
        if (begin == 0 || (text[begin - 1] != '.' && text[begin - 1] != ':')) break;
        end = begin - 1;
    }
    if (place.begin.empty() && place.tables.empty()) return std::nullopt;
    std::ranges::reverse(place.tables);
    return place;
}

bool CommandCompletion::request(std::string_view textBeforeCursor, const std::string& root) {
    const auto place = find(textBeforeCursor);
    if (!place) return false;
    CompleteCommandMessage message(root, place->tables, place->begin);
    if (place->quoted) {
        message.candidates = resourcesBeginningWith(place->begin);
        message.runOnUiThread();
    } else {
        postToGraphics(std::move(message));
    }
    return true;
}

std::string CommandCompletion::commonBeginning(const std::vector<std::string>& names) {
    std::string common = names.front();
    for (const std::string& name : names) {
        const auto differs = std::ranges::mismatch(common, name);
        common.erase(differs.in1, common.end());
    }
    return common;
}

} // namespace vlEditor
