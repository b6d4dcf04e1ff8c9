#include <vlScripts/Environment.h>

namespace vlScripts {

bool Environment::execute(const CompiledScript& script) {
    last_ = interpreter_.execute(script);
    return last_.succeeded;
}

bool Environment::execute(const CompiledScript& script, std::chrono::milliseconds time) {
    const Limits usual = interpreter_.getLimits();
    Limits limits = usual;
    limits.time = time;
    interpreter_.setLimits(limits);
    const bool succeeded = execute(script);
    interpreter_.setLimits(usual);
    return succeeded;
}

bool Environment::execute(const Script& script) {
    if (const auto compiled = script.getCompiled()) return execute(*compiled);
    last_ = {};
    last_.succeeded = false;
    last_.message = "script '" + script.getName() + "' is not loaded";
    return false;
}

} // namespace vlScripts
