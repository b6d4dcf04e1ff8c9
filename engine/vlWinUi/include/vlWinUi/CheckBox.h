#pragma once
#include <vlWinUi/Component.h>

namespace vlWinUi {

/** A box with a label that is ticked or not. UI thread only. */
class CheckBox final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::CheckBox;

    void setText(vlMemory::StringView text) override;
    std::string getText() const override;
    void setChecked(bool checked);
    bool isChecked() const;
    void setCheckCallback(std::function<void(bool checked)> callback);

private:
    friend class ComponentFactory;
    explicit CheckBox(std::string name);
};

} // namespace vlWinUi
