#pragma once
#include <array>
#include <string>
#include <string_view>

namespace vlEditor {

/** A pick list that offers a kind's resources, and what stands before each name in it. */
struct KindPickList {
    std::string_view name;
    std::string_view entryStart = {};
};

/** Every text of a kind. What follows from these is made where it is needed. */
struct KindTexts {
    std::string_view kind;   ///< as its classes and scripts call it: "BlendState"
    std::string_view title;  ///< label of the window's tab
    std::string_view prefix; ///< base name of windows, before their number
    std::string_view creation;
    std::string_view creationTitle;
    std::string_view explorer;
    std::string_view filterLabel;
    std::string_view extension;
    std::array<KindPickList, 2> pickLists; ///< the second may have no name
    std::string_view subject;              ///< begins log lines: "Blend state"
    std::string_view deleteStart;          ///< of the question, up to the name
    std::string_view deleteEnd = "'.\nAre you sure ?";
    std::string_view renameButton = "_NAME_OK";
    std::string_view saveButton = "_SAVE";
    std::string_view saved = {};    ///< the whole line, where it is not made of the subject
    std::string_view notSaved = {}; ///< likewise; it stands behind the one that says why
    /// Lines such as "Blend state created : a." are logged; failures always are.
    bool tellsSuccess = true;
    std::string_view lineEnd = "."; ///< of those lines
    /// "Save" writes to a file called as the resource, in the folder that was chosen last.
    bool savesUnderOwnName = false;

    /// Within a line: "blend state".
    std::string thing() const;
    /// "EDITOR_VALIDATION_NAME_EDIT_BLEND_CREATION" for "NAME_EDIT_".
    std::string creationPart(std::string_view part) const;
};

// The lines that every kind logs.
std::string couldNotCreateLine(const KindTexts& texts, std::string_view name);
std::string couldNotSaveLine(const KindTexts& texts, std::string_view name, std::string_view path);
/// What is told of saving that failed: couldNotSaveLine() unless the kind says otherwise.
std::string notSavedLine(const KindTexts& texts, std::string_view name, std::string_view path);
std::string savedLine(const KindTexts& texts, std::string_view name, std::string_view path);
std::string alreadyExistsLine(const KindTexts& texts, std::string_view name);
std::string createdLine(const KindTexts& texts, std::string_view name);
std::string loadedLine(const KindTexts& texts, std::string_view name);
/// For what is no longer there to be changed.
std::string missingLine(const KindTexts& texts, std::string_view name);
/// For what the engine or the editor made for itself.
std::string reservedLine(const KindTexts& texts, std::string_view name);
/// "blend state 'a'"
std::string thingNamed(const KindTexts& texts, std::string_view name);
/// "rust" is "rust.vlsa", as is "rust.vlsa".
std::string withExtension(const KindTexts& texts, std::string path);
/// "Deleting Blend State 'a'.\nAre you sure ?"
std::string deleteQuestion(const KindTexts& texts, std::string_view name);

} // namespace vlEditor
