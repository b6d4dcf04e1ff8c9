#pragma once
#include <vlWinUi/Component.h>
#include <vlWinUi/TreeItem.h>

#include <cstdint>
#include <vector>

namespace vlWinUi {

/** Lines in a hierarchy, each known by its id. Which lines are folded out and which are selected is
 * kept by id when lines are renamed, moved or set anew. UI thread only. */
class TreeView final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::TreeView;

    /// The first selected label; setting it does nothing.
    void setText(vlMemory::StringView text) override;
    std::string getText() const override;

    /// Logged and ignored: an id of 0 or in use, an unknown parent.
    void addItem(const TreeItem& item);
    /// With all below it. False when there is no such item, as below.
    bool removeItem(std::uint64_t id);
    bool renameItem(std::uint64_t id, vlMemory::StringView label);
    /// Behind the last child of the new parent. False too when that lies below the item.
    bool moveItem(std::uint64_t id, std::uint64_t newParent);
    /// In place of all; a parent may come after its children.
    void setItems(const std::vector<TreeItem>& items);
    void clear();
    std::size_t getItemCount() const;
    bool hasItem(std::uint64_t id) const;
    std::string getLabel(std::uint64_t id) const;
    std::vector<std::uint64_t> getChildren(std::uint64_t parent) const;

    /// An item is folded out at first if it is on the first level.
    void setExpanded(std::uint64_t id, bool expanded);
    bool isExpanded(std::uint64_t id) const;

    void setMultiSelection(bool several);
    /// In the order of the lines; unknown ids are passed over. Folds out what is around them.
    void select(const std::vector<std::uint64_t>& ids);
    std::vector<std::uint64_t> getSelection() const;

    void setSelectionCallback(std::function<void(const std::vector<std::uint64_t>&)> callback);
    /// Double click or Enter on an item.
    void setActivationCallback(std::function<void(std::uint64_t id)> callback);
    /// Right click, or the menu key; the id is ROOT beside all items.
    void setMenuCallback(std::function<void(std::uint64_t id, Point screen)> callback);
    /// Text shown while there is no item.
    void setPlaceHolder(vlMemory::StringView text);

private:
    friend class ComponentFactory;
    explicit TreeView(std::string name);
};

} // namespace vlWinUi
