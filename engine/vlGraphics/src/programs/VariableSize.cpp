#include "programs/VariableSize.h"

#include <glslang/SPIRV/spirv.hpp>

#include <limits>
#include <optional>
#include <unordered_map>

namespace vlGraphics {

namespace {

using Words = std::span<const std::uint32_t>;

constexpr std::size_t headerWords = 5;

constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();

std::uint64_t sum(std::uint64_t a, std::uint64_t b) {
    return a > most - b ? most : a + b;
}

std::uint64_t product(std::uint64_t a, std::uint64_t b) {
    return b != 0 && a > most / b ? most : a * b;
}

/** Adds the sizes up; every type stands before what is made of it. */
class SizeReader {
public:
    void read(std::uint32_t operation, Words operands) {
        if (operation == spv::OpVariable && operands.size() >= 3) {
            std::uint64_t& bytes = totals_[operands[2]];
            bytes = sum(bytes, sizeOf(operands[0]));
        } else if ((operation == spv::OpUndef || operation == spv::OpConstantNull) &&
                   !operands.empty()) {
            // What is left of a variable that is read and never written.
            valuesWithout_ = sum(valuesWithout_, sizeOf(operands[0]));
        } else if (operation == spv::OpConstant && operands.size() >= 3) {
            constants_[operands[1]] = operands[2];
        } else if (operation == spv::OpTypePointer && operands.size() >= 3) {
            sizes_[operands[0]] = sizeOf(operands[2]);
        } else if (operation == spv::OpTypeStruct && !operands.empty()) {
            std::uint64_t size = 0;
            for (const std::uint32_t member : operands.subspan(1))
                size = sum(size, sizeOf(member));
            sizes_[operands[0]] = size;
        } else if ((operation == spv::OpTypeVector || operation == spv::OpTypeMatrix) &&
                   operands.size() >= 3) {
            sizes_[operands[0]] = product(sizeOf(operands[1]), operands[2]);
        } else if (operation == spv::OpTypeArray && operands.size() >= 3) {
            const auto count = constants_.find(operands[2]);
            sizes_[operands[0]] =
                    count == constants_.end() ? most : product(sizeOf(operands[1]), count->second);
        }
    }

    std::uint64_t total() const {
        return sum(sum(totalIn(spv::StorageClassWorkgroup), totalIn(spv::StorageClassPrivate)),
                   sum(totalIn(spv::StorageClassFunction), valuesWithout_));
    }
    std::uint64_t totalIn(std::uint32_t storage) const {
        const auto found = totals_.find(storage);
        return found == totals_.end() ? 0 : found->second;
    }

private:
    std::uint64_t sizeOf(std::uint32_t type) const {
        constexpr std::uint64_t scalar = 4;
        const auto known = sizes_.find(type);
        return known == sizes_.end() ? scalar : known->second;
    }

    std::unordered_map<std::uint32_t, std::uint64_t> sizes_;
    std::unordered_map<std::uint32_t, std::uint64_t> constants_;
    std::unordered_map<std::uint32_t, std::uint64_t> totals_; ///< of variables, by storage class
    std::uint64_t valuesWithout_ = 0;                         ///< of what is left of variables
};

/// Nothing where the words end in the middle.
std::optional<SizeReader> readSizes(Words spirv) {
    SizeReader reader;
    std::size_t at = headerWords;
    while (at < spirv.size()) {
        const std::size_t words = spirv[at] >> 16U;
        if (words == 0 || words > spirv.size() - at) return std::nullopt;
        reader.read(spirv[at] & 0xFFFFU, spirv.subspan(at + 1, words - 1));
        at += words;
    }
    return reader;
}

} // namespace

std::uint64_t variableBytes(Words spirv) {
    const auto sizes = readSizes(spirv);
    return sizes ? sizes->total() : most;
}

std::uint64_t variableBytesIn(Words spirv, std::uint32_t storageClass) {
    const auto sizes = readSizes(spirv);
    return sizes ? sizes->totalIn(storageClass) : most;
}

} // namespace vlGraphics
