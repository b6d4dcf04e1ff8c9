#include "app/Shutdown.h"

#include "app/MainWindow.h"
#include "app/automation/Answers.h"
#include "core/EditorLogger.h"
#include "core/EngineHandler.h"
#include "core/MessageOrchestrator.h"
#include "core/MessageRegistry.h"
#include "core/RenderingScriptName.h"
#include "core/WorkerPool.h"
#include "editors/ShaderReferences.h"
#include "editors/shader_program/ProgramFiles.h"
#include "interfaces/CommandInterpreter.h"
#include "interfaces/InterfaceContainerCreator.h"
#include "interfaces/PickLists.h"
#include "interfaces/ViewedCamera.h"
#include "interfaces/history/History.h"
#include "scene/GraphElementUiDataTracker.h"
#include "scene/GraphManager.h"
#include "scene/TextureReplacements.h"
#include "viewport/EngineSurfaceTable.h"
#include "viewport/EngineWindowEngineDataTracker.h"
#include "viewport/EngineWindowUiDataTracker.h"

#include <vlInputs/System.h>
#include <vlKestrion/System.h>
#include <vlWinUi/System.h>

namespace vlEditor {
namespace {

void endEngine() {
    EngineHandler::getInstance();
    EngineHandler::destroyInstance();
    // A job that runs may reach for the pool to its end.
    WorkerPool::getInstance().stop();
    WorkerPool::destroyInstance();
    ViewedCamera::connect(nullptr);
    // The contexts go while their windows still exist.
    EngineWindowEngineDataTracker::destroyInstance();
    TextureReplacements::destroyInstance();
    GraphManager::destroyInstance();
    vlKestrion::System::shutdown();
    vlInputs::System::shutdown();
}

void endInterfaces() {
    InterfaceContainerCreator::destroyInstance();
    CommandInterpreter::destroyInstance();
    MainWindow::destroyInstance();
    ShaderReferences::destroyInstance();
    ProgramFiles::destroyInstance();
    // Nobody is left to run what the interfaces have posted at their end.
    MessageOrchestrator::getInstance().discard();
    // Its menu items are gone.
    History::destroyInstance();
    EngineWindowUiDataTracker::destroyInstance();
    GraphElementUiDataTracker::destroyInstance();
    PickLists::destroyInstance();
    RenderingScriptName::destroyInstance();
    MessageRegistry::destroyInstance();
    Answers::destroyInstance();
}

} // namespace

void Shutdown::run() {
    endEngine();
    EditorLogger::destroyInstance();
    endInterfaces();
    vlWinUi::System::kill();
    EngineSurfaceTable::destroyInstance();
    MessageOrchestrator::destroyInstance();
}

} // namespace vlEditor
