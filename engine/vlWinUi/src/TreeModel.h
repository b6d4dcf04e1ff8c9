#pragma once
#include <vlWinUi/TreeItem.h>

#include <QAbstractItemModel>

#include <memory>
#include <unordered_map>
#include <vector>

namespace vlWinUi {

/** The items of a TreeView as its view reads them. */
class TreeModel final : public QAbstractItemModel {
public:
    using QAbstractItemModel::QAbstractItemModel;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& = {}) const override { return 1; }
    QVariant data(const QModelIndex& index, int role) const override;

    std::size_t size() const { return nodes_.size(); }
    bool has(std::uint64_t id) const { return nodes_.contains(id); }
    QModelIndex indexOf(std::uint64_t id) const;
    /// ROOT for an invalid index.
    static std::uint64_t idOf(const QModelIndex& index);
    std::uint64_t parentOf(std::uint64_t id) const;
    const std::vector<std::uint64_t>& childrenOf(std::uint64_t id) const;
    const std::string& labelOf(std::uint64_t id) const { return nodes_.at(id).label; }
    bool isInside(std::uint64_t id, std::uint64_t ancestor) const;

    /// The callers have checked that the ids are good.
    void add(const TreeItem& item);
    void remove(std::uint64_t id);
    void rename(std::uint64_t id, std::string label);
    void move(std::uint64_t id, std::uint64_t newParent);
    /// What is unusable is left out and returned.
    std::vector<TreeItem> reset(const std::vector<TreeItem>& items);

private:
    struct Node {
        std::uint64_t parent = TreeItem::ROOT;
        std::string label;
        std::vector<std::uint64_t> children;
    };

    std::vector<std::uint64_t>& siblingsOf(std::uint64_t id);
    std::vector<std::uint64_t>& childList(std::uint64_t id);
    int rowOf(std::uint64_t id) const;
    void forget(std::uint64_t id);
    void dropUnreachable(const std::vector<std::uint64_t>& order, std::vector<TreeItem>& refused);

    std::unordered_map<std::uint64_t, Node> nodes_;
    std::vector<std::uint64_t> top_;
};

} // namespace vlWinUi
