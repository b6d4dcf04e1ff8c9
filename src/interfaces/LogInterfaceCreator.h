#pragma once
#include "interfaces/Interface.h"

#include <memory>

namespace vlEditor {

/** Builds log windows, any number of them. UI thread only. */
class LogInterfaceCreator {
public:
    LogInterfaceCreator() = delete;

    /// With components named by a number that never comes again.
    static std::unique_ptr<Interface> create();
};

} // namespace vlEditor
