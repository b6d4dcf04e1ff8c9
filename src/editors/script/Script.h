#pragma once
#include "editors/script/ScriptMessages.h"
#include "interfaces/ContainerType.h"
#include "interfaces/kinds/ResourceInterface.h"

namespace vlEditor {

VL_RESOURCE_KIND_NAMES(Script);

struct ScriptSource : SetField<ScriptKind, &ScriptRecord::source> {};

using ScriptSourceMessage = ResourceEditMessage<ScriptSource>;

} // namespace vlEditor
