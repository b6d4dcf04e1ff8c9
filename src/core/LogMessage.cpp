#include "core/LogMessage.h"

#include "core/EditorLogger.h"

namespace vlEditor {

void LogMessage::runOnUiThread() {
    EditorLogger& logger = EditorLogger::getInstance();
    if (text.starts_with('['))
        logger.addLine(text);
    else
        logger.log(text, "Editor");
}

} // namespace vlEditor
