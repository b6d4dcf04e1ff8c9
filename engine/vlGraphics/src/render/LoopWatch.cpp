#include "render/LoopWatch.h"

#include "programs/LoopGuard.h"
#include "programs/ProgramCompiler.h"
#include "vulkan/Device.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <optional>

namespace vlGraphics::render {

using vulkan::Device;

namespace {

std::uint32_t* wordsOf(const Program::Gpu& gpu) {
    return reinterpret_cast<std::uint32_t*>(gpu.loopWords.mapped());
}

/// Of a result that no frame uses that has not ended.
void clearWords(const Program::Gpu& gpu) {
    if (gpu.tellingStages == 0) return;
    for (std::uint32_t stage = 0; stage < shaderTypeCount; ++stage)
        std::atomic_ref<std::uint32_t>(wordsOf(gpu)[stage]).store(0);
}

ProgramDiagnostic describe(SHADER_TYPE stage, std::uint32_t word, const Program::Gpu& gpu) {
    const bool tookTooLong = (word & LoopWords::tookTooLong) != 0;
    const std::size_t number = word & ~LoopWords::tookTooLong;
    ProgramDiagnostic told;
    told.stage = stage;
    const std::vector<LoopPlace>& places = gpu.loops[static_cast<std::size_t>(stage)];
    if (number >= 1 && number <= places.size()) {
        told.file = places[number - 1].file;
        told.line = places[number - 1].line;
    }
    told.text = tookTooLong
                        ? "the loop was stopped: its frame took too long"
                        : fmt::format("the loop was stopped: more than {} passes", gpu.mostPasses);
    return told;
}

} // namespace

void LoopWatch::use(const Program& program) {
    const Program::Gpu& gpu = *program.gpu();
    if (gpu.tellingStages == 0) return;
    const auto isSame = [&gpu](const Use& use) { return use.serial == gpu.serial; };
    if (std::any_of(recorded_.begin(), recorded_.end(), isSame)) return;
    recorded_.push_back({ProgramManager::getInstance()->handleOf(program.getName()),
                         gpu.serial,
                         wordsOf(gpu),
                         0});
}

void LoopWatch::record(VkCommandBuffer commands) const {
    if (recorded_.empty()) return;
    auto barrier = vulkan::vkInfo<VkMemoryBarrier2>(VK_STRUCTURE_TYPE_MEMORY_BARRIER_2);
    barrier.srcStageMask = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT;
    barrier.srcAccessMask = VK_ACCESS_2_SHADER_STORAGE_WRITE_BIT;
    barrier.dstStageMask = VK_PIPELINE_STAGE_2_HOST_BIT;
    barrier.dstAccessMask = VK_ACCESS_2_HOST_READ_BIT;
    auto info = vulkan::vkInfo<VkDependencyInfo>(VK_STRUCTURE_TYPE_DEPENDENCY_INFO);
    info.memoryBarrierCount = 1;
    info.pMemoryBarriers = &barrier;
    vkCmdPipelineBarrier2(commands, &info);
}

void LoopWatch::submitted(std::uint64_t value) {
    for (Use& use : recorded_) {
        use.value = value;
        running_.push_back(use);
    }
    recorded_.clear();
}

void LoopWatch::look() {
    if (running_.empty()) return;
    const std::uint64_t completed = Device::getInstance()->completed();
    const auto firstRunning = std::find_if(running_.begin(), running_.end(), [&](const Use& use) {
        return use.value > completed;
    });
    const std::vector<Use> ended(running_.begin(), firstRunning);
    running_.erase(running_.begin(), firstRunning);
    if (Device::getInstance()->isLost()) return;
    for (const Use& use : ended)
        judge(use);
}

void LoopWatch::judge(const Use& use) const {
    Program* program = ProgramManager::getInstance()->resolve(use.program);
    if (program == nullptr || program->gpu() == nullptr || program->gpu()->serial != use.serial)
        return;
    std::vector<ProgramDiagnostic> stopped;
    for (std::uint32_t stage = 0; stage < shaderTypeCount; ++stage) {
        std::atomic_ref<std::uint32_t> word(wordsOf(*program->gpu())[stage]);
        std::uint32_t told = word.load();
        // It was asked, and had no loop to leave.
        if (told == LoopWords::askedToStop && word.compare_exchange_strong(told, 0)) continue;
        if (told != 0)
            stopped.push_back(describe(static_cast<SHADER_TYPE>(stage), told, *program->gpu()));
    }
    ProgramCompiler& compiler = *ProgramCompiler::getInstance();
    if (stopped.empty()) {
        compiler.keep(*program);
        return;
    }
    compiler.takeBack(*program, ProgramCompilationResult(std::move(stopped)));
    // Its last frame may have been asked to stop, and was not judged any more.
    if (program->gpu() != nullptr) clearWords(*program->gpu());
}

void LoopWatch::askToStop() const {
    const std::uint64_t completed = Device::getInstance()->completed();
    for (const Use& use : running_) {
        if (use.value <= completed) continue;
        for (std::uint32_t stage = 0; stage < shaderTypeCount; ++stage) {
            std::uint32_t well = 0;
            std::atomic_ref<std::uint32_t>(use.words[stage])
                    .compare_exchange_strong(well, LoopWords::askedToStop);
        }
    }
}

} // namespace vlGraphics::render
