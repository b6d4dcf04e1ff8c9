#pragma once

namespace vlInputs {

/** Start and end of the input library, which holds the keyboard and mouse devices that camera
 *  controllers poll. It has a place of its own in the start-up order: after the window system,
 * before the engine; shutdown goes the other way round. No device is registered by initialize()
 * itself. UI thread only. Both calls may be repeated; only the first of a row has an effect. */
class System {
public:
    System() = delete;

    static void initialize();
    static void shutdown();
    static bool isInitialized();
};

} // namespace vlInputs
