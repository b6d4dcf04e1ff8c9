#include "scene/GraphElementUiDataTracker.h"

#include <vlCommon/ThreadBorder.h>

#include <gmock/gmock.h>

namespace vlEditor {
namespace {

using testing::ElementsAre;

SceneElement element(std::uint32_t id, std::uint32_t parent) {
    SceneElement made;
    made.id = id;
    made.parent = parent;
    return made;
}

struct Listener final : GraphElementUiListener {
    void elementsAdded(const std::vector<std::uint32_t>& ids) override { added = ids; }
    void elementUpdated(std::uint32_t id) override { updated = id; }
    void elementErased(std::uint32_t id) override { erased = id; }
    std::vector<std::uint32_t> added;
    std::uint32_t updated = 0;
    std::uint32_t erased = 0;
};

class SceneTrackerTest : public testing::Test {
protected:
    SceneTrackerTest() {
        vlCommon::ThreadBorder::claimUi();
        tracker.addListener(listener);
        tracker.add({element(10, 0), element(11, 10), element(12, 10), element(20, 99)});
    }
    GraphElementUiDataTracker tracker;
    Listener listener;
};

TEST_F(SceneTrackerTest, LinksChildrenAndMakesOrphansRoots) {
    EXPECT_THAT(tracker.getRoots(), ElementsAre(10, 20));
    EXPECT_THAT(tracker.find(10)->children, ElementsAre(11, 12));
    EXPECT_EQ(tracker.find(20)->parent, SceneElement::noParent);
    EXPECT_THAT(listener.added, ElementsAre(10, 11, 12, 20));
}

TEST_F(SceneTrackerTest, AKnownIdIsReplacedAndMovesWithItsChildren) {
    tracker.add({element(10, 20)});
    EXPECT_THAT(tracker.getRoots(), ElementsAre(20));
    EXPECT_THAT(tracker.find(20)->children, ElementsAre(10));
    EXPECT_THAT(tracker.find(10)->children, ElementsAre(11, 12));
    EXPECT_EQ(tracker.getCount(), 4U);
}

TEST_F(SceneTrackerTest, ErasingLeavesTheChildrenAsRoots) {
    tracker.erase(10);
    tracker.erase(10);
    EXPECT_EQ(listener.erased, 10U);
    EXPECT_THAT(tracker.getRoots(), ElementsAre(20, 11, 12));
    EXPECT_EQ(tracker.find(11)->parent, SceneElement::noParent);
}

TEST_F(SceneTrackerTest, AnUpdateOfAnUnknownElementIsPassedOver) {
    Transform moved;
    moved.position.x = 5;
    tracker.update(77, moved);
    EXPECT_EQ(listener.updated, 0U);
    tracker.update(11, moved);
    EXPECT_EQ(listener.updated, 11U);
    EXPECT_EQ(tracker.find(11)->transform.position.x, 5);
}

} // namespace
} // namespace vlEditor
