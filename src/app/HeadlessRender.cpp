#include "app/HeadlessRender.h"

#include "interfaces/HeadlessSurface.h"
#include "interfaces/ReservedNames.h"
#include "viewport/BasicCompositor.h"
#include "viewport/DefaultView.h"

#include <vlGraphics/Camera.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/Program.h>
#include <vlGraphics/RenderContext.h>
#include <vlGraphics/System.h>
#include <vlImages/JpgEncoder.h>
#include <vlImages/PngEncoder.h>
#include <vlKestrion/ProjectLoader.h>
#include <vlKestrion/System.h>
#include <vlResources/FileWriter.h>

namespace vlEditor {
namespace {

using Errors = std::vector<std::string>;

struct Running {
    ~Running() { vlKestrion::System::shutdown(); }
};

struct View {
    std::string compositor;
    std::string camera; ///< empty: the default view
};

template <class Manager>
void require(std::string_view kind, const std::string& name, Errors& errors) {
    if (name.empty() || Manager::getInstance()->get(name) != nullptr) return;
    errors.push_back(std::string(kind) + " '" + name + "' not found");
}

View chooseView(const CommandLine::Render& wish,
                const vlKestrion::ProjectLoadResult& project,
                Errors& errors) {
    require<vlGraphics::CompositorManager>("compositor", wish.compositor, errors);
    require<vlGraphics::CameraManager>("camera", wish.camera, errors);
    View view;
    view.compositor = !wish.compositor.empty()      ? wish.compositor
                      : !project.compositor.empty() ? project.compositor
                                                    : std::string(ReservedNames::basicCompositor);
    view.camera = !wish.camera.empty() ? wish.camera : project.camera;
    return view;
}

/// The engine logs each program that does not compile, with stage and line.
bool allProgramsCompile() {
    auto& programs = *vlGraphics::ProgramManager::getInstance();
    programs.waitForAll();
    bool all = true;
    for (std::size_t i = 0; const auto* program = programs.getByIndex(i); ++i) {
        all = all && program->getLastCompilationResult().isSuccess();
    }
    return all;
}

/// The context has no camera of its own, so it is drawn through the default one.
void setUp(vlGraphics::RenderContext& context, const View& view) {
    auto& cameras = *vlGraphics::CameraManager::getInstance();
    vlGraphics::Camera& camera = *cameras.getDefaultCamera();
    const vlGraphics::Camera* source = cameras.get(view.camera);
    if (source != nullptr)
        camera.setSettings(source->getSettings());
    else
        DefaultView::apply(camera);
    camera.prepareForContext(context);
    auto& compositors = *vlGraphics::CompositorManager::getInstance();
    context.setCompositor(compositors.handleOf(view.compositor));
}

void drawFrames(vlGraphics::RenderContext& context, std::uint32_t count) {
    auto& system = *vlGraphics::System::getInstance();
    vlGraphics::Renderer& renderer = system.getRenderer();
    for (std::uint64_t frame = 0; frame < count; ++frame) {
        system.setTimeMs(frame * 1000 / 60);
        system.tickForNewFrame(context);
        renderer.beginFrame();
        vlGraphics::CompositorManager::getInstance()->getActiveCompositor()->draw();
        renderer.endFrame();
    }
}

vlCommon::Result<> write(const vlGraphics::RenderContext& context, const std::string& file) {
    const auto image = context.readBackBuffer();
    if (!image) return tl::unexpected(image.error());
    const auto encoded = file.ends_with(".png") ? vlImages::PngEncoder::encode(image->view())
                                                : vlImages::JpgEncoder::encode(image->view());
    if (!encoded) return vlCommon::fail("'" + file + "': " + encoded.error().message);
    return vlResources::FileWriter::writeFileWhole(file, encoded->span());
}

vlCommon::Result<> draw(const CommandLine::Render& wish, const View& view) {
    HeadlessSurface surface({wish.width, wish.height});
    auto& contexts = *vlGraphics::RenderContextManager::getInstance();
    const auto context = contexts.createRenderContext(vlGraphics::RenderContextDescriptor(surface));
    if (!context) return tl::unexpected(context.error());
    setUp(**context, view);
    drawFrames(**context, wish.frames);
    vlGraphics::System::getInstance()->getRenderer().endWork();
    if (!allProgramsCompile())
        return vlCommon::fail("'" + wish.output + "' was not written: a shader had to be stopped");
    auto written = write(**context, wish.output);
    contexts.eraseFor(surface);
    return written;
}

} // namespace

HeadlessRender::Outcome HeadlessRender::toFile(const CommandLine::Render& wish,
                                               const std::string& project) {
    vlGraphics::Configuration configuration;
    configuration.presenting = false;
    const auto started = vlKestrion::System::initialize(configuration);
    if (!started) return {false, {started.error().message}};
    const Running running;
    if (const auto made = BasicCompositor::create(); !made) return {false, {made.error().message}};

    const vlKestrion::ProjectLoadResult loaded =
            vlKestrion::System::getInstance()->getProjectLoader().load(
                    vlKestrion::ProjectLoadQuery(project));
    Errors errors = loaded.errors;
    if (!loaded.opened) return {false, std::move(errors)};
    const View view = chooseView(wish, loaded, errors);
    if (!allProgramsCompile() || !errors.empty()) return {false, std::move(errors)};
    const auto drawn = draw(wish, view);
    if (!drawn) return {false, {drawn.error().message}};
    return {true, {}};
}

} // namespace vlEditor
