#include "interfaces/kinds/KindPickLists.h"

#include "interfaces/PickLists.h"

namespace vlEditor {
namespace {

template <class Change> void forEachList(const KindTexts& texts, Change&& change) {
    for (const KindPickList& row : texts.pickLists) {
        if (row.name.empty()) continue;
        PickList* list = PickLists::getInstance().find(row.name);
        if (list != nullptr) change(*list, std::string(row.entryStart));
    }
}

} // namespace

void addToPickLists(const KindTexts& texts, std::string_view name) {
    forEachList(texts,
                [&](PickList& list, std::string entry) { list.addEntry(entry.append(name)); });
}

void renameInPickLists(const KindTexts& texts, std::string_view oldName, std::string_view newName) {
    forEachList(texts, [&](PickList& list, const std::string& start) {
        list.renameEntry(std::string(start).append(oldName), std::string(start).append(newName));
    });
}

void eraseFromPickLists(const KindTexts& texts, std::string_view name) {
    forEachList(texts,
                [&](PickList& list, std::string entry) { list.removeEntry(entry.append(name)); });
}

} // namespace vlEditor
