#include "programs/ShaderLoops.h"

#include "vulkan/SpirvWords.h"

#include <glslang/SPIRV/spirv.hpp>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <optional>
#include <unordered_map>
#include <unordered_set>

namespace vlGraphics {

namespace {

using Words = std::span<const std::uint32_t>;

enum class Kind : std::uint8_t { other, signedInt, unsignedInt, real };

struct Constant {
    Kind kind = Kind::other;
    std::uint32_t bits = 0;
};

std::int32_t asSigned(std::uint32_t bits) {
    return std::bit_cast<std::int32_t>(bits);
}
float asFloat(std::uint32_t bits) {
    return std::bit_cast<float>(bits);
}

/// By SPIR-V's numbers: each pair is one comparison, unsigned and signed, or ordered and unordered.
template <class T> bool compare(std::uint32_t pair, T a, T b) {
    switch (pair) {
    case 0:
        return a > b;
    case 1:
        return a >= b;
    case 2:
        return a < b;
    default:
        return a <= b;
    }
}

std::optional<bool> compare(std::uint32_t operation, std::uint32_t a, std::uint32_t b) {
    constexpr std::uint32_t firstOrder = 172, firstFloat = 180, firstFloatOrder = 184;
    if (operation < firstOrder) return (a == b) == (operation == spv::OpIEqual);
    if (operation < firstFloat) {
        const std::uint32_t pair = (operation - firstOrder) / 2;
        const bool isSigned = (operation - firstOrder) % 2 == 1;
        return isSigned ? compare(pair, asSigned(a), asSigned(b)) : compare(pair, a, b);
    }
    // What is also true of values that are no numbers need not ever end.
    if (operation < firstFloatOrder || operation % 2 == 1) return std::nullopt;
    // Less and greater come before their forms with equality.
    constexpr std::uint32_t pairs[] = {2, 0, 3, 1};
    return compare(pairs[(operation - firstFloatOrder) / 2], asFloat(a), asFloat(b));
}

std::uint32_t step(std::uint32_t operation, std::uint32_t value, std::uint32_t by) {
    switch (operation) {
    case spv::OpIAdd:
        return value + by;
    case spv::OpISub:
        return value - by;
    case spv::OpFAdd:
        return std::bit_cast<std::uint32_t>(asFloat(value) + asFloat(by));
    default:
        return std::bit_cast<std::uint32_t>(asFloat(value) - asFloat(by));
    }
}

/// Devices may take such a number for 0.
bool isTiny(std::uint32_t bits) {
    return std::abs(asFloat(bits)) < 2 * std::numeric_limits<float>::min() && asFloat(bits) != 0;
}

/// Whether the number moves in a step however the device rounds.
bool moves(std::uint32_t value, std::uint32_t by) {
    return !isTiny(value) && !isTiny(by) && asFloat(value) + asFloat(by) / 2 != asFloat(value) &&
           asFloat(value) - asFloat(by) / 2 != asFloat(value);
}

/** Reads a module's loops and how often they pass. */
class LoopReader {
public:
    explicit LoopReader(Words spirv) : spirv_(spirv) {}

    std::vector<ShaderLoop> read() {
        readNames();
        readFunctions();
        for (std::size_t i = 0; i < functions_.size(); ++i)
            judge(functions_[i]);
        std::vector<ShaderLoop> loops;
        loops.reserve(loops_.size());
        for (const Loop& loop : loops_)
            loops.push_back(loop.found);
        return loops;
    }

private:
    static constexpr std::size_t none = ~std::size_t{0};
    using BlockGraph = std::unordered_map<std::uint32_t, std::vector<std::uint32_t>>;

    struct Loop {
        ShaderLoop found;
        std::uint32_t header = 0;
        std::uint32_t continueBlock = 0;
        std::size_t before = 0; ///< label of the block that stands before the header
        std::size_t parent = none;
        std::uint64_t inner = 0; ///< unwatched passes within one of its own
    };
    struct Call {
        std::uint32_t callee = 0;
        std::size_t loop = none; ///< around it
    };
    struct Function {
        std::size_t firstLoop = 0, endLoop = 0;
        std::vector<Call> calls;
        bool isJudged = false;
        bool hasBarrier = false;
        std::uint64_t passes = 0; ///< unwatched, of one call
    };
    /// A variable that a loop compares with a constant before each pass.
    struct Counter {
        std::uint32_t variable = 0;
        std::uint32_t comparison = 0;
        Constant limit;
        bool isLeft = true;     ///< of the comparison
        std::size_t loaded = 0; ///< where the value that is compared is read
    };

    static void add(std::uint64_t& total, std::uint64_t passes) {
        total = std::min(total + passes, std::uint64_t{1} << 24U);
    }

