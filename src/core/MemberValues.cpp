#include "core/MemberValues.h"

#include <algorithm>
#include <array>
#include <limits>

namespace vlEditor {
namespace {

using vlExport::Node;

template <class Int> bool readInteger(const Node& tree, Int& value, ReadError& error) {
    constexpr auto low = std::numeric_limits<Int>::min();
    constexpr auto high = std::numeric_limits<Int>::max();
    std::optional<Int> read;
    if constexpr (std::is_unsigned_v<Int>) {
        const auto wide = tree.asUnsigned();
        if (wide && *wide <= high) read = static_cast<Int>(*wide);
    } else {
        const auto wide = tree.asSigned();
        if (wide && *wide >= low && *wide <= high) read = static_cast<Int>(*wide);
    }
    if (!read) {
        error = "expected a whole number from " + std::to_string(low) + " to " +
                std::to_string(high);
        return false;
    }
    value = *read;
    return true;
}

bool readFour(const Node& tree, std::array<float, 4>& values, ReadError& error) {
    if (!expectList(tree, values.size(), error)) return false;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (valueFromTree(tree.elements()[i], values[i], error)) continue;
        error.insert(0, std::to_string(i) + ": ");
        return false;
    }
    return true;
}

} // namespace

Node valueToTree(bool value) {
    return value;
}
Node valueToTree(std::uint8_t value) {
    return value;
}
Node valueToTree(std::uint32_t value) {
    return value;
}
Node valueToTree(std::int32_t value) {
    return value;
}
Node valueToTree(std::uint64_t value) {
    return value;
}
Node valueToTree(float value) {
    return value;
}
Node valueToTree(const std::string& value) {
    return value;
}
Node valueToTree(const vlMaths::Vector& value) {
    return Node::array(std::array{value.x, value.y, value.z, value.w});
}
Node valueToTree(const vlMaths::Quaternion& value) {
    return Node::array(std::array{value.x, value.y, value.z, value.w});
}

bool valueFromTree(const Node& tree, bool& value, ReadError& error) {
    const auto read = tree.asBool();
    if (!read) {
        error = "expected true or false";
        return false;
    }
    value = *read;
    return true;
}

bool valueFromTree(const Node& tree, std::uint8_t& value, ReadError& error) {
    return readInteger(tree, value, error);
}
bool valueFromTree(const Node& tree, std::uint32_t& value, ReadError& error) {
    return readInteger(tree, value, error);
}
bool valueFromTree(const Node& tree, std::int32_t& value, ReadError& error) {
    return readInteger(tree, value, error);
}
bool valueFromTree(const Node& tree, std::uint64_t& value, ReadError& error) {
    return readInteger(tree, value, error);
}

bool valueFromTree(const Node& tree, float& value, ReadError& error) {
    const auto read = tree.asFloat();
    if (!read) {
        error = "expected a number";
        return false;
    }
    value = *read;
    return true;
}

bool valueFromTree(const Node& tree, std::string& value, ReadError& error) {
    const std::string* read = tree.asString();
    if (read == nullptr) {
        error = "expected a text";
        return false;
    }
    value = *read;
    return true;
}

bool valueFromTree(const Node& tree, vlMaths::Vector& value, ReadError& error) {
    std::array<float, 4> read{};
    if (!readFour(tree, read, error)) return false;
    value = {read[0], read[1], read[2], read[3]};
    return true;
}

bool valueFromTree(const Node& tree, vlMaths::Quaternion& value, ReadError& error) {
    std::array<float, 4> read{};
    if (!readFour(tree, read, error)) return false;
    value = {read[0], read[1], read[2], read[3]};
    return true;
}

bool expectMembers(const Node& tree, const std::vector<std::string_view>& names, ReadError& error) {
    if (!tree.isObject()) {
        error = "expected an object";
        return false;
    }
    for (const std::string_view name : names) {
        if (tree.find(name) != nullptr) continue;
        error = std::string(name) + ": is missing";
        return false;
    }
    for (const vlExport::Member& member : tree.members()) {
        if (std::find(names.begin(), names.end(), member.name) != names.end()) continue;
        error = member.name + ": is not known here";
        return false;
    }
    return true;
}

bool expectList(const Node& tree, std::optional<std::size_t> count, ReadError& error) {
    if (!tree.isArray()) {
        error = "expected a list";
        return false;
    }
    if (count && tree.size() != *count) {
        error = "expected " + std::to_string(*count) + " entries";
        return false;
    }
    return true;
}

} // namespace vlEditor
