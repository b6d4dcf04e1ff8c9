#pragma once
#include <vlTasks/Task.h>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace vlTasks {

/** Threads that run tasks in the background, where the system can give them a lower priority than
 * the threads that a person waits for. Tasks start in the order in which they were added;
 * with one thread each ends before the next one starts. A task that throws is logged to
 *  vlTasks::LogManager ("A task failed: ...") and the pool goes on.
 *
 *  Every method may be called from any thread, addTask also from within a task. Destroying the pool
 *  waits for the tasks that are running and drops those that have not started, without running
 * them; the destructor must not run on one of the pool's own threads. */
class ThreadPool {
public:
    /// At least one thread is made.
    explicit ThreadPool(std::size_t threadCount);
    ~ThreadPool();
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    /// A null task is ignored. What is added while the pool is being destroyed is dropped.
    void addTask(std::unique_ptr<Task> task);
    /// Returns once no task is running or waiting; not to be called from within a task.
    void waitIdle();
    /// Tasks that have not ended yet: the waiting and the running ones.
    std::size_t pendingCount() const;
    std::size_t threadCount() const { return threads_.size(); }

private:
    void work();

    mutable std::mutex lock_;
    std::condition_variable changed_;
    std::condition_variable idle_;
    std::deque<std::unique_ptr<Task>> waiting_;
    std::size_t running_ = 0;
    bool stopping_ = false;
    std::vector<std::thread> threads_;
};

} // namespace vlTasks
