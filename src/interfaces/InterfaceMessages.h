#pragma once
#include "core/MessageRegistry.h"

namespace vlEditor {

void registerInterfaceMessages(MessageRegistry& registry);

} // namespace vlEditor
