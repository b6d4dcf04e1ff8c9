#include "core/WorkerPool.h"

#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"
#include "core/WorkerJobsMessage.h"

#include <vlCommon/ThreadBorder.h>

#include <algorithm>
#include <exception>

namespace vlEditor {

void JobProgress::report(double share) {
    // Not-a-number (nothing of nothing) would pass through the clamp.
    share_ = share > 0 ? std::min(share, 1.0) : 0.0;
    pool_.notice();
}

void WorkerPool::addJob(std::string label, LongJob job) {
    std::shared_ptr<JobProgress> progress;
    {
        const std::lock_guard guard(lock_);
        if (stopped_) return;
        progress = std::make_shared<JobProgress>(*this, nextId_++, std::move(label));
        jobs_.push_back(progress);
    }
    add(vlTasks::makeTask([this, progress, job = std::move(job)] { run(*progress, job); }));
    notice();
}

void WorkerPool::add(std::unique_ptr<vlTasks::Task> task) {
    const std::lock_guard guard(lock_);
    if (stopped_) return;
    if (!threads_) threads_ = std::make_unique<vlTasks::ThreadPool>(1);
    threads_->addTask(std::move(task));
}

void WorkerPool::run(JobProgress& progress, const LongJob& job) {
    std::optional<std::string> reason;
    try {
        if (!progress.isCancelled()) job(progress);
    } catch (const std::exception& error) {
        reason.emplace(error.what());
    } catch (...) {
        reason = "it threw something that is no exception";
    }
    if (reason)
        postToUi(LogMessage(progress.label_ +
                            " failed: " + (reason->empty() ? "it gave no reason" : *reason)));
    else if (progress.isCancelled())
        postToUi(LogMessage(progress.label_ + " was cancelled."));
    remove(progress);
    notice();
}

void WorkerPool::remove(const JobProgress& progress) {
    const std::lock_guard guard(lock_);
    std::erase_if(jobs_, [&](const auto& job) { return job.get() == &progress; });
}

std::size_t WorkerPool::pendingCount() const {
    const std::lock_guard guard(lock_);
    return threads_ ? threads_->pendingCount() : 0;
}

std::vector<WorkerPool::JobState> WorkerPool::getJobs() const {
    const std::lock_guard guard(lock_);
    std::vector<JobState> states;
    for (const auto& job : jobs_) {
        const double share = job->share_;
        states.push_back({job->id_,
                          job->label_,
                          share < 0 ? std::nullopt : std::optional(share),
                          job->cancelled_});
    }
    return states;
}

void WorkerPool::cancel(std::uint64_t id) {
    {
        const std::lock_guard guard(lock_);
        const auto found = std::ranges::find(jobs_, id, [](const auto& job) { return job->id_; });
        if (found == jobs_.end()) return;
        (*found)->cancelled_ = true;
    }
    notice();
}

void WorkerPool::notice() {
    if (!noticed_.exchange(true)) postToUi(WorkerJobsMessage());
}

void WorkerPool::tellJobs() {
    vlCommon::assertUiThread();
    // Cleared first: what comes while the callback looks asks for another turn.
    noticed_ = false;
    if (jobsChanged_) jobsChanged_();
}

void WorkerPool::stop() {
    std::unique_ptr<vlTasks::ThreadPool> threads;
    {
        const std::lock_guard guard(lock_);
        stopped_ = true;
        for (const auto& job : jobs_)
            job->cancelled_ = true;
        threads = std::move(threads_);
    }
    // Not under the lock, which the job that runs may want.
    threads.reset();
    const std::lock_guard guard(lock_);
    jobs_.clear();
}

} // namespace vlEditor
