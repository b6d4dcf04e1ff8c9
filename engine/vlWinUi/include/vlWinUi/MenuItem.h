#pragma once
#include <vlMemory/String.h>

#include <functional>
#include <memory>
#include <string>

namespace vlWinUi {

/** A line of a Menu. Owned by its menu. UI thread only. */
class MenuItem {
public:
    struct State;

    explicit MenuItem(std::unique_ptr<State> state);
    MenuItem(const MenuItem&) = delete;
    MenuItem& operator=(const MenuItem&) = delete;
    ~MenuItem();

    void setLabel(vlMemory::StringView label);
    std::string getLabel() const;
    /// Stands behind the label, for what changes from time to time; the label stays what the item
    /// is found by.
    void setDetail(vlMemory::StringView detail);
    std::string getDetail() const;
    /// The reason is shown as the tooltip, and in the status bar while the mouse or the keyboard is
    /// on it.
    void setEnabled(bool enabled, vlMemory::StringView reason = {});
    bool isEnabled() const;
    void setToolTip(vlMemory::StringView text);
    std::string getToolTip() const;
    /// "Ctrl+S". An empty text removes it.
    void setShortcut(vlMemory::StringView keys);
    /// Shows a tick beside the label.
    void setChecked(bool checked);
    void setVisible(bool visible);
    /// Chooses it as a person would: nothing happens while it is disabled.
    void trigger();

private:
    std::unique_ptr<State> state_;
};

} // namespace vlWinUi
