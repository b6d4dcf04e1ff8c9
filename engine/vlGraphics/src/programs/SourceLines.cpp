#include "programs/SourceLines.h"

#include <algorithm>
#include <optional>

namespace vlGraphics {

using vlMemory::StringView;

namespace {

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

} // namespace

bool LineReader::isWordCharacter(char c) {
    return c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool LineReader::next(std::vector<StringView>& tokens) {
    tokens.clear();
    if (at_ >= text_.size()) return false;
    line_ = nextLine_;
    while (at_ < text_.size()) {
        const char c = text_[at_];
        if (c == '\n') {
            ++nextLine_;
            ++at_;
            return true;
        }
        if (skipJoin() || skipComment()) continue;
        if (isBlank(c)) {
            ++at_;
        } else {
            tokens.push_back(takeToken());
        }
    }
    return true;
}

bool LineReader::skipJoin() {
    const StringView rest = text_.substr(at_);
    const std::size_t length = rest.starts_with("\\\n") ? 2 : rest.starts_with("\\\r\n") ? 3 : 0;
    if (length > 0) ++nextLine_;
    at_ += length;
    return length > 0;
}

bool LineReader::skipComment() {
    const StringView rest = text_.substr(at_);
    std::size_t length = 0;
    if (rest.starts_with("//")) {
        length = std::min(rest.find('\n'), rest.size());
    } else if (rest.starts_with("/*")) {
        const std::size_t end = rest.find("*/", 2);
        length = end == StringView::npos ? rest.size() : end + 2;
    }
    nextLine_ += static_cast<std::size_t>(
            std::count(rest.begin(), rest.begin() + std::ptrdiff_t(length), '\n'));
    at_ += length;
    return length > 0;
}

StringView LineReader::takeToken() {
    const StringView rest = text_.substr(at_);
    std::size_t length = 1;
    if (rest[0] == '"') {
        length = std::min(rest.find_first_of("\"\n", 1), rest.size());
        if (length < rest.size() && rest[length] == '"') ++length;
    } else if (isWordCharacter(rest[0])) {
        while (length < rest.size() && isWordCharacter(rest[length]))
            ++length;
    }
    at_ += length;
    return rest.substr(0, length);
}

StringView includeGuardOf(StringView text) {
    LineReader reader(text);
    std::vector<StringView> tokens;
    StringView guard;
    std::size_t line = 0; // of those that are not blank
    std::size_t open = 0; // conditions
    while (reader.next(tokens)) {
        if (tokens.empty()) continue;
        const bool isDirective = tokens.size() >= 2 && tokens[0] == "#";
        const StringView word = isDirective ? tokens[1] : StringView();
        if (++line == 1) {
            if (word != "ifndef" || tokens.size() != 3) return {};
            guard = tokens[2];
        } else if (line == 2) {
            if (word != "define" || tokens.size() != 3 || tokens[2] != guard) return {};
        } else if (open == 0 || (open == 1 && (word == "else" || word == "elif"))) {
            return {};
        }
        if (word == "undef" && tokens.size() > 2 && tokens[2] == guard) return {};
        if (word == "if" || word == "ifdef" || word == "ifndef") ++open;
        if (word == "endif") --open;
    }
    return open == 0 ? guard : StringView();
}

} // namespace vlGraphics
