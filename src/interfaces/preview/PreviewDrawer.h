#pragma once
#include "interfaces/preview/PreviewPicture.h"

#include <cstdint>
#include <optional>
#include <string>

namespace vlEditor {

/** Draws small pictures of resources with the engine, in a render context and with resources of its
 *  own, which are hidden. Between frames; whoever owns the engine. */
class PreviewDrawer {
public:
    PreviewDrawer() = delete;

    static constexpr std::uint32_t side = 256; ///< at most, pixels

    /// The first level, at most `side` pixels on a side, the aspect kept. Nothing while the engine
    /// is not ready for it: ask again. Without a picture when there is nothing to show.
    static std::optional<PreviewPicture> drawTexture(const std::string& name);
    /// A pattern seen through the sampler, `side` by half of it: on the left from -1 to 2 along
    /// both axes, on the right receding.
    static std::optional<PreviewPicture> drawSampler(const std::string& name);
    /// The engine's changes, without those that the drawing itself makes.
    static std::uint64_t getChangeCount();
};

} // namespace vlEditor
