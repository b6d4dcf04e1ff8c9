#include "program/Screen.h"

#include <vlImages/PngEncoder.h>

#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

namespace tests {

namespace {

template <class T> struct Freed {
    void operator()(T* reply) const { std::free(reply); }
};
template <class T> using Reply = std::unique_ptr<T, Freed<T>>;

void shell(const std::string& command) {
    if (std::system(command.c_str()) != 0) throw std::runtime_error("'" + command + "' failed");
}

} // namespace

struct Screen::State {
    xcb_connection_t* connection = nullptr;
    xcb_screen_t* screen = nullptr;

    xcb_atom_t atom(const char* name) const {
        const auto cookie =
                xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
        const Reply<xcb_intern_atom_reply_t> reply(
                xcb_intern_atom_reply(connection, cookie, nullptr));
        return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }

    std::string title(xcb_window_t window) const {
        const auto cookie = xcb_get_property(
                connection, 0, window, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, 256);
        const Reply<xcb_get_property_reply_t> reply(
                xcb_get_property_reply(connection, cookie, nullptr));
        if (!reply) return {};
        return {static_cast<const char*>(xcb_get_property_value(reply.get())),
                static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
    }

    std::optional<Window> visible(xcb_window_t window) const {
        const Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
                connection, xcb_get_window_attributes(connection, window), nullptr));
        if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE) return std::nullopt;
        const Reply<xcb_get_geometry_reply_t> geometry(
                xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr));
        const Reply<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
                connection,
                xcb_translate_coordinates(connection, window, screen->root, 0, 0),
                nullptr));
        if (!geometry || !place) return std::nullopt;
        return Window{window, place->dst_x, place->dst_y, geometry->width, geometry->height};
    }

    std::optional<Window> findBelow(xcb_window_t parent, const std::string& name) const {
        const Reply<xcb_query_tree_reply_t> tree(
                xcb_query_tree_reply(connection, xcb_query_tree(connection, parent), nullptr));
        if (!tree) return std::nullopt;
        const xcb_window_t* children = xcb_query_tree_children(tree.get());
        for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
            if (title(children[i]) != name) continue;
            if (auto window = visible(children[i])) return window;
        }
        return std::nullopt;
    }
};

Screen::Screen() : state_(std::make_unique<State>()) {
    state_->connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(state_->connection) != 0)
        throw std::runtime_error("this test needs a display");
    state_->screen = xcb_setup_roots_iterator(xcb_get_setup(state_->connection)).data;
}

Screen::~Screen() {
    xcb_disconnect(state_->connection);
}

std::optional<Screen::Window> Screen::find(const std::string& title) const {
    return state_->findBelow(state_->screen->root, title);
}

vlImages::Image Screen::picture() const {
    const xcb_screen_t& screen = *state_->screen;
    const auto cookie = xcb_get_image(state_->connection,
                                      XCB_IMAGE_FORMAT_Z_PIXMAP,
                                      screen.root,
                                      0,
                                      0,
                                      screen.width_in_pixels,
                                      screen.height_in_pixels,
                                      ~0U);
    const Reply<xcb_get_image_reply_t> reply(
            xcb_get_image_reply(state_->connection, cookie, nullptr));
    if (!reply) throw std::runtime_error("the screen cannot be read");
    vlImages::Image image(
            screen.width_in_pixels, screen.height_in_pixels, vlImages::PixelFormat::rgba8);
    const std::uint8_t* from = xcb_get_image_data(reply.get());
    auto* to = reinterpret_cast<std::uint8_t*>(image.pixels.data());
    for (std::size_t i = 0; i < image.pixels.size(); i += 4) {
        to[i] = from[i + 2];
        to[i + 1] = from[i + 1];
        to[i + 2] = from[i];
        to[i + 3] = 255;
    }
    return image;
}

void Screen::click(int x, int y, int button) const {
    shell("xdotool mousemove " + std::to_string(x) + " " + std::to_string(y) + " click " +
          std::to_string(button));
}

void Screen::doubleClick(int x, int y) const {
    shell("xdotool mousemove " + std::to_string(x) + " " + std::to_string(y) +
          " click --repeat 2 --delay 60 1");
}

void Screen::drag(int fromX, int fromY, int toX, int toY) const {
    constexpr int steps = 6;
    const auto move = [&](int step) {
        return "mousemove " + std::to_string(fromX + (toX - fromX) * step / steps) + " " +
               std::to_string(fromY + (toY - fromY) * step / steps) + " ";
    };
    std::string command = "xdotool " + move(0) + "mousedown 1 ";
    for (int step = 1; step <= steps; ++step)
        command += move(step) + "sleep 0.02 ";
    shell(command + "mouseup 1");
}

void Screen::type(const std::string& text) const {
    shell("xdotool type '" + text + "'");
}

void Screen::key(const std::string& name) const {
    shell("xdotool key " + name);
}

void Screen::resize(const Window& window, int width, int height) const {
    const std::uint32_t size[] = {static_cast<std::uint32_t>(width),
                                  static_cast<std::uint32_t>(height)};
    xcb_configure_window(state_->connection,
                         window.id,
                         XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         size);
    xcb_flush(state_->connection);
}

void Screen::close(const Window& window) const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window.id;
    event.type = state_->atom("WM_PROTOCOLS");
    event.data.data32[0] = state_->atom("WM_DELETE_WINDOW");
    xcb_send_event(state_->connection,
                   0,
                   window.id,
                   XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(state_->connection);
}

bool eventually(const std::function<bool()>& holds, int seconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!holds()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return true;
}

Color colorAt(const vlImages::Image& picture, int x, int y) {
    const std::size_t at =
            (static_cast<std::size_t>(y) * picture.width + static_cast<std::size_t>(x)) * 4;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(picture.pixels.data()) + at;
    return {bytes[0], bytes[1], bytes[2]};
}

int colorCount(const vlImages::Image& picture, int x, int y, int width, int height) {
    std::set<int> colors;
    for (int row = y; row < y + height; ++row) {
        for (int column = x; column < x + width; ++column) {
            const Color color = colorAt(picture, column, row);
            colors.insert((color.r >> 4) << 8 | (color.g >> 4) << 4 | color.b >> 4);
        }
    }
    return static_cast<int>(colors.size());
}

void keep(const vlImages::Image& picture, const std::string& name) {
    const char* folder = std::getenv("VL_TEST_PICTURES");
    if (folder == nullptr) return;
    const auto png = vlImages::PngEncoder::encode(picture.view());
    if (!png) return;
    std::ofstream file(std::string(folder) + "/" + name + ".png", std::ios::binary);
    file.write(reinterpret_cast<const char*>(png->data()),
               static_cast<std::streamsize>(png->size()));
}

} // namespace tests
