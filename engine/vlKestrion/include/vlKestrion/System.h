#pragma once
#include <vlCommon/Result.h>
#include <vlGraphics/Configuration.h>

#include <memory>

namespace vlScripts {
class Environment;
class ScriptManager;
} // namespace vlScripts

namespace vlKestrion {

class MaterialManager;
class ProjectLoader;

/** The engine's life as a whole: the libraries below, materials, scripts and projects. Both
 * operations belong to the thread that owns the engine then. */
class System final {
public:
    /// Fails with one line when the device cannot be had; nothing stays behind then. Does nothing
    /// while the engine runs already.
    static vlCommon::Result<> initialize(const vlGraphics::Configuration& configuration);
    /// Destroys every resource and the device. May be called twice, and without initialize().
    static void shutdown();
    /// Null before initialize() and after shutdown().
    static System* getInstance();

    ~System();
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    ProjectLoader& getProjectLoader() { return *projectLoader_; }
    /// Where scripts meet the engine, with the engine's tables in it.
    vlScripts::Environment& getScriptEnvironment() { return *scriptEnvironment_; }

private:
    System();
    std::unique_ptr<MaterialManager> materials_;
    std::unique_ptr<ProjectLoader> projectLoader_;
    std::unique_ptr<vlScripts::ScriptManager> scripts_;
    std::unique_ptr<vlScripts::Environment> scriptEnvironment_;
};

} // namespace vlKestrion
