// What a message between the threads costs: there and back by hand, by the million, and through the
// real loops of both threads.
#include "Report.h"
#include "allocation_count.h"
#include "core/EngineHandler.h"
#include "core/MessageOrchestrator.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/System.h>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <atomic>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace bench {
namespace {

using vlEditor::Message;
using vlEditor::MessageOrchestrator;

constexpr std::size_t million = 1'000'000;

/** An edit as the editor's are: a name, a value, and an outcome that is the message's copy. */
struct EditMessage final : Message {
    explicit EditMessage(std::uint32_t wanted) : value(wanted) {}
    void runOnUiThread() override { answered = value; }
    void runOnGraphicsThread() override {
        ++value;
        vlEditor::postToUi(*this);
    }

    std::string name = "rusty_metal";
    std::uint32_t value;
    static inline std::uint32_t answered = 0; ///< the UI thread's
};

/** The same edit without a queue to answer through. */
struct DirectMessage final : Message {
    explicit DirectMessage(std::uint32_t wanted) : value(wanted) {}
    void runOnUiThread() override { answered = value; }
    void runOnGraphicsThread() override { ++value; }

    std::string name = "rusty_metal";
    std::uint32_t value;
    static inline std::uint32_t answered = 0;
};

MessageOrchestrator& queues() {
    return MessageOrchestrator::getInstance();
}

/** Waits for another thread by looking again and again, as the fastest answer asks for, and now and
 * then makes room for it where it has no core of its own. */
class Patience {
public:
    void wait() {
#if defined(__x86_64__) || defined(__i386__)
        __builtin_ia32_pause();
#endif
        constexpr std::uint32_t spinsUntilYield = 2000;
        if (++spins_ % spinsUntilYield == 0) std::this_thread::yield();
    }

private:
    std::uint32_t spins_ = 0;
};

/// A second thread that calls something over and over for as long as this lives.
class Spinner {
public:
    template <class Work>
    explicit Spinner(Work work)
        : thread_([this, work] {
              vlCommon::ThreadBorder::claimEngine();
              Patience patience;
              while (!stop_.load(std::memory_order_relaxed)) {
                  work();
                  patience.wait();
              }
          }) {}
    ~Spinner() {
        stop_ = true;
        thread_.join();
        vlCommon::ThreadBorder::claimEngine();
    }
    Spinner(const Spinner&) = delete;
    Spinner& operator=(const Spinner&) = delete;

private:
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

void thereAndBack(benchmark::State& state) {
    std::uint32_t value = 0;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        vlEditor::postToGraphics(EditMessage(++value));
        queues().drainGraphics();
        queues().drainUi();
    }
    benchmark::DoNotOptimize(EditMessage::answered);
}

/// Two messages made, run and freed, as above, and no queue between them.
void thereAndBackFloor(benchmark::State& state) {
    std::uint32_t value = 0;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        std::unique_ptr<Message> there = std::make_unique<DirectMessage>(++value);
        benchmark::DoNotOptimize(there);
        there->runOnGraphicsThread();
        std::unique_ptr<Message> back =
                std::make_unique<DirectMessage>(static_cast<DirectMessage&>(*there));
        there.reset();
        benchmark::DoNotOptimize(back);
        back->runOnUiThread();
    }
    benchmark::DoNotOptimize(DirectMessage::answered);
}

/// Each thread is told by an atomic that its queue has something, so that none waits for a turn.
void acrossThreads(benchmark::State& state) {
    std::atomic<std::uint32_t> there{0};
    std::atomic<std::uint32_t> back{0};
    const Spinner graphics([&] {
        if (there.load() == back.load()) return;
        queues().drainGraphics();
        back.store(there.load());
    });
    Patience patience;
    std::uint32_t value = 0;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        vlEditor::postToGraphics(EditMessage(++value));
        there.store(value);
        while (back.load() != value)
            patience.wait();
        queues().drainUi();
    }
}

