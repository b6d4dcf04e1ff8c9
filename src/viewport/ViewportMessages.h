#pragma once
#include "core/MessageRegistry.h"

namespace vlEditor {

void registerViewportMessages(MessageRegistry& registry);

} // namespace vlEditor
