#include <vlCommon/ThreadBorder.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace vlCommon {
namespace {

std::atomic<std::thread::id> uiThread;
std::atomic<std::thread::id> engineThread;

} // namespace

void ThreadBorder::claimUi() {
    uiThread = std::this_thread::get_id();
    engineThread = std::this_thread::get_id();
}

void ThreadBorder::claimEngine() {
    engineThread = std::this_thread::get_id();
}

bool ThreadBorder::onUiThread() {
    return uiThread.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

bool ThreadBorder::onEngineThread() {
    return engineThread.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

#ifndef NDEBUG
namespace {

// A program without windows never claims: then there is no border to guard.
void expect(bool held, const std::atomic<std::thread::id>& owner, const char* name) {
    if (held || owner.load(std::memory_order_relaxed) == std::thread::id()) return;
    std::fprintf(stderr, "an object of the %s thread was touched on another thread\n", name);
    std::abort();
}

} // namespace

void assertUiThread() {
    expect(ThreadBorder::onUiThread(), uiThread, "UI");
}

void assertGraphicsThread() {
    expect(ThreadBorder::onEngineThread(), engineThread, "graphics");
}
#endif

} // namespace vlCommon
