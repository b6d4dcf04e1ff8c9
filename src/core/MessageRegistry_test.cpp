#include "core/LogMessage.h"
#include "core/MessageRegistry.h"

#include <gtest/gtest.h>

namespace vlEditor {
namespace {

struct Range {
    float low = 0;
    std::int32_t high = 0;
    static constexpr auto members() {
        return std::tuple{Member{"low", &Range::low}, Member{"high", &Range::high}};
    }
};

struct Target {
    std::string name;
    std::uint32_t index = 0;
    static constexpr auto members() {
        return std::tuple{Member{"name", &Target::name}, Member{"index", &Target::index}};
    }
};

class SampleMessage final : public Message {
public:
    void runOnUiThread() override {}
    void runOnGraphicsThread() override { ++runs; }
    static constexpr auto members() {
        return std::tuple{Inlined{&SampleMessage::target},
                          Member{"range", &SampleMessage::range},
                          Member{"flags", &SampleMessage::flags},
                          Member{"parent", &SampleMessage::parent},
                          Member{"points", &SampleMessage::points},
                          Member{"id", &SampleMessage::id}};
    }

    inline static int runs = 0;
    Target target;
    Range range;
    std::array<bool, 2> flags{};
    std::optional<std::uint8_t> parent;
    std::vector<vlMaths::Vector> points;
    std::uint64_t id = 0;
    int outcome = 0;
};

class MessageRegistryTest : public testing::Test {
protected:
    MessageRegistryTest() {
        registry.add<SampleMessage>(MessageQueue::graphics);
        registry.add<LogMessage>(MessageQueue::ui);
        sample.target = {"sky", 7};
        sample.range = {0.1F, -5};
        sample.flags = {true, false};
        sample.points = {{1, 2, 3, 4}, {-1, 0.5F, 0, 1}};
        sample.id = 0xFFFFFFFFFFFFFFFF;
    }

    std::string errorOf(const vlExport::Node& tree) {
        const auto message = registry.create("SampleMessage", tree);
        return message ? "" : message.error().message;
    }

    MessageRegistry registry;
    SampleMessage sample;
};

TEST_F(MessageRegistryTest, AMessageSurvivesItsWayThroughATree) {
    sample.parent = 255;
    const auto read = registry.create("SampleMessage", toTree(sample));
    ASSERT_TRUE(read) << read.error().message;
    EXPECT_TRUE(registry.same(**read, sample));
    EXPECT_EQ(static_cast<SampleMessage&>(**read).target.name, "sky");
    EXPECT_EQ(static_cast<SampleMessage&>(**read).points[1].y, 0.5F);
}

TEST_F(MessageRegistryTest, TheOutcomeIsNoPartOfTheRequest) {
    SampleMessage other = sample;
    other.outcome = 3;
    EXPECT_TRUE(registry.same(sample, other));
    EXPECT_EQ(toTree(sample).find("outcome"), nullptr);
}

TEST_F(MessageRegistryTest, EveryMemberCountsInAComparison) {
    const auto differsBy = [&](auto change) {
        SampleMessage other = sample;
        change(other);
        return !registry.same(sample, other);
    };
    EXPECT_TRUE(differsBy([](SampleMessage& m) { m.target.index = 8; }));
    EXPECT_TRUE(differsBy([](SampleMessage& m) { m.range.high = 5; }));
    EXPECT_TRUE(differsBy([](SampleMessage& m) { m.flags[1] = true; }));
    EXPECT_TRUE(differsBy([](SampleMessage& m) { m.parent = 0; }));
    EXPECT_TRUE(differsBy([](SampleMessage& m) { m.points.pop_back(); }));
    EXPECT_FALSE(registry.same(sample, LogMessage("sky")));
}

TEST_F(MessageRegistryTest, ATreeThatDoesNotFitIsRefusedWithThePlace) {
    const auto with = [&](std::string_view name, vlExport::Node value) {
        vlExport::Node tree = toTree(sample);
        tree.add(name, std::move(value));
        return errorOf(tree);
    };
    EXPECT_EQ(with("index", -1),
              "SampleMessage: index: expected a whole number from 0 to 4294967295");
    EXPECT_EQ(with("name", 3), "SampleMessage: name: expected a text");
    EXPECT_EQ(with("flags", toTree(std::vector{true})), "SampleMessage: flags: expected 2 entries");
    EXPECT_EQ(with("parent", 256), "SampleMessage: parent: expected a whole number from 0 to 255");
    EXPECT_EQ(with("colour", 1), "SampleMessage: colour: is not known here");
    vlExport::Node points = vlExport::Node::array();
    points.append(toTree(std::vector<float>{1, 2, 3}));
    EXPECT_EQ(with("points", points), "SampleMessage: points: 0: expected 4 entries");
    vlExport::Node tree = toTree(sample);
    tree.find("range")->remove("low");
    EXPECT_EQ(errorOf(tree), "SampleMessage: range: low: is missing");
    EXPECT_EQ(errorOf(3), "SampleMessage: expected an object");
    EXPECT_EQ(registry.create("Nobody", tree).error().message, "no message is named 'Nobody'");
}

TEST_F(MessageRegistryTest, PrintsAMessageOnOneLine) {
    EXPECT_EQ(registry.print(LogMessage("two\nlines  here")),
              R"(LogMessage {"text": "two\nlines  here"})");
    EXPECT_EQ(registry.print(sample).find('\n'), std::string::npos);
}

TEST_F(MessageRegistryTest, PostingByNameEntersTheQueueOfTheKind) {
    SampleMessage::runs = 0;
    ASSERT_TRUE(registry.post("SampleMessage", toTree(sample)));
    EXPECT_FALSE(registry.post("SampleMessage", {}));
    MessageOrchestrator::getInstance().drainUi();
    EXPECT_EQ(SampleMessage::runs, 0);
    MessageOrchestrator::getInstance().drainGraphics();
    EXPECT_EQ(SampleMessage::runs, 1);
}

} // namespace
} // namespace vlEditor
