#include "interfaces/PickLists.h"

#include <gmock/gmock.h>

namespace vlEditor {
namespace {

using testing::ElementsAre;

struct Listener final : PickListListener {
    void entriesChanged() override { ++changes; }
    int changes = 0;
};

class PickListTest : public testing::Test {
protected:
    PickListTest() { list.addListener(listener); }
    PickList list{"L", "Label", {"fixed"}};
    Listener listener;
};

TEST_F(PickListTest, KeepsNamesUniqueAndInTheOrderOfTheirComing) {
    list.addEntries({"b", "a", "b", "fixed"});
    list.addEntry("a");
    EXPECT_THAT(list.getEntries(), ElementsAre("fixed", "b", "a"));
    EXPECT_EQ(listener.changes, 1);
}

TEST_F(PickListTest, ARenameKeepsThePlaceAndReplacesTheBearer) {
    list.addEntries({"a", "b", "c"});
    EXPECT_TRUE(list.renameEntry("c", "a"));
    EXPECT_THAT(list.getEntries(), ElementsAre("fixed", "b", "a"));
    EXPECT_TRUE(list.renameEntry("b", "d"));
    EXPECT_THAT(list.getEntries(), ElementsAre("fixed", "d", "a"));
    EXPECT_TRUE(list.renameEntry("d", "fixed"));
    EXPECT_THAT(list.getEntries(), ElementsAre("fixed", "a"));
}

TEST_F(PickListTest, WhatComesBackStandsAtTheEnd) {
    list.addEntries({"a", "b", "c", "d"});
    for (const char* gone : {"c", "a"})
        EXPECT_TRUE(list.removeEntry(gone));
    EXPECT_FALSE(list.has("a"));
    list.addEntry("a");
    EXPECT_THAT(list.getEntries(), ElementsAre("fixed", "b", "d", "a"));
    EXPECT_TRUE(list.renameEntry("a", "e"));
    EXPECT_TRUE(list.removeEntry("b"));
    EXPECT_THAT(list.getEntries(), ElementsAre("fixed", "d", "e"));
    EXPECT_TRUE(list.has("e"));
}

TEST_F(PickListTest, FixedEntriesStay) {
    list.addEntry("a");
    EXPECT_FALSE(list.removeEntry("fixed"));
    EXPECT_FALSE(list.renameEntry("fixed", "b"));
    EXPECT_FALSE(list.removeEntry("nobody"));
    list.reset();
    EXPECT_THAT(list.getEntries(), ElementsAre("fixed"));
}

TEST(PickListsTest, BothGroupsStandInTheirOrderWithTheirFirstEntries) {
    PickLists lists;
    lists.createFirstGroup();
    lists.createSecondGroup();
    std::vector<std::string> names;
    for (const auto& list : lists.all())
        names.push_back(list->getName());
    EXPECT_THAT(names,
                ElementsAre("BLEND_POP_UP_LIST",
                            "CAMERA_POP_UP_LIST",
                            "COMPOSITOR_POP_UP_LIST",
                            "DEPTH_POP_UP_LIST",
                            "MATERIAL_POP_UP_LIST",
                            "MESH_POP_UP_LIST",
                            "RASTER_POP_UP_LIST",
                            "RENDER_QUEUE_POP_UP_LIST",
                            "SAMPLER_POP_UP_LIST",
                            "SCRIPT_POP_UP_LIST",
                            "SHADER_PROGRAM_POP_UP_LIST",
                            "SHADER_POP_UP_LIST",
                            "TEXTURE_POP_UP_LIST",
                            "TEXTURE_BUFFER_POP_UP_LIST",
                            "RENDER_TARGET_POP_UP_LIST",
                            "DEPTH_TARGET_POP_UP_LIST",
                            "VIEWPORT_POP_UP_LIST",
                            "RQ_POP_UP_LIST",
                            "UAV_POP_UP_LIST"));
    EXPECT_THAT(lists.find("CAMERA_POP_UP_LIST")->getEntries(),
                ElementsAre("0. ENGINE_CONTEXT_CAM"));
    EXPECT_EQ(lists.find("SHADER_POP_UP_LIST")->getEntries().size(), 4U);
    EXPECT_EQ(lists.find("NO_LIST"), nullptr);
}

} // namespace
} // namespace vlEditor
