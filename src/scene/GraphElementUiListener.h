#pragma once
#include <cstdint>
#include <vector>

namespace vlEditor {

/** Hears how the UI's copy of the scene changes. UI thread only. */
class GraphElementUiListener {
public:
    virtual void elementsAdded(const std::vector<std::uint32_t>& ids) = 0;
    virtual void elementUpdated(std::uint32_t id) = 0;
    virtual void elementErased(std::uint32_t id) = 0;

protected:
    GraphElementUiListener() = default;
    GraphElementUiListener(const GraphElementUiListener&) = default;
    GraphElementUiListener& operator=(const GraphElementUiListener&) = default;
    ~GraphElementUiListener() = default;
};

} // namespace vlEditor
