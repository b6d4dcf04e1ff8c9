#pragma once

namespace vlEditor {

/** The two sets of colours. Both dress one theme. UI thread only. */
class Themes {
public:
    Themes() = delete;
    static void activateDark();
    static void activateLight();
};

} // namespace vlEditor
