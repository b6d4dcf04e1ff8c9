#include "programs/LoopGuard.h"

#include "programs/BindingModel.h"
#include "vulkan/SpirvWords.h"

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

// Numbers of SPIR-V.
enum Operation : std::uint32_t {
    name = 5,
    typeVoid = 19,
    typeBool = 20,
    typeInt = 21,
    typeStruct = 30,
    typePointer = 32,
    typeFunction = 33,
    lastType = 39,
    constant = 43,
    constantNull = 46,
    function = 54,
    functionParameter = 55,
    functionEnd = 56,
    functionCall = 57,
    variable = 59,
    load = 61,
    store = 62,
    accessChain = 65,
    decorate = 71,
    memberDecorate = 72,
    addInt = 128,
    logicalOr = 166,
    logicalAnd = 167,
    logicalNot = 168,
    select = 169,
    equalInt = 170,
    greater = 172,
    greaterOrEqual = 174,
    bitOr = 197,
    atomicLoad = 227,
    atomicStore = 228,
    selectionMerge = 247,
    blockLabel = 248,
    branch = 249,
    branchConditional = 250,
    returnVoid = 253,
    returnValue = 254,
    unreachable = 255
};
constexpr std::uint32_t ofStage = 6, ofBuffer = 12; ///< storage classes
constexpr std::uint32_t block = 2, isVolatile = 21, isCoherent = 23;
constexpr std::uint32_t bindingNumber = 33, setNumber = 34, memberOffset = 35;
constexpr std::uint32_t device = 1, relaxed = 0; ///< of atomic operations
constexpr std::size_t boundWord = 3;

/// Of passes before the first look at the loop buffer, and between two.
constexpr std::uint32_t passesBeforeLook = 16, passesBetweenLooks = 256;
/// A thread with fewer does not stop when the processor asks: others took the time.
constexpr std::uint32_t fewPasses = 4096;
/// Where nothing stops the other threads, each has to give up earlier.
constexpr std::uint32_t mostPassesUntold = std::uint32_t{1} << 16U;
/// What a pass with a barrier weighs: it waits for the slowest thread of a group.
constexpr std::uint32_t barrierWeight = 4;
constexpr std::uint32_t stopped = 0xFFFFFFFF; ///< as the number of passes

void add(Words& words, std::uint32_t opcode, std::initializer_list<std::uint32_t> operands) {
    words.push_back(static_cast<std::uint32_t>(operands.size() + 1) << 16U | opcode);
    words.insert(words.end(), operands);
}

