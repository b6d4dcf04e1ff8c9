#include <vlGraphics/ChangeCount.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/DefaultNames.h>

namespace vlGraphics {

namespace {

template <class T> bool eraseAt(std::vector<std::unique_ptr<T>>& items, std::uint32_t index) {
    if (index >= items.size()) return false;
    items.erase(items.begin() + index);
    return true;
}

template <class T>
bool swapAt(std::vector<std::unique_ptr<T>>& items, std::uint32_t index, std::uint32_t other) {
    if (index >= items.size() || other >= items.size()) return false;
    std::swap(items[index], items[other]);
    return true;
}

} // namespace

std::unique_ptr<CompositorNode> CompositorNode::clone() const {
    auto copy = std::make_unique<CompositorNode>();
    copy->name_ = name_;
    copy->active_ = active_;
    for (const auto& operations : operations_)
        copy->operations_.push_back(operations->clone());
    return copy;
}

void CompositorNode::setName(vlMemory::StringView name) {
    if (name_ == name) return;
    name_ = name;
    ChangeCount::bump();
}

void CompositorNode::setActive(bool value) {
    if (active_ == value) return;
    active_ = value;
    ChangeCount::bump();
}

TargetOperations* CompositorNode::addOperations() {
    ChangeCount::bump();
    return operations_.emplace_back(std::make_unique<TargetOperations>()).get();
}

TargetOperations* CompositorNode::getOperations(std::uint32_t index) const {
    return index < operations_.size() ? operations_[index].get() : nullptr;
}

bool CompositorNode::eraseOperations(std::uint32_t index) {
    if (!eraseAt(operations_, index)) return false;
    ChangeCount::bump();
    return true;
}

bool CompositorNode::swapOperations(std::uint32_t index, std::uint32_t other) {
    if (!swapAt(operations_, index, other)) return false;
    ChangeCount::bump();
    return true;
}

CompositorNode* Compositor::addNode() {
    markChanged();
    return nodes_.emplace_back(std::make_unique<CompositorNode>()).get();
}

CompositorNode* Compositor::getNode(std::uint32_t index) const {
    return index < nodes_.size() ? nodes_[index].get() : nullptr;
}

bool Compositor::eraseNode(std::uint32_t index) {
    if (!eraseAt(nodes_, index)) return false;
    markChanged();
    return true;
}

bool Compositor::swapNodes(std::uint32_t index, std::uint32_t other) {
    if (!swapAt(nodes_, index, other)) return false;
    markChanged();
    return true;
}

void Compositor::clear() {
    if (nodes_.empty()) return;
    nodes_.clear();
    markChanged();
}

void Compositor::copyStructure(const Compositor& other) {
    std::vector<std::unique_ptr<CompositorNode>> copies;
    for (const auto& node : other.nodes_)
        copies.push_back(node->clone());
    nodes_ = std::move(copies);
    markChanged();
}

void Compositor::appendNode(std::unique_ptr<CompositorNode> node) {
    if (!node) return;
    nodes_.push_back(std::move(node));
    markChanged();
}

Compositor* CompositorManager::getDefaultCompositor() {
    if (Compositor* known = get(DefaultNames::compositor)) return known;
    Compositor* compositor = createOrRetrieve(DefaultNames::compositor);
    if (compositor == nullptr) return nullptr; // cannot be: the name is a good one
    compositor->setHidden(true);
    TargetOperations* operations = compositor->addNode()->addOperations();
    operations->setToBackBuffer(0);
    operations->setToChainDepthBuffer();
    operations->addClearTargetsPass(TargetOperations::atEnd);
    operations->addRenderScenePass(TargetOperations::atEnd);
    operations->addRenderScenePass(TargetOperations::atEnd)->setTransparentPass(true);
    return compositor;
}

} // namespace vlGraphics
