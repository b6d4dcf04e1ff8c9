#include "app/automation/ScriptRun.h"

#include "app/LeaveMessage.h"
#include "app/automation/Answers.h"
#include "app/automation/EditorTable.h"
#include "app/automation/UiTable.h"
#include "core/MessageOrchestrator.h"

#include <vlWinUi/Automation.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>
#include <iostream>
#include <vector>

namespace vlEditor {
namespace {

/// A script may take its time; only its memory is bounded.
constexpr vlScripts::Limits limits{
        .instructions = 0, .time = std::chrono::milliseconds(0), .memory = std::size_t{1} << 30U};
/// What a script whose last call ended the editor has for its own last lines.
constexpr std::chrono::seconds grace{2};

/// More than any script may have: a device gives bytes without end.
constexpr std::size_t mostRead = 32U << 20U;

vlCommon::Result<std::string> textOf(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string text;
    errno = 0;
    // A folder opens, but gives nothing to read.
    if (stream && stream.peek() != std::ifstream::traits_type::eof()) {
        std::vector<char> part(1U << 16U);
        while (text.size() < mostRead && stream) {
            stream.read(part.data(), static_cast<std::streamsize>(part.size()));
            text.append(part.data(), static_cast<std::size_t>(stream.gcount()));
        }
    }
    if (!stream.is_open() || errno != 0)
        return vlCommon::fail("'" + file + "': " + std::strerror(errno != 0 ? errno : ENOENT));
    // What some text editors put in front, and a first line that is for a shell.
    if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
    if (text.starts_with('#')) text.insert(0, "--");
    return text;
}

std::string shortest(double number) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number);
    return {text.data(), end.ptr};
}

/// Text of a call's arguments as print() of the language joins it; it goes to standard output.
vlCommon::Result<vlScripts::Values> print(std::span<const vlScripts::Value> given) {
    std::string line;
    for (const vlScripts::Value& value : given) {
        if (!line.empty()) line += '\t';
        if (const auto* text = value.asText())
            line += *text;
        else if (const auto flag = value.asBool())
            line += *flag ? "true" : "false";
        else if (const auto whole = value.asInteger())
            line += std::to_string(*whole);
        else if (const auto number = value.asNumber())
            line += shortest(*number);
        else
            line += value.describeKind();
    }
    std::cout << line + "\n" << std::flush;
    return vlScripts::Values{};
}

void complain(const vlScripts::ExecutionResult& result) {
    std::string text = "vlEditor: " + result.message + "\nstack traceback:\n" + result.traceback;
    while (text.ends_with('\n'))
        text.pop_back();
    std::cerr << text + "\n";
}

} // namespace

vlCommon::Result<std::unique_ptr<ScriptRun>> ScriptRun::load(const std::string& file) {
    const auto text = textOf(file);
    if (!text) return tl::unexpected(text.error());
    vlScripts::CompilationResult result;
    auto compiled = vlScripts::CompiledScript::compile(file, *text, result);
    if (compiled == nullptr) return vlCommon::fail(result.message);
    return std::unique_ptr<ScriptRun>(new ScriptRun(std::move(compiled)));
}

ScriptRun::ScriptRun(std::shared_ptr<const vlScripts::CompiledScript> script)
    : script_(std::move(script)), interpreter_(limits) {
    interpreter_.addFunction("print", print);
    UiTable::addTo(interpreter_);
    EditorTable::addTo(interpreter_);
}

ScriptRun::~ScriptRun() {
    finish();
}

void ScriptRun::start() {
    // Made before there are two threads that reach for it.
    Answers::getInstance();
    thread_ = std::thread([this] { run(); });
}

void ScriptRun::run() {
    const vlScripts::ExecutionResult result = interpreter_.execute(*script_);
    if (!result.succeeded) complain(result);
    {
        const std::lock_guard guard(lock_);
        succeeded_ = result.succeeded;
        ended_ = true;
    }
    changed_.notify_all();
    postToUi(LeaveMessage());
}

bool ScriptRun::finish() {
    if (!thread_.joinable()) return succeeded_;
    vlWinUi::Automation::stop();
    Answers::getInstance().end();
    {
        std::unique_lock guard(lock_);
        if (!changed_.wait_for(guard, grace, [this] { return ended_; })) interpreter_.interrupt();
    }
    thread_.join();
    return succeeded_;
}

} // namespace vlEditor
