#pragma once
#include "scene/GraphElementUiListener.h"
#include "scene/SceneElement.h"

#include <vlCommon/SingletonClass.h>

#include <unordered_map>
#include <vector>

namespace vlEditor {

/** The UI's copy of the scene: one record for each node and entity, by id. UI thread only. */
class GraphElementUiDataTracker final : public vlCommon::SingletonClass<GraphElementUiDataTracker> {
public:
    /// Parents first. An element whose id is known replaces the record, one whose parent is not
    /// known becomes a root.
    void add(const std::vector<SceneElement>& elements);
    /// An unknown id is passed over, here and below.
    void update(std::uint32_t id, const Transform& transform);
    /// Only that record: what hangs on it becomes a root.
    void erase(std::uint32_t id);

    /// Null when there is none.
    const SceneElement* find(std::uint32_t id) const;
    /// In the order of their coming.
    const std::vector<std::uint32_t>& getRoots() const { return roots_; }
    std::size_t getCount() const { return elements_.size(); }

    /// Not owned.
    void addListener(GraphElementUiListener& listener);
    void removeListener(GraphElementUiListener& listener);

private:
    std::vector<std::uint32_t>& siblingsOf(const SceneElement& element);
    template <class Call> void notify(Call&& call);

    std::unordered_map<std::uint32_t, SceneElement> elements_;
    std::vector<std::uint32_t> roots_;
    std::vector<GraphElementUiListener*> listeners_;
};

} // namespace vlEditor
