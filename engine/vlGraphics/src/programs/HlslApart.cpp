#include "programs/ApartProcess.h"
#include "programs/DeepStack.h"
#include "programs/HlslCompiler.h"
#include "programs/ProgramArchive.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace vlGraphics {

namespace {

using vlMemory::StringView;

/// Far more than what the bounds of sources let a text need.
constexpr unsigned mostCompileSeconds = 10;
/// Of looking for the line that the compiler breaks down on: for all of it, and for one try.
constexpr std::chrono::seconds mostSearchTime{5};
constexpr unsigned mostTrySeconds = 2;

ApartResult compileInCopy(const CompileRequest& request, unsigned mostSeconds) {
    return runApart([&](ApartNote& note) { return toBytes(compileHere(request, note)); },
                    mostSeconds);
}

/// Where each line ends.
std::vector<std::size_t> lineEnds(StringView text) {
    std::vector<std::size_t> ends;
    for (std::size_t at = text.find('\n'); at != StringView::npos; at = text.find('\n', at + 1))
        ends.push_back(at + 1);
    if (ends.empty() || ends.back() < text.size()) ends.push_back(text.size());
    return ends;
}

/** The line that the compiler breaks down on: the last of the fewest lines that it breaks down on.
 * 1 where it takes more than this stage's text, or more time than there is for it. */
std::uint32_t findBreakingLine(CompileRequest request, SHADER_TYPE stage) {
    using Clock = std::chrono::steady_clock;
    const auto until = Clock::now() + mostSearchTime;
    const vlMemory::String text = request.sources.getMemory(stage);
    for (const SHADER_TYPE other : stagesOf(request.type))
        if (other != stage) request.sources.setMemory(other, "");
    const std::vector<std::size_t> ends = lineEnds(text);
    bool isKnown = true;
    const auto isBroken = [&](std::size_t end) {
        isKnown = isKnown && Clock::now() < until;
        if (!isKnown) return true;
        request.sources.setMemory(stage, StringView(text).substr(0, end));
        const auto found = compileInCopy(request, mostTrySeconds).end;
        isKnown = found == ApartResult::End::BROKEN || found == ApartResult::End::DONE;
        return found == ApartResult::End::BROKEN;
    };
    if (!isBroken(ends.back())) return 1;
    const auto found = std::partition_point(
            ends.begin(), ends.end() - 1, [&](std::size_t end) { return !isBroken(end); });
    return isKnown ? static_cast<std::uint32_t>(found - ends.begin()) + 1 : 1;
}

ProgramDiagnostic faultOf(const CompileRequest& request, const ApartResult& result) {
    ProgramDiagnostic fault;
    fault.stage = static_cast<SHADER_TYPE>(result.note % shaderTypeCount);
    switch (result.end) {
    case ApartResult::End::STOPPED:
        fault.text = fmt::format("the compiler has not come to an end in {} seconds",
                                 mostCompileSeconds);
        break;
    case ApartResult::End::ENDED:
        fault.text = "the compiler was ended before it came to an end; it may be tried again";
        break;
    case ApartResult::End::NOT_RUN:
        fault.stage = request.type == PROGRAM_TYPE::NONE ? SHADER_TYPE::VERTEX
                                                         : stagesOf(request.type).front();
        fault.text = "the system gives the compiler no process; it may be tried again";
        break;
    default:
        fault.text = "the compiler breaks down on it";
        if (result.note < shaderTypeCount) fault.line = findBreakingLine(request, fault.stage);
    }
    return fault;
}

CompileReport compileApart(const CompileRequest& request) {
    if (!compilesApart) {
        ApartNote note = 0;
        return compileHere(request, note);
    }
    const ApartResult result = compileInCopy(request, mostCompileSeconds);
    if (result.end == ApartResult::End::DONE)
        if (auto report = reportFrom(result.bytes)) return *std::move(report);
    CompileReport failed(
            CompileOutcome(tl::unexpected(ProgramCompilationResult({faultOf(request, result)}))));
    // What it broke down on may stand in one of these, and be mended there.
    IncludeFiles files(request.workingPath, request.folder, request.filePrefix);
    readIncludes(request, files);
    failed.probes = files.probes();
    failed.includedFiles = files.names();
    failed.isLasting =
            result.end == ApartResult::End::BROKEN || result.end == ApartResult::End::STOPPED;
    return failed;
}

} // namespace

CompileReport compileHlsl(const CompileRequest& request) {
    CompileReport report{CompileOutcome()};
    const auto compile = [&] {
        warmUpCompiler();
        report = compileApart(request);
    };
    if (runOnDeepStack(compile)) return report;
    const SHADER_TYPE first =
            request.type == PROGRAM_TYPE::NONE ? SHADER_TYPE::VERTEX : stagesOf(request.type)[0];
    return CompileOutcome(tl::unexpected(
            ProgramCompilationResult(first, "1: no memory for the compiler's stack")));
}

CompileOutcome
compileHlsl(PROGRAM_TYPE type, const ProgramSourcesHolder& sources, bool crossCompilerDefines) {
    CompileRequest request;
    request.type = type;
    request.sources = sources;
    request.crossCompilerDefines = crossCompilerDefines;
    return compileHlsl(request).outcome;
}

} // namespace vlGraphics