    std::uint32_t opcode(std::size_t at) const { return spirv_[at] & 0xFFFFU; }
    std::size_t count(std::size_t at) const { return spirv_[at] >> 16U; }
    std::size_t after(std::size_t at) const { return at + count(at); }

    void readNames() {
        std::unordered_map<std::uint32_t, Kind> types;
        vulkan::eachInstruction(spirv_, [&](std::uint32_t op, std::size_t at, std::size_t words) {
            if (op == spv::OpTypeInt && spirv_[at + 2] == 32)
                types[spirv_[at + 1]] = spirv_[at + 3] == 1 ? Kind::signedInt : Kind::unsignedInt;
            if (op == spv::OpTypeFloat && spirv_[at + 2] == 32) types[spirv_[at + 1]] = Kind::real;
            if (op == spv::OpConstant && words == 4)
                constants_[spirv_[at + 2]] = {types[spirv_[at + 1]], spirv_[at + 3]};
            if (op == spv::OpDecorate && words == 3 &&
                spirv_[at + 2] == spv::DecorationRelaxedPrecision)
                isCoarse_.insert(spirv_[at + 1]);
            if (op == spv::OpLabel) labels_[spirv_[at + 1]] = at;
            if (op == spv::OpVariable && spirv_[at + 3] == spv::StorageClassFunction)
                locals_.insert(spirv_[at + 2]);
        });
    }

    void readFunctions() {
        std::vector<std::size_t> open; // loops around, from the outermost
        std::size_t lastLabel = 0, labelBefore = 0;
        std::uint32_t resultType = 0;
        vulkan::eachInstruction(spirv_, [&](std::uint32_t op, std::size_t at, std::size_t) {
            while (!open.empty() && loops_[open.back()].found.end <= at)
                open.pop_back();
            const std::size_t around = open.empty() ? none : open.back();
            if (op == spv::OpFunction) {
                numbers_[spirv_[at + 2]] = functions_.size();
                functions_.emplace_back().firstLoop = loops_.size();
                resultType = spirv_[at + 1];
                open.clear();
            }
            if (op == spv::OpLabel) {
                labelBefore = lastLabel;
                lastLabel = at;
            }
            if (op == spv::OpFunctionCall)
                functions_.back().calls.push_back({spirv_[at + 3], around});
            if (op == spv::OpControlBarrier) markBarrier(functions_.back(), around);
            if (op == spv::OpLoopMerge) {
                addLoop(at, lastLabel, labelBefore, around).found.resultType = resultType;
                open.push_back(loops_.size() - 1);
                functions_.back().endLoop = loops_.size();
            }
        });
    }

    Loop& addLoop(std::size_t at, std::size_t label, std::size_t before, std::size_t parent) {
        Loop& loop = loops_.emplace_back();
        loop.found.label = label;
        loop.found.branch = after(at);
        loop.found.mergeBlock = spirv_[at + 1];
        loop.found.end = labels_[loop.found.mergeBlock];
        loop.header = spirv_[label + 1];
        loop.continueBlock = spirv_[at + 2];
        loop.before = before;
        loop.parent = parent;
        return loop;
    }

    void markBarrier(Function& in, std::size_t loop) {
        in.hasBarrier = true;
        for (; loop != none; loop = loops_[loop].parent)
            loops_[loop].found.hasBarrier = true;
    }

    void judge(Function& judged) {
        if (judged.isJudged) return;
        judged.isJudged = true;
        for (const Call& call : judged.calls) {
            const auto number = numbers_.find(call.callee);
            if (number == numbers_.end()) continue;
            Function& callee = functions_[number->second];
            judge(callee);
            if (callee.hasBarrier) markBarrier(judged, call.loop);
            add(call.loop == none ? judged.passes : loops_[call.loop].inner, callee.passes);
        }
        // The inner ones stand after those around them.
        for (std::size_t i = judged.endLoop; i > judged.firstLoop;) {
            Loop& loop = loops_[--i];
            constexpr std::uint64_t most = mostUnwatchedPasses;
            const std::optional<std::uint64_t> trips = tripsOf(loop);
            const std::uint64_t passes = trips ? *trips * (1 + std::min(loop.inner, most)) : most;
            loop.found.weight = static_cast<std::uint32_t>(1 + loop.inner);
            loop.found.endsSoon = trips && passes <= most;
            if (loop.found.endsSoon)
                add(loop.parent == none ? judged.passes : loops_[loop.parent].inner, passes);
        }
    }

    std::optional<std::uint64_t> tripsOf(const Loop& loop) const {
        if (opcode(loop.found.branch) != spv::OpBranch) return std::nullopt;
        for (const Counter& counter : countersOf(loop))
            if (const auto trips = tripsOf(loop, counter)) return trips;
        return std::nullopt;
    }

