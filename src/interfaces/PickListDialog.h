#pragma once
#include "interfaces/PickList.h"

#include <vlWinUi/Window.h>

#include <functional>
#include <string>

namespace vlEditor {

/** The window in which a person chooses an entry of a pick list. It is called as the list; in it
 * are a list box, "Ok" and "Cancel" (the name, then "LISTBOX", "OK_BUTTON", "CANCEL_BUTTON"). It
 * follows the list while it is open. Typing narrows the entries to those that contain what was
 * typed. Kept as the window's data, for the whole run. UI thread only. */
class PickListDialog final : public PickListListener {
public:
    using Chosen = std::function<void(const std::string& entry)>;

    /// One for each of PickLists that has none yet.
    static void createAll();
    /// Null when there is none of that name.
    static PickListDialog* find(vlMemory::StringView name);
    /// In front of the anchor's window, with that entry selected if there is one. chosen() gets the
    /// entry that the person takes, in place of an earlier opener's that still waits; it is not
    /// called otherwise. False, with a line in the log, when there is no such list.
    static bool open(vlMemory::StringView name,
                     const vlWinUi::Component& anchor,
                     Chosen chosen,
                     vlMemory::StringView selected = {});

    explicit PickListDialog(PickList& list);
    ~PickListDialog();
    PickListDialog(const PickListDialog&) = delete;
    PickListDialog& operator=(const PickListDialog&) = delete;

    void entriesChanged() override;
    /// What has been typed; with the first entry that contains it selected, unless another one that
    /// does is.
    void setFilter(std::string filter);

private:
    void createWindow();
    void show(const vlWinUi::Component& anchor, Chosen chosen, vlMemory::StringView selected);
    void accept();
    void cancel();
    bool handleKey(const vlWinUi::KeyEvent& key);
    /// "Ok" can be pressed when it has something to hand over.
    void updateOk();

    std::string name_;
    std::string label_;
    std::string filter_;
    Chosen chosen_;
};

} // namespace vlEditor
