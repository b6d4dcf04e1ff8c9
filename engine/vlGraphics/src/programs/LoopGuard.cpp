#include "programs/LoopGuard.h"

#include "programs/BindingModel.h"
#include "vulkan/SpirvWords.h"

#include <glslang/SPIRV/spirv.hpp>

#include <algorithm>
#include <cassert>
#include <initializer_list>
#include <map>
#include <span>
#include <unordered_map>
#include <utility>

namespace vlGraphics {

namespace {

using Words = std::vector<std::uint32_t>;

/// Of passes before the first look at the loop buffer, and between two.
constexpr std::uint32_t passesBeforeLook = 16, passesBetweenLooks = 256;
/// A thread with fewer does not stop when the processor asks: others took the time.
constexpr std::uint32_t fewPasses = 4096;
/// Where nothing stops the other threads, each has to give up earlier.
constexpr std::uint32_t mostPassesUntold = std::uint32_t{1} << 16U;
/// What a pass with a barrier weighs: it waits for the slowest thread of a group.
constexpr std::uint32_t barrierWeight = 4;
constexpr std::uint32_t stopped = 0xFFFFFFFF; ///< as the number of passes

/** Adds counters to one module. */
class Guard {
public:
    Guard(Words& spirv, SHADER_TYPE stage, const LoopBounds& bounds)
        : spirv_(spirv), stage_(static_cast<std::uint32_t>(stage)), tells_(bounds.tells),
          mostPasses_(tells_ ? bounds.mostPasses : std::min(bounds.mostPasses, mostPassesUntold)),
          next_(spirv[vulkan::spirvBoundWord]) {}

    std::vector<std::size_t> run() {
        const std::vector<ShaderLoop> loops = findLoops(spirv_);
        std::vector<std::size_t> watched;
        for (std::size_t i = 0; i < loops.size(); ++i)
            if (!loops[i].endsSoon) watched.push_back(i);
        if (watched.empty()) return {};
        readModule();
        addGlobals();
        for (std::size_t i = 0; i < watched.size(); ++i)
            watch(loops[watched[i]], static_cast<std::uint32_t>(i + 1));
        additions_[spirv_.size()] = makeLook();
        spirv_ = assembled();
        return watched;
    }

private:
    void readModule() {
        vulkan::eachInstruction(spirv_, [&](std::uint32_t op, std::size_t at, std::size_t count) {
            const bool isType = op >= spv::OpTypeVoid && op <= spv::OpTypeForwardPointer;
            if (isType && firstType_ == 0) firstType_ = at;
            if (isType)
                types_.emplace(Words(spirv_.begin() + static_cast<std::ptrdiff_t>(at) + 2,
                                     spirv_.begin() + static_cast<std::ptrdiff_t>(at + count)),
                               std::pair(op, spirv_[at + 1]));
            if (op == spv::OpFunction && firstFunction_ == 0) firstFunction_ = at;
        });
    }

    /// No two types of a module may be the same, save pointers and structures.
    std::uint32_t type(std::uint32_t opcode, std::initializer_list<std::uint32_t> operands) {
        const auto [first, last] = types_.equal_range(Words(operands));
        for (auto found = first; found != last; ++found)
            if (found->second.first == opcode) return found->second.second;
        const std::uint32_t id = next_++;
        globals_.push_back(static_cast<std::uint32_t>(operands.size() + 2) << 16U | opcode);
        globals_.push_back(id);
        globals_.insert(globals_.end(), operands);
        types_.emplace(Words(operands), std::pair(opcode, id));
        return id;
    }

    std::uint32_t number(std::uint32_t value) {
        const auto [place, isNew] = numbers_.try_emplace(value, next_);
        if (isNew) vulkan::addInstruction(globals_, spv::OpConstant, {uint_, next_++, value});
        return place->second;
    }

