#include "Call.h"
#include "ListModel.h"
#include "Native.h"
#include "PlaceHolder.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ListBox.h>

#include <QListView>
#include <QScrollBar>
#include <QSortFilterProxyModel>

#include <algorithm>

namespace vlWinUi {
namespace {

class ListView final : public QListView {
public:
    QString placeHolder;

    QSize minimumSizeHint() const override { return {40, 40}; }
    QSize sizeHint() const override { return {160, 120}; }

protected:
    void paintEvent(QPaintEvent* event) override {
        QListView::paintEvent(event);
        if (model()->rowCount() == 0) paintPlaceHolder(*this, placeHolder);
    }
};

struct ListBoxNative final : Native {
    ListBoxNative();
    ListView& view() const { return *static_cast<ListView*>(widget); }

    std::optional<std::size_t> rowOf(const QModelIndex& shown) const;
    void showSelection();
    /// Runs a change of the entries without a callback, and keeps the selection and the newest
    /// line.
    template <class F> void change(F apply) {
        const Quiet guard(quiet);
        const QScrollBar& bar = *view().verticalScrollBar();
        const bool atEnd = bar.value() >= bar.maximum();
        apply();
        if (follow && atEnd) followSoon();
    }
    /// Once for all lines that come together: each scrolling lays the whole list out anew.
    void followSoon();

    ListModel* model = nullptr;
    QSortFilterProxyModel* shown = nullptr;
    QPersistentModelIndex selection; ///< in the model, so that it outlives a filter
    bool follow = false;
    bool followQueued = false;
    std::function<void(std::optional<std::size_t>)> selected;
    std::function<void(std::size_t)> activated;
};

ListBoxNative::ListBoxNative() : Native(new ListView) {
    model = new ListModel(&view());
    shown = new QSortFilterProxyModel(&view());
    shown->setSourceModel(model);
    shown->setFilterCaseSensitivity(Qt::CaseInsensitive);
    view().setModel(shown);
    view().setUniformItemSizes(true);
    view().setEditTriggers(QAbstractItemView::NoEditTriggers);
    view().setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view().setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    listenTo(view().viewport());
    connect(view().selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (quiet > 0) return;
        const auto rows = view().selectionModel()->selectedIndexes();
        const auto row = rowOf(rows.isEmpty() ? QModelIndex() : rows.first());
        selection = row ? model->index(static_cast<int>(*row)) : QModelIndex();
        call(selected, row);
    });
    connect(&view(), &QListView::activated, this, [this](const QModelIndex& index) {
        if (const auto row = rowOf(index)) call(activated, *row);
    });
}

std::optional<std::size_t> ListBoxNative::rowOf(const QModelIndex& index) const {
    const QModelIndex source = shown->mapToSource(index);
    if (!source.isValid()) return std::nullopt;
    return static_cast<std::size_t>(source.row());
}

void ListBoxNative::showSelection() {
    const Quiet guard(quiet);
    const QModelIndex at = shown->mapFromSource(selection);
    QItemSelectionModel& marked = *view().selectionModel();
    if (!at.isValid()) {
        marked.clear();
        return;
    }
    marked.setCurrentIndex(at, QItemSelectionModel::ClearAndSelect);
    view().scrollTo(at);
}

void ListBoxNative::followSoon() {
    if (std::exchange(followQueued, true)) return;
    const auto scroll = [this] {
        followQueued = false;
        view().scrollToBottom();
    };
    QMetaObject::invokeMethod(this, scroll, Qt::QueuedConnection);
}

} // namespace

ListBox::ListBox(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<ListBoxNative>()) {
}

void ListBox::setText(vlMemory::StringView text) {
    selectByLabel(text);
}

std::string ListBox::getText() const {
    const ListEntry* entry = getSelectedEntry();
    return entry == nullptr ? std::string() : entry->label;
}

void ListBox::addEntry(vlMemory::StringView label, std::any data) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<ListBoxNative>(*this);
    native.change([&] { native.model->append({std::string(label), std::move(data)}); });
}

bool ListBox::removeEntry(vlMemory::StringView label) {
    vlCommon::assertUiThread();
    const auto row = find(label);
    if (!row) return false;
    auto& native = nativeAs<ListBoxNative>(*this);
    native.change([&] {
        native.model->remove(*row);
        native.showSelection();
    });
    return true;
}

bool ListBox::renameEntry(vlMemory::StringView label, vlMemory::StringView newLabel) {
    vlCommon::assertUiThread();
    const auto row = find(label);
    if (!row) return false;
    auto& native = nativeAs<ListBoxNative>(*this);
    native.change([&] { native.model->rename(*row, std::string(newLabel)); });
    return true;
}

void ListBox::setEntries(std::vector<ListEntry> entries) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<ListBoxNative>(*this);
    const std::string before = getText();
    native.change([&] { native.model->reset(std::move(entries)); });
    if (!before.empty()) selectByLabel(before);
}

void ListBox::clear() {
    setEntries({});
}

std::size_t ListBox::getEntryCount() const {
    return nativeAs<ListBoxNative>(*this).model->entries().size();
}

const ListEntry& ListBox::getEntry(std::size_t index) const {
    return nativeAs<ListBoxNative>(*this).model->entries().at(index);
}

std::optional<std::size_t> ListBox::find(vlMemory::StringView label) const {
    const auto& entries = nativeAs<ListBoxNative>(*this).model->entries();
    const auto found = std::ranges::find(entries, label, &ListEntry::label);
    if (found == entries.end()) return std::nullopt;
    return static_cast<std::size_t>(found - entries.begin());
}

std::optional<std::size_t> ListBox::getSelectedIndex() const {
    const QPersistentModelIndex& selection = nativeAs<ListBoxNative>(*this).selection;
    if (!selection.isValid()) return std::nullopt;
    return static_cast<std::size_t>(selection.row());
}

const ListEntry* ListBox::getSelectedEntry() const {
    const auto index = getSelectedIndex();
    return index ? &getEntry(*index) : nullptr;
}

void ListBox::select(std::optional<std::size_t> index) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<ListBoxNative>(*this);
    const bool inside = index && *index < getEntryCount();
    native.selection = inside ? native.model->index(static_cast<int>(*index)) : QModelIndex();
    native.showSelection();
}

bool ListBox::selectByLabel(vlMemory::StringView label) {
    const auto index = find(label);
    if (index) select(index);
    return index.has_value();
}

void ListBox::setSelectionCallback(std::function<void(std::optional<std::size_t>)> callback) {
    nativeAs<ListBoxNative>(*this).selected = std::move(callback);
}

void ListBox::setActivationCallback(std::function<void(std::size_t)> callback) {
    nativeAs<ListBoxNative>(*this).activated = std::move(callback);
}

void ListBox::setFilter(vlMemory::StringView text) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<ListBoxNative>(*this);
    const Quiet guard(native.quiet);
    native.shown->setFilterFixedString(toQt(text));
    native.showSelection();
}

std::size_t ListBox::getShownCount() const {
    return static_cast<std::size_t>(nativeAs<ListBoxNative>(*this).shown->rowCount());
}

void ListBox::setFollowEnd(bool follow) {
    auto& native = nativeAs<ListBoxNative>(*this);
    native.follow = follow;
    if (follow) native.view().scrollToBottom();
}

void ListBox::setPlaceHolder(vlMemory::StringView text) {
    auto& view = nativeAs<ListBoxNative>(*this).view();
    view.placeHolder = toQt(text);
    view.viewport()->update();
}

} // namespace vlWinUi
