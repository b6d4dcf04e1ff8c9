#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace vlScripts {

/** Matches the patterns of the language: classes, sets, repetitions, captures, %b, %f and back
 *  references. Unlike Lua's own matcher it tells how much it has done, so that one that tries
 *  endlessly many ways can be ended; and what it is not able to read is an error, never a crash. */
class Pattern final {
public:
    static constexpr std::size_t mostCaptures = 32;

    struct Capture {
        enum class State { open, closed, position };
        std::size_t start = 0;
        std::size_t length = 0;
        State state = State::open;
    };
    /// Is told how many steps were made since the last time; may throw to end the search.
    using Progress = void (*)(void* owner, std::uint64_t steps);
    /// Reports a malformed pattern; does not return.
    using Refuse = void (*)(void* owner, const char* why);

    /// All texts must outlive the pattern.
    Pattern(std::string_view subject,
            std::string_view pattern,
            void* owner,
            Progress progress,
            Refuse refusal)
        : subject_(subject), pattern_(pattern), owner_(owner), progress_(progress),
          refuse_(refusal) {}

    /// Where a match that starts there ends.
    std::optional<std::size_t> matchAt(std::size_t start);
    /// Of the last match.
    std::size_t getCaptureCount() const { return captureCount_; }
    const Capture& getCapture(std::size_t index) const { return captures_[index]; }

private:
    using Place = std::optional<std::size_t>;

    Place match(std::size_t at, std::size_t rule);
    Place matchSingle(std::size_t at, std::size_t rule);
    Place matchMost(std::size_t at, std::size_t rule, std::size_t next);
    Place matchLeast(std::size_t at, std::size_t rule, std::size_t next);
    Place openCapture(std::size_t at, std::size_t rule, Capture::State state);
    Place closeCapture(std::size_t at, std::size_t rule);
    Place matchBalance(std::size_t at, std::size_t rule);
    Place matchBorder(std::size_t at, std::size_t rule);
    Place matchReference(std::size_t at, char digit);
    Place matchEscaped(std::size_t at, std::size_t& rule, bool& done);

    /// Behind the single-letter rule that starts there.
    std::size_t endOfRule(std::size_t rule) const;
    bool fits(std::size_t at, std::size_t rule, std::size_t end) const;
    bool fitsSet(unsigned char letter, std::size_t rule, std::size_t end) const;
    unsigned char letterAt(std::size_t at) const {
        return at < subject_.size() ? static_cast<unsigned char>(subject_[at]) : '\0';
    }
    char ruleAt(std::size_t rule) const { return rule < pattern_.size() ? pattern_[rule] : '\0'; }
    /// A long set takes long to look through.
    static std::uint64_t costOf(std::size_t rule, std::size_t end) { return 1 + (end - rule) / 16; }
    void step(std::uint64_t count = 1);
    [[noreturn]] void refuse(const char* why) const;

    std::string_view subject_;
    std::string_view pattern_;
    void* owner_;
    Progress progress_;
    Refuse refuse_;
    std::array<Capture, mostCaptures> captures_{};
    std::size_t captureCount_ = 0;
    std::size_t depth_ = 0;
    std::uint64_t steps_ = 0;
};

} // namespace vlScripts
