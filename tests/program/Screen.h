#pragma once
#include <vlImages/Image.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tests {

/** The X display of the test, seen and touched as a person does. */
class Screen {
public:
    struct Window {
        std::uint32_t id = 0;
        int x = 0; ///< of the whole screen, pixels
        int y = 0;
        int width = 0;
        int height = 0;
    };

    Screen();
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// A visible window of that title.
    std::optional<Window> find(const std::string& title) const;
    /// The whole screen, RGBA8.
    vlImages::Image picture() const;
    void click(int x, int y, int button = 1) const;
    void doubleClick(int x, int y) const;
    /// With the left button, in a few steps.
    void drag(int fromX, int fromY, int toX, int toY) const;
    void type(const std::string& text) const;
    /// A key by xdotool's name, such as "Return" or "ctrl+s".
    void key(const std::string& name) const;
    void resize(const Window& window, int width, int height) const;
    /// Asks the window to close, as its cross does.
    void close(const Window& window) const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// Asks again and again until the answer is yes; false after so many seconds without one.
bool eventually(const std::function<bool()>& holds, int seconds = 60);

struct Color {
    int r = 0;
    int g = 0;
    int b = 0;
};
Color colorAt(const vlImages::Image& picture, int x, int y);
/// How many different colours (of 4 bits a channel) a part of a picture has.
int colorCount(const vlImages::Image& picture, int x, int y, int width, int height);
/// Writes a PNG into the folder that VL_TEST_PICTURES names, where it is set: for a person to look
/// at.
void keep(const vlImages::Image& picture, const std::string& name);

} // namespace tests
