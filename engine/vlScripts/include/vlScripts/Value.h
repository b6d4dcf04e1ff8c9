#pragma once
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vlScripts {

class Value;
class FunctionReference;
using Values = std::vector<Value>;

/** A function of a script, for calling back (Interpreter::call). Copyable; keeps the function alive
 *  while its interpreter lives. To be used on its interpreter's thread only, its end included. */
class Function final {
public:
    Function() = default;

private:
    friend class FunctionReference;
    explicit Function(std::shared_ptr<const FunctionReference> reference)
        : reference_(std::move(reference)) {}
    std::shared_ptr<const FunctionReference> reference_;
};

/** Two to four numbers that scripts reckon with: v.x, v + w, 2 * v. */
struct Numbers {
    std::array<double, 4> values{};
    std::uint8_t count = 3;
    friend bool operator==(const Numbers&, const Numbers&) = default;
};

/** A thing that a script reaches by name: its kind tells the fields (see ObjectKind). */
struct Object {
    std::string kind;
    std::string name;
    friend bool operator==(const Object&, const Object&) = default;
};

struct Table;

/** What crosses between C++ and scripts. Copyable; plain but for a Function. */
class Value final {
public:
    Value() = default;
    Value(bool value) : value_(value) {}
    Value(int value) : value_(std::int64_t{value}) {}
    Value(std::uint32_t value) : value_(std::int64_t{value}) {}
    Value(std::int64_t value) : value_(value) {}
    Value(double value) : value_(value) {}
    Value(const char* value) : value_(std::string(value)) {}
    Value(std::string value) : value_(std::move(value)) {}
    Value(std::shared_ptr<Table> value) : value_(std::move(value)) {}
    Value(Table value);
    Value(Function value) : value_(std::move(value)) {}
    Value(Numbers value) : value_(value) {}
    Value(Object value) : value_(std::move(value)) {}

    bool isNil() const { return std::holds_alternative<std::monostate>(value_); }
    // Nothing where the value is of another kind.
    std::optional<bool> asBool() const;
    /// A number without a fraction counts, too.
    std::optional<std::int64_t> asInteger() const;
    /// Whole numbers included.
    std::optional<double> asNumber() const;
    const std::string* asText() const { return std::get_if<std::string>(&value_); }
    const Table* asTable() const;
    const Function* asFunction() const { return std::get_if<Function>(&value_); }
    /// Numbers, or a table of two to four numbers: {1, 2, 3}, {x = 1, y = 2, z = 3}.
    std::optional<Numbers> asNumbers() const;
    const Object* asObject() const { return std::get_if<Object>(&value_); }
    /// Was given as a whole number, and is one for scripts: 1, not 1.0.
    bool isWhole() const { return std::holds_alternative<std::int64_t>(value_); }
    /// "nil", "a text", "a table": for messages.
    std::string describeKind() const;

private:
    std::variant<std::monostate,
                 bool,
                 std::int64_t,
                 double,
                 std::string,
                 std::shared_ptr<Table>,
                 Function,
                 Numbers,
                 Object>
            value_;
};

/** What a script's table holds: its list part, then what it holds by text, in order of the names.
 *  Members under any other key do not cross. */
struct Table {
    std::vector<Value> items;
    std::vector<std::pair<std::string, Value>> members;
    /// Null when there is none.
    const Value* find(std::string_view name) const;
};

} // namespace vlScripts
