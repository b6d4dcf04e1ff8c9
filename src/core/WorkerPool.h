#pragma once
#include "core/JobProgress.h"

#include <vlCommon/SingletonClass.h>
#include <vlTasks/LambdaTask.h>
#include <vlTasks/ThreadPool.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace vlEditor {

/** Long jobs beside both threads, one at a time and in their order, on one worker that the first
 *  job makes. A job touches neither widgets nor the engine: it posts messages with its results.
 *  One that throws gives a log line. Made by the UI thread before there is another; any thread adds
 *  jobs. */
class WorkerPool final : public vlCommon::SingletonClass<WorkerPool> {
public:
    using LongJob = std::function<void(JobProgress&)>;
    /// A labelled job that has not ended.
    struct JobState {
        std::uint64_t id = 0;
        std::string label;
        std::optional<double> share; ///< 0 to 1; nothing until it has reported
        bool cancelled = false;      ///< was asked to end
    };

    WorkerPool() = default;
    ~WorkerPool() { stop(); }

    /// Anything that can be called without arguments, also what can only be moved.
    template <std::invocable Callable> void addJob(Callable&& job) {
        add(vlTasks::makeTask(std::forward<Callable>(job)));
    }
    /// A job that a person sees: by its label, with how far it is, and can cancel. The label says
    /// what it does: "Generating mesh 'rock'".
    void addJob(std::string label, LongJob job);

    /// Jobs that have not ended: the waiting and the running one. Any thread.
    std::size_t pendingCount() const;
    /// In their order; the first is the one that runs or runs next. Any thread.
    std::vector<JobState> getJobs() const;
    /// One that still waits is then never begun. Ids of jobs that have ended are ignored.
    void cancel(std::uint64_t id);

    /// Called on the UI thread after jobs came, came on or ended; once for all that came together.
    void setJobsCallback(std::function<void()> callback) { jobsChanged_ = std::move(callback); }
    /// UI thread; for the message that brings the news there.
    void tellJobs();

    /// Cancels every job and waits for the one that runs; what waits is dropped, as is what is
    /// added later. UI thread; may be called twice.
    void stop();

private:
    friend class JobProgress;

    void add(std::unique_ptr<vlTasks::Task> task);
    void run(JobProgress& progress, const LongJob& job);
    void remove(const JobProgress& progress);
    /// Has the UI thread told, unless that is under way.
    void notice();

    mutable std::mutex lock_; ///< of all up to stopped_
    std::unique_ptr<vlTasks::ThreadPool> threads_;
    std::vector<std::shared_ptr<JobProgress>> jobs_;
    std::uint64_t nextId_ = 1;
    bool stopped_ = false;
    std::atomic<bool> noticed_ = false;
    std::function<void()> jobsChanged_; ///< UI thread only
};

} // namespace vlEditor
