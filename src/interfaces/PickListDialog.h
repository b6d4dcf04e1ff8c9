#pragma once
#include "interfaces/PickList.h"

#include <vlWinUi/Window.h>

#include <functional>
#include <memory>
#include <string>

namespace vlEditor {

/** The window in which a person chooses an entry of a pick list. It is called as the list; in it
 * are a list box, "Ok" and "Cancel" (the name, then "LISTBOX", "OK_BUTTON", "CANCEL_BUTTON"). It
 * follows the list while it is open, once a turn of the event loop. Typing narrows the entries to
 * those that contain what was typed. Kept as the window's data, for the whole run. UI thread only.
 */
class PickListDialog final : public PickListListener {
public:
    using Chosen = std::function<void(const std::string& entry)>;
    /// Whether an entry is among those that a person may take; empty: all are.
    using Offers = std::function<bool(const std::string& entry)>;

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
                     vlMemory::StringView selected = {},
                     Offers offers = {});

    explicit PickListDialog(PickList& list);
    ~PickListDialog();
    PickListDialog(const PickListDialog&) = delete;
    PickListDialog& operator=(const PickListDialog&) = delete;

    /// Shown in the event loop's next turn, or when the dialog opens.
    void entriesChanged() override;
    /// What has been typed; with the first entry that contains it selected, unless another one that
    /// does is.
    void setFilter(std::string filter);

private:
    void createWindow();
    void show(const vlWinUi::Component& anchor, vlMemory::StringView selected);
    /// Shows the list as it is now.
    void refresh();
    void refreshIfDue();
    void accept();
    void cancel();
    bool handleKey(const vlWinUi::KeyEvent& key);
    /// "Ok" can be pressed when it has something to hand over.
    void updateOk();

    std::string name_;
    std::string label_;
    std::string filter_;
    Chosen chosen_;
    Offers offers_;
    bool refreshDue_ = false;
    bool refreshQueued_ = false;
    /// Lets a queued call see that the dialog is gone.
    std::shared_ptr<PickListDialog*> self_ = std::make_shared<PickListDialog*>(this);
};

} // namespace vlEditor