/// A number there and back through two atomics: what the processor's cores need to see each other.
void acrossThreadsFloor(benchmark::State& state) {
    std::atomic<std::uint32_t> there{0};
    std::atomic<std::uint32_t> back{0};
    const Spinner other([&] { back.store(there.load()); });
    Patience patience;
    std::uint32_t value = 0;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        there.store(++value);
        while (back.load() != value)
            patience.wait();
    }
}

void countAllocations(benchmark::State& state, std::uint64_t before) {
    const auto count = static_cast<double>(allocationCount() - before);
    const auto messages = static_cast<double>(state.iterations()) * million;
    state.counters["allocations_a_message"] = count / (2 * messages);
}

/// A million go into one queue, run, and a million answers come back through the other.
void millionBothWays(benchmark::State& state) {
    const std::uint64_t before = allocationCount();
    for (auto iteration : state) {
        static_cast<void>(iteration);
        for (std::uint32_t i = 0; i < million; ++i)
            vlEditor::postToGraphics(EditMessage(i));
        queues().drainGraphics();
        queues().drainUi();
    }
    countAllocations(state, before);
}

/// As many messages made, kept, run and freed, in plain lists without locks.
void millionFloor(benchmark::State& state) {
    const std::uint64_t before = allocationCount();
    for (auto iteration : state) {
        static_cast<void>(iteration);
        std::vector<std::unique_ptr<Message>> there;
        std::vector<std::unique_ptr<Message>> back;
        for (std::uint32_t i = 0; i < million; ++i)
            there.push_back(std::make_unique<DirectMessage>(i));
        for (std::unique_ptr<Message>& message : there) {
            message->runOnGraphicsThread();
            back.push_back(std::make_unique<DirectMessage>(static_cast<DirectMessage&>(*message)));
            message.reset();
        }
        for (std::unique_ptr<Message>& message : back) {
            message->runOnUiThread();
            message.reset();
        }
    }
    countAllocations(state, before);
}

/// The same million with both threads at work at once, each looking at its queue every millisecond.
void millionAcrossThreads(benchmark::State& state) {
    using namespace std::chrono_literals;
    const std::uint64_t before = allocationCount();
    const Spinner graphics([] {
        queues().drainGraphics();
        std::this_thread::sleep_for(1ms);
    });
    for (auto iteration : state) {
        static_cast<void>(iteration);
        EditMessage::answered = 0;
        for (std::uint32_t i = 0; i < million; ++i)
            vlEditor::postToGraphics(EditMessage(i));
        for (queues().drainUi(); EditMessage::answered != million; queues().drainUi())
            std::this_thread::sleep_for(1ms);
    }
    countAllocations(state, before);
}

/** Prints what the repetitions come to, and keeps each of them for the ratios. */
class Reporter final : public benchmark::ConsoleReporter {
public:
    Reporter() : ConsoleReporter(OO_None) {}
    void ReportRuns(const std::vector<Run>& runs) override {
        std::vector<Run> aggregates;
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate) aggregates.push_back(run);
            if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
            times_[run.run_name.function_name].add(run.GetAdjustedRealTime());
            const auto found = run.counters.find("allocations_a_message");
            if (found != run.counters.end())
                allocations_[run.run_name.function_name] = found->second.value;
        }
        if (!aggregates.empty()) ConsoleReporter::ReportRuns(aggregates);
    }
    void compare(const std::string& ours, const std::string& floor, const std::string& unit) {
        if (!times_.contains(ours) || !times_.contains(floor)) return;
        std::string what = "messages: " + ours;
        if (allocations_.contains(ours))
            what += fmt::format(", {:.2f} allocations each", allocations_[ours]);
        summarise(what,
                  withSpread(times_[ours]) + unit,
                  withSpread(times_[floor]) + unit,
                  pairedRatios(times_[ours], times_[floor]));
    }

private:
    std::map<std::string, Samples> times_;
    std::map<std::string, double> allocations_;
};

