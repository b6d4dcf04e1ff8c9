#include <vlGraphics/ChangeCount.h>
#include <vlGraphics/TargetOperations.h>

#include <algorithm>

namespace vlGraphics {

std::unique_ptr<TargetOperations> TargetOperations::clone() const {
    auto copy = std::make_unique<TargetOperations>();
    copy->name_ = name_;
    copy->colorTargets_ = colorTargets_;
    copy->toBackBuffer_ = toBackBuffer_;
    copy->backBufferIndex_ = backBufferIndex_;
    copy->chainsDepth_ = chainsDepth_;
    copy->depthTarget_ = depthTarget_;
    copy->viewport_ = viewport_;
    for (const auto& pass : passes_)
        copy->passes_.push_back(pass ? pass->clone() : nullptr);
    return copy;
}

void TargetOperations::setName(vlMemory::StringView name) {
    if (name_ == name) return;
    name_ = name;
    ChangeCount::bump();
}

const TargetDescriptor* TargetOperations::getColorTarget(std::uint32_t index) const {
    return index < colorTargets_.size() ? &colorTargets_[index] : nullptr;
}

std::uint32_t TargetOperations::getColorTargetCount() const {
    return static_cast<std::uint32_t>(colorTargets_.size()) + (toBackBuffer_ ? 1 : 0);
}

std::uint32_t TargetOperations::getColorTargetRenderIndex(std::uint32_t index) const {
    constexpr std::uint32_t none = 0xFFFFFFFF;
    return index < colorTargets_.size() ? colorTargets_[index].renderIndex : none;
}

bool TargetOperations::addColorTarget(TargetDescriptor target) {
    if (getColorTargetCount() >= maxColorTargets) return false;
    auto targets = allColorTargets();
    targets.emplace_back(target.texture);
    setAllColorTargets(targets);
    return true;
}

bool TargetOperations::replaceColorTarget(std::uint32_t index, TargetDescriptor target) {
    auto targets = allColorTargets();
    if (index >= targets.size()) return false;
    targets[index] = target.texture;
    setAllColorTargets(targets);
    return true;
}

bool TargetOperations::eraseColorTarget(std::uint32_t index) {
    auto targets = allColorTargets();
    if (index >= targets.size()) return false;
    targets.erase(targets.begin() + index);
    setAllColorTargets(targets);
    return true;
}

bool TargetOperations::swapColorTargets(std::uint32_t index, std::uint32_t other) {
    auto targets = allColorTargets();
    if (index >= targets.size() || other >= targets.size()) return false;
    std::swap(targets[index], targets[other]);
    setAllColorTargets(targets);
    return true;
}

bool TargetOperations::setToBackBuffer(std::uint32_t renderIndex) {
    auto targets = allColorTargets();
    std::erase_if(targets, [](const auto& target) { return !target.has_value(); });
    if (targets.size() >= maxColorTargets) return false;
    const auto place = std::min<std::size_t>(renderIndex, targets.size());
    targets.insert(targets.begin() + static_cast<std::ptrdiff_t>(place), std::nullopt);
    setAllColorTargets(targets);
    return true;
}

std::vector<std::optional<Handle<Texture>>> TargetOperations::allColorTargets() const {
    std::vector<std::optional<Handle<Texture>>> targets(getColorTargetCount());
    for (const TargetDescriptor& target : colorTargets_) {
        targets[target.renderIndex] = target.texture;
    }
    return targets;
}

void TargetOperations::setAllColorTargets(
        const std::vector<std::optional<Handle<Texture>>>& targets) {
    colorTargets_.clear();
    toBackBuffer_ = false;
    backBufferIndex_ = 0;
    for (std::uint32_t index = 0; index < targets.size(); ++index) {
        if (targets[index]) {
            colorTargets_.push_back({*targets[index], index});
        } else {
            toBackBuffer_ = true;
            backBufferIndex_ = index;
        }
    }
    ChangeCount::bump();
}

void TargetOperations::setDepthTarget(Handle<Texture> texture) {
    depthTarget_ = texture;
    chainsDepth_ = false;
    ChangeCount::bump();
}

void TargetOperations::setToChainDepthBuffer() {
    depthTarget_ = {};
    chainsDepth_ = true;
    ChangeCount::bump();
}

void TargetOperations::setNoDepthTarget() {
    setDepthTarget({});
}

void TargetOperations::setOverloadedViewport(Handle<Viewport> viewport) {
    viewport_ = viewport;
    ChangeCount::bump();
}

Pass* TargetOperations::getPass(std::uint32_t index) const {
    return index < passes_.size() ? passes_[index].get() : nullptr;
}

void TargetOperations::addPass(std::uint32_t index) {
    const auto place = std::min<std::size_t>(index, passes_.size());
    passes_.insert(passes_.begin() + static_cast<std::ptrdiff_t>(place), nullptr);
    ChangeCount::bump();
}

Pass* TargetOperations::place(std::unique_ptr<Pass> pass, std::uint32_t index) {
    ChangeCount::bump();
    if (index >= passes_.size()) return passes_.emplace_back(std::move(pass)).get();
    if (passes_[index]) pass->setName(passes_[index]->getName());
    passes_[index] = std::move(pass);
    return passes_[index].get();
}

ClearTargetsPass* TargetOperations::addClearTargetsPass(std::uint32_t index) {
    return static_cast<ClearTargetsPass*>(place(std::make_unique<ClearTargetsPass>(), index));
}

ComputePass* TargetOperations::addComputePass(std::uint32_t index) {
    return static_cast<ComputePass*>(place(std::make_unique<ComputePass>(), index));
}

RenderScenePass* TargetOperations::addRenderScenePass(std::uint32_t index) {
    return static_cast<RenderScenePass*>(place(std::make_unique<RenderScenePass>(), index));
}

bool TargetOperations::erasePass(std::uint32_t index) {
    if (index >= passes_.size()) return false;
    passes_.erase(passes_.begin() + index);
    ChangeCount::bump();
    return true;
}

bool TargetOperations::swapPasses(std::uint32_t index, std::uint32_t other) {
    if (index >= passes_.size() || other >= passes_.size()) return false;
    std::swap(passes_[index], passes_[other]);
    ChangeCount::bump();
    return true;
}

} // namespace vlGraphics
