#pragma once
#include <vlWinUi/Component.h>
#include <vlWinUi/ListEntry.h>

#include <optional>
#include <vector>

namespace vlWinUi {

/** A list of lines of which at most one is selected unless several may be; a hundred thousand lines
 * are fine, added and removed one by one too. Typing jumps to the line that begins so, and Ctrl+C
 * copies what is selected. The selection stays with its entry while others come and go. A label of
 * several lines is shown as such; one that is too long ends in an ellipsis and is whole in the
 * tooltip. UI thread only. */
class ListBox final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::ListBox;

    /// The selected label; setting it is selectByLabel().
    void setText(vlMemory::StringView text) override;
    std::string getText() const override;

    void addEntry(vlMemory::StringView label, std::any data = {});
    /// False when no entry has that label.
    bool removeEntry(vlMemory::StringView label);
    bool renameEntry(vlMemory::StringView label, vlMemory::StringView newLabel);
    /// Paints a dot at the right end of the line, which stays with the entry when it is renamed and
    /// goes with it. The reason is shown in the line's tooltip, and read to those who cannot see
    /// it. False when no entry has that label.
    bool setEntryMark(vlMemory::StringView label, bool marked, vlMemory::StringView reason = {});
    bool isEntryMarked(vlMemory::StringView label) const;
    /// Has the line stand out, likewise.
    bool setEntryEmphasis(vlMemory::StringView label,
                          Emphasis emphasis,
                          vlMemory::StringView reason = {});
    /// What was selected stays so where its label is found again; no entry is marked.
    void setEntries(std::vector<ListEntry> entries);
    /// Adds a line as a log does: one like the last only raises that one's count. What comes in one
    /// turn of the event loop is shown together, while the methods here know of it at once.
    void append(ListEntry entry);
    /// How many entries append() leaves: the oldest go first. 0, as at first, leaves all.
    void setMostEntries(std::size_t count);
    void clear();
    std::size_t getEntryCount() const;
    const ListEntry& getEntry(std::size_t index) const;
    /// Nothing when no entry has that label.
    std::optional<std::size_t> find(vlMemory::StringView label) const;

    /// Of several, the line that the keyboard is on if it is selected, else the first.
    std::optional<std::size_t> getSelectedIndex() const;
    /// That one. Null when nothing is selected; valid until the entries change.
    const ListEntry* getSelectedEntry() const;
    /// Only that one; nothing, or an index outside, unselects all.
    void select(std::optional<std::size_t> index);
    /// False, with the selection unchanged, when no entry has that label.
    bool selectByLabel(vlMemory::StringView label);
    /// Lets the person select several lines, with Shift, Ctrl and Ctrl+A.
    void setMultiSelection(bool several);
    /// In their order; those that the filter hides are not selected.
    std::vector<std::size_t> getSelectedIndices() const;
    /// Quick, however many are selected.
    bool isSelected(std::size_t index) const;
    /// An entry whose label has several lines counts that often. Quick, too.
    std::size_t getSelectedLineCount() const;
    /// In place of what was selected. The first one given is the one of getSelectedIndex(), and the
    /// only one unless several may be; indices outside are passed over.
    void setSelectedIndices(std::vector<std::size_t> indices);
    void selectAll();
    /// The selected lines, a line feed between each two.
    std::string getSelectedText() const;
    /// To the clipboard, which stays as it is when nothing is selected.
    void copySelection();
    /// The person chose another line, or others; not called for what code selects.
    void setSelectionCallback(std::function<void(std::optional<std::size_t> index)> callback);
    /// Double click or Enter on an entry.
    void setActivationCallback(std::function<void(std::size_t index)> callback);

    /// Shows only the entries that contain the text, whatever the case; an empty text shows all.
    void setFilter(vlMemory::StringView text);
    /// The entries that the filter leaves.
    std::size_t getShownCount() const;
    /// Rows as close as lines of text, to read rather than to click; to be set before entries come.
    void setCompact(bool compact);
    /// Keeps the newest line in view as long as the person has not scrolled up; for logs.
    void setFollowEnd(bool follow);
    /// False once the person has scrolled up, until the end is in view again.
    bool isFollowingEnd() const;
    /// Places a component above the lines, inside the list's frame and as wide as they are, in
    /// pixels of height.
    void setHeader(Component& header, unsigned height);
    /// The person asked for a menu, by mouse or keyboard.
    void setMenuCallback(std::function<void(Point screen)> callback);
    /// Text shown while there is no entry.
    void setPlaceHolder(vlMemory::StringView text);

private:
    friend class ComponentFactory;
    explicit ListBox(std::string name);
};

} // namespace vlWinUi
