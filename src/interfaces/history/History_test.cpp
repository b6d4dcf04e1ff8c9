#include "core/MessageOrchestrator.h"
#include "interfaces/history/History.h"

#include <vlCommon/ThreadBorder.h>

#include <gmock/gmock.h>

namespace vlEditor {
namespace {

using testing::ElementsAre;

using Journal = std::vector<std::string>;

class FakeStep final : public UndoStep {
public:
    FakeStep(Journal& journal, std::string name, std::size_t bytes = 1)
        : journal_(journal), name_(std::move(name)), bytes_(bytes) {}

    void goBack() const override { journal_.push_back("-" + name_); }
    void goForward() const override { journal_.push_back("+" + name_); }
    bool absorb(const UndoStep& next) override {
        const auto& step = dynamic_cast<const FakeStep&>(next);
        if (step.name_ != name_) return false;
        bytes_ += step.bytes_;
        return true;
    }
    std::string describe() const override { return name_; }
    std::size_t getBytes() const override { return bytes_; }

private:
    Journal& journal_;
    std::string name_;
    std::size_t bytes_;
};

class HistoryTest : public testing::Test {
protected:
    HistoryTest() { vlCommon::ThreadBorder::claimUi(); }
    ~HistoryTest() override { History::destroyInstance(); }

    void record(Gesture gesture, const std::string& name, std::size_t bytes = 1) {
        history.record(gesture, std::make_unique<FakeStep>(journal, name, bytes));
    }
    static void settle() {
        MessageOrchestrator::getInstance().drainGraphics();
        MessageOrchestrator::getInstance().drainUi();
    }

    Journal journal;
    History& history = History::getInstance();
};

TEST_F(HistoryTest, UndoesByGestureInReverseAndMakesAgainInOrder) {
    {
        const History::Scope outer;
        const Gesture gesture = history.current();
        record(gesture, "a");
        const History::Scope inner;
        EXPECT_EQ(history.current(), gesture);
        record(history.current(), "b");
    }
    record(history.current(), "c");
    EXPECT_EQ(history.describeUndo(), "c");
    history.undo();
    EXPECT_THAT(journal, ElementsAre()) << "before the request has come round";
    settle();
    EXPECT_EQ(history.describeUndo(), "b and 1 more");
    history.undo();
    history.redo();
    settle();
    EXPECT_THAT(journal, ElementsAre("-c", "-b", "-a", "+a", "+b"));
    EXPECT_EQ(history.describeRedo(), "c");
    record(history.current(), "d");
    EXPECT_FALSE(history.canRedo());
}

TEST_F(HistoryTest, KeepsNothingThatNobodyDidAndJoinsWhatBelongsTogether) {
    record(Gesture::none, "routine");
    EXPECT_FALSE(history.canUndo());
    const Gesture gesture = history.current();
    record(gesture, "slider", 5);
    record(gesture, "slider", 7);
    EXPECT_EQ(history.getDepth(), 1U);
    EXPECT_EQ(history.getBytes(), 12U);
    EXPECT_EQ(history.describeUndo(), "slider");
}

TEST_F(HistoryTest, ForgetsTheOldestOnceThereIsTooMuch) {
    for (std::size_t i = 0; i < History::mostGestures + 10; ++i)
        record(history.current(), std::to_string(i));
    EXPECT_EQ(history.getDepth(), History::mostGestures);
    record(history.current(), "large", History::mostBytes);
    EXPECT_EQ(history.getDepth(), 1U);
    record(history.current(), "larger", History::mostBytes + 1);
    EXPECT_EQ(history.getDepth(), 1U) << "the last one stays";
    EXPECT_EQ(history.getBytes(), History::mostBytes + 1);
    history.clear();
    EXPECT_EQ(history.getBytes(), 0U);
}

} // namespace
} // namespace vlEditor
