#pragma once
#include <vlWinUi/Component.h>

namespace vlWinUi {

/** A titled frame around what is placed in it. UI thread only. */
class GroupBox final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::GroupBox;

    void setText(vlMemory::StringView text) override;
    std::string getText() const override;

private:
    friend class ComponentFactory;
    explicit GroupBox(std::string name);
};

} // namespace vlWinUi
