#pragma once
#include <vlWinUi/Component.h>

namespace vlWinUi {

/** A value of a range, set by pulling. UI thread only. */
class Slider final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::Slider;

    /// The value in words; setting a text that is no number does nothing.
    void setText(vlMemory::StringView text) override;
    std::string getText() const override;
    /// The range of whole numbers from `min` to `max`, which is raised to `min` if it is less; the
    /// value is brought into it. 0 to 100 unless set.
    void setRange(int min, int max);
    int getMin() const;
    int getMax() const;
    void setCurrent(int value);
    int getCurrent() const;
    void setSlideCallback(std::function<void(int value)> callback);

private:
    friend class ComponentFactory;
    explicit Slider(std::string name);
};

} // namespace vlWinUi
