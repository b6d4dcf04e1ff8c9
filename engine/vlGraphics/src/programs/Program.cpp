#include "programs/ProgramCompiler.h"
#include "programs/StageNames.h"
#include "vulkan/ProgramGpu.h"

#include <vlGraphics/LogManager.h>
#include <vlGraphics/Program.h>

#include <fmt/format.h>

#include <charconv>
#include <utility>

namespace vlGraphics {

ProgramCompilationResult::ProgramCompilationResult(SHADER_TYPE stage,
                                                   vlMemory::StringView errorMessage) {
    ProgramDiagnostic& only = diagnostics_.emplace_back();
    only.stage = stage;
    const char* const end = errorMessage.data() + errorMessage.size();
    const auto read = std::from_chars(errorMessage.data(), end, only.line);
    const bool isPlaced =
            read.ec == std::errc() && vlMemory::StringView(read.ptr, end).starts_with(": ");
    only.text = isPlaced ? vlMemory::StringView(read.ptr + 2, end) : errorMessage;
}

vlMemory::String ProgramCompilationResult::getErrorMessage() const {
    if (isSuccess()) return {};
    const ProgramDiagnostic& first = diagnostics_.front();
    const char* const between = first.file.empty() ? "" : ":";
    return fmt::format("{}{}{}: {}", first.file, between, first.line, first.text);
}

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
    // A text that files no longer hold includes what it did.
    if (!folder.empty()) includeFolder_ = folder;
    markChanged();
}

void Program::setIncludeFolder(vlMemory::StringView folder) {
    includeFolder_ = folder;
    markChanged();
}

void Program::setActivateCrossCompilerDefines(bool value) {
    crossCompilerDefines_ = value;
    markChanged();
}

void Program::setBoundLoops(bool value) {
    boundLoops_ = value;
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
    triedGpu_.reset();
    triedReflection_ = {};
    isTried_ = true;
    result_ = {};
    includedFiles_.clear();
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

void ProgramManager::setCompiledCallback(std::function<void(Program&)> callback) {
    compiled_ = std::move(callback);
}

void ProgramManager::tellCompiled(Program& program) const {
    const ProgramCompilationResult& result = program.getLastCompilationResult();
    if (compiled_)
        compiled_(program);
    else if (!result.isSuccess())
        LogManager::getInstance().log(fmt::format("program '{}', {} stage: {}",
                                                  program.getName(),
                                                  stageName(result.getStage()),
                                                  result.getErrorMessage()));
}

} // namespace vlGraphics
