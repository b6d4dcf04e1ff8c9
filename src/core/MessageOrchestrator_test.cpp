#include "core/MessageOrchestrator.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/System.h>

#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace vlEditor {
namespace {

class CallMessage final : public Message {
public:
    explicit CallMessage(std::function<void()> call) : call_(std::move(call)) {}
    void runOnUiThread() override { call_(); }
    void runOnGraphicsThread() override { call_(); }

private:
    std::function<void()> call_;
};

class MessageOrchestratorTest : public testing::Test {
protected:
    ~MessageOrchestratorTest() override { queues.discard(); }

    void postUi(std::function<void()> call) {
        queues.postToUi(std::make_unique<CallMessage>(std::move(call)));
    }
    void postGraphics(std::function<void()> call) {
        queues.postToGraphics(std::make_unique<CallMessage>(std::move(call)));
    }
    std::function<void()> note(int value) {
        return [this, value] { ran.push_back(value); };
    }

    MessageOrchestrator queues;
    std::vector<int> ran;
};

TEST_F(MessageOrchestratorTest, RunsEachQueueInPostingOrder) {
    for (const int value : {1, 2, 3}) {
        postUi(note(value));
        postGraphics(note(10 * value));
    }
    queues.drainGraphics();
    queues.drainUi();
    EXPECT_EQ(ran, (std::vector{10, 20, 30, 1, 2, 3}));
}

TEST_F(MessageOrchestratorTest, WhatManyMessagesMakeNecessaryIsDoneAfterTheirDrain) {
    queues.afterUiDrain(note(1));
    EXPECT_EQ(ran, (std::vector{1}));
    for (const int value : {2, 3}) {
        postUi([this, value] {
            queues.afterUiDrain(note(10 * value));
            ran.push_back(value);
        });
    }
    queues.drainUi();
    EXPECT_EQ(ran, (std::vector{1, 2, 3, 20, 30}));
    queues.drainUi();
    EXPECT_EQ(ran.size(), 5U);
}

TEST_F(MessageOrchestratorTest, WhatIsPostedWhileDrainingRunsInTheNextDrain) {
    std::function<void()> postItselfToUi = [&] {
        ran.push_back(1);
        postUi(postItselfToUi);
    };
    std::function<void()> postItselfToGraphics = [&] {
        ran.push_back(2);
        postGraphics(postItselfToGraphics);
    };
    postUi(postItselfToUi);
    postGraphics(postItselfToGraphics);
    queues.drainUi();
    queues.drainGraphics();
    EXPECT_EQ(ran, (std::vector{1, 2}));
    queues.drainUi();
    queues.drainGraphics();
    EXPECT_EQ(ran, (std::vector{1, 2, 1, 2}));
}

TEST_F(MessageOrchestratorTest, ADialogInsideAMessageRunsTheRestOnceAndInOrder) {
    postUi([this] {
        ran.push_back(1);
        postUi(note(4));
        queues.drainUi();
        ran.push_back(3);
        queues.drainUi();
        ran.push_back(5);
    });
    postUi(note(2));
    queues.drainUi();
    EXPECT_EQ(ran, (std::vector{1, 2, 3, 4, 5}));
}

TEST_F(MessageOrchestratorTest, ABoundedDrainStopsInTimeAndTheNextOneGoesOn) {
    for (const int value : {1, 2, 3})
        postUi(note(value));
    queues.drainUiFor(std::chrono::seconds(-1));
    EXPECT_TRUE(ran.empty());
    postUi([this] { postUi(note(5)); });
    postUi(note(4));
    queues.drainUiFor(std::chrono::hours(1));
    EXPECT_EQ(ran, (std::vector{1, 2, 3}));
    queues.drainUiFor(std::chrono::hours(1));
    EXPECT_EQ(ran, (std::vector{1, 2, 3, 4}));
    queues.drainUiFor(std::chrono::hours(1));
    EXPECT_EQ(ran, (std::vector{1, 2, 3, 4, 5}));
}

// The wake-up for what came meanwhile was spent on the drain inside the dialog.
TEST_F(MessageOrchestratorTest, WhatComesWhileADialogDrainsIsNotLeftAsleep) {
    vlCommon::ThreadBorder::claimUi();
    vlWinUi::SystemOptions options;
    options.headless = true;
    ASSERT_TRUE(vlWinUi::System::initialize(options));
    auto& shared = MessageOrchestrator::getInstance();
    const auto post = [&](std::function<void()> call) {
        shared.postToUi(std::make_unique<CallMessage>(std::move(call)));
    };
    vlWinUi::System::setRunCallback([&] {
        shared.drainUiFor(std::chrono::hours(1));
        return true;
    });
    post([&] {
        ran.push_back(1);
        post(note(3));
        vlWinUi::System::processEvents();
        ran.push_back(20);
    });
    post(note(2));
    for (int turn = 0; turn < 4; ++turn)
        vlWinUi::System::processEvents();
    vlWinUi::System::kill();
    EXPECT_EQ(ran, (std::vector{1, 2, 20, 3}));
}

TEST_F(MessageOrchestratorTest, AMessageIsDeletedRightAfterItsRun) {
    auto first = std::make_shared<int>();
    std::weak_ptr<int> alive = first;
    postUi([kept = std::move(first)] {});
    postUi([&] { EXPECT_TRUE(alive.expired()); });
    queues.drainUi();
    EXPECT_TRUE(alive.expired());
}

TEST_F(MessageOrchestratorTest, DiscardFreesBothQueuesWithoutRunningThem) {
    auto kept = std::make_shared<int>();
    postUi([this, kept] { ran.push_back(1); });
    postGraphics([this, kept] { ran.push_back(2); });
    queues.discard();
    EXPECT_EQ(kept.use_count(), 1);
    queues.drainUi();
    queues.drainGraphics();
    EXPECT_TRUE(ran.empty());
}

TEST_F(MessageOrchestratorTest, AMillionMessagesOfTwoProducersArriveInTheOrderOfEach) {
    constexpr int count = 500'000;
    std::array<int, 2> seen{};
    bool inOrder = true;
    const auto produce = [&](std::size_t producer) {
        for (int i = 1; i <= count; ++i) {
            postGraphics([&, producer, i] { inOrder &= ++seen[producer] == i; });
        }
    };
    std::thread one(produce, 0);
    std::thread two(produce, 1);
    while (seen[0] < count || seen[1] < count)
        queues.drainGraphics();
    one.join();
    two.join();
    EXPECT_TRUE(inOrder);
    EXPECT_EQ(seen[0] + seen[1], 2 * count);
}

} // namespace
} // namespace vlEditor
