#include <vlScripts/Script.h>

namespace vlScripts {

vlCommon::Result<> Script::load() {
    if (compiled_) return {};
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
    compiled_.reset();
    result_ = {};
}

} // namespace vlScripts