    /// Of the block that decides on the next pass: what must all be true for it.
    std::vector<Counter> countersOf(const Loop& loop) const {
        const auto test = labels_.find(spirv_[loop.found.branch + 1]);
        if (test == labels_.end()) return {};
        std::unordered_map<std::uint32_t, std::size_t> made;
        std::size_t at = after(test->second);
        for (; opcode(at) < spv::OpBranch || opcode(at) > spv::OpUnreachable; at = after(at))
            if (opcode(at) != spv::OpStore && opcode(at) != spv::OpLine && count(at) > 2)
                made[spirv_[at + 2]] = at;
        if (opcode(at) != spv::OpBranchConditional || spirv_[at + 3] != loop.found.mergeBlock)
            return {};
        std::vector<Counter> counters;
        std::vector<std::uint32_t> conditions{spirv_[at + 1]};
        while (!conditions.empty()) {
            const auto found = made.find(conditions.back());
            conditions.pop_back();
            if (found == made.end()) continue;
            const std::size_t condition = found->second;
            if (opcode(condition) == spv::OpLogicalAnd) {
                conditions.push_back(spirv_[condition + 3]);
                conditions.push_back(spirv_[condition + 4]);
            } else if (opcode(condition) >= spv::OpIEqual &&
                       opcode(condition) <= spv::OpFUnordGreaterThanEqual) {
                addCounter(condition, made, counters);
            }
        }
        return counters;
    }

    void addCounter(std::size_t condition,
                    const std::unordered_map<std::uint32_t, std::size_t>& made,
                    std::vector<Counter>& counters) const {
        for (const bool isLeft : {true, false}) {
            const auto value = made.find(spirv_[condition + (isLeft ? 3 : 4)]);
            const auto limit = constants_.find(spirv_[condition + (isLeft ? 4 : 3)]);
            if (value == made.end() || limit == constants_.end()) continue;
            if (opcode(value->second) != spv::OpLoad || limit->second.kind == Kind::other) continue;
            const std::uint32_t counter = spirv_[value->second + 3];
            // Others change in functions that the loop calls, and in other threads.
            if (locals_.contains(counter))
                counters.push_back(
                        {counter, opcode(condition), limit->second, isLeft, value->second});
        }
    }

    std::optional<std::uint64_t> tripsOf(const Loop& loop, const Counter& counter) const {
        const std::optional<std::uint32_t> start = startOf(loop, counter.variable);
        const std::size_t next = stepOf(loop, counter.variable);
        if (!start || next == none) return std::nullopt;
        // The first value compared is then another than the start.
        if (next < counter.loaded) return std::nullopt;
        const auto by = constants_.find(spirv_[next + 4]);
        if (by == constants_.end() || by->second.kind != counter.limit.kind) return std::nullopt;
        // Devices may count in fewer bits then, which end sooner or take no small step.
        if (isCoarse_.contains(counter.variable) || isCoarse_.contains(spirv_[next + 2]))
            return std::nullopt;
        const bool isReal = counter.limit.kind == Kind::real;
        if (isReal && isTiny(counter.limit.bits)) return std::nullopt;
        std::uint32_t value = *start;
        for (std::uint64_t trips = 0; trips <= mostUnwatchedPasses; ++trips) {
            const auto goesOn = counter.isLeft
                                        ? compare(counter.comparison, value, counter.limit.bits)
                                        : compare(counter.comparison, counter.limit.bits, value);
            if (!goesOn) return std::nullopt;
            if (!*goesOn) return trips;
            if (isReal && !moves(value, by->second.bits)) return std::nullopt;
            value = step(opcode(next), value, by->second.bits);
        }
        return std::nullopt;
    }

    /// The constant that the block before the loop leaves in the variable.
    std::optional<std::uint32_t> startOf(const Loop& loop, std::uint32_t variable) const {
        std::optional<std::uint32_t> start;
        bool leadsHere = false;
        for (std::size_t at = after(loop.before); at < loop.found.label; at = after(at)) {
            leadsHere = opcode(at) == spv::OpBranch && spirv_[at + 1] == loop.header;
            if (!mentions(at, variable) || opcode(at) == spv::OpLoad) continue;
            start.reset();
            if (opcode(at) != spv::OpStore || spirv_[at + 1] != variable) continue;
            const auto value = constants_.find(spirv_[at + 2]);
            if (value != constants_.end() && value->second.kind != Kind::other)
                start = value->second.bits;
        }
        return leadsHere ? start : std::nullopt;
    }

