#pragma once
#include <vlWinUi/Component.h>

namespace vlWinUi {

/** A box with a label that is ticked or not, or stands for several values that differ. UI thread
 * only. */
class CheckBox final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::CheckBox;

    void setText(vlMemory::StringView text) override;
    std::string getText() const override;
    void setChecked(bool checked);
    /// False while the values are mixed.
    bool isChecked() const;
    /// Neither ticked nor not: it stands for several values. setChecked() ends it, and so does a
    /// person's click, which ticks it.
    void setMixed();
    bool isMixed() const;
    void setCheckCallback(std::function<void(bool checked)> callback);

private:
    friend class ComponentFactory;
    explicit CheckBox(std::string name);
};

} // namespace vlWinUi
