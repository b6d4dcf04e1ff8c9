#pragma once
#include <vlWinUi/Component.h>

namespace vlWinUi {

/** A line of text that cannot be edited; what does not fit ends in an ellipsis and is in the
 * tooltip. UI thread only. */
class Static final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::Static;

    enum class Alignment {
        TopLeft,
        Top,
        TopRight,
        Left,
        Centre,
        Right,
        BottomLeft,
        Bottom,
        BottomRight
    };

    void setText(vlMemory::StringView text) override;
    std::string getText() const override;
    /// Left unless set.
    void setAlignment(Alignment alignment);
    /// The text is a file's path, whose end counts most: what does not fit is left out of its
    /// middle. False unless set.
    void setPath(bool isPath);
    /// Drawn stronger, as a title.
    void setEmphasised(bool emphasised);
    /// The tab key and clicks give it the keyboard focus; false unless set.
    void setFocusable(bool focusable);

private:
    friend class ComponentFactory;
    explicit Static(std::string name);
};

} // namespace vlWinUi