    /// The addition of a constant that every pass stores once; none when the loop uses the variable
    /// in any way other than that and to read it.
    std::size_t stepOf(const Loop& loop, std::uint32_t variable) const {
        std::size_t block = none, stored = none;
        for (std::size_t at = loop.found.label; at < loop.found.end; at = after(at)) {
            if (opcode(at) == spv::OpLabel && stored == none) block = at;
            if (opcode(at) == spv::OpLoad || !mentions(at, variable)) continue;
            if (opcode(at) != spv::OpStore || spirv_[at + 1] != variable || stored != none)
                return none;
            stored = at;
        }
        if (stored == none || !isOncePerPass(loop, spirv_[block + 1])) return none;
        std::size_t loaded = none, added = none;
        for (std::size_t at = after(block); at < stored; at = after(at)) {
            const std::uint32_t op = opcode(at);
            if (op == spv::OpLoad && spirv_[at + 3] == variable) loaded = at;
            if (op >= spv::OpIAdd && op <= spv::OpFSub && loaded != none &&
                spirv_[at + 3] == spirv_[loaded + 2])
                added = at;
        }
        const bool isStored = added != none && spirv_[stored + 2] == spirv_[added + 2];
        return isStored ? added : none;
    }

    /// No pass leaves the block out, and none goes through it again.
    bool isOncePerPass(const Loop& loop, std::uint32_t block) const {
        const BlockGraph blocks = blocksOf(loop);
        return !isReachable(blocks, loop.header, loop.header, block) &&
               !isReachable(blocks, block, block, loop.header);
    }

    /// The blocks that follow each block of a loop.
    BlockGraph blocksOf(const Loop& loop) const {
        BlockGraph blocks;
        std::vector<std::uint32_t>* next = nullptr;
        for (std::size_t at = loop.found.label; at < loop.found.end; at = after(at)) {
            const std::uint32_t op = opcode(at);
            if (op == spv::OpLabel) next = &blocks[spirv_[at + 1]];
            if (op == spv::OpBranch) next->push_back(spirv_[at + 1]);
            if (op == spv::OpBranchConditional) next->assign({spirv_[at + 2], spirv_[at + 3]});
            if (op != spv::OpSwitch) continue;
            // The default, and then a label behind each value.
            for (std::size_t word = at + 2; word < after(at); word += 2)
                next->push_back(spirv_[word]);
        }
        return blocks;
    }

    /// By one step or more, and not through the block that is left out.
    static bool isReachable(const BlockGraph& blocks,
                            std::uint32_t from,
                            std::uint32_t to,
                            std::uint32_t without) {
        std::unordered_set<std::uint32_t> seen{without};
        std::vector<std::uint32_t> open{from};
        while (!open.empty()) {
            const auto block = blocks.find(open.back());
            open.pop_back();
            if (block == blocks.end()) continue;
            for (const std::uint32_t next : block->second) {
                if (next == to) return true;
                if (seen.insert(next).second) open.push_back(next);
            }
        }
        return false;
    }

    /// A number that only looks like it counts, too.
    bool mentions(std::size_t at, std::uint32_t id) const {
        if (opcode(at) == spv::OpLine || opcode(at) == spv::OpNoLine) return false;
        const Words words = spirv_.subspan(at + 1, count(at) - 1);
        return std::find(words.begin(), words.end(), id) != words.end();
    }

    Words spirv_;
    std::unordered_map<std::uint32_t, Constant> constants_;
    std::unordered_map<std::uint32_t, std::size_t> labels_;
    std::unordered_set<std::uint32_t> locals_;
    std::unordered_set<std::uint32_t> isCoarse_; ///< whose precision is left to the device
    std::unordered_map<std::uint32_t, std::size_t> numbers_; ///< of functions by name
    std::vector<Function> functions_;
    std::vector<Loop> loops_;
};

} // namespace

std::vector<ShaderLoop> findLoops(Words spirv) {
    return LoopReader(spirv).read();
}

std::vector<LoopPlace> findLoopPlaces(Words spirv) {
    std::unordered_map<std::uint32_t, std::size_t> files;
    std::vector<LoopPlace> places;
    LoopPlace place;
    vulkan::eachInstruction(spirv, [&](std::uint32_t op, std::size_t at, std::size_t words) {
        if (op == spv::OpString) files[spirv[at + 1]] = at;
        if (op == spv::OpLine) {
            place.line = std::max(spirv[at + 2], 1U);
            place.file.clear();
            const auto file = files.find(spirv[at + 1]);
            if (file == files.end()) return;
            const auto text = spirv.subspan(file->second + 2, (spirv[file->second] >> 16U) - 2);
            const auto* first = reinterpret_cast<const char*>(text.data());
            place.file.assign(first, std::find(first, first + text.size_bytes(), '\0'));
        }
        if (op == spv::OpLoopMerge && words > 2) places.push_back(place);
    });
    return places;
}

} // namespace vlGraphics
