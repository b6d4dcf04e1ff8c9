#include "interfaces/AddPickListEntriesMessage.h"

#include "interfaces/PickLists.h"

namespace vlEditor {

void AddPickListEntriesMessage::runOnUiThread() {
    if (PickList* found = PickLists::getInstance().find(list)) found->addEntries(entries);
}

} // namespace vlEditor
