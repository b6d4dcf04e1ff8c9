#include "programs/DefaultResources.h"
#include "render/RendererGpu.h"
#include "system/CacheFolder.h"
#include "system/Managers.h"
#include "vulkan/Device.h"
#include "vulkan/Instance.h"
#include "vulkan/XcbConnection.h"

#include <vlGraphics/System.h>

#include <chrono>
#include <optional>

namespace vlGraphics {

namespace {

using Clock = std::chrono::steady_clock;

std::unique_ptr<System>& instance() {
    static std::unique_ptr<System> system;
    return system;
}

} // namespace

/// From the first to be made to the last; they go in the reverse order.
struct System::State {
    vulkan::XcbConnection connection;
    std::unique_ptr<vulkan::Instance> instance;
    std::unique_ptr<vulkan::Device> device;
    Clock::time_point start = Clock::now();
    std::optional<std::uint64_t> fixedTimeMs;
    std::optional<Managers> managers;
};

System::System() : state_(std::make_unique<State>()) {
}

System::~System() {
    if (state_->device) state_->device->waitIdle();
    state_->managers.reset();
    renderer_.reset();
}

vlCommon::Result<> System::start(const Configuration& configuration) {
    auto made = vulkan::Instance::create(configuration.validation, configuration.presenting);
    if (!made) return tl::unexpected(made.error());
    state_->instance = *std::move(made);
    auto device = vulkan::Device::create(*state_->instance);
    if (!device) return tl::unexpected(device.error());
    state_->device = *std::move(device);
    deviceDescription_ = state_->device->choice().description;
    const vlMemory::String kept = cacheFolder(configuration.cacheFolder);
    state_->managers.emplace(configuration.compileThreads,
                             configuration.keepPrograms && !kept.empty() ? kept + "/programs"
                                                                         : vlMemory::String());
    renderer_ = std::make_unique<Renderer>();
    return renderer_->gpu().start(configuration);
}

void System::prepare(const Configuration& configuration) {
    if (!configuration.validation) vulkan::Instance::createAhead(configuration.presenting);
}

vlCommon::Result<> System::initialize(const Configuration& configuration) {
    if (instance()) return {};
    std::unique_ptr<System> system(new System);
    if (auto started = system->start(configuration); !started) return started;
    instance() = std::move(system);
    auto defaults = createDefaultResources();
    if (!defaults) shutdown();
    return defaults;
}

void System::shutdown() {
    // Resources that go may still ask for the system.
    if (instance()) instance()->renderer_->endWork();
    instance().reset();
    vulkan::Instance::dropAhead();
}

System* System::getInstance() {
    return instance().get();
}

void System::tickForNewFrame(RenderContext& context) {
    ProgramManager::getInstance()->adoptFinished();
    renderer_->gpu().timeMs = getTimeMs();
    renderer_->gpu().setNext(context);
}

std::uint64_t System::getValidationMessageCount() {
    return vulkan::Instance::validationMessageCount();
}

std::uint64_t System::getTimeMs() const {
    if (state_->fixedTimeMs) return *state_->fixedTimeMs;
    const auto elapsed = Clock::now() - state_->start;
    return static_cast<std::uint64_t>(
            std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
}

void System::setTimeMs(std::uint64_t timeMs) {
    state_->fixedTimeMs = timeMs;
}

} // namespace vlGraphics
