#pragma once
#include "core/MessageRegistry.h"

namespace vlEditor {

void registerSceneMessages(MessageRegistry& registry);

} // namespace vlEditor
