#include <vlExport/Node.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cmath>
#include <limits>

namespace vlExport {

namespace {

/// The double that the shortest text of the float is read as.
double asDecimal(float value) {
    const double exact = static_cast<double>(value);
    constexpr float wholeBelow = 16777216.0F;
    if (!std::isfinite(value) || (std::abs(value) < wholeBelow && std::trunc(value) == value)) {
        return exact;
    }
    std::array<char, 32> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), value);
    double decimal = exact;
    std::from_chars(text.data(), written.ptr, decimal);
    // Rounded to double first, a rare decimal ends at the neighbouring float.
    return static_cast<float>(decimal) == value ? decimal : exact;
}

} // namespace

Node::Node() = default;

Node::Node(bool value) : value_(value) {
}

Node::Node(double value) : value_(value) {
}

Node::Node(float value) : value_(asDecimal(value)) {
}

Node Node::array() {
    Node node;
    node.value_ = Array{};
    return node;
}

Node Node::object() {
    Node node;
    node.value_ = Object{};
    return node;
}

Node Node::array(std::span<const float> values) {
    Array elements;
    elements.reserve(values.size());
    for (const float value : values)
        elements.emplace_back(value);
    Node node;
    node.value_ = std::move(elements);
    return node;
}

Node::Node(const Node& other) = default;
Node::Node(Node&& other) noexcept = default;
Node& Node::operator=(const Node& other) {
    // By way of a copy: the other may be a part of this.
    return *this = Node(other);
}
Node& Node::operator=(Node&& other) noexcept {
    // By way of a local, for the same reason.
    Node taken(std::move(other));
    value_.swap(taken.value_);
    line_ = taken.line_;
    return *this;
}
Node::~Node() = default;

Node::Type Node::type() const {
    constexpr std::array types{Type::null,
                               Type::boolean,
                               Type::integer,
                               Type::integer,
                               Type::real,
                               Type::string,
                               Type::array,
                               Type::object};
    return types[value_.index()];
}

std::optional<bool> Node::asBool() const {
    if (const bool* value = std::get_if<bool>(&value_)) return *value;
    return {};
}

std::optional<std::uint64_t> Node::asUnsigned() const {
    if (const std::uint64_t* value = std::get_if<std::uint64_t>(&value_)) return *value;
    return {};
}

std::optional<std::int64_t> Node::asSigned() const {
    if (const std::int64_t* value = std::get_if<std::int64_t>(&value_)) return *value;
    const std::uint64_t* value = std::get_if<std::uint64_t>(&value_);
    if (!value || *value > std::uint64_t{std::numeric_limits<std::int64_t>::max()}) return {};
    return static_cast<std::int64_t>(*value);
}

std::optional<double> Node::asDouble() const {
    if (const double* value = std::get_if<double>(&value_)) return *value;
    if (const std::int64_t* value = std::get_if<std::int64_t>(&value_)) {
        return static_cast<double>(*value);
    }
    if (const std::uint64_t* value = std::get_if<std::uint64_t>(&value_)) {
        return static_cast<double>(*value);
    }
    return {};
}

std::optional<float> Node::asFloat() const {
    const std::optional<double> value = asDouble();
    // From here on it would be rounded to infinity; the shortest text of the largest float is
    // below.
    constexpr double tooLarge = 0x1.ffffffp127;
    if (!value || !(std::abs(*value) < tooLarge)) return {};
    return static_cast<float>(*value);
}

const vlMemory::String* Node::asString() const {
    return std::get_if<vlMemory::String>(&value_);
}

std::size_t Node::size() const {
    if (const Array* values = std::get_if<Array>(&value_)) return values->size();
    if (const Object* values = std::get_if<Object>(&value_)) return values->size();
    return 0;
}

std::span<const Node> Node::elements() const {
    if (const Array* values = std::get_if<Array>(&value_)) return *values;
    return {};
}

std::span<Node> Node::elements() {
    if (Array* values = std::get_if<Array>(&value_)) return *values;
    return {};
}

std::span<const Member> Node::members() const {
    if (const Object* values = std::get_if<Object>(&value_)) return *values;
    return {};
}

std::span<Member> Node::members() {
    if (Object* values = std::get_if<Object>(&value_)) return *values;
    return {};
}

const Node* Node::find(vlMemory::StringView name) const {
    for (const Member& member : members()) {
        if (member.name == name) return &member.value;
    }
    return nullptr;
}

Node* Node::find(vlMemory::StringView name) {
    for (Member& member : members()) {
        if (member.name == name) return &member.value;
    }
    return nullptr;
}

Node& Node::add(vlMemory::StringView name, Node value) {
    if (isNull()) value_ = Object{};
    assert(isObject());
    if (Node* present = find(name)) return *present = std::move(value);
    return std::get<Object>(value_)
            .emplace_back(Member{vlMemory::String(name), std::move(value)})
            .value;
}

bool Node::remove(vlMemory::StringView name) {
    Object* values = std::get_if<Object>(&value_);
    return values && std::erase_if(*values, [&](const Member& m) { return m.name == name; }) > 0;
}

Node& Node::append(Node value) {
    if (isNull()) value_ = Array{};
    assert(isArray());
    return std::get<Array>(value_).emplace_back(std::move(value));
}

bool operator==(const Node& a, const Node& b) {
    return a.value_ == b.value_;
}

} // namespace vlExport
