#pragma once
#include <vlCommon/Result.h>
#include <vlMemory/String.h>
#include <vlWinUi/Geometry.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace vlWinUi {

/** Reads and uses components by name, as a person in front of the window does: what cannot be seen,
 *  is disabled or lies behind a dialog refuses, with one line that names it ("'SAVE' is disabled").
 *  UI thread only, except invoke().
 *
 *  Reading answers at once. Using sends real mouse and keyboard events, one a turn of the event
 *  loop, and says through `done` that they were dealt with, or why not. Where an event runs a loop
 *  of its own (a question that waits), done is called from inside that loop: using what opens a
 *  dialog ends with the dialog open. */
class Automation {
public:
    using Done = std::function<void(vlCommon::Result<>)>;
    enum class Button { None, Left, Right, Middle };
    enum class Phase { Press, Move, Release };
    /// RGB, 3 bytes a pixel, row by row from the top.
    struct Picture {
        unsigned width = 0;
        unsigned height = 0;
        std::vector<std::uint8_t> pixels;
    };
    using Labels = std::vector<std::string>;

    Automation() = delete;

    /// Any thread, between System::initialize() and System::kill(): calls it in the event loop, in
    /// the order of the calls. Never waits.
    static void invoke(std::function<void()> function);
    /// The event loop has ended: whoever waits for what was done by then is told, all else that was
    /// invoked or begun is dropped, and so is what comes later in this life of the library.
    static void stop();

    static bool exists(vlMemory::StringView name);
    /// It, and what it is in, is shown.
    static vlCommon::Result<bool> isVisible(vlMemory::StringView name);
    /// With a path, an item of a tool bar or a context menu, as in menu().
    static vlCommon::Result<bool> isEnabled(vlMemory::StringView name, const Labels& path = {});
    static vlCommon::Result<bool> isChecked(vlMemory::StringView name, const Labels& path = {});
    static vlCommon::Result<std::string> getText(vlMemory::StringView name);
    /// The labels of a list, a combo box, a tab window, a tree (two spaces before each level) or a
    /// menu, as they are shown. With a path, of a menu inside a tool bar or a context menu.
    static vlCommon::Result<Labels> getItems(vlMemory::StringView name, const Labels& path = {});
    /// The labels that are selected, without spaces before them.
    static vlCommon::Result<Labels> getSelected(vlMemory::StringView name);
    /// In the window that it is in.
    static vlCommon::Result<Rectangle> getRectangle(vlMemory::StringView name);
    /// Every window that is shown stands on the display.
    static bool isSettled();

    /// In its middle, or on one of its items.
    static void
    click(vlMemory::StringView name, Button button, vlMemory::StringView item, Done done);
    /// In place of the text there.
    static void type(vlMemory::StringView name, vlMemory::StringView text, Done done);
    /// A virtual key code (13 Enter, 27 Escape, 37 to 40 arrows, letters by their capital), with
    /// "ctrl", "shift" and "alt" held.
    static void
    key(vlMemory::StringView name, std::uint32_t virtualKey, const Labels& held, Done done);
    /// Chooses the item of a list, a combo box, a tree or a tab window that has the label.
    static void select(vlMemory::StringView name, vlMemory::StringView label, Done done);
    static void check(vlMemory::StringView name, bool checked, Done done);
    /// Opens the menus of a tool bar one after the other and chooses the last item of the path; or
    /// of a context menu that is open.
    static void menu(vlMemory::StringView name, Labels path, Done done);
    /// One event, in the component's own pixels (physical ones for a Surface). A button stays held
    /// until it is released.
    static void mouse(vlMemory::StringView name, Point at, Button button, Phase phase, Done done);
    /// Answers the question, or closes the message, in front.
    static void confirm(bool accept, Done done);
    /// Gives the open file dialog its path, absolute or from the working directory; an empty one
    /// cancels the dialog. Needs the library's own dialogs; see SystemOptions.
    static void choose(vlMemory::StringView path, Done done);
    static void resize(vlMemory::StringView name, unsigned width, unsigned height, Done done);
    /// As the window's cross does.
    static void close(vlMemory::StringView name, Done done);

    /// What a person sees of the window and of all that is in front of it. Without a display,
    /// surfaces show the pictures presented to them.
    static vlCommon::Result<Picture> takePicture(vlMemory::StringView window);
};

} // namespace vlWinUi
