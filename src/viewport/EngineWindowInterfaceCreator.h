#pragma once
#include "interfaces/Interface.h"

#include <memory>

namespace vlEditor {

/** Builds viewports. UI thread only. */
class EngineWindowInterfaceCreator {
public:
    EngineWindowInterfaceCreator() = delete;

    /// With components named by a number that never comes again.
    static std::unique_ptr<Interface> create();
};

} // namespace vlEditor
