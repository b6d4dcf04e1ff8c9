#include "core/RenderingScriptName.h"

namespace vlEditor {

void RenderingScriptName::set(const std::string& name) {
    if (name == name_) return;
    name_ = name;
    std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
    // By index: a listener may bring another one.
    for (std::size_t i = 0; i < listeners_.size(); ++i) {
        if (const Hold listener = listeners_[i].lock()) (*listener)(name_);
    }
}

RenderingScriptName::Hold RenderingScriptName::listen(Listener listener) {
    Hold hold = std::make_shared<const Listener>(std::move(listener));
    listeners_.push_back(hold);
    (*hold)(name_);
    return hold;
}

} // namespace vlEditor
