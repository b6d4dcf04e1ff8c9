#include <vlTasks/LogManager.h>
#include <vlTasks/ThreadPool.h>

#include <algorithm>
#include <exception>
#include <string>

#ifdef __linux__
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace vlTasks {

namespace {

void runLogged(Task& task) {
    try {
        task.run();
    } catch (const std::exception& error) {
        LogManager::getInstance().log(std::string("A task failed: ") + error.what());
    } catch (...) {
        LogManager::getInstance().log("A task failed: it threw something that is no exception");
    }
}

/// Where it is refused the thread just runs like all others.
void yieldToOthers() {
#ifdef __linux__
    constexpr int lower = 5;
    static_cast<void>(setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), lower));
#endif
}

} // namespace

ThreadPool::ThreadPool(std::size_t threadCount) {
    // Made here and not by the first task that fails: the singleton's creation is not synchronised.
    LogManager::getInstance();
    const std::size_t count = std::max<std::size_t>(threadCount, 1);
    threads_.reserve(count);
    for (std::size_t index = 0; index < count; ++index)
        threads_.emplace_back([this] { work(); });
}

ThreadPool::~ThreadPool() {
    std::deque<std::unique_ptr<Task>> dropped;
    {
        const std::lock_guard guard(lock_);
        stopping_ = true;
        dropped.swap(waiting_);
    }
    changed_.notify_all();
    idle_.notify_all();
    dropped.clear();
    for (std::thread& thread : threads_)
        thread.join();
}

void ThreadPool::addTask(std::unique_ptr<Task> task) {
    if (!task) return;
    {
        const std::lock_guard guard(lock_);
        if (stopping_) return;
        waiting_.push_back(std::move(task));
    }
    changed_.notify_one();
}

void ThreadPool::waitIdle() {
    std::unique_lock guard(lock_);
    idle_.wait(guard, [this] { return waiting_.empty() && running_ == 0; });
}

std::size_t ThreadPool::pendingCount() const {
    const std::lock_guard guard(lock_);
    return waiting_.size() + running_;
}

void ThreadPool::work() {
    yieldToOthers();
    std::unique_lock guard(lock_);
    while (true) {
        changed_.wait(guard, [this] { return stopping_ || !waiting_.empty(); });
        if (stopping_) return;
        std::unique_ptr<Task> task = std::move(waiting_.front());
        waiting_.pop_front();
        ++running_;
        guard.unlock();
        runLogged(*task);
        task.reset();
        guard.lock();
        --running_;
        if (waiting_.empty() && running_ == 0) idle_.notify_all();
    }
}

} // namespace vlTasks
