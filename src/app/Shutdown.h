#pragma once

namespace vlEditor {

/** Takes the editor down in one order, whether or not it came up wholly: the graphics thread, the
 *  engine, the log, what the widgets belong to, and the widgets last. UI thread only. */
class Shutdown {
public:
    Shutdown() = delete;
    static void run();
};

} // namespace vlEditor