    void addGlobals() {
        uint_ = type(spv::OpTypeInt, {32, 0});
        bool_ = type(spv::OpTypeBool, {});
        lookType_ = type(spv::OpTypeFunction, {bool_, uint_});
        const std::uint32_t pointer = type(spv::OpTypePointer, {spv::StorageClassPrivate, uint_});
        const auto counter = [&](std::uint32_t start) {
            const std::uint32_t id = next_++;
            vulkan::addInstruction(globals_,
                                   spv::OpVariable,
                                   {pointer, id, spv::StorageClassPrivate, number(start)});
            return id;
        };
        passes_ = counter(0);
        // A thread that soon has done never looks.
        nextLook_ = counter(passesBeforeLook);
        commonPasses_ = counter(0);
        look_ = next_++;
        if (!tells_) return;
        const std::uint32_t buffer = next_++;
        vulkan::addInstruction(globals_, spv::OpTypeStruct, {buffer, uint_});
        vulkan::addInstruction(globals_,
                               spv::OpVariable,
                               {type(spv::OpTypePointer, {spv::StorageClassStorageBuffer, buffer}),
                                words_ = next_++,
                                spv::StorageClassStorageBuffer});
        wordPointer_ = type(spv::OpTypePointer, {spv::StorageClassStorageBuffer, uint_});
        vulkan::addInstruction(decorations_,
                               spv::OpMemberDecorate,
                               {buffer, 0, spv::DecorationOffset, stage_ * 4});
        vulkan::addInstruction(
                decorations_, spv::OpMemberDecorate, {buffer, 0, spv::DecorationVolatile});
        vulkan::addInstruction(
                decorations_, spv::OpMemberDecorate, {buffer, 0, spv::DecorationCoherent});
        vulkan::addInstruction(decorations_, spv::OpDecorate, {buffer, spv::DecorationBlock});
        vulkan::addInstruction(decorations_,
                               spv::OpDecorate,
                               {words_, spv::DecorationDescriptorSet, BindingModel::loopSet});
        vulkan::addInstruction(decorations_,
                               spv::OpDecorate,
                               {words_, spv::DecorationBinding, BindingModel::loopBinding});
    }

    void watch(const ShaderLoop& loop, std::uint32_t loopNumber) {
        assert((spirv_[loop.branch] & 0xFFFFU) == spv::OpBranch);
        const std::uint32_t check = next_++;
        const std::uint32_t body = std::exchange(spirv_[loop.branch + 1], check);
        additions_[loop.branch + 2] = loop.hasBarrier
                                              ? makeCommonCheck(loop, check, body, loopNumber)
                                              : makeCheck(loop, check, body, loopNumber);
        // The way out of a loop that had none leads nowhere.
        const std::size_t first = loop.end + 2;
        if ((spirv_[first] & 0xFFFFU) == spv::OpUnreachable)
            returns_.emplace(first, loop.resultType);
    }

    /// passes >= nextLook is all that most passes need to ask.
    Words makeCheck(const ShaderLoop& loop,
                    std::uint32_t check,
                    std::uint32_t body,
                    std::uint32_t loopNumber) {
        const std::uint32_t before = next_++, nextLook = next_++, isDue = next_++, due = next_++;
        const std::uint32_t leaves = next_++, go = next_++, now = next_++, after = next_++;
        Words words;
        vulkan::addInstruction(words, spv::OpLabel, {check});
        vulkan::addInstruction(words, spv::OpLoad, {uint_, before, passes_});
        vulkan::addInstruction(words, spv::OpLoad, {uint_, nextLook, nextLook_});
        vulkan::addInstruction(words, spv::OpUGreaterThanEqual, {bool_, isDue, before, nextLook});
        vulkan::addInstruction(words, spv::OpSelectionMerge, {go, 0});
        vulkan::addInstruction(words, spv::OpBranchConditional, {isDue, due, go});
        vulkan::addInstruction(words, spv::OpLabel, {due});
        vulkan::addInstruction(
                words, spv::OpFunctionCall, {bool_, leaves, look_, number(loopNumber)});
        vulkan::addInstruction(words, spv::OpBranchConditional, {leaves, loop.mergeBlock, go});
        vulkan::addInstruction(words, spv::OpLabel, {go});
        vulkan::addInstruction(words, spv::OpLoad, {uint_, now, passes_});
        vulkan::addInstruction(words, spv::OpIAdd, {uint_, after, now, number(loop.weight)});
        vulkan::addInstruction(words, spv::OpStore, {passes_, after});
        vulkan::addInstruction(words, spv::OpBranch, {body});
        return words;
    }

