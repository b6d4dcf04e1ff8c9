#include "core/EditorLogger.h"
#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"
#include "core/WorkerPool.h"

#include <gmock/gmock.h>

#include <future>
#include <stdexcept>
#include <thread>

namespace vlEditor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class WorkerPoolTest : public testing::Test {
protected:
    WorkerPoolTest() {
        queues.discard();
        logger.attach();
        pool.setJobsCallback([this] { ++told; });
    }
    ~WorkerPoolTest() override {
        WorkerPool::destroyInstance();
        queues.discard();
        EditorLogger::destroyInstance();
    }

    /// A job that holds the worker until open() is called.
    void block() {
        pool.addJob([this] { gate.get_future().wait(); });
    }
    void open() { gate.set_value(); }
    void finish() {
        std::promise<void> last;
        pool.addJob([&] { last.set_value(); });
        last.get_future().wait();
        while (pool.pendingCount() > 0)
            std::this_thread::yield();
        queues.drainUi();
    }
    std::vector<std::string> lines() const {
        return {logger.getKeptLines().begin(), logger.getKeptLines().end()};
    }

    MessageOrchestrator& queues = MessageOrchestrator::getInstance();
    EditorLogger& logger = EditorLogger::getInstance();
    WorkerPool& pool = WorkerPool::getInstance();
    std::promise<void> gate;
    int told = 0;
};

TEST_F(WorkerPoolTest, JobsRunOneAfterTheOtherInTheirOrderOnOneThread) {
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    std::atomic<int> inside = 0;
    bool alone = true;
    for (int i = 0; i < 100; ++i) {
        const auto job = [&, i] {
            alone &= ++inside == 1;
            order.push_back(i);
            threads.push_back(std::this_thread::get_id());
            --inside;
        };
        if (i % 2 == 0)
            pool.addJob(job);
        else
            pool.addJob("Counting", [job](JobProgress&) { job(); });
    }
    finish();
    EXPECT_TRUE(alone);
    EXPECT_TRUE(std::ranges::is_sorted(order));
    EXPECT_EQ(order.size(), 100U);
    EXPECT_THAT(threads, testing::Each(threads.front()));
    EXPECT_NE(threads.front(), std::this_thread::get_id());
}

TEST_F(WorkerPoolTest, CountsTheJobsThatHaveNotEnded) {
    EXPECT_EQ(pool.pendingCount(), 0U);
    block();
    pool.addJob("Waiting", [](JobProgress&) {});
    EXPECT_EQ(pool.pendingCount(), 2U);
    open();
    finish();
    EXPECT_EQ(pool.pendingCount(), 0U);
}

TEST_F(WorkerPoolTest, HoweverOftenAJobReportsTheUiIsToldOnceATurn) {
    std::promise<void> reported;
    pool.addJob("Generating mesh 'rock'", [&](JobProgress& progress) {
        for (int i = 0; i <= 100'000; ++i)
            progress.report(i / 200'000.0);
        reported.set_value();
        gate.get_future().wait();
    });
    reported.get_future().wait();
    queues.drainUi();
    EXPECT_EQ(told, 1);
    const auto jobs = pool.getJobs();
    ASSERT_EQ(jobs.size(), 1U);
    EXPECT_EQ(jobs[0].label, "Generating mesh 'rock'");
    EXPECT_EQ(jobs[0].share, 0.5);
    open();
    finish();
    EXPECT_EQ(told, 2);
    EXPECT_THAT(pool.getJobs(), IsEmpty());
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(WorkerPoolTest, ACancelledJobIsToldOrNeverBegunAndSaysSo) {
    std::promise<void> begun;
    bool ranSecond = false;
    pool.addJob("First", [&](JobProgress& progress) {
        begun.set_value();
        while (!progress.isCancelled())
            std::this_thread::yield();
    });
    pool.addJob("Second", [&](JobProgress&) { ranSecond = true; });
    begun.get_future().wait();
    const auto jobs = pool.getJobs();
    ASSERT_EQ(jobs.size(), 2U);
    pool.cancel(jobs[1].id);
    EXPECT_TRUE(pool.getJobs()[1].cancelled);
    pool.cancel(jobs[0].id);
    pool.cancel(4711);
    finish();
    EXPECT_FALSE(ranSecond);
    EXPECT_THAT(lines(),
                ElementsAre("[Editor] First was cancelled.", "[Editor] Second was cancelled."));
}

TEST_F(WorkerPoolTest, AJobThatThrowsGivesALineAndTheNextOneRuns) {
    pool.addJob([] { throw std::runtime_error("no such mesh"); });
    pool.addJob("Reading 'a.obj'", [](JobProgress&) { throw std::runtime_error("line 3: bad"); });
    pool.addJob("Reading 'b.obj'", [](JobProgress&) { throw 7; });
    pool.addJob("Reading 'c.obj'", [](JobProgress&) { throw std::runtime_error(""); });
    finish();
    EXPECT_THAT(lines(),
                ElementsAre("[GraphicsThread] A task failed: no such mesh",
                            "[Editor] Reading 'a.obj' failed: line 3: bad",
                            "[Editor] Reading 'b.obj' failed: it threw something that is no "
                            "exception",
                            "[Editor] Reading 'c.obj' failed: it gave no reason"));
}

TEST_F(WorkerPoolTest, StoppingCancelsTheRunningJobAndDropsTheOthers) {
    std::promise<void> begun;
    auto kept = std::make_shared<int>();
    bool cancelled = false;
    pool.addJob("Endless", [&](JobProgress& progress) {
        begun.set_value();
        while (!progress.isCancelled())
            std::this_thread::yield();
        cancelled = true;
        pool.addJob([kept] { ++*kept; });
    });
    pool.addJob([kept] { ++*kept; });
    begun.get_future().wait();
    pool.stop();
    pool.stop();
    pool.addJob([kept] { ++*kept; });
    EXPECT_TRUE(cancelled);
    EXPECT_EQ(*kept, 0);
    EXPECT_EQ(kept.use_count(), 1);
    EXPECT_EQ(pool.pendingCount(), 0U);
}

} // namespace
} // namespace vlEditor
