#pragma once
#include <vlGraphics/ResourceManager.h>

namespace vlGraphics {

/** A part of a target, as fractions of its size, that an operation draws into. Starts whole. */
class Viewport final : public Resource {
public:
    static constexpr vlMemory::StringView kindName = "viewport";

    struct Area {
        float x = 0; ///< 0..1 from the left
        float y = 0; ///< 0..1 from the top
        float width = 1;
        float height = 1;
        float minDepth = 0;
        float maxDepth = 1;
        friend bool operator==(const Area&, const Area&) = default;
    };
    const Area& getArea() const { return area_; }
    /// Values outside 0..1 or not finite are refused: false.
    bool setArea(const Area& area);

private:
    Area area_;
};

class ViewportManager final : public ResourceManager<Viewport>,
                              public vlCommon::MaybeSingletonClass<ViewportManager> {};

} // namespace vlGraphics
