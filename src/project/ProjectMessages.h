#pragma once
#include "core/MessageRegistry.h"

namespace vlEditor {

void registerProjectMessages(MessageRegistry& registry);

} // namespace vlEditor