    /// The threads of a group count what they do together apart, and look at nothing else.
    Words makeCommonCheck(const ShaderLoop& loop,
                          std::uint32_t check,
                          std::uint32_t body,
                          std::uint32_t loopNumber) {
        const std::uint32_t before = next_++, isOver = next_++, over = next_++, go = next_++;
        const std::uint32_t after = next_++;
        Words words;
        vulkan::addInstruction(words, spv::OpLabel, {check});
        vulkan::addInstruction(words, spv::OpLoad, {uint_, before, commonPasses_});
        vulkan::addInstruction(
                words, spv::OpUGreaterThan, {bool_, isOver, before, number(mostPasses_)});
        vulkan::addInstruction(words, spv::OpSelectionMerge, {go, 0});
        vulkan::addInstruction(words, spv::OpBranchConditional, {isOver, over, go});
        vulkan::addInstruction(words, spv::OpLabel, {over});
        vulkan::addInstruction(words, spv::OpStore, {passes_, number(stopped)});
        if (tells_) {
            const std::uint32_t word = next_++;
            vulkan::addInstruction(
                    words, spv::OpAccessChain, {wordPointer_, word, words_, number(0)});
            vulkan::addInstruction(words,
                                   spv::OpAtomicStore,
                                   {word,
                                    number(spv::ScopeDevice),
                                    number(spv::MemorySemanticsMaskNone),
                                    number(loopNumber)});
        }
        vulkan::addInstruction(words, spv::OpBranch, {loop.mergeBlock});
        vulkan::addInstruction(words, spv::OpLabel, {go});
        vulkan::addInstruction(
                words, spv::OpIAdd, {uint_, after, before, number(loop.weight + barrierWeight)});
        vulkan::addInstruction(words, spv::OpStore, {commonPasses_, after});
        vulkan::addInstruction(words, spv::OpBranch, {body});
        return words;
    }

    /// bool look(uint loopNumber): whether to leave.
    Words makeLook() {
        const std::uint32_t loopNumber = next_++, start = next_++, passes = next_++;
        const std::uint32_t hasStopped = next_++, ask = next_++, end = next_++, result = next_++;
        const std::uint32_t last = next_++;
        Words words;
        vulkan::addInstruction(words, spv::OpFunction, {bool_, look_, 0, lookType_});
        vulkan::addInstruction(words, spv::OpFunctionParameter, {uint_, loopNumber});
        vulkan::addInstruction(words, spv::OpLabel, {start});
        vulkan::addInstruction(words, spv::OpLoad, {uint_, passes, passes_});
        vulkan::addInstruction(words, spv::OpIEqual, {bool_, hasStopped, passes, number(stopped)});
        vulkan::addInstruction(words, spv::OpSelectionMerge, {end, 0});
        vulkan::addInstruction(words, spv::OpBranchConditional, {hasStopped, end, ask});
        vulkan::addInstruction(words, spv::OpLabel, {ask});
        const std::uint32_t stops =
                tells_ ? addTelling(words, passes, loopNumber)
                       : addBinary(words, spv::OpUGreaterThan, passes, mostPasses_);
        const std::uint32_t later = next_++, kept = next_++;
        vulkan::addInstruction(
                words, spv::OpIAdd, {uint_, later, passes, number(passesBetweenLooks)});
        vulkan::addInstruction(words, spv::OpStore, {nextLook_, later});
        vulkan::addInstruction(words, spv::OpSelect, {uint_, kept, stops, number(stopped), passes});
        vulkan::addInstruction(words, spv::OpStore, {passes_, kept});
        vulkan::addInstruction(words, spv::OpBranch, {end});
        vulkan::addInstruction(words, spv::OpLabel, {end});
        vulkan::addInstruction(words, spv::OpLoad, {uint_, last, passes_});
        vulkan::addInstruction(words, spv::OpIEqual, {bool_, result, last, number(stopped)});
        vulkan::addInstruction(words, spv::OpReturnValue, {result});
        vulkan::addInstruction(words, spv::OpFunctionEnd, {});
        return words;
    }

    std::uint32_t addBinary(Words& words,
                            std::uint32_t opcode,
                            std::uint32_t value,
                            std::uint32_t constantValue) {
        const std::uint32_t result = next_++;
        vulkan::addInstruction(words, opcode, {bool_, result, value, number(constantValue)});
        return result;
    }

