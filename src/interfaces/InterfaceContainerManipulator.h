#pragma once
#include <vlWinUi/Window.h>

#include <string>
#include <vector>

namespace vlEditor {

/** Where a new container comes, seen from one that is there. */
enum class ContainerSide { above, left, right, under };

/** How the containers of a page share its room. Containers lie side by side in a row of columns or
 *  one above the other in a column of rows; where a direction changes, a panel ("SPLIT_" and a
 * number that never comes again) takes a container's place and holds the parts. What is split keeps
 * its room to itself: all others keep their sizes. UI thread only. */
class InterfaceContainerManipulator {
public:
    /// Pixels; longer wishes are cut to it.
    static constexpr long largestFixedSize = 16384;

    InterfaceContainerManipulator() = delete;

    /// A grid for a page with one container in it.
    static vlWinUi::GridLayout layoutWith(const vlWinUi::Component& content);
    /// A grid of so many columns, or rows, with borders that can be dragged.
    static vlWinUi::GridLayout emptyLayout(unsigned columns, unsigned rows);
    /// A panel for a split, yet without a layout.
    static vlWinUi::Window& createSplit();
    static bool isSplit(const vlWinUi::Component& component);

    /// An empty container beside one that is placed in a page; each gets half of its room.
    static vlWinUi::Window& addContainer(vlWinUi::Window& container, ContainerSide side);
    /// An empty container right of all that is in the page.
    static vlWinUi::Window& addContainerAtEnd(vlWinUi::Window& page);
    /// Ends its view; its neighbour takes the room. The only container of a page gives way to an
    /// empty one.
    static void closeContainer(vlWinUi::Window& container);

    /// Of the column, or row, that the container is in. A container that shares its column takes
    /// the others of it along.
    static void setFixedWidth(vlWinUi::Window& container, long pixels);
    static void setFixedHeight(vlWinUi::Window& container, long pixels);
    static bool hasFixedSize(const vlWinUi::Window& container);
    /// Its column and its row share the room with the others again, like the average of them.
    static void freeSizes(vlWinUi::Window& container);
    /// In pixels, as they are on the screen.
    static unsigned getColumnWidth(const vlWinUi::Window& container);
    static unsigned getRowHeight(const vlWinUi::Window& container);

    /// Those in a page, from the left to the right and from above to below.
    static std::vector<vlWinUi::Window*> getContainers(vlWinUi::Window& page);
};

} // namespace vlEditor
