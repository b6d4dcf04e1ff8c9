#pragma once
#include <vlMemory/String.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <variant>
#include <vector>

namespace vlExport {

struct Member;

/** A value of a tree: null, bool, whole number, real number, text, array or object whose members
 * keep their order. Copies are deep; trees are shallow (an import refuses what is nested deeper
 * than JsonExporter::maxDepth, and what is built in code follows the same bound).
 *
 *  A real made from a float stands for the shortest decimal that reads back as that float, so a
 * float passes through text and double without a change and 0.1F is written as 0.1.
 *
 *  Equality is that of the values: the order of members counts, the line does not. A whole number
 * never equals a real. A plain value: one thread at a time, any thread. */
class Node {
public:
    enum class Type : std::uint8_t { null, boolean, integer, real, string, array, object };
    using Array = std::vector<Node>;
    using Object = std::vector<Member>;

    Node();
    Node(bool value);
    template <std::integral T>
    requires(!std::same_as<T, bool>) Node(T value) {
        if (std::signed_integral<T> && value < 0) {
            value_ = static_cast<std::int64_t>(value);
        } else {
            value_ = static_cast<std::uint64_t>(value);
        }
    }
    Node(float value);
    Node(double value);
    Node(vlMemory::String value) : value_(std::move(value)) {}
    Node(vlMemory::StringView value) : value_(vlMemory::String(value)) {}
    Node(const char* value) : value_(vlMemory::String(value)) {}
    static Node array();
    static Node object();
    /// An array of reals.
    static Node array(std::span<const float> values);

    Node(const Node& other);
    Node(Node&& other) noexcept;
    Node& operator=(const Node& other);
    Node& operator=(Node&& other) noexcept;
    ~Node();

    Type type() const;
    bool isNull() const { return type() == Type::null; }
    bool isBool() const { return type() == Type::boolean; }
    bool isInteger() const { return type() == Type::integer; }
    bool isNumber() const { return isInteger() || type() == Type::real; }
    bool isString() const { return type() == Type::string; }
    bool isArray() const { return type() == Type::array; }
    bool isObject() const { return type() == Type::object; }

    // Nothing where the value is of another type or does not fit.
    std::optional<bool> asBool() const;
    std::optional<std::uint64_t> asUnsigned() const;
    std::optional<std::int64_t> asSigned() const;
    /// Whole numbers too.
    std::optional<double> asDouble() const;
    /// Whole numbers too; only what is finite as a float.
    std::optional<float> asFloat() const;
    /// Null where the value is not a text; valid while the node lives unchanged.
    const vlMemory::String* asString() const;

    /// Elements of an array, members of an object, otherwise 0.
    std::size_t size() const;
    /// Empty unless this is an array.
    std::span<const Node> elements() const;
    std::span<Node> elements();
    /// Empty unless this is an object. A member's name must not be changed to one already there.
    std::span<const Member> members() const;
    std::span<Member> members();

    /// Null where there is no such member, or this is no object.
    const Node* find(vlMemory::StringView name) const;
    Node* find(vlMemory::StringView name);
    /// Appends the member, or replaces its value where it stands. A null becomes an object. The
    /// reference holds until the next change of this object.
    Node& add(vlMemory::StringView name, Node value);
    /// False where there was no such member.
    bool remove(vlMemory::StringView name);
    /// A null becomes an array. The reference holds until the next change of this array.
    Node& append(Node value);

    /// Where the value stood in the imported text, from 1; 0 for what was made in code.
    std::uint32_t line() const { return line_; }
    void setLine(std::uint32_t line) { line_ = line; }

    friend bool operator==(const Node& a, const Node& b);

private:
    friend class TreeBuilder;

    // In the order of magnitude of use; negative whole numbers are signed, all others unsigned.
    std::variant<std::monostate,
                 bool,
                 std::int64_t,
                 std::uint64_t,
                 double,
                 vlMemory::String,
                 Array,
                 Object>
            value_;
    std::uint32_t line_ = 0;
};

/** A member of an object. */
struct Member {
    vlMemory::String name;
    Node value;

    friend bool operator==(const Member&, const Member&) = default;
};

} // namespace vlExport
