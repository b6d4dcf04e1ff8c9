#include "programs/ModuleMender.h"

#include "vulkan/SpirvWords.h"

#include <glslang/SPIRV/spirv.hpp>

#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace vlGraphics {

namespace {

using Words = std::vector<std::uint32_t>;

constexpr std::size_t firstValue = 6; ///< of an exchange or an arithmetic operation

/** Copies a module, adding what it lacks. */
class Mender {
public:
    Mender(const Words& from, SHADER_TYPE stage)
        : from_(from), isPixel_(stage == SHADER_TYPE::PIXEL),
          mended_(from.begin(), from.begin() + vulkan::spirvHeaderWords) {}

    Words run() {
        findVectors();
        vulkan::eachInstruction(from_, [&](std::uint32_t op, std::size_t at, std::size_t count) {
            if (count >= 3 && threes_.contains(from_[at + 1]))
                types_[from_[at + 2]] = from_[at + 1];
            if (count >= 3 &&
                (integers_.contains(from_[at + 1]) || targets_.contains(from_[at + 1])))
                types_[from_[at + 2]] = from_[at + 1];
            if (op == spv::OpTypeInt) integers_.insert(from_[at + 1]);
            if (op == spv::OpTypePointer && integers_.contains(from_[at + 3]))
                targets_[from_[at + 1]] = from_[at + 3];
            copy(op, at, count);
        });
        return std::move(mended_);
    }

private:
    void findVectors() {
        vulkan::eachInstruction(from_, [&](std::uint32_t op, std::size_t at, std::size_t) {
            if (op != spv::OpTypeVector) return;
            if (from_[at + 3] == 3) threes_[from_[at + 1]] = from_[at + 2];
            if (from_[at + 3] == 4) fours_[from_[at + 2]] = from_[at + 1];
        });
    }

    void copy(std::uint32_t op, std::size_t at, std::size_t count) {
        const bool isArithmetic = op >= spv::OpAtomicIAdd && op <= spv::OpAtomicXor;
        const bool compares = op == spv::OpAtomicCompareExchange;
        Words instruction(from_.begin() + static_cast<std::ptrdiff_t>(at),
                          from_.begin() + static_cast<std::ptrdiff_t>(at + count));
        if (isArithmetic || compares || op == spv::OpAtomicExchange)
            adapt(instruction, compares);
        else if (op == spv::OpImageWrite)
            widenTexel(instruction);
        else
            append(instruction);
        if (op == spv::OpTypeVector && instruction[3] == 3) addFour(instruction[2]);
        const bool isLane = op == spv::OpDecorate && count == 4 &&
                            instruction[2] == spv::DecorationBuiltIn &&
                            (instruction[3] == spv::BuiltInSubgroupSize ||
                             instruction[3] == spv::BuiltInSubgroupLocalInvocationId);
        if (isLane && isPixel_)
            vulkan::addInstruction(mended_, spv::OpDecorate, {instruction[1], spv::DecorationFlat});
    }

    /// A type has one declaration.
    void addFour(std::uint32_t number) {
        if (fours_.contains(number)) return;
        fours_[number] = mended_[vulkan::spirvBoundWord]++;
        vulkan::addInstruction(mended_, spv::OpTypeVector, {fours_[number], number, 4});
    }

    /// No format has three numbers; what has four is to be given four.
    void widenTexel(Words& instruction) {
        const auto type = types_.find(instruction[3]);
        const auto three = type == types_.end() ? threes_.end() : threes_.find(type->second);
        if (three != threes_.end()) {
            const std::uint32_t texel =
                    std::exchange(instruction[3], mended_[vulkan::spirvBoundWord]++);
            vulkan::addInstruction(
                    mended_,
                    spv::OpVectorShuffle,
                    {fours_[three->second], instruction[3], texel, texel, 0, 1, 2, 0});
        }
        append(instruction);
    }

    /// Makes all numbers of an atomic operation those that its pointer points to.
    void adapt(Words& instruction, bool compares) {
        const auto pointer = types_.find(instruction[3]);
        const auto target =
                pointer == types_.end() ? targets_.end() : targets_.find(pointer->second);
        if (target == targets_.end()) return append(instruction);
        const std::uint32_t wanted = target->second;
        // A comparing exchange has two orders, and then the value and what it is compared with.
        adaptValue(instruction, compares ? firstValue + 1 : firstValue, wanted);
        if (compares) adaptValue(instruction, firstValue + 2, wanted);
        const std::uint32_t type = std::exchange(instruction[1], wanted);
        if (type == wanted) return append(instruction);
        const std::uint32_t result =
                std::exchange(instruction[2], mended_[vulkan::spirvBoundWord]++);
        append(instruction);
        vulkan::addInstruction(mended_, spv::OpBitcast, {type, result, instruction[2]});
    }

    void adaptValue(Words& instruction, std::size_t value, std::uint32_t wanted) {
        const auto type = types_.find(instruction[value]);
        if (type == types_.end() || type->second == wanted) return;
        const std::uint32_t id = mended_[vulkan::spirvBoundWord]++;
        vulkan::addInstruction(mended_, spv::OpBitcast, {wanted, id, instruction[value]});
        instruction[value] = id;
    }

    void append(const Words& words) { mended_.insert(mended_.end(), words.begin(), words.end()); }

    const Words& from_;
    bool isPixel_;
    Words mended_;
    std::unordered_set<std::uint32_t> integers_;              ///< types
    std::unordered_map<std::uint32_t, std::uint32_t> threes_; ///< types of three, to their number's
    std::unordered_map<std::uint32_t, std::uint32_t> fours_;  ///< of four, by their number's
    std::unordered_map<std::uint32_t, std::uint32_t> targets_; ///< of pointers to them, by type
    /// Of integers, of pointers to them, and of vectors of three.
    std::unordered_map<std::uint32_t, std::uint32_t> types_;
};

bool mayNeedMending(const Words& spirv) {
    bool may = false;
    vulkan::eachInstruction(spirv, [&](std::uint32_t op, std::size_t at, std::size_t count) {
        may = may || (op >= spv::OpAtomicExchange && op <= spv::OpAtomicXor) ||
              op == spv::OpImageWrite ||
              (op == spv::OpDecorate && count == 4 && spirv[at + 2] == spv::DecorationBuiltIn &&
               (spirv[at + 3] == spv::BuiltInSubgroupSize ||
                spirv[at + 3] == spv::BuiltInSubgroupLocalInvocationId));
    });
    return may;
}

} // namespace

void mendModule(Words& spirv, SHADER_TYPE stage) {
    if (mayNeedMending(spirv)) spirv = Mender(spirv, stage).run();
}

} // namespace vlGraphics
