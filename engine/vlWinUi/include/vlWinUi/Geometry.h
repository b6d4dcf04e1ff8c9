#pragma once

namespace vlWinUi {

/** A place on the screen or in a component, in device-independent pixels unless said otherwise. */
struct Point {
    int x = 0;
    int y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

/** A rectangle in device-independent pixels. All zero means: where the library finds best. */
struct Rectangle {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

} // namespace vlWinUi
