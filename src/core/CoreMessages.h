#pragma once
#include "core/MessageRegistry.h"

namespace vlEditor {

void registerCoreMessages(MessageRegistry& registry);

} // namespace vlEditor
