#include <vlCommon/ThreadBorder.h>
#include <vlInputs/System.h>

namespace vlInputs {

namespace {

bool initialized = false;

} // namespace

void System::initialize() {
    vlCommon::assertUiThread();
    initialized = true;
}

void System::shutdown() {
    vlCommon::assertUiThread();
    initialized = false;
}

bool System::isInitialized() {
    return initialized;
}

} // namespace vlInputs
