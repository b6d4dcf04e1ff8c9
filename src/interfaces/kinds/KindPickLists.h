#pragma once
#include "interfaces/kinds/KindTexts.h"

namespace vlEditor {

// Keep the pick lists of a kind in step with its records. A list that does not exist, as in a
// program without its windows, is passed over. UI thread only.

void addToPickLists(const KindTexts& texts, std::string_view name);
void renameInPickLists(const KindTexts& texts, std::string_view oldName, std::string_view newName);
void eraseFromPickLists(const KindTexts& texts, std::string_view name);

} // namespace vlEditor
