#pragma once
#include <vlWinUi/Component.h>
#include <vlWinUi/ListEntry.h>

#include <optional>
#include <vector>

namespace vlWinUi {

/** One choice of a few, in a list that folds out. Nothing is selected until something is; the
 * selection stays with its entry while others come and go. UI thread only. */
class ComboBox final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::ComboBox;

    /// The selected label; setting it is selectByLabel().
    void setText(vlMemory::StringView text) override;
    std::string getText() const override;

    void addEntry(vlMemory::StringView label, std::any data = {});
    /// False when no entry has that label.
    bool removeEntry(vlMemory::StringView label);
    bool renameEntry(vlMemory::StringView label, vlMemory::StringView newLabel);
    void setEntries(std::vector<ListEntry> entries);
    void clear();
    std::size_t getEntryCount() const;
    const ListEntry& getEntry(std::size_t index) const;
    /// Nothing when no entry has that label.
    std::optional<std::size_t> find(vlMemory::StringView label) const;

    std::optional<std::size_t> getSelectedIndex() const;
    /// Null when nothing is selected; valid until the entries change.
    const ListEntry* getSelectedEntry() const;
    /// Nothing, or an index outside, unselects.
    void select(std::optional<std::size_t> index);
    /// False, with the selection unchanged, when no entry has that label.
    bool selectByLabel(vlMemory::StringView label);
    /// Nothing is selected, and "Mixed values" is shown in its place until something is, or until
    /// select() says that nothing is.
    void setMixed();
    bool isMixed() const;
    /// The person chose; not called for what code selects.
    void setSelectionCallback(std::function<void(std::size_t index)> callback);

private:
    friend class ComponentFactory;
    explicit ComboBox(std::string name);
};

} // namespace vlWinUi
