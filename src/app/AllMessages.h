#pragma once
#include "core/MessageRegistry.h"

namespace vlEditor {

/// Every kind of message of the program.
void registerAllMessages(MessageRegistry& registry);

} // namespace vlEditor
