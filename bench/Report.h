#pragma once
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

/** Several measurements of one thing. Never empty when it is asked. */
class Samples {
public:
    void add(double value) { values_.push_back(value); }
    std::size_t count() const { return values_.size(); }
    double median() const;
    double least() const { return *std::min_element(values_.begin(), values_.end()); }
    double most() const { return *std::max_element(values_.begin(), values_.end()); }
    const std::vector<double>& values() const { return values_; }

private:
    std::vector<double> values_;
};

/// Round by round, how many times the other's value the first one's is. Both have the same count.
Samples pairedRatios(const Samples& ours, const Samples& peers);

/// Wall time since some start.
double nowMs();
/// Processor time of the calling thread so far.
double threadCpuMs();
/// Likewise of all threads of the program, which other programs' load hardly changes.
double processCpuMs();

/// Three digits, or the whole number where that has more.
std::string figure(double value);
/// "12.3 (11.9 to 14.2)": the median, and the least and the most.
std::string withSpread(const Samples& samples);

/// A line of the table that run.sh prints at the end: ">> what | ours | peer's | ratio".
void summarise(std::string_view what,
               std::string_view ours,
               std::string_view peers,
               const Samples& ratios,
               std::string_view goal = {});

} // namespace bench
