#include "core/GraphicsThreadLogger.h"

#include "core/EditorLogger.h"
#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"

namespace vlEditor {

void GraphicsThreadLogger::log(vlMemory::StringView text) {
    if (!EditorLogger::getInstance().isEnabled()) return;
    postToUi(LogMessage("[GraphicsThread] " + std::string(text)));
}

} // namespace vlEditor
