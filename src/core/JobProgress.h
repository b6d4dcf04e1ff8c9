#pragma once
#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

namespace vlEditor {

class WorkerPool;

/** How far a labelled job of the WorkerPool is, as seen from inside the job. */
class JobProgress {
public:
    JobProgress(WorkerPool& pool, std::uint64_t id, std::string label)
        : pool_(pool), id_(id), label_(std::move(label)) {}
    JobProgress(const JobProgress&) = delete;
    JobProgress& operator=(const JobProgress&) = delete;

    /// 0 to 1. As often as the job likes: a person is told at most once a turn of the UI.
    void report(double share);
    /// The job is to end soon, without a result. Stays true.
    bool isCancelled() const { return cancelled_; }

private:
    friend class WorkerPool;

    WorkerPool& pool_;
    const std::uint64_t id_;
    const std::string label_;
    std::atomic<double> share_ = -1; ///< negative until the first report
    std::atomic<bool> cancelled_ = false;
};

} // namespace vlEditor
