#pragma once
#include <chrono>
#include <memory>
#include <string>

namespace vlScripts {
class CompiledScript;
class Environment;
} // namespace vlScripts

namespace vlEditor {

/** The script that the graphics thread runs in each turn, if there is one. What it changes in the
 *  engine is seen in the same turn's pictures. Graphics thread only (whoever owns the engine). */
class RenderingScript final {
public:
    /// Half a frame at 60 a second: a script that never ends costs this much a turn and no more.
    static constexpr std::chrono::milliseconds turnTime{8};

    /// Null: none.
    void set(std::shared_ptr<const vlScripts::CompiledScript> script);
    const std::shared_ptr<const vlScripts::CompiledScript>& get() const { return script_; }
    /// Empty for none.
    std::string getName() const;

    /// Each run that fails sends its reason to the log. Without an environment nothing runs.
    void run(vlScripts::Environment* environment) const;

private:
    std::shared_ptr<const vlScripts::CompiledScript> script_;
};

} // namespace vlEditor
