#include "editors/script/ScriptStatus.h"

#include <algorithm>
#include <charconv>

namespace vlEditor {
namespace {

/// Of a longer name, errors give no more than this.
constexpr std::size_t longestChunkName = 59;

} // namespace

ScriptStatus errorStatus(const std::string& name, const std::string& message) {
    ScriptStatus status{.text = message, .isError = true};
    const std::string start = name.substr(0, longestChunkName) + ':';
    if (!message.starts_with(start)) return status;
    const char* const end = message.data() + message.size();
    std::size_t line = 0;
    const auto read = std::from_chars(message.data() + start.size(), end, line);
    if (read.ec != std::errc() || read.ptr == end || *read.ptr != ':') return status;
    status.line = line;
    status.text = "Line " + std::to_string(line) + std::string(read.ptr, end);
    return status;
}

std::string compileErrorOf(const vlScripts::Script& script) {
    const vlScripts::CompilationResult& result = script.getCompilationResult();
    return result.message == vlScripts::CompilationResult().message ? std::string()
                                                                    : result.message;
}

bool isCompiledAsItIs(const vlScripts::Script& script) {
    const auto compiled = script.getCompiled();
    return compiled && compiled->getText() == script.getSources() &&
           compiled->getName() == script.getName();
}

} // namespace vlEditor
