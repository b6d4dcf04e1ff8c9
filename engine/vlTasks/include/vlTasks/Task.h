#pragma once

namespace vlTasks {

/** A piece of work for a ThreadPool, which owns it and runs it once, on one of its own threads.
 * What run() throws is caught there and logged. */
class Task {
public:
    virtual ~Task() = default;
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;

    virtual void run() = 0;

protected:
    Task() = default;
};

} // namespace vlTasks
