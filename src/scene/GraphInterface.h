#pragma once
#include "interfaces/Interface.h"
#include "scene/GraphElementUiListener.h"

#include <memory>

namespace vlEditor {

/** Shows the nodes and entities of the scene as a tree. UI thread only. */
class GraphInterface final : public Interface, public GraphElementUiListener {
public:
    /// With components named by a number that never comes again.
    static std::unique_ptr<Interface> create();

    explicit GraphInterface(const vlWinUi::Component& root);
    ~GraphInterface() override;

    std::string title() const override { return "Scene"; }

    void elementsAdded(const std::vector<std::uint32_t>& ids) override;
    void elementUpdated(std::uint32_t id) override;
    void elementErased(std::uint32_t id) override;

private:
    void fill();
};

} // namespace vlEditor
