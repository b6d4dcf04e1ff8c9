#pragma once
#include <vlTasks/Task.h>

#include <concepts>
#include <memory>
#include <type_traits>
#include <utility>

namespace vlTasks {

/** A task out of anything that can be called without arguments, also out of what can only be moved.
 *  What the callable holds is freed with the task, on the pool's thread. */
template <std::invocable Callable> class LambdaTask final : public Task {
public:
    explicit LambdaTask(Callable callable) : callable_(std::move(callable)) {}

    void run() override { static_cast<void>(callable_()); }

private:
    Callable callable_;
};

template <class Callable> std::unique_ptr<Task> makeTask(Callable&& callable) {
    return std::make_unique<LambdaTask<std::decay_t<Callable>>>(std::forward<Callable>(callable));
}

} // namespace vlTasks
