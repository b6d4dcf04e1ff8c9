#pragma once
#include <vlWinUi/Component.h>

namespace vlWinUi {

/** A push button; Space and Enter press it too. UI thread only. */
class Button final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::Button;

    void setText(vlMemory::StringView text) override;
    std::string getText() const override;
    void setButtonClickCallback(std::function<void()> callback);
    /// Presses it as a person would: nothing happens while it is disabled.
    void click();
    /// Reacts to Enter anywhere in its window that no other widget takes.
    void setDefault(bool isDefault);
    /// "Ctrl+S"; shown in the tooltip. An empty text removes it.
    void setShortcut(vlMemory::StringView keys);

private:
    friend class ComponentFactory;
    explicit Button(std::string name);
};

} // namespace vlWinUi
