#include "Call.h"
#include "Log.h"
#include "Native.h"
#include "PlaceHolder.h"
#include "Text.h"
#include "TreeModel.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/TreeView.h>

#include <QContextMenuEvent>
#include <QTreeView>

#include <algorithm>
#include <unordered_set>

namespace vlWinUi {
namespace {

class ItemView final : public QTreeView {
public:
    QString placeHolder;

    QSize minimumSizeHint() const override { return {40, 40}; }
    QSize sizeHint() const override { return {160, 120}; }

protected:
    void paintEvent(QPaintEvent* event) override {
        QTreeView::paintEvent(event);
        if (model()->rowCount() == 0) paintPlaceHolder(*this, placeHolder);
    }
};

struct TreeViewNative final : Native {
    TreeViewNative();
    ItemView& view() const { return *static_cast<ItemView*>(widget); }

    std::vector<std::uint64_t> selection() const;
    void select(const std::vector<std::uint64_t>& ids);
    void showExpanded(std::uint64_t id);
    void askForMenu(QPoint at);
    void forgetGone();

    TreeModel* model = nullptr;
    std::unordered_set<std::uint64_t> expanded; ///< also of items that have no children yet
    std::function<void(const std::vector<std::uint64_t>&)> selected;
    std::function<void(std::uint64_t)> activated;
    std::function<void(std::uint64_t, Point)> menu;
};

TreeViewNative::TreeViewNative() : Native(new ItemView) {
    model = new TreeModel(&view());
    view().setModel(model);
    view().setHeaderHidden(true);
    view().setUniformRowHeights(true);
    view().setIndentation(16);
    view().setEditTriggers(QAbstractItemView::NoEditTriggers);
    view().setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view().setExpandsOnDoubleClick(false);
    view().setContextMenuPolicy(Qt::CustomContextMenu);
    listenTo(view().viewport());
    connect(view().selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (quiet == 0) call(selected, selection());
    });
    connect(&view(), &QTreeView::activated, this, [this](const QModelIndex& index) {
        call(activated, TreeModel::idOf(index));
    });
    connect(&view(), &QTreeView::customContextMenuRequested, this, [this](const QPoint& at) {
        askForMenu(at);
    });
    connect(&view(), &QTreeView::expanded, this, [this](const QModelIndex& index) {
        if (quiet == 0) expanded.insert(TreeModel::idOf(index));
    });
    connect(&view(), &QTreeView::collapsed, this, [this](const QModelIndex& index) {
        if (quiet == 0) expanded.erase(TreeModel::idOf(index));
    });
}

std::vector<std::uint64_t> TreeViewNative::selection() const {
    const QModelIndexList marked = view().selectionModel()->selectedIndexes();
    std::vector<std::uint64_t> ids;
    if (marked.size() < 2) {
        for (const QModelIndex& index : marked)
            ids.push_back(TreeModel::idOf(index));
        return ids;
    }
    std::vector<std::uint64_t> open(model->childrenOf(TreeItem::ROOT));
    std::ranges::reverse(open);
    while (!open.empty()) {
        const std::uint64_t id = open.back();
        open.pop_back();
        if (view().selectionModel()->isSelected(model->indexOf(id))) ids.push_back(id);
        const auto& children = model->childrenOf(id);
        open.insert(open.end(), children.rbegin(), children.rend());
    }
    return ids;
}

void TreeViewNative::select(const std::vector<std::uint64_t>& ids) {
    const Quiet guard(quiet);
    QItemSelectionModel& marked = *view().selectionModel();
    marked.clear();
    for (const std::uint64_t id : ids) {
        if (!model->has(id)) continue;
        for (std::uint64_t at = model->parentOf(id); at != TreeItem::ROOT;
             at = model->parentOf(at)) {
            expanded.insert(at);
            showExpanded(at);
        }
        const QModelIndex index = model->indexOf(id);
        if (!marked.hasSelection()) marked.setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        marked.select(index, QItemSelectionModel::Select);
        view().scrollTo(index);
    }
}

void TreeViewNative::showExpanded(std::uint64_t id) {
    const Quiet guard(quiet);
    view().setExpanded(model->indexOf(id), expanded.contains(id));
}

void TreeViewNative::askForMenu(QPoint at) {
    const QPoint screen = view().viewport()->mapToGlobal(at);
    call(menu, TreeModel::idOf(view().indexAt(at)), Point{screen.x(), screen.y()});
}

void TreeViewNative::forgetGone() {
    std::erase_if(expanded, [this](std::uint64_t id) { return !model->has(id); });
}

} // namespace

TreeView::TreeView(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<TreeViewNative>()) {
}

void TreeView::setText(vlMemory::StringView) {
}

std::string TreeView::getText() const {
    const auto ids = getSelection();
    return ids.empty() ? std::string() : getLabel(ids.front());
}

