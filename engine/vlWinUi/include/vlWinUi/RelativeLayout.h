#pragma once
#include <vlWinUi/Geometry.h>

#include <string>
#include <vector>

namespace vlWinUi {

class Component;

/** Components at places given in pixels, from the parent's top left corner or beside another one
 * that is placed in the same layout, and then following it. Plain data until
 * Component::setLayout() takes it; afterwards a change shows at the next update(). UI thread only.
 */
class RelativeLayout {
public:
    /// Which side of the other component.
    enum class Position { Right, Left, Above, Under };

    struct Placement {
        std::string component; ///< name
        /// A width or height of 0 is the component's natural one. Beside another component, x and
        /// y move it on from where it touches that one, at the same top or left edge.
        Rectangle area;
        std::string relativeTo; ///< name; empty for the parent's corner
        Position position = Position::Right;
    };

    /// A component already placed moves.
    void addComponent(const Component& component, const Rectangle& area);
    void addComponent(const Component& component,
                      const Rectangle& area,
                      const Component& relativeTo,
                      Position position);
    /// The component leaves the view, but lives on. False when it was not placed here.
    bool removeComponent(const Component& component);
    /// Null when it is not placed here.
    const Placement* getPlacement(const Component& component) const;
    const std::vector<Placement>& getPlacements() const { return placements_; }

    /// Shows the changes made since it was handed over. A component beside one that is not placed
    /// here, or, through others, beside itself, is logged and placed from the parent's corner.
    void update();

private:
    friend class Component;
    friend class ComponentManager;

    void add(Placement placement);
    void renameComponent(const std::string& name, const std::string& newName);

    std::vector<Placement> placements_;
    Component* owner_ = nullptr; // once handed over
};

} // namespace vlWinUi
