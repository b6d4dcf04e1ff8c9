#include "editors/ShaderProgramChangedMessage.h"

#include "editors/AllKinds.h"

#include <vlGraphics/Shader.h>

namespace vlEditor {

void ShaderProgramChangedMessage::runOnGraphicsThread() {
    const AnyKind* shaders = findKind("Shader");
    const auto* manager = vlGraphics::ShaderManager::getInstance();
    for (std::size_t i = 0; const auto* shader = manager->getByIndex(i); ++i) {
        const vlGraphics::Program* used = shader->getProgram();
        if (used != nullptr && used->getName() == program) shaders->reread(shader->getName());
    }
}

} // namespace vlEditor
