#pragma once
#include <vlWinUi/Component.h>
#include <vlWinUi/ListEntry.h>

#include <cstddef>
#include <string>
#include <vector>

namespace vlWinUi {

/** What is wrong with a line of code. */
struct CodeProblem {
    std::size_t line = 1; ///< from 1
    std::string message;
    Emphasis emphasis = Emphasis::Error;
};

/** Where a person is in a text: one edit can show several in turn, each as it was left. */
struct CodeViewState {
    struct Place {
        std::size_t line = 1;   ///< from 1
        std::size_t column = 0; ///< UTF-16 units before it
        friend bool operator==(const Place&, const Place&) = default;
    };
    Place cursor;
    Place anchor; ///< the other end of the selection; the cursor's place when nothing is selected
    std::size_t topLine = 1; ///< the first in view, from 1
    int scrolledRight = 0;   ///< pixels
    friend bool operator==(const CodeViewState&, const CodeViewState&) = default;
};

/** Source code to edit, in a typewriter face with line numbers, coloured by its language. Tab and
 *  Shift+Tab indent, Ctrl+/ comments lines, Ctrl+F finds, Ctrl+H replaces, F3 goes on, Ctrl+G asks
 *  for a line, and Ctrl with plus, minus, 0 or the wheel zooms. The bracket that belongs to the one
 *  at the cursor is marked, and one that none belongs to stands out. Words are offered from two
 *  letters on, or with Ctrl+Space: Tab or Enter takes one, Escape closes the list. Lines end in a
 *  line feed whatever they came with. A text of megabytes is fine. UI thread only. */
class CodeEdit final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::CodeEdit;

    enum class Language { None, Lua, Hlsl };

    /// The cursor and what is in view stay where the text is the same around them. Any other text
    /// than before ends the field's own undo history.
    void setText(vlMemory::StringView text) override;
    std::string getText() const override;
    void setLanguage(Language language);
    void setPlaceHolder(vlMemory::StringView text);
    /// Offered while typing, before the language's own words and those of the text. In place of
    /// those before; what is no word (letters, digits and underscores) is ignored.
    void setCompletions(std::vector<std::string> words);
    void setReadOnly(bool readOnly);
    /// In place of those before: the lines are underlined and marked beside their numbers, and the
    /// message is the tooltip of both. They move with their lines; a line outside is the last one.
    void setProblems(std::vector<CodeProblem> problems);
    /// Brings a line into view, with the cursor at its begin. Lines count from 1; a line outside is
    /// ignored.
    void goToLine(std::size_t line);
    /// That the cursor is in, from 1.
    std::size_t getLine() const;
    CodeViewState getViewState() const;
    /// After setText(); what lies outside of the text is brought to its nearest end.
    void setViewState(const CodeViewState& state);

    /// The person changed the text, at each edit.
    void setChangeCallback(std::function<void()> callback);
    /// The keyboard focus left the field, after an edit.
    void setEditedCallback(std::function<void()> callback);
    /// Asked first when the person wants to undo or redo; true says that it was done, false leaves
    /// it to the field's own history.
    void setUndoCallback(std::function<bool(bool redo)> callback);

private:
    friend class ComponentFactory;
    explicit CodeEdit(std::string name);
};

} // namespace vlWinUi