/** Adds counters to one module. */
class Guard {
public:
    Guard(Words& spirv, SHADER_TYPE stage, const LoopBounds& bounds)
        : spirv_(spirv), stage_(static_cast<std::uint32_t>(stage)), tells_(bounds.tells),
          mostPasses_(tells_ ? bounds.mostPasses : std::min(bounds.mostPasses, mostPassesUntold)),
          next_(spirv[boundWord]) {}

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
            const bool isType = op >= typeVoid && op <= lastType;
            if (isType && firstType_ == 0) firstType_ = at;
            if (isType)
                types_.emplace(Words(spirv_.begin() + static_cast<std::ptrdiff_t>(at) + 2,
                                     spirv_.begin() + static_cast<std::ptrdiff_t>(at + count)),
                               std::pair(op, spirv_[at + 1]));
            if (op == function && firstFunction_ == 0) firstFunction_ = at;
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
        if (isNew) add(globals_, constant, {uint_, next_++, value});
        return place->second;
    }

    void addGlobals() {
        uint_ = type(typeInt, {32, 0});
        bool_ = type(typeBool, {});
        lookType_ = type(typeFunction, {bool_, uint_});
        const std::uint32_t pointer = type(typePointer, {ofStage, uint_});
        const auto counter = [&](std::uint32_t start) {
            const std::uint32_t id = next_++;
            add(globals_, variable, {pointer, id, ofStage, number(start)});
            return id;
        };
        passes_ = counter(0);
        // A thread that soon has done never looks.
        nextLook_ = counter(passesBeforeLook);
        commonPasses_ = counter(0);
        look_ = next_++;
        if (!tells_) return;
        const std::uint32_t buffer = next_++;
        add(globals_, typeStruct, {buffer, uint_});
        add(globals_,
            variable,
            {type(typePointer, {ofBuffer, buffer}), words_ = next_++, ofBuffer});
        wordPointer_ = type(typePointer, {ofBuffer, uint_});
        add(decorations_, memberDecorate, {buffer, 0, memberOffset, stage_ * 4});
        add(decorations_, memberDecorate, {buffer, 0, isVolatile});
        add(decorations_, memberDecorate, {buffer, 0, isCoherent});
        add(decorations_, decorate, {buffer, block});
        add(decorations_, decorate, {words_, setNumber, BindingModel::loopSet});
        add(decorations_, decorate, {words_, bindingNumber, BindingModel::loopBinding});
    }

    void watch(const ShaderLoop& loop, std::uint32_t loopNumber) {
        assert((spirv_[loop.branch] & 0xFFFFU) == branch);
        const std::uint32_t check = next_++;
        const std::uint32_t body = std::exchange(spirv_[loop.branch + 1], check);
        additions_[loop.branch + 2] = loop.hasBarrier
                                              ? makeCommonCheck(loop, check, body, loopNumber)
                                              : makeCheck(loop, check, body, loopNumber);
        // The way out of a loop that had none leads nowhere.
        const std::size_t first = loop.end + 2;
        if ((spirv_[first] & 0xFFFFU) == unreachable) returns_.emplace(first, loop.resultType);
    }

    /// passes >= nextLook is all that most passes need to ask.
    Words makeCheck(const ShaderLoop& loop,
                    std::uint32_t check,
                    std::uint32_t body,
                    std::uint32_t loopNumber) {
        const std::uint32_t before = next_++, nextLook = next_++, isDue = next_++, due = next_++;
        const std::uint32_t leaves = next_++, go = next_++, now = next_++, after = next_++;
        Words words;
        add(words, blockLabel, {check});
        add(words, load, {uint_, before, passes_});
        add(words, load, {uint_, nextLook, nextLook_});
        add(words, greaterOrEqual, {bool_, isDue, before, nextLook});
        add(words, selectionMerge, {go, 0});
        add(words, branchConditional, {isDue, due, go});
        add(words, blockLabel, {due});
        add(words, functionCall, {bool_, leaves, look_, number(loopNumber)});
        add(words, branchConditional, {leaves, loop.mergeBlock, go});
        add(words, blockLabel, {go});
        add(words, load, {uint_, now, passes_});
        add(words, addInt, {uint_, after, now, number(loop.weight)});
        add(words, store, {passes_, after});
        add(words, branch, {body});
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
        add(words, blockLabel, {check});
        add(words, load, {uint_, before, commonPasses_});
        add(words, greater, {bool_, isOver, before, number(mostPasses_)});
        add(words, selectionMerge, {go, 0});
        add(words, branchConditional, {isOver, over, go});
        add(words, blockLabel, {over});
        add(words, store, {passes_, number(stopped)});
        if (tells_) {
            const std::uint32_t word = next_++;
            add(words, accessChain, {wordPointer_, word, words_, number(0)});
            add(words, atomicStore, {word, number(device), number(relaxed), number(loopNumber)});
        }
        add(words, branch, {loop.mergeBlock});
        add(words, blockLabel, {go});
        add(words, addInt, {uint_, after, before, number(loop.weight + barrierWeight)});
        add(words, store, {commonPasses_, after});
        add(words, branch, {body});
        return words;
    }

    /// bool look(uint loopNumber): whether to leave.
    Words makeLook() {
        const std::uint32_t loopNumber = next_++, start = next_++, passes = next_++;
        const std::uint32_t hasStopped = next_++, ask = next_++, end = next_++, result = next_++;
        const std::uint32_t last = next_++;
        Words words;
        add(words, function, {bool_, look_, 0, lookType_});
        add(words, functionParameter, {uint_, loopNumber});
        add(words, blockLabel, {start});
        add(words, load, {uint_, passes, passes_});
        add(words, equalInt, {bool_, hasStopped, passes, number(stopped)});
        add(words, selectionMerge, {end, 0});
        add(words, branchConditional, {hasStopped, end, ask});
        add(words, blockLabel, {ask});
        const std::uint32_t stops = tells_ ? addTelling(words, passes, loopNumber)
                                           : addBinary(words, greater, passes, mostPasses_);
        const std::uint32_t later = next_++, kept = next_++;
        add(words, addInt, {uint_, later, passes, number(passesBetweenLooks)});
        add(words, store, {nextLook_, later});
        add(words, select, {uint_, kept, stops, number(stopped), passes});
        add(words, store, {passes_, kept});
        add(words, branch, {end});
        add(words, blockLabel, {end});
        add(words, load, {uint_, last, passes_});
        add(words, equalInt, {bool_, result, last, number(stopped)});
        add(words, returnValue, {result});
        add(words, functionEnd, {});
        return words;
    }

    std::uint32_t addBinary(Words& words,
                            std::uint32_t opcode,
                            std::uint32_t value,
                            std::uint32_t constantValue) {
        const std::uint32_t result = next_++;
        add(words, opcode, {bool_, result, value, number(constantValue)});
        return result;
    }

    /// Reads the loop buffer, and tells there when this thread is the first to leave.
    std::uint32_t addTelling(Words& words, std::uint32_t passes, std::uint32_t loopNumber) {
        const std::uint32_t word = next_++, seen = next_++, isTimely = next_++, isFirst = next_++;
        const std::uint32_t isOwn = next_++, tells = next_++, stops = next_++, isTold = next_++;
        const std::uint32_t tell = next_++, told = next_++, late = next_++, what = next_++;
        add(words, accessChain, {wordPointer_, word, words_, number(0)});
        add(words, atomicLoad, {uint_, seen, word, number(device), number(relaxed)});
        const std::uint32_t isOver = addBinary(words, greater, passes, mostPasses_);
        const std::uint32_t isAsked = addBinary(words, equalInt, seen, LoopWords::askedToStop);
        const std::uint32_t isMuch = addBinary(words, greater, passes, fewPasses);
        const std::uint32_t isWell = addBinary(words, equalInt, seen, 0);
        add(words, logicalAnd, {bool_, isTimely, isAsked, isMuch});
        add(words, logicalOr, {bool_, isOwn, isOver, isTimely});
        add(words, logicalOr, {bool_, isFirst, isAsked, isWell});
        add(words, logicalNot, {bool_, isTold, isFirst});
        add(words, logicalAnd, {bool_, tells, isOwn, isFirst});
        add(words, logicalOr, {bool_, stops, isOwn, isTold});
        add(words, bitOr, {uint_, late, loopNumber, number(LoopWords::tookTooLong)});
        add(words, select, {uint_, what, isOver, loopNumber, late});
        add(words, selectionMerge, {told, 0});
        add(words, branchConditional, {tells, tell, told});
        add(words, blockLabel, {tell});
        add(words, atomicStore, {word, number(device), number(relaxed), what});
        add(words, branch, {told});
        add(words, blockLabel, {told});
        return stops;
    }

    /// The return from a place that was not to be reached; with any value.
    Words makeReturn(std::uint32_t resultType) {
        const auto [first, last] = types_.equal_range({});
        const bool isVoid = std::any_of(first, last, [&](const auto& entry) {
            return entry.second == std::pair<std::uint32_t, std::uint32_t>(typeVoid, resultType);
        });
        Words words;
        if (isVoid) {
            add(words, returnVoid, {});
            return words;
        }
        const auto [place, isNew] = nulls_.try_emplace(resultType, next_);
        if (isNew) add(globals_, constantNull, {resultType, next_++});
        add(words, returnValue, {place->second});
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
        words[boundWord] = next_;
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
