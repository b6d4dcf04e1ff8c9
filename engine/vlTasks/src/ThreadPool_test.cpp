#include <vlTasks/LambdaTask.h>
#include <vlTasks/LogManager.h>
#include <vlTasks/ThreadPool.h>

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace vlTasks {
namespace {

class Lines final : public vlLog::Logger {
public:
    void log(vlMemory::StringView text) override { lines.emplace_back(text); }
    std::vector<std::string> lines;
};

TEST(ThreadPool, OneThreadRunsTasksOneAfterTheOtherInTheirOrder) {
    std::vector<int> order; // unguarded on purpose: a thread sanitizer sees two tasks at once
    ThreadPool pool(1);
    for (int index = 0; index < 200; ++index) {
        pool.addTask(makeTask([&order, index] { order.push_back(index); }));
    }
    pool.waitIdle();
    ASSERT_EQ(order.size(), 200U);
    for (int index = 0; index < 200; ++index) {
        EXPECT_EQ(order[static_cast<std::size_t>(index)], index);
    }
    EXPECT_EQ(pool.pendingCount(), 0U);
}

TEST(ThreadPool, DestructionWaitsForTheRunningTaskAndDropsTheWaitingOnes) {
    std::promise<void> started;
    std::promise<void> proceed;
    std::atomic<bool> ended = false;
    auto dropped = std::make_shared<int>(0);
    auto pool = std::make_unique<ThreadPool>(1);
    pool->addTask(makeTask([&] {
        started.set_value();
        proceed.get_future().wait();
        ended = true;
    }));
    pool->addTask(makeTask([dropped] { ++*dropped; }));
    started.get_future().wait();
    EXPECT_EQ(pool->pendingCount(), 2U);
    auto gone = std::async(std::launch::async, [&] { pool.reset(); });
    // Freed by the destructor alone, which then holds on for the running one.
    while (dropped.use_count() > 1)
        std::this_thread::yield();
    EXPECT_FALSE(ended);
    proceed.set_value();
    gone.wait();
    EXPECT_TRUE(ended);
    EXPECT_EQ(*dropped, 0);
    EXPECT_EQ(dropped.use_count(), 1);
}

TEST(ThreadPool, AThrowingTaskIsLoggedAndTheNextOneRuns) {
    Lines lines;
    LogManager::getInstance().setReceiver(&lines);
    bool ran = false;
    {
        ThreadPool pool(1);
        pool.addTask(makeTask([] { throw std::runtime_error("no such mesh"); }));
        pool.addTask(makeTask([] { throw 7; }));
        pool.addTask(makeTask([&] { ran = true; }));
        pool.waitIdle();
    }
    LogManager::getInstance().setReceiver(nullptr);
    EXPECT_TRUE(ran);
    ASSERT_EQ(lines.lines.size(), 2U);
    EXPECT_EQ(lines.lines[0], "A task failed: no such mesh");
}

TEST(ThreadPool, TasksMayAddTasksAndHoldWhatOnlyMoves) {
    std::atomic<int> sum = 0;
    ThreadPool pool(3);
    for (int index = 0; index < 50; ++index) {
        pool.addTask(makeTask([&, value = std::make_unique<int>(index)] {
            sum += *value;
            pool.addTask(makeTask([&] { ++sum; }));
        }));
    }
    pool.waitIdle();
    EXPECT_EQ(sum, 1225 + 50);
}

} // namespace
} // namespace vlTasks
