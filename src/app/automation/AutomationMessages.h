#pragma once
#include "core/MessageRegistry.h"

namespace vlEditor {

void registerAutomationMessages(MessageRegistry& registry);

} // namespace vlEditor
