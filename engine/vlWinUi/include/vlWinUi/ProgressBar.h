#pragma once
#include <vlWinUi/Component.h>

#include <optional>

namespace vlWinUi {

/** How far something is. UI thread only. */
class ProgressBar final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::ProgressBar;

    /// A bar has no text of its own: what is set is what screen readers call it.
    void setText(vlMemory::StringView text) override;
    std::string getText() const override;
    /// 0 to 1; nothing, as at first, for what goes on for an unknown time.
    void setShare(std::optional<double> share);
    std::optional<double> getShare() const;

private:
    friend class ComponentFactory;
    explicit ProgressBar(std::string name);
};

} // namespace vlWinUi
