#include "interfaces/history/PendingEdit.h"

#include <vlCommon/ThreadBorder.h>

#include <vector>

namespace vlEditor {
namespace {

std::vector<PendingEdit*>& all() {
    static std::vector<PendingEdit*> edits;
    return edits;
}

} // namespace

PendingEdit::PendingEdit() {
    all().push_back(this);
}

PendingEdit::~PendingEdit() {
    std::erase(all(), this);
}

void PendingEdit::flushAll() {
    vlCommon::assertUiThread();
    for (PendingEdit* edit : all())
        edit->flush();
}

} // namespace vlEditor
