#include "programs/ModuleBounds.h"

#include "vulkan/SpirvWords.h"

#include <fmt/format.h>
#include <glslang/SPIRV/spirv.hpp>

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace vlGraphics::ModuleBounds {

namespace {

struct Call {
    std::uint32_t callee = 0;
    std::size_t loops = 0; ///< around it
};

struct Function {
    std::size_t instructions = 0;
    // With those of the functions that it calls, and that they call.
    std::size_t copied = 0; ///< instructions
    std::size_t callCount = 0;
    std::size_t loops = 0; ///< within each other, at most
    std::vector<Call> calls;
    bool isCounted = false;
};

/** Adds up what each function becomes. */
class CallReader {
public:
    void read(std::span<const std::uint32_t> spirv) {
        std::vector<std::uint32_t> merges; // where the loops around end
        Function* current = nullptr;
        vulkan::eachInstruction(spirv, [&](std::uint32_t op, std::size_t at, std::size_t) {
            if (op == spv::OpFunction) {
                current = &functions_[spirv[at + 2]];
                merges.clear();
            }
            if (current == nullptr) return;
            ++current->instructions;
            if (op == spv::OpLabel && !merges.empty() && merges.back() == spirv[at + 1])
                merges.pop_back();
            if (op == spv::OpLoopMerge) merges.push_back(spirv[at + 1]);
            if (op == spv::OpFunctionCall) current->calls.push_back({spirv[at + 3], merges.size()});
            current->loops = std::max(current->loops, merges.size());
        });
        for (auto& [id, one] : functions_) {
            count(one);
            copied_ = std::max(copied_, one.copied);
            calls_ = std::max(calls_, one.callCount);
            loops_ = std::max(loops_, one.loops);
        }
    }
    bool isTooMuch() const { return calls_ > maxCalls || copied_ > maxCopied; }
    std::size_t loops() const { return loops_; }

private:
    void count(Function& counted) {
        if (counted.isCounted) return;
        counted.isCounted = true;
        for (const Call& call : counted.calls) {
            const auto found = functions_.find(call.callee);
            if (found == functions_.end()) continue;
            Function& callee = found->second;
            count(callee);
            const std::size_t copied = counted.copied + callee.instructions + callee.copied;
            counted.copied = std::min(copied, maxCopied + 1); // more would run over
            counted.callCount = std::min(counted.callCount + 1 + callee.callCount, maxCalls + 1);
            counted.loops = std::max(counted.loops, call.loops + callee.loops);
        }
    }

    std::unordered_map<std::uint32_t, Function> functions_;
    std::size_t copied_ = 0;
    std::size_t calls_ = 0;
    std::size_t loops_ = 0;
};

} // namespace

std::string findExcess(std::span<const std::uint32_t> spirv) {
    if (spirv.size() > maxWords)
        return fmt::format("it compiles to {} words, more than {}", spirv.size(), maxWords);
    CallReader reader;
    reader.read(spirv);
    if (reader.loops() > maxLoops) return fmt::format("loops nested deeper than {}", maxLoops);
    if (!reader.isTooMuch()) return {};
    return fmt::format("functions call each other too often: put in the place of their calls they "
                       "are more than {}, or have more than {} instructions",
                       maxCalls,
                       maxCopied);
}

} // namespace vlGraphics::ModuleBounds
