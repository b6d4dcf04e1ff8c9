#pragma once
#include "core/Members.h"
#include "core/Message.h"
#include "scene/SceneElement.h"

#include <vector>

namespace vlEditor {

/** Tells the UI of nodes and entities that have come to the scene, parents first: as many at once
 * as came together. */
class AddSceneElementsMessage final : public Message {
public:
    AddSceneElementsMessage() = default;
    explicit AddSceneElementsMessage(std::vector<SceneElement> list) : elements(std::move(list)) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override {}

    static constexpr auto members() {
        return std::tuple{Member{"elements", &AddSceneElementsMessage::elements}};
    }

    std::vector<SceneElement> elements;
};

} // namespace vlEditor
