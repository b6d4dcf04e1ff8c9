#pragma once
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

namespace vlScripts {
class CompiledScript;
class Environment;
class Script;
} // namespace vlScripts

namespace vlEditor {

/** The script that the graphics thread runs in each turn, if there is one: a snapshot, or what a
 *  script of the ScriptManager last compiled to. Such a script is followed through renames and
 *  until it is erased; while its text does not compile, the last good snapshot runs on. What the
 *  script changes in the engine is seen in the same turn's pictures. The UI is told of each new
 *  name by RenderingScriptChangeMessage. Graphics thread only (whoever owns the engine). */
class RenderingScript final {
public:
    /// Half a frame at 60 a second: a script that never ends costs this much a turn and no more.
    static constexpr std::chrono::milliseconds turnTime{8};

    /// Null: none.
    void set(std::shared_ptr<const vlScripts::CompiledScript> script);
    /// A script of the ScriptManager, which is loaded.
    void follow(const vlScripts::Script& script);
    const std::shared_ptr<const vlScripts::CompiledScript>& get() const { return script_; }
    /// Empty for none.
    const std::string& getName() const { return name_; }

    /// Each run that fails sends its reason to the log. Without an environment nothing runs.
    void run(vlScripts::Environment* environment);

private:
    /// Takes over what became of the followed script since the last turn.
    void update();
    void rename(const std::string& name);

    std::shared_ptr<const vlScripts::CompiledScript> script_;
    std::string name_;
    std::uint64_t followed_ = 0; ///< the script's id; 0: a snapshot of nobody's
    std::uint64_t revision_ = 0; ///< of the followed script, when it was last looked at
};

} // namespace vlEditor
