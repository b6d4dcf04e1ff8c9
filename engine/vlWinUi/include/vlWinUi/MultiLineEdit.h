#pragma once
#include <vlWinUi/Component.h>

#include <cstddef>
#include <cstdint>

namespace vlWinUi {

/** Text of several lines to edit, in a typewriter face. UI thread only. */
class MultiLineEdit final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::MultiLineEdit;

    /// Setting it ends the field's own undo history.
    void setText(vlMemory::StringView text) override;
    std::string getText() const override;
    void setPlaceHolder(vlMemory::StringView text);
    void setReadOnly(bool readOnly);
    /// Breaks lines that are too long to be seen whole, at words where there are any; false unless
    /// set.
    void setWrapping(bool wrapping);
    /// Lines count from 1; a line outside is ignored.
    void goToLine(std::size_t line);

    void setKeyDownCallback(std::function<void(std::uint32_t virtualKey)> callback);
    /// At each edit.
    void setChangeCallback(std::function<void()> callback);
    /// The keyboard focus left the field, after an edit.
    void setEditedCallback(std::function<void()> callback);

private:
    friend class ComponentFactory;
    explicit MultiLineEdit(std::string name);
};

} // namespace vlWinUi
