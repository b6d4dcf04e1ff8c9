#pragma once
#include <vlExport/Node.h>
#include <vlMaths/Quaternion.h>
#include <vlMaths/Vector.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vlEditor {

/// What was wrong with a tree, told with the place.
using ReadError = std::string;

// The simple values that members of messages and records are made of, and their way to and from a
// tree. Reading returns false, and leaves the value alone, where the tree holds something else.

vlExport::Node valueToTree(bool value);
vlExport::Node valueToTree(std::uint8_t value);
vlExport::Node valueToTree(std::uint32_t value);
vlExport::Node valueToTree(std::int32_t value);
vlExport::Node valueToTree(std::uint64_t value);
vlExport::Node valueToTree(float value);
vlExport::Node valueToTree(const std::string& value);
/// Four numbers: x, y, z, w.
vlExport::Node valueToTree(const vlMaths::Vector& value);
vlExport::Node valueToTree(const vlMaths::Quaternion& value);
/// As it is.
inline vlExport::Node valueToTree(const vlExport::Node& value) {
    return value;
}

bool valueFromTree(const vlExport::Node& tree, bool& value, ReadError& error);
bool valueFromTree(const vlExport::Node& tree, std::uint8_t& value, ReadError& error);
bool valueFromTree(const vlExport::Node& tree, std::uint32_t& value, ReadError& error);
bool valueFromTree(const vlExport::Node& tree, std::int32_t& value, ReadError& error);
bool valueFromTree(const vlExport::Node& tree, std::uint64_t& value, ReadError& error);
bool valueFromTree(const vlExport::Node& tree, float& value, ReadError& error);
bool valueFromTree(const vlExport::Node& tree, std::string& value, ReadError& error);
bool valueFromTree(const vlExport::Node& tree, vlMaths::Vector& value, ReadError& error);
bool valueFromTree(const vlExport::Node& tree, vlMaths::Quaternion& value, ReadError& error);
inline bool valueFromTree(const vlExport::Node& tree, vlExport::Node& value, ReadError&) {
    value = tree;
    return true;
}

/// An object with exactly these members.
bool expectMembers(const vlExport::Node& tree,
                   const std::vector<std::string_view>& names,
                   ReadError& error);
/// An array, of that many elements if given.
bool expectList(const vlExport::Node& tree, std::optional<std::size_t> count, ReadError& error);

} // namespace vlEditor
