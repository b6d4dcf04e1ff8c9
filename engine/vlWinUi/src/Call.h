#pragma once
#include <functional>
#include <utility>

namespace vlWinUi {

/// Calls a copy: what is called may erase the component that holds the callback.
template <class R, class... A, class... B>
void call(const std::function<R(A...)>& callback, B&&... arguments) {
    if (!callback) return;
    const std::function<R(A...)> copy = callback;
    copy(std::forward<B>(arguments)...);
}

/** While one lives, what changes was set by code: no callback. */
class Quiet {
public:
    explicit Quiet(int& depth) : depth_(depth) { ++depth_; }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;
    ~Quiet() { --depth_; }

private:
    int& depth_;
};

} // namespace vlWinUi
