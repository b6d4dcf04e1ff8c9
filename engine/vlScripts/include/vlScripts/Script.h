#pragma once
#include <vlCommon/Result.h>
#include <vlScripts/CompiledScript.h>

namespace vlScripts {

/** A script's text as it is being worked on, and the last snapshot that compiled. Usable alone, or
 *  owned by the ScriptManager under a unique name. One thread at a time. */
class Script final {
public:
    static constexpr std::string_view kindName = "script";
    static constexpr std::uint32_t luaInterpreter = 1;

    explicit Script(std::string_view name) : name_(name), id_(nextId()) {}

    const std::string& getName() const { return name_; }
    /// Stays through a rename, and never comes again in this run: never 0.
    std::uint64_t getId() const { return id_; }
    /// 1 is Lua; load() refuses any other.
    void setTargetInterpreter(std::uint32_t interpreter);
    std::uint32_t getTargetInterpreter() const { return interpreter_; }
    /// Takes effect with the next load().
    void setSources(std::string_view text);
    const std::string& getSources() const { return sources_; }
    /// The editor's or the engine's own: no list shows it, no project saves it.
    void setHidden(bool hidden) { hidden_ = hidden; }
    bool isHidden() const { return hidden_; }

    /// Compiles the sources. A script that is loaded already stays as it is until unload().
    vlCommon::Result<> load();
    /// Forgets the snapshot; whoever holds it keeps it.
    void unload();
    bool isLoaded() const { return compiled_ != nullptr; }
    const CompilationResult& getCompilationResult() const { return result_; }
    /// Null while the script is not loaded.
    std::shared_ptr<const CompiledScript> getCompiled() const { return compiled_; }
    /// Grows with every change of the sources, the interpreter or the snapshot; never 0.
    std::uint64_t getRevision() const { return revision_; }

private:
    friend class ScriptManager;
    static std::uint64_t nextId();

    std::string name_;
    std::uint64_t id_;
    std::string sources_;
    std::uint32_t interpreter_ = luaInterpreter;
    bool hidden_ = false;
    std::uint64_t revision_ = 1;
    CompilationResult result_;
    std::shared_ptr<const CompiledScript> compiled_;
};

} // namespace vlScripts
