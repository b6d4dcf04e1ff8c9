#pragma once
#include <vlWinUi/Component.h>

#include <cstdint>

namespace vlWinUi {

/** A line of text to edit. UI thread only. */
class EditBox final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::EditBox;

    void setText(vlMemory::StringView text) override;
    std::string getText() const override;
    void setPlaceHolder(vlMemory::StringView text);
    /// Empty, and "Mixed values" is its place-holder until it is edited or set.
    void setMixed();
    bool isMixed() const;
    /// Takes only a number: digits, or with decimals a sign, one point and an exponent too.
    enum class Numbers { Any, Digits, Decimals };
    void setNumbers(Numbers numbers);
    void setReadOnly(bool readOnly);
    /// Marks the content as wrong and says why in the tooltip; an empty text clears the mark.
    void setProblem(vlMemory::StringView text);
    void selectAll();
    std::string getTextBeforeCursor() const;
    /// In place of what is selected; the cursor stands behind it.
    void insertAtCursor(vlMemory::StringView text);

    /// Virtual key codes: 13 Enter, 27 Escape, 38 up, 40 down.
    void setKeyDownCallback(std::function<void(std::uint32_t virtualKey)> callback);
    /// Tab was pressed. False lets it move the focus on, as it does without a callback.
    void setTabCallback(std::function<bool()> callback);
    /// At each edit.
    void setChangeCallback(std::function<void()> callback);
    /// The keyboard focus left the field, after an edit.
    void setEditedCallback(std::function<void()> callback);

private:
    friend class ComponentFactory;
    explicit EditBox(std::string name);
};

} // namespace vlWinUi
