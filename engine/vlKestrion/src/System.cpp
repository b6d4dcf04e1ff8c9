#include "script/EngineTables.h"

#include <vlGraphics/System.h>
#include <vlKestrion/Material.h>
#include <vlKestrion/ProjectLoader.h>
#include <vlKestrion/System.h>
#include <vlScripts/Environment.h>
#include <vlScripts/ScriptManager.h>

namespace vlKestrion {

namespace {

std::unique_ptr<System>& instance() {
    static std::unique_ptr<System> system;
    return system;
}

} // namespace

System::System()
    : materials_(std::make_unique<MaterialManager>()),
      projectLoader_(std::make_unique<ProjectLoader>()),
      scripts_(std::make_unique<vlScripts::ScriptManager>()),
      scriptEnvironment_(std::make_unique<vlScripts::Environment>()) {
    addEngineTables(scriptEnvironment_->interpreter());
}

System::~System() = default;

vlCommon::Result<> System::initialize(const vlGraphics::Configuration& configuration) {
    if (instance()) return {};
    if (auto started = vlGraphics::System::initialize(configuration); !started) return started;
    instance() = std::unique_ptr<System>(new System);
    return {};
}

void System::shutdown() {
    if (!instance()) return;
    instance().reset();
    vlGraphics::System::shutdown();
}

System* System::getInstance() {
    return instance().get();
}

} // namespace vlKestrion
