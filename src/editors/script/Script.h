#pragma once
#include "editors/script/ScriptMessages.h"
#include "interfaces/ContainerType.h"
#include "interfaces/kinds/ResourceInterface.h"

namespace vlEditor {

VL_RESOURCE_KIND_NAMES(Script);

VL_FIELD_EDIT(Script, Source, source);

} // namespace vlEditor
