#include "interfaces/kinds/KindTexts.h"

#include <fmt/format.h>

namespace vlEditor {

std::string KindTexts::thing() const {
    std::string text(subject);
    if (!text.empty() && text.front() >= 'A' && text.front() <= 'Z')
        text.front() = static_cast<char>(text.front() - 'A' + 'a');
    return text;
}

std::string KindTexts::creationPart(std::string_view part) const {
    return fmt::format("EDITOR_VALIDATION_{}{}", part, creation);
}

std::string couldNotCreateLine(const KindTexts& texts, std::string_view name) {
    return fmt::format("Could not create {} named '{}'. Aborting.", texts.thing(), name);
}

std::string couldNotSaveLine(const KindTexts& texts, std::string_view name, std::string_view path) {
    return fmt::format("Could not save {} '{}' to file '{}'. Aborting.", texts.thing(), name, path);
}

std::string notSavedLine(const KindTexts& texts, std::string_view name, std::string_view path) {
    return texts.notSaved.empty() ? couldNotSaveLine(texts, name, path)
                                  : std::string(texts.notSaved);
}

std::string savedLine(const KindTexts& texts, std::string_view name, std::string_view path) {
    if (!texts.saved.empty()) return std::string(texts.saved);
    return fmt::format("Saved {} '{}' to {}{}", texts.thing(), name, path, texts.lineEnd);
}

std::string alreadyExistsLine(const KindTexts& texts, std::string_view name) {
    return fmt::format("{} already existant : {}{}", texts.subject, name, texts.lineEnd);
}

std::string createdLine(const KindTexts& texts, std::string_view name) {
    return fmt::format("{} created : {}{}", texts.subject, name, texts.lineEnd);
}

std::string loadedLine(const KindTexts& texts, std::string_view name) {
    return fmt::format("{} loaded : {}{}", texts.subject, name, texts.lineEnd);
}

std::string missingLine(const KindTexts& texts, std::string_view name) {
    return fmt::format("There is no {}.", thingNamed(texts, name));
}

std::string reservedLine(const KindTexts& texts, std::string_view name) {
    return fmt::format("{} is the engine's own and stays as it is.", thingNamed(texts, name));
}

std::string thingNamed(const KindTexts& texts, std::string_view name) {
    return fmt::format("{} '{}'", texts.thing(), name);
}

std::string withExtension(const KindTexts& texts, std::string path) {
    const std::string ending = fmt::format(".{}", texts.extension);
    return path.ends_with(ending) ? path : path + ending;
}

std::string deleteQuestion(const KindTexts& texts, std::string_view name) {
    return fmt::format("{}{}{}", texts.deleteStart, name, texts.deleteEnd);
}

} // namespace vlEditor
