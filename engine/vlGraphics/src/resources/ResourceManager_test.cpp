#include "resources/TestManagers.h"

#include <vlGraphics/LogManager.h>

#include <gtest/gtest.h>

namespace vlGraphics {
namespace {

class Lines final : public vlLog::Logger {
public:
    Lines() { LogManager::getInstance().setReceiver(this); }
    ~Lines() override { LogManager::getInstance().setReceiver(nullptr); }
    void log(vlMemory::StringView text) override { lines.emplace_back(text); }
    std::vector<vlMemory::String> lines;
};

TEST(ResourceManager, ErasedTargetResolvesToNothingUntilItsNameIsMadeAgain) {
    RasterStateManager manager;
    manager.createOrRetrieve("rust");
    const auto handle = manager.handleOf("rust");
    EXPECT_EQ(manager.resolve(handle), manager.get("rust"));
    EXPECT_TRUE(manager.erase("rust"));
    EXPECT_EQ(manager.resolve(handle), nullptr);
    EXPECT_EQ(manager.nameOf(handle), "rust");
    RasterState* again = manager.createOrRetrieve("rust");
    EXPECT_EQ(manager.resolve(handle), again);
}

TEST(ResourceManager, ReferenceMayComeBeforeItsTarget) {
    RasterStateManager manager;
    const auto handle = manager.handleOf("later");
    EXPECT_EQ(manager.resolve(handle), nullptr);
    EXPECT_EQ(manager.getCount(), 0U);
    RasterState* made = manager.createOrRetrieve("later");
    EXPECT_EQ(manager.resolve(handle), made);
    EXPECT_TRUE(manager.handleOf("").isNull());
    EXPECT_EQ(manager.resolve({}), nullptr);
}

TEST(ResourceManager, RenameKeepsReferencesAndReplacesTheBearerOfTheName) {
    RasterStateManager manager;
    RasterState* first = manager.createOrRetrieve("first");
    manager.createOrRetrieve("second");
    const auto toFirst = manager.handleOf("first");
    const auto toSecond = manager.handleOf("second");
    // The new name is the replaced bearer's own text.
    EXPECT_TRUE(manager.rename("first", manager.get("second")->getName()));
    EXPECT_EQ(first->getName(), "second");
    EXPECT_EQ(manager.getCount(), 1U);
    EXPECT_EQ(manager.get("first"), nullptr);
    EXPECT_EQ(manager.get("second"), first);
    EXPECT_EQ(manager.resolve(toFirst), first);
    EXPECT_EQ(manager.resolve(toSecond), first);
    EXPECT_EQ(manager.nameOf(toSecond), "second");
    // The old name is free for another.
    RasterState* other = manager.createOrRetrieve("first");
    EXPECT_EQ(manager.resolve(toFirst), first);
    EXPECT_EQ(manager.resolve(manager.handleOf("first")), other);
}

TEST(ResourceManager, ReferencesFollowThroughSeveralReplacements) {
    RasterStateManager manager;
    manager.createOrRetrieve("a");
    manager.createOrRetrieve("b");
    RasterState* c = manager.createOrRetrieve("c");
    const auto toA = manager.handleOf("a");
    manager.rename("b", "a");
    manager.rename("c", "a");
    EXPECT_EQ(manager.resolve(toA), c);
    manager.erase("a");
    EXPECT_EQ(manager.resolve(toA), nullptr);
}

TEST(ResourceManager, RefusesNamesThatAreNoneWithOneLine) {
    RasterStateManager manager;
    const Lines log;
    EXPECT_EQ(manager.createOrRetrieve(""), nullptr);
    ASSERT_EQ(log.lines.size(), 1U);
    EXPECT_EQ(log.lines[0],
              "Refused the name '' for a raster state: names have 1 to 4096 bytes of UTF-8 without "
              "control characters.");
    EXPECT_EQ(manager.createOrRetrieve("two\nlines"), nullptr);
    EXPECT_EQ(log.lines[1].find('\n'), vlMemory::String::npos);
    manager.createOrRetrieve("known");
    EXPECT_FALSE(manager.rename("known", ""));
    EXPECT_NE(manager.get("known"), nullptr);
    EXPECT_FALSE(manager.rename("unknown", "other"));
    EXPECT_EQ(log.lines.size(), 3U);
}

TEST(ResourceManager, NoRenameTakesTheNameOfAHiddenResource) {
    RasterStateManager manager;
    const Lines log;
    manager.createOrRetrieve("VORLANE_SOLID")->setHidden(true);
    const RasterState* mine = manager.createOrRetrieve("mine");
    EXPECT_FALSE(manager.rename("mine", "VORLANE_SOLID"));
    EXPECT_EQ(manager.get("mine"), mine);
    EXPECT_NE(manager.get("VORLANE_SOLID"), nullptr);
    EXPECT_EQ(log.lines,
              std::vector<vlMemory::String>{"Refused the name 'VORLANE_SOLID' for a raster state: "
                                            "the one that bears it is not the project's."});
}

TEST(ResourceName, IsUtf8WithoutControlCharacters) {
    EXPECT_TRUE(isValidResourceName("r\xC3\xA9sum\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"));
    EXPECT_TRUE(isValidResourceName(vlMemory::String(4096, 'x')));
    EXPECT_FALSE(isValidResourceName(vlMemory::String(4097, 'x')));
    for (const vlMemory::StringView bad :
         {"\x7F", "\xC2\x85", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82", "\x80"}) {
        EXPECT_FALSE(isValidResourceName(bad));
    }
    EXPECT_FALSE(isValidResourceName(vlMemory::StringView("a\0b", 3)));
}

TEST(ResourceManager, StructureRevisionGrowsWithEveryComingAndGoing) {
    RasterStateManager manager;
    std::uint64_t before = manager.getStructureRevision();
    const auto grows = [&] {
        const bool grew = manager.getStructureRevision() > before;
        before = manager.getStructureRevision();
        return grew;
    };
    manager.createOrRetrieve("a");
    EXPECT_TRUE(grows());
    manager.createOrRetrieve("a");
    EXPECT_FALSE(grows());
    manager.rename("a", "b");
    EXPECT_TRUE(grows());
    manager.clear();
    EXPECT_TRUE(grows());
    EXPECT_EQ(manager.getCount(), 0U);
}

} // namespace
} // namespace vlGraphics
