#pragma once
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vlWinUi {

class Component;

/** Columns and rows of cells in which components are placed. Fixed columns and rows have their size
 * in pixels; the others share the rest by weight (1 unless set), whatever they hold, but none
 * becomes too small for what is in it. The internal border is kept free on all sides of each placed
 * component. Plain data until Component::setLayout() takes it; afterwards a change shows at the
 * next update(). UI thread only. */
class GridLayout {
public:
    struct Placement {
        std::string component; ///< name
        unsigned x = 0;
        unsigned y = 0;
        unsigned width = 1;  ///< columns spanned
        unsigned height = 1; ///< rows spanned
    };
    struct Track {
        std::optional<float> fixedSize; ///< pixels
        float weight = 1.0F;
    };

    GridLayout(unsigned columns, unsigned rows);

    /// Out of the grid or spanning nothing: logged and left out. A component already placed moves.
    void addComponent(const Component& component,
                      unsigned x,
                      unsigned y,
                      unsigned width = 1,
                      unsigned height = 1);
    /// The component leaves the view, but lives on. False when it was not placed here.
    bool removeComponent(const Component& component);
    /// Null when it is not placed here.
    const Placement* getPlacement(const Component& component) const;
    const std::vector<Placement>& getPlacements() const { return placements_; }

    unsigned getColumnCount() const { return static_cast<unsigned>(columns_.size()); }
    unsigned getRowCount() const { return static_cast<unsigned>(rows_.size()); }
    /// New columns left of `index`, or rows above it; what spans over the place grows, what is
    /// behind moves.
    void insertColumn(unsigned index);
    void insertRow(unsigned index);
    /// What is only in it leaves the layout. The last column or row stays.
    void removeColumn(unsigned index);
    void removeRow(unsigned index);

    /// Pixels; an index outside the grid is logged and ignored, as below.
    void setFixedSizeColumn(unsigned index, float pixels);
    void setFixedSizeRow(unsigned index, float pixels);
    /// Frees a fixed size again.
    void setWeightColumn(unsigned index, float weight);
    void setWeightRow(unsigned index, float weight);
    const std::vector<Track>& getColumns() const { return columns_; }
    const std::vector<Track>& getRows() const { return rows_; }

    /// Pixels; 2 by 2 unless set.
    void setInternalBorders(unsigned width, unsigned height);
    unsigned getInternalBorderWidth() const { return borderWidth_; }
    unsigned getInternalBorderHeight() const { return borderHeight_; }
    /// What is placed with its top left corner in this cell fills its cells wholly, or, with false,
    /// does not any more.
    void ignoreInternalBorder(unsigned x, unsigned y, bool ignored = true);
    bool isInternalBorderIgnored(unsigned x, unsigned y) const;

    /// Lets the person drag the borders between columns and between rows. The two neighbours keep
    /// their sum, and none becomes too small for what is in it. A fixed one stays fixed at its new
    /// size; the others change weights, and keep the sum of these. A double click frees both and
    /// halves their room. Off unless set.
    void setDraggable(bool draggable) { draggable_ = draggable; }
    bool isDraggable() const { return draggable_; }
    /// The person has changed sizes, once for each drag.
    void setDragCallback(std::function<void()> callback) { dragged_ = std::move(callback); }

    /// Shows the changes made since it was handed over.
    void update();

private:
    friend class Component;
    friend class ComponentManager;
    friend class CellLayout;

    void renameComponent(const std::string& name, const std::string& newName);

    std::vector<Track> columns_;
    std::vector<Track> rows_;
    std::vector<Placement> placements_;
    std::vector<std::pair<unsigned, unsigned>> borderless_;
    unsigned borderWidth_ = 2;
    unsigned borderHeight_ = 2;
    bool draggable_ = false;
    std::function<void()> dragged_;
    Component* owner_ = nullptr; // once handed over
};

} // namespace vlWinUi
