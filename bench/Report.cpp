#include "Report.h"

#include <fmt/format.h>

#include <cstdio>
#include <ctime>

namespace bench {

double Samples::median() const {
    std::vector<double> sorted = values_;
    std::sort(sorted.begin(), sorted.end());
    const std::size_t middle = sorted.size() / 2;
    return sorted.size() % 2 == 1 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
}

Samples pairedRatios(const Samples& ours, const Samples& peers) {
    Samples ratios;
    for (std::size_t i = 0; i < ours.count(); ++i)
        ratios.add(ours.values()[i] / peers.values()[i]);
    return ratios;
}

double nowMs() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double, std::milli>(now).count();
}

namespace {

double clockMs(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

} // namespace

double threadCpuMs() {
    return clockMs(CLOCK_THREAD_CPUTIME_ID);
}

double processCpuMs() {
    return clockMs(CLOCK_PROCESS_CPUTIME_ID);
}

std::string figure(double value) {
    constexpr double threeDigits = 100;
    return value < threeDigits ? fmt::format("{:.3g}", value) : fmt::format("{:.0f}", value);
}

std::string withSpread(const Samples& samples) {
    return fmt::format("{} ({} to {})",
                       figure(samples.median()),
                       figure(samples.least()),
                       figure(samples.most()));
}

void summarise(std::string_view what,
               std::string_view ours,
               std::string_view peers,
               const Samples& ratios,
               std::string_view goal) {
    fmt::print(">> {} | {} | {} | {}{}{}\n",
               what,
               ours,
               peers,
               withSpread(ratios),
               goal.empty() ? "" : ", goal ",
               goal);
    std::fflush(stdout);
}

} // namespace bench