    /// Reads the loop buffer, and tells there when this thread is the first to leave.
    std::uint32_t addTelling(Words& words, std::uint32_t passes, std::uint32_t loopNumber) {
        const std::uint32_t word = next_++, seen = next_++, isTimely = next_++, isFirst = next_++;
        const std::uint32_t isOwn = next_++, tells = next_++, stops = next_++, isTold = next_++;
        const std::uint32_t tell = next_++, told = next_++, late = next_++, what = next_++;
        vulkan::addInstruction(words, spv::OpAccessChain, {wordPointer_, word, words_, number(0)});
        vulkan::addInstruction(words,
                               spv::OpAtomicLoad,
                               {uint_,
                                seen,
                                word,
                                number(spv::ScopeDevice),
                                number(spv::MemorySemanticsMaskNone)});
        const std::uint32_t isOver = addBinary(words, spv::OpUGreaterThan, passes, mostPasses_);
        const std::uint32_t isAsked = addBinary(words, spv::OpIEqual, seen, LoopWords::askedToStop);
        const std::uint32_t isMuch = addBinary(words, spv::OpUGreaterThan, passes, fewPasses);
        const std::uint32_t isWell = addBinary(words, spv::OpIEqual, seen, 0);
        vulkan::addInstruction(words, spv::OpLogicalAnd, {bool_, isTimely, isAsked, isMuch});
        vulkan::addInstruction(words, spv::OpLogicalOr, {bool_, isOwn, isOver, isTimely});
        vulkan::addInstruction(words, spv::OpLogicalOr, {bool_, isFirst, isAsked, isWell});
        vulkan::addInstruction(words, spv::OpLogicalNot, {bool_, isTold, isFirst});
        vulkan::addInstruction(words, spv::OpLogicalAnd, {bool_, tells, isOwn, isFirst});
        vulkan::addInstruction(words, spv::OpLogicalOr, {bool_, stops, isOwn, isTold});
        vulkan::addInstruction(
                words, spv::OpBitwiseOr, {uint_, late, loopNumber, number(LoopWords::tookTooLong)});
        vulkan::addInstruction(words, spv::OpSelect, {uint_, what, isOver, loopNumber, late});
        vulkan::addInstruction(words, spv::OpSelectionMerge, {told, 0});
        vulkan::addInstruction(words, spv::OpBranchConditional, {tells, tell, told});
        vulkan::addInstruction(words, spv::OpLabel, {tell});
        vulkan::addInstruction(
                words,
                spv::OpAtomicStore,
                {word, number(spv::ScopeDevice), number(spv::MemorySemanticsMaskNone), what});
        vulkan::addInstruction(words, spv::OpBranch, {told});
        vulkan::addInstruction(words, spv::OpLabel, {told});
        return stops;
    }

    /// The return from a place that was not to be reached; with any value.
    Words makeReturn(std::uint32_t resultType) {
        const auto [first, last] = types_.equal_range({});
        const bool isVoid = std::any_of(first, last, [&](const auto& entry) {
            return entry.second ==
                   std::pair<std::uint32_t, std::uint32_t>(spv::OpTypeVoid, resultType);
        });
        Words words;
        if (isVoid) {
            vulkan::addInstruction(words, spv::OpReturn, {});
            return words;
        }
        const auto [place, isNew] = nulls_.try_emplace(resultType, next_);
        if (isNew) vulkan::addInstruction(globals_, spv::OpConstantNull, {resultType, next_++});
        vulkan::addInstruction(words, spv::OpReturnValue, {place->second});
        return words;
    }

    Words assembled() {
        std::map<std::size_t, Words> replaced;
        for (const auto& [at, resultType] : returns_)
            replaced[at] = makeReturn(resultType);
        additions_[firstType_] = std::move(decorations_);
        additions_[firstFunction_] = std::move(globals_);
        Words words;
        std::size_t from = 0;
        const auto copyUpTo = [&](std::size_t end) {
            words.insert(words.end(),
                         spirv_.begin() + static_cast<std::ptrdiff_t>(from),
                         spirv_.begin() + static_cast<std::ptrdiff_t>(end));
            from = end;
        };
        additions_.merge(replaced);
        for (const auto& [at, added] : additions_) {
            copyUpTo(at);
            words.insert(words.end(), added.begin(), added.end());
            if (returns_.contains(at)) ++from;
        }
        copyUpTo(spirv_.size());
        words[vulkan::spirvBoundWord] = next_;
        return words;
    }

    Words& spirv_;
    std::uint32_t stage_;
    bool tells_;
    std::uint32_t mostPasses_;
    std::uint32_t next_; ///< the first id that is free
    std::size_t firstType_ = 0;
    std::size_t firstFunction_ = 0;
    std::multimap<Words, std::pair<std::uint32_t, std::uint32_t>> types_; ///< by operands
    std::unordered_map<std::uint32_t, std::uint32_t> numbers_;
    std::unordered_map<std::uint32_t, std::uint32_t> nulls_; ///< by type
    std::map<std::size_t, Words> additions_;                 ///< by the word that they come before
    std::map<std::size_t, std::uint32_t> returns_; ///< in place of the word; type of the result
    Words decorations_;
    Words globals_;
    std::uint32_t uint_ = 0, bool_ = 0, lookType_ = 0, wordPointer_ = 0;
    std::uint32_t passes_ = 0, nextLook_ = 0, commonPasses_ = 0, words_ = 0, look_ = 0;
};

} // namespace

std::vector<std::size_t>
guardLoops(std::vector<std::uint32_t>& spirv, SHADER_TYPE stage, const LoopBounds& bounds) {
    return Guard(spirv, stage, bounds).run();
}

} // namespace vlGraphics
