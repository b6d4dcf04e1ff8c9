#include "editors/AllKinds.h"

#include "editors/ShaderProgramChangedMessage.h"
#include "editors/ShaderReferences.h"

#include <algorithm>
#include <array>

namespace vlEditor {

std::span<const AnyKind* const> allKinds() {
    static const std::array kinds{&blendStateKind(),
                                  &bufferKind(),
                                  &depthStencilStateKind(),
                                  &rasterStateKind(),
                                  &samplerKind(),
                                  &cameraKind(),
                                  &scriptKind(),
                                  &shaderProgramKind(),
                                  &shaderKind()};
    return kinds;
}

const AnyKind* findKind(std::string_view name) {
    const auto kinds = allKinds();
    const auto found =
            std::ranges::find(kinds, name, [](const AnyKind* kind) { return kind->texts().kind; });
    return found == kinds.end() ? nullptr : *found;
}

void registerKindMessages(MessageRegistry& registry) {
    for (const AnyKind* kind : allKinds())
        kind->registerMessages(registry);
    registry.add<ShaderProgramChangedMessage>(MessageQueue::graphics);
    registry.add<ShaderReferencesChangedMessage>(MessageQueue::graphics);
}

} // namespace vlEditor
