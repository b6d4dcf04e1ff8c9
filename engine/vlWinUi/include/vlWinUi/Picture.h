#pragma once
#include <vlImages/Image.h>
#include <vlWinUi/Component.h>

namespace vlWinUi {

/** Shows a picture as large as its room and its aspect allow, over a checkerboard where it is
 *  transparent, with its text as a caption below. Without a picture the text stands in the middle:
 *  the reason why there is none. UI thread only. */
class Picture final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::Picture;

    enum class Scaling {
        Automatic, ///< larger in whole multiples with sharp pixels, smaller smoothly
        Smooth,    ///< to the very size of the room
        Exact,     ///< sharp pixels both ways
    };

    /// Copied; an empty one shows none. 8-bit channels are shown as they are; floats likewise, 0
    /// for none of a channel and 1 for all of it, and what lies outside is brought to the nearest.
    void setImage(const vlImages::Image& image);
    /// In the picture's own pixels; 0 without one.
    unsigned getImageWidth() const;
    unsigned getImageHeight() const;
    /// Automatic unless set.
    void setScaling(Scaling scaling);

    void setText(vlMemory::StringView text) override;
    std::string getText() const override;

private:
    friend class ComponentFactory;
    explicit Picture(std::string name);
};

} // namespace vlWinUi
