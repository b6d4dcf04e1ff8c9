#include <vlScripts/Script.h>

#include <atomic>

namespace vlScripts {

std::uint64_t Script::nextId() {
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

void Script::setTargetInterpreter(std::uint32_t interpreter) {
    if (interpreter_ == interpreter) return;
    interpreter_ = interpreter;
    ++revision_;
}

void Script::setSources(std::string_view text) {
    if (sources_ == text) return;
    sources_ = text;
    ++revision_;
}

vlCommon::Result<> Script::load() {
    if (compiled_) return {};
    ++revision_;
    if (interpreter_ != luaInterpreter) {
        result_ = {CompilationResult::notLoaded,
                   "script '" + name_ + "': no interpreter has the number " +
                           std::to_string(interpreter_)};
    } else {
        compiled_ = CompiledScript::compile(name_, sources_, result_);
    }
    if (!compiled_) return vlCommon::fail(result_.message);
    return {};
}

void Script::unload() {
    ++revision_;
    compiled_.reset();
    result_ = {};
}

} // namespace vlScripts
