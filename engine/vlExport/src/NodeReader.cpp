#include <vlExport/NodeReader.h>
#include <vlMemory/Utf8.h>

#include <fmt/format.h>

#include <cmath>

namespace vlExport {

namespace {

constexpr std::size_t mostUnknownMembers = 100;

} // namespace

struct NodeReader::State {
    vlMemory::String nameForErrors;
    std::optional<vlMemory::String> error;
    std::vector<vlMemory::String> unknownMembers;
};

NodeReader::NodeReader(const Node& tree, vlMemory::StringView nameForErrors)
    : node_(tree), ownState_(std::make_unique<State>()), state_(*ownState_),
      known_(tree.members().size()) {
    state_.nameForErrors = nameForErrors;
    if (!tree.isObject()) report(tree.line(), "expected an object");
}

NodeReader::NodeReader(const NodeReader& parent, const Node& node, Place place)
    : node_(node), parent_(&parent), place_(place), state_(parent.state_),
      known_(node.members().size()) {
}

NodeReader::~NodeReader() = default;

std::uint32_t NodeReader::formatVersion(std::uint32_t current) {
    std::uint32_t version = 0;
    required("formatVersion", version, std::uint32_t{1}, std::numeric_limits<std::uint32_t>::max());
    check(version <= current,
          "formatVersion",
          fmt::format(
                  "is {}, newer than {}, the newest that this program reads", version, current));
    return version;
}

void NodeReader::check(bool condition, vlMemory::StringView name, vlMemory::StringView text) {
    if (condition || !ok()) return;
    const Node* node = node_.find(name);
    report(node ? node->line() : node_.line(), fmt::format("'{}' {}", name, text));
}

void NodeReader::fail(vlMemory::StringView text) {
    report(node_.line(), text);
}

bool NodeReader::ok() const {
    return !state_.error;
}

vlCommon::Result<> NodeReader::finish() {
    if (!ok()) return vlCommon::fail(*state_.error);
    noteUnknownMembers();
    return {};
}

const std::vector<vlMemory::String>& NodeReader::unknownMembers() const {
    return state_.unknownMembers;
}

const Node* NodeReader::take(vlMemory::StringView name, bool required) {
    if (!ok()) return nullptr;
    const auto members = node_.members();
    for (std::size_t index = 0; index < members.size(); ++index) {
        if (members[index].name != name) continue;
        known_[index] = true;
        return &members[index].value;
    }
    if (required) report(node_.line(), fmt::format("'{}' is missing", name));
    return nullptr;
}

void NodeReader::expected(const Node& node, const Place& place, vlMemory::StringView what) {
    const auto index = place.index ? fmt::format("[{}]", *place.index) : vlMemory::String();
    report(node.line(), fmt::format("'{}{}' expected {}", place.name, index, what));
}

void NodeReader::report(std::uint32_t line, vlMemory::StringView text) {
    if (!ok()) return;
    const vlMemory::String where = path();
    state_.error = fmt::format(
            "{}:{}: {}{}{}", state_.nameForErrors, line, where, where.empty() ? "" : ": ", text);
}

void NodeReader::noteUnknownMembers() {
    const auto members = node_.members();
    for (std::size_t index = 0; index < members.size() && ok(); ++index) {
        if (known_[index] || state_.unknownMembers.size() >= mostUnknownMembers) continue;
        const vlMemory::String where = path();
        state_.unknownMembers.push_back(fmt::format("{}:{}: {}{}unknown member '{}'",
                                                    state_.nameForErrors,
                                                    members[index].value.line(),
                                                    where,
                                                    where.empty() ? "" : ": ",
                                                    vlMemory::printable(members[index].name, 200)));
    }
}

vlMemory::String NodeReader::path() const {
    if (!parent_) return {};
    vlMemory::String above = parent_->path();
    if (!above.empty()) above += '.';
    above += place_.name;
    if (place_.index) above += fmt::format("[{}]", *place_.index);
    return above;
}

bool NodeReader::checkObject(const Node& node, const Place& place) {
    if (!node.isObject()) expected(node, place, "an object");
    return node.isObject();
}

bool NodeReader::checkArray(const Node& node, const Place& place, std::size_t maxCount) {
    if (node.isArray() && node.size() <= maxCount) return true;
    if (node.isArray()) {
        expected(node, place, fmt::format("at most {} elements, not {}", maxCount, node.size()));
    } else {
        expected(node, place, "an array");
    }
    return false;
}

bool NodeReader::readFloats(const Node& node, const Place& place, std::span<float> values) {
    const auto elements = node.elements();
    bool complete = node.isArray() && elements.size() == values.size();
    for (std::size_t index = 0; complete && index < elements.size(); ++index) {
        const std::optional<float> value = elements[index].asFloat();
        complete = value.has_value();
        values[index] = value.value_or(0.0F);
    }
    if (!complete) expected(node, place, fmt::format("an array of {} numbers", values.size()));
    return complete;
}

std::optional<std::int64_t> NodeReader::readSigned(const Node& node,
                                                   const Place& place,
                                                   std::int64_t lowest,
                                                   std::int64_t highest) {
    const std::optional<std::int64_t> value = node.asSigned();
    if (value && *value >= lowest && *value <= highest) return value;
    expected(node, place, fmt::format("a whole number from {} to {}", lowest, highest));
    return {};
}

std::optional<std::uint64_t> NodeReader::readUnsigned(const Node& node,
                                                      const Place& place,
                                                      std::uint64_t lowest,
                                                      std::uint64_t highest) {
    const std::optional<std::uint64_t> value = node.asUnsigned();
    if (value && *value >= lowest && *value <= highest) return value;
    expected(node, place, fmt::format("a whole number from {} to {}", lowest, highest));
    return {};
}

bool NodeReader::checkReal(const Node& node,
                           const Place& place,
                           std::optional<double> number,
                           double lowest,
                           double highest) {
    if (number && *number >= lowest && *number <= highest) return true;
    constexpr double unlimited = std::numeric_limits<float>::max();
    if (!node.isNumber()) {
        expected(node, place, "a number");
    } else if (highest < unlimited) {
        expected(node, place, fmt::format("a number from {} to {}", lowest, highest));
    } else if (lowest > -unlimited) {
        expected(node, place, fmt::format("a finite number from {} up", lowest));
    } else {
        expected(node, place, "a number within the range of a float");
    }
    return false;
}

void NodeReader::read(const Node& node, const Place& place, bool& value) {
    const std::optional<bool> found = node.asBool();
    if (!found) return expected(node, place, "true or false");
    value = *found;
}

void NodeReader::read(const Node& node, const Place& place, vlMemory::String& value) {
    const vlMemory::String* found = node.asString();
    if (!found) return expected(node, place, "a string");
    value = *found;
}

void NodeReader::read(const Node& node, const Place& place, vlMaths::Vector& value) {
    read(node, place, value, 4);
}

void NodeReader::read(const Node& node, const Place& place, vlMaths::Quaternion& value) {
    std::array<float, 4> floats{};
    if (!readFloats(node, place, floats)) return;
    value = {floats[0], floats[1], floats[2], floats[3]};
}

void NodeReader::read(const Node& node, const Place& place, vlMaths::Matrix& value) {
    read(node, place, value.elements);
}

} // namespace vlExport
