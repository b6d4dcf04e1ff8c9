#include "app/StartUp.h"

#include "app/AllMessages.h"
#include "app/ClosePath.h"
#include "app/Configuration.h"
#include "app/LayoutFile.h"
#include "app/LeavingClock.h"
#include "app/MainWindow.h"
#include "app/RenderingPropertyWindow.h"
#include "app/ViewTabs.h"
#include "core/EditorLogger.h"
#include "core/EngineHandler.h"
#include "core/MessageOrchestrator.h"
#include "core/WorkerPool.h"
#include "editors/AllKinds.h"
#include "editors/ShaderProgramChangedMessage.h"
#include "editors/ShaderReferences.h"
#include "editors/shader_program/ProgramFiles.h"
#include "editors/shader_program/ShaderProgramMessages.h"
#include "interfaces/CommonWindowInit.h"
#include "interfaces/InterfaceContainerCreator.h"
#include "interfaces/LogInterfaceCreator.h"
#include "interfaces/PickListDialog.h"
#include "interfaces/PickLists.h"
#include "interfaces/ViewedCamera.h"
#include "project/OpenProject.h"
#include "scene/GraphInterface.h"
#include "scene/GraphManager.h"
#include "viewport/BasicCompositor.h"
#include "viewport/DefaultView.h"
#include "viewport/EngineFrameRenderer.h"
#include "viewport/EngineSurfaceTable.h"
#include "viewport/EngineWindowEngineDataTracker.h"
#include "viewport/EngineWindowInterfaceCreator.h"

#include <vlCommon/ThreadBorder.h>
#include <vlGraphics/Camera.h>
#include <vlGraphics/System.h>
#include <vlInputs/System.h>
#include <vlKestrion/System.h>
#include <vlWinUi/InputSystem.h>
#include <vlWinUi/System.h>

#include <iostream>

namespace vlEditor {
namespace {

// A burst of messages then leaves room for the person's clicks and for drawing.
constexpr std::chrono::milliseconds longestDrain{4};

bool refuse(const std::string& line) {
    std::cerr << "vlEditor: " << line << '\n';
    return false;
}

bool startWindowSystem(const CommandLine& commandLine) {
    vlWinUi::SystemOptions options;
    options.arguments = {commandLine.programName};
    options.headless = commandLine.run && commandLine.run->headless;
    options.nativeDialogs = !commandLine.run;
    const auto started = vlWinUi::System::initialize(options);
    if (!started) {
        return refuse("No display was found (" + started.error().message +
                      "); use --render to draw without one.");
    }
    vlInputs::System::initialize();
    return true;
}

// What both threads reach for exists before there are two.
void createShared() {
    MessageOrchestrator::getInstance();
    WorkerPool::getInstance();
    EditorLogger::getInstance().attach();
    EngineSurfaceTable::getInstance();
    registerAllMessages(MessageRegistry::getInstance());
}

void installCallbacks() {
    vlWinUi::System::setRunCallback([] {
        MessageOrchestrator::getInstance().drainUiFor(longestDrain);
        return true;
    });
    vlWinUi::InputSystem::setCloseCallback(ClosePath::close);
    vlWinUi::System::setTerminationCallback([] { ClosePath::leave(); });
}

bool prepareEngine() {
    ViewedCamera::connect(&EngineWindowEngineDataTracker::getInstance());
    GraphManager::getInstance();
    DefaultView::apply(*vlGraphics::CameraManager::getInstance()->getActiveRenderCamera());
    const auto made = BasicCompositor::create();
    return made ? true : refuse(made.error().message);
}

/// From now on windows say what the log would.
void followPrograms() {
    ProgramFiles::getInstance();
    ShaderReferences::getInstance();
    vlGraphics::ProgramManager::getInstance()->setCompiledCallback(
            [](vlGraphics::Program& program) {
                tellProgramCompiled(program);
                postToGraphics(ShaderProgramChangedMessage(program.getName()));
            });
}

void createViews(const CommandLine& commandLine) {
    MainWindow& mainWindow = MainWindow::getInstance();
    LayoutFile::setEnabled(commandLine.keepsLayout);
    if (const auto kept = LayoutFile::load())
        mainWindow.apply(*kept);
    else
        ViewTabs::createFirst(mainWindow.getTabs());
}

void registerInterfaces() {
    auto& containers = InterfaceContainerCreator::getInstance();
    containers.setCreator(ContainerType::engineWindow, EngineWindowInterfaceCreator::create);
    containers.setCreator(ContainerType::log, LogInterfaceCreator::create);
    containers.setCreator(ContainerType::graph, GraphInterface::create);
    for (const AnyKind* kind : allKinds())
        containers.setCreator(kind->containerType(), [kind] { return kind->createInterface(); });
}

} // namespace

bool StartUp::run(const CommandLine& commandLine) {
    vlCommon::ThreadBorder::claimUi();
    const vlGraphics::Configuration engine;
    vlGraphics::System::prepare(engine);
    if (!startWindowSystem(commandLine)) return false;
    createShared();
    const auto started = vlKestrion::System::initialize(engine);
    if (!started) return refuse(started.error().message);
    MainWindow& mainWindow = MainWindow::getInstance();
    mainWindow.create();
    installCallbacks();
    if (!prepareEngine()) return false;
    PickLists::getInstance().createFirstGroup();
    Configuration::load();
    registerInterfaces();
    followPrograms();
    createViews(commandLine);
    RenderingPropertyWindow::create();
    PickLists::getInstance().createSecondGroup();
    CommonWindowInit::addNewTabTab(mainWindow.getTabs());
    mainWindow.show();
    // So that the first frame has the size that the viewport keeps.
    vlWinUi::System::settle();
    EngineHandler& handler = EngineHandler::getInstance();
    handler.setScriptEnvironment(&vlKestrion::System::getInstance()->getScriptEnvironment());
    handler.start(std::make_unique<EngineFrameRenderer>(), LeavingClock::fromEnvironment());
    if (!commandLine.project.empty()) OpenProject::open(commandLine.project);
    // While the graphics thread already works: nobody can ask for one before the event loop runs.
    PickListDialog::createAll();
    return true;
}

} // namespace vlEditor
