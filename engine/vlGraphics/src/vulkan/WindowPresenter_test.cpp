#include "render/EngineTest.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace vlGraphics {
namespace {

/** A window of another client, as the engine sees an editor's viewport. */
class XWindow {
public:
    XWindow(std::uint16_t width, std::uint16_t height)
        : connection_(xcb_connect(nullptr, nullptr), xcb_disconnect) {
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(get())).data;
        id_ = xcb_generate_id(get());
        xcb_create_window(get(),
                          XCB_COPY_FROM_PARENT,
                          id_,
                          screen->root,
                          0,
                          0,
                          width,
                          height,
                          0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          screen->root_visual,
                          0,
                          nullptr);
        xcb_map_window(get(), id_);
        settle();
    }
    ~XWindow() { destroy(); }
    XWindow(const XWindow&) = delete;
    XWindow& operator=(const XWindow&) = delete;

    std::uint32_t id() const { return id_; }
    void resize(std::uint32_t width, std::uint32_t height) {
        const std::array<std::uint32_t, 2> values{width, height};
        xcb_configure_window(
                get(), id_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values.data());
        settle();
    }
    void destroy() {
        if (id_ != 0) xcb_destroy_window(get(), id_);
        id_ = 0;
        settle();
    }
    /// Blue, green, red of a pixel; zeros where the window shows none.
    std::array<std::uint8_t, 3> pixel(std::int16_t x, std::int16_t y) {
        const auto cookie =
                xcb_get_image(get(), XCB_IMAGE_FORMAT_Z_PIXMAP, id_, x, y, 1, 1, 0xFFFFFFFF);
        const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
                xcb_get_image_reply(get(), cookie, nullptr), std::free);
        if (!reply || xcb_get_image_data_length(reply.get()) < 3) return {};
        const std::uint8_t* data = xcb_get_image_data(reply.get());
        return {data[0], data[1], data[2]};
    }

private:
    xcb_connection_t* get() const { return connection_.get(); }
    void settle() {
        std::free(xcb_get_input_focus_reply(get(), xcb_get_input_focus(get()), nullptr));
    }

    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection_;
    xcb_window_t id_ = 0;
};

class WindowPresenting : public EngineTest {
protected:
    void SetUp() override {
        if (std::getenv("DISPLAY") == nullptr) GTEST_SKIP() << "needs an X server";
        EngineTest::SetUp();
    }
    void TearDown() override {
        if (!IsSkipped()) EngineTest::TearDown();
    }
    /// Presenting is the X server's to finish: draws until the pixel is there, within reason.
    static bool showsWithin(int frames, RenderContext& context, XWindow& window, std::int16_t x) {
        for (int i = 0; i < frames; ++i) {
            drawFrame(context);
            if (window.pixel(x, 5) == std::array<std::uint8_t, 3>{0, 255, 0}) return true;
        }
        return false;
    }
};

TEST_F(WindowPresenting, WindowShowsTheBackBufferAlsoAfterResizing) {
    XWindow window(64, 48);
    TestSurface surface(64, 48, PresentSurface::Kind::xcbWindow);
    surface.window = window.id();
    RenderContext& context = makeContext(surface);
    addBackBuffer(makeCompositor(context), {0, 1, 0, 1});
    EXPECT_TRUE(showsWithin(500, context, window, 60));
    window.resize(100, 30);
    surface.size = {100, 30};
    context.resize(0, 0);
    ASSERT_TRUE(context.apply().has_value());
    EXPECT_TRUE(showsWithin(500, context, window, 95));
}

TEST_F(WindowPresenting, WindowOfAnotherSizeThanThePictureIsFilled) {
    XWindow window(64, 48);
    TestSurface surface(32, 20, PresentSurface::Kind::xcbWindow);
    surface.window = window.id();
    RenderContext& context = makeContext(surface);
    addBackBuffer(makeCompositor(context), {0, 1, 0, 1});
    EXPECT_TRUE(showsWithin(500, context, window, 60));
}

TEST_F(WindowPresenting, VanishedWindowCostsItsPicturesOnly) {
    XWindow window(64, 48);
    TestSurface surface(64, 48, PresentSurface::Kind::xcbWindow);
    surface.window = window.id();
    RenderContext& context = makeContext(surface);
    addBackBuffer(makeCompositor(context), {0, 1, 0, 1});
    for (int i = 0; i < 3; ++i)
        drawFrame(context);
    window.destroy();
    for (int i = 0; i < 5; ++i)
        drawFrame(context);
    EXPECT_EQ(pixelAt(context.readBackBuffer().value(), 1, 1), (Rgba{0, 255, 0, 255}));
    context.detachSurface(100);
    drawFrame(context);
    EXPECT_TRUE(RenderContextManager::getInstance()->eraseFor(surface));
}

TEST_F(WindowPresenting, NoWindowIsAnError) {
    TestSurface surface(64, 48, PresentSurface::Kind::xcbWindow);
    surface.window = 0x7FFFFFF;
    const auto made = RenderContextManager::getInstance()->createRenderContext(
            RenderContextDescriptor(surface));
    if (made) drawFrame(**made); // some drivers only find out when they present
    EXPECT_EQ(RenderContextManager::getInstance()->getRenderContextOf(surface) != nullptr,
              made.has_value());
}

} // namespace
} // namespace vlGraphics