/** A window in which there is nothing to draw, and the drawing of it. */
struct EmptyWindow final : vlEditor::RenderWindow {
    bool isDrawable() const override { return true; }
    std::uint64_t getRevision() const override { return 1; }
};
struct NoRenderer final : vlEditor::FrameRenderer {
    std::uint64_t getChangeCount() const override { return 1; }
    bool tick(const vlEditor::RenderWindow&) override { return true; }
    void beginFrame() override {}
    void drawCompositor() override {}
    void endFrame() override {}
    void endWork() override {}
};

/** Notes when each thread has had it. */
struct TimedMessage final : Message {
    void runOnUiThread() override {
        thereMs.add(ranMs - postedMs);
        backMs.add(nowMs() - ranMs);
    }
    void runOnGraphicsThread() override {
        ranMs = nowMs();
        vlEditor::postToUi(*this);
    }
    double postedMs = nowMs();
    double ranMs = 0;
    static inline Samples thereMs;
    static inline Samples backMs;
};

/// Through the graphics thread's own loop and the event loop of the window system. Each message is
/// posted at some moment of a turn, as a person's are.
void throughTheLoops(const std::string& what, bool drawing, double turnMs, std::size_t count) {
    TimedMessage::thereMs = {};
    TimedMessage::backMs = {};
    vlWinUi::SystemOptions options;
    options.headless = true;
    if (const auto started = vlWinUi::System::initialize(options); !started) {
        fmt::print(stderr, "messages: {}\n", started.error().message);
        std::exit(1);
    }
    std::mt19937 random(1);
    std::uniform_real_distribution<double> moment(0, turnMs);
    const auto postOne = [&] {
        std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(moment(random)));
        vlEditor::postToGraphics(TimedMessage());
    };
    vlWinUi::System::setRunCallback([&] {
        const std::size_t before = TimedMessage::backMs.count();
        queues().drainUi();
        if (TimedMessage::backMs.count() == count) return false;
        if (TimedMessage::backMs.count() > before) postOne();
        return true;
    });
    EmptyWindow window;
    vlEditor::EngineHandler handler;
    handler.registerWindow(window);
    handler.setUpdate(window, drawing);
    handler.start(std::make_unique<NoRenderer>());
    postOne();
    vlWinUi::System::run();
    handler.release();
    handler.join();
    vlWinUi::System::kill();

    Samples total;
    Samples ofTurn;
    for (std::size_t i = 0; i < count; ++i) {
        total.add(TimedMessage::thereMs.values()[i] + TimedMessage::backMs.values()[i]);
        ofTurn.add(total.values()[i] / turnMs);
    }
    fmt::print("{}: there {} ms, back {} ms, {} messages\n",
               what,
               withSpread(TimedMessage::thereMs),
               withSpread(TimedMessage::backMs),
               count);
    summarise("messages: there and back, " + what,
              withSpread(total) + " ms",
              figure(turnMs) + " ms, a whole turn",
              ofTurn);
}

BENCHMARK(thereAndBack);
BENCHMARK(thereAndBackFloor);
BENCHMARK(acrossThreads)->UseRealTime();
BENCHMARK(acrossThreadsFloor)->UseRealTime();
BENCHMARK(millionBothWays)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(millionAcrossThreads)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(millionFloor)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    vlCommon::ThreadBorder::claimUi();
    // In turns, and several times: a figure that a moment of the machine's spoilt is seen as such.
    std::vector<std::string> arguments{argv[0],
                                       "--benchmark_repetitions=7",
                                       "--benchmark_min_time=0.2",
                                       "--benchmark_enable_random_interleaving=true"};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
    if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) return 2;

    bench::Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.compare("thereAndBack", "thereAndBackFloor", " ns");
    reporter.compare("acrossThreads", "acrossThreadsFloor", " ns");
    reporter.compare("millionBothWays", "millionFloor", " ms");
    reporter.compare("millionAcrossThreads", "millionFloor", " ms");
    bench::throughTheLoops("idle graphics thread", false, 32, 100);
    bench::throughTheLoops("graphics thread at 60 frames a second", true, 1000.0 / 60, 200);
    bench::queues().discard();
}
