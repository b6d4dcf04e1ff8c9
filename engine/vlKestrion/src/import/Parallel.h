#pragma once
#include <vlTasks/LambdaTask.h>
#include <vlTasks/ThreadPool.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>

namespace vlKestrion {

/** Calls work(piece, worker) for every piece from 0 to count - 1, on the calling thread and up to
 * threads - 1 others; worker is below threads and never in two calls at once. Pieces start in
 * order. What a piece throws ends the work and is thrown again on the calling thread. */
template <class Work> void inParallel(std::size_t count, std::size_t threads, const Work& work) {
    const std::size_t workers = std::min(count, std::max<std::size_t>(threads, 1));
    std::atomic<std::size_t> next = 0;
    std::atomic<bool> failed = false;
    std::exception_ptr failure;
    const auto runAll = [&](std::size_t worker) {
        try {
            while (!failed) {
                const std::size_t piece = next++;
                if (piece >= count) return;
                work(piece, worker);
            }
        } catch (...) {
            if (!failed.exchange(true)) failure = std::current_exception();
        }
    };
    if (workers <= 1) {
        runAll(0);
    } else {
        vlTasks::ThreadPool pool(workers - 1);
        for (std::size_t worker = 1; worker < workers; ++worker)
            pool.addTask(vlTasks::makeTask([&runAll, worker] { runAll(worker); }));
        runAll(0);
        pool.waitIdle();
    }
    if (failure) std::rethrow_exception(failure);
}

} // namespace vlKestrion