void TreeView::addItem(const TreeItem& item) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<TreeViewNative>(*this);
    const bool knowsParent = item.parent == TreeItem::ROOT || native.model->has(item.parent);
    if (item.id == TreeItem::ROOT || native.model->has(item.id) || !knowsParent) {
        logLine("tree '{}': item {} '{}' below {} is left out: {}",
                getComponentName(),
                item.id,
                item.label,
                item.parent,
                knowsParent ? "its id is in use" : "no such parent");
        return;
    }
    const Quiet guard(native.quiet);
    native.model->add(item);
    if (item.parent == TreeItem::ROOT)
        native.expanded.insert(item.id);
    else
        native.showExpanded(item.parent);
}

bool TreeView::removeItem(std::uint64_t id) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<TreeViewNative>(*this);
    if (!native.model->has(id)) return false;
    const Quiet guard(native.quiet);
    // The view would move the selection to a neighbour that nobody chose.
    const auto before = native.selection();
    native.model->remove(id);
    native.select(before);
    native.forgetGone();
    return true;
}

bool TreeView::renameItem(std::uint64_t id, vlMemory::StringView label) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<TreeViewNative>(*this);
    if (!native.model->has(id)) return false;
    native.model->rename(id, std::string(label));
    return true;
}

bool TreeView::moveItem(std::uint64_t id, std::uint64_t newParent) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<TreeViewNative>(*this);
    const bool knowsParent = newParent == TreeItem::ROOT || native.model->has(newParent);
    if (!native.model->has(id) || !knowsParent || native.model->isInside(newParent, id))
        return false;
    const Quiet guard(native.quiet);
    native.model->move(id, newParent);
    if (newParent != TreeItem::ROOT) native.showExpanded(newParent);
    return true;
}

void TreeView::setItems(const std::vector<TreeItem>& items) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<TreeViewNative>(*this);
    const Quiet guard(native.quiet);
    const auto selection = native.selection();
    std::unordered_set<std::uint64_t> before;
    for (const std::uint64_t id : native.model->childrenOf(TreeItem::ROOT))
        before.insert(id);
    for (const TreeItem& item : native.model->reset(items))
        logLine("tree '{}': item {} '{}' below {} is left out: its id or its parent's is unusable",
                getComponentName(),
                item.id,
                item.label,
                item.parent);
    for (const std::uint64_t id : native.model->childrenOf(TreeItem::ROOT))
        if (!before.contains(id)) native.expanded.insert(id);
    native.forgetGone();
    for (const std::uint64_t id : native.expanded)
        native.showExpanded(id);
    native.select(selection);
}

void TreeView::clear() {
    setItems({});
}

std::size_t TreeView::getItemCount() const {
    return nativeAs<TreeViewNative>(*this).model->size();
}

bool TreeView::hasItem(std::uint64_t id) const {
    return nativeAs<TreeViewNative>(*this).model->has(id);
}

std::string TreeView::getLabel(std::uint64_t id) const {
    const TreeModel& model = *nativeAs<TreeViewNative>(*this).model;
    return model.has(id) ? model.labelOf(id) : std::string();
}

std::vector<std::uint64_t> TreeView::getChildren(std::uint64_t parent) const {
    return nativeAs<TreeViewNative>(*this).model->childrenOf(parent);
}

void TreeView::setExpanded(std::uint64_t id, bool expanded) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<TreeViewNative>(*this);
    if (!native.model->has(id)) return;
    if (expanded)
        native.expanded.insert(id);
    else
        native.expanded.erase(id);
    native.showExpanded(id);
}

bool TreeView::isExpanded(std::uint64_t id) const {
    return nativeAs<TreeViewNative>(*this).expanded.contains(id);
}

void TreeView::setMultiSelection(bool several) {
    nativeAs<TreeViewNative>(*this).view().setSelectionMode(
            several ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
}

void TreeView::select(const std::vector<std::uint64_t>& ids) {
    vlCommon::assertUiThread();
    nativeAs<TreeViewNative>(*this).select(ids);
}

std::vector<std::uint64_t> TreeView::getSelection() const {
    return nativeAs<TreeViewNative>(*this).selection();
}

void TreeView::setSelectionCallback(
        std::function<void(const std::vector<std::uint64_t>&)> callback) {
    nativeAs<TreeViewNative>(*this).selected = std::move(callback);
}

void TreeView::setActivationCallback(std::function<void(std::uint64_t)> callback) {
    nativeAs<TreeViewNative>(*this).activated = std::move(callback);
}

void TreeView::setMenuCallback(std::function<void(std::uint64_t, Point)> callback) {
    nativeAs<TreeViewNative>(*this).menu = std::move(callback);
}

void TreeView::setPlaceHolder(vlMemory::StringView text) {
    auto& view = nativeAs<TreeViewNative>(*this).view();
    view.placeHolder = toQt(text);
    view.viewport()->update();
}

} // namespace vlWinUi
