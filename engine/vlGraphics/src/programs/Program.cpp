#include "programs/ProgramCompiler.h"
#include "vulkan/ProgramGpu.h"

#include <vlGraphics/Program.h>

#include <utility>

namespace vlGraphics {

void Program::setType(PROGRAM_TYPE type) {
    type_ = type;
    markChanged();
}

void Program::setFromMemory(ProgramSourcesHolder sources) {
    sources_ = std::move(sources);
    folder_.clear();
    markChanged();
}

void Program::setFromFiles(vlMemory::StringView folder) {
    folder_ = folder;
    markChanged();
}

void Program::setActivateCrossCompilerDefines(bool value) {
    crossCompilerDefines_ = value;
    markChanged();
}

vlCommon::Result<> Program::load() {
    ProgramCompiler* compiler = ProgramCompiler::getInstance();
    if (compiler == nullptr)
        return vlCommon::fail("program '" + getName() + "': the engine does not run");
    return compiler->start(*this);
}

void Program::unload() {
    if (ProgramCompiler* compiler = ProgramCompiler::getInstance()) compiler->cancel(*this);
    gpu_.reset();
    reflection_ = {};
    result_ = {};
    markChanged();
}

bool Program::isCompiling() const {
    return ticket_ != finished_;
}

void ProgramManager::adoptFinished() {
    if (ProgramCompiler* compiler = ProgramCompiler::getInstance()) compiler->adoptFinished();
}

void ProgramManager::waitForAll() {
    if (ProgramCompiler* compiler = ProgramCompiler::getInstance()) compiler->waitForAll();
}

bool ProgramManager::isAnyCompiling() const {
    const ProgramCompiler* compiler = ProgramCompiler::getInstance();
    return compiler != nullptr && compiler->isAnyCompiling();
}

} // namespace vlGraphics
