#include "TreeModel.h"

#include "Text.h"

#include <algorithm>
#include <unordered_set>

namespace vlWinUi {

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
    const auto& children = childrenOf(idOf(parent));
    const auto at = static_cast<std::size_t>(row);
    if (row < 0 || column != 0 || at >= children.size()) return {};
    return createIndex(row, column, static_cast<quintptr>(children[at]));
}

QModelIndex TreeModel::parent(const QModelIndex& index) const {
    return index.isValid() ? indexOf(parentOf(idOf(index))) : QModelIndex();
}

int TreeModel::rowCount(const QModelIndex& parent) const {
    return static_cast<int>(childrenOf(idOf(parent)).size());
}

QVariant TreeModel::data(const QModelIndex& index, int role) const {
    const auto found = nodes_.find(idOf(index));
    if (found == nodes_.end() || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
    return toQt(found->second.label);
}

QModelIndex TreeModel::indexOf(std::uint64_t id) const {
    return has(id) ? createIndex(rowOf(id), 0, static_cast<quintptr>(id)) : QModelIndex();
}

std::uint64_t TreeModel::idOf(const QModelIndex& index) {
    return index.isValid() ? static_cast<std::uint64_t>(index.internalId()) : TreeItem::ROOT;
}

std::uint64_t TreeModel::parentOf(std::uint64_t id) const {
    const auto found = nodes_.find(id);
    return found == nodes_.end() ? TreeItem::ROOT : found->second.parent;
}

const std::vector<std::uint64_t>& TreeModel::childrenOf(std::uint64_t id) const {
    static const std::vector<std::uint64_t> NONE;
    if (id == TreeItem::ROOT) return top_;
    const auto found = nodes_.find(id);
    return found == nodes_.end() ? NONE : found->second.children;
}

bool TreeModel::isInside(std::uint64_t id, std::uint64_t ancestor) const {
    for (std::uint64_t at = id; at != TreeItem::ROOT; at = parentOf(at))
        if (at == ancestor) return true;
    return false;
}

std::vector<std::uint64_t>& TreeModel::childList(std::uint64_t id) {
    return id == TreeItem::ROOT ? top_ : nodes_.at(id).children;
}

std::vector<std::uint64_t>& TreeModel::siblingsOf(std::uint64_t id) {
    return childList(nodes_.at(id).parent);
}

int TreeModel::rowOf(std::uint64_t id) const {
    const auto& siblings = childrenOf(parentOf(id));
    return static_cast<int>(std::ranges::find(siblings, id) - siblings.begin());
}

void TreeModel::add(const TreeItem& item) {
    auto& siblings = childList(item.parent);
    const int row = static_cast<int>(siblings.size());
    beginInsertRows(indexOf(item.parent), row, row);
    siblings.push_back(item.id);
    nodes_.emplace(item.id, Node{item.parent, item.label, {}});
    endInsertRows();
}

void TreeModel::remove(std::uint64_t id) {
    const int row = rowOf(id);
    beginRemoveRows(indexOf(parentOf(id)), row, row);
    std::erase(siblingsOf(id), id);
    forget(id);
    endRemoveRows();
}

void TreeModel::forget(std::uint64_t id) {
    std::vector<std::uint64_t> open{id};
    while (!open.empty()) {
        const auto node = nodes_.extract(open.back());
        open.pop_back();
        const auto& children = node.mapped().children;
        open.insert(open.end(), children.begin(), children.end());
    }
}

void TreeModel::rename(std::uint64_t id, std::string label) {
    nodes_.at(id).label = std::move(label);
    emit dataChanged(indexOf(id), indexOf(id));
}

void TreeModel::move(std::uint64_t id, std::uint64_t newParent) {
    const int row = rowOf(id);
    const int end = static_cast<int>(childrenOf(newParent).size());
    // Qt refuses a move to where the item already is.
    if (!beginMoveRows(indexOf(parentOf(id)), row, row, indexOf(newParent), end)) return;
    std::erase(siblingsOf(id), id);
    nodes_.at(id).parent = newParent;
    childList(newParent).push_back(id);
    endMoveRows();
}

std::vector<TreeItem> TreeModel::reset(const std::vector<TreeItem>& items) {
    beginResetModel();
    nodes_.clear();
    top_.clear();
    std::vector<TreeItem> refused;
    std::vector<std::uint64_t> order;
    for (const TreeItem& item : items) {
        const bool good = item.id != TreeItem::ROOT &&
                          nodes_.emplace(item.id, Node{item.parent, item.label, {}}).second;
        if (good)
            order.push_back(item.id);
        else
            refused.push_back(item);
    }
    for (const std::uint64_t id : order) {
        const std::uint64_t parent = parentOf(id);
        if (parent == TreeItem::ROOT || has(parent)) childList(parent).push_back(id);
    }
    dropUnreachable(order, refused);
    endResetModel();
    return refused;
}

/// What hangs below an unknown parent, or in a ring, cannot be shown.
void TreeModel::dropUnreachable(const std::vector<std::uint64_t>& order,
                                std::vector<TreeItem>& refused) {
    std::unordered_set<std::uint64_t> reached;
    std::vector<std::uint64_t> open = top_;
    while (!open.empty()) {
        const std::uint64_t id = open.back();
        open.pop_back();
        reached.insert(id);
        const auto& children = childrenOf(id);
        open.insert(open.end(), children.begin(), children.end());
    }
    for (const std::uint64_t id : order) {
        if (reached.contains(id)) continue;
        auto node = nodes_.extract(id);
        refused.push_back({id, node.mapped().parent, std::move(node.mapped().label)});
    }
}

} // namespace vlWinUi
