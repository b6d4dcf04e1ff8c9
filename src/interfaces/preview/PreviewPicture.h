#pragma once
#include <vlImages/Image.h>

#include <cstdint>
#include <string>

namespace vlEditor {

/** How texels, read as floats, become a picture that a person can see. */
struct PreviewContent {
    bool isGrey = false;   ///< only the first channel counts
    bool isLinear = false; ///< light, to be encoded as sRGB
    bool isFree = false;   ///< floats of any range: what lies outside 0 to 1 is brought into it
    bool isDepth = false;  ///< spread from the nearest to the farthest
    bool isOpaque = false; ///< alpha means something else than transparency
};

/** A picture and what there is to say about it. */
struct PreviewPicture {
    vlImages::Image image; ///< rgba8; empty when there is none
    std::string text;      ///< a caption, or the reason why there is none

    /// Of the top left corner of float texels; `caption` is what the text begins with. Floats with
    /// values above 1 are toned down and those with values below 0 spread around the middle, and
    /// the caption gives their range. What is no number is black.
    static PreviewPicture fromTexels(const vlImages::Image& texels,
                                     std::uint32_t width,
                                     std::uint32_t height,
                                     const PreviewContent& content,
                                     std::string caption);
    /// Of whole numbers, four bytes each: every number in a colour of its own, 0 in black.
    static PreviewPicture fromNumbers(const vlImages::Image& numbers,
                                      std::uint32_t width,
                                      std::uint32_t height,
                                      std::string caption);
};

} // namespace vlEditor
