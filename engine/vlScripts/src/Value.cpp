#include <vlScripts/Value.h>

#include <algorithm>
#include <cmath>

namespace vlScripts {

Value::Value(Table value) : value_(std::make_shared<Table>(std::move(value))) {
}

std::optional<bool> Value::asBool() const {
    const bool* value = std::get_if<bool>(&value_);
    return value == nullptr ? std::nullopt : std::optional(*value);
}

std::optional<std::int64_t> Value::asInteger() const {
    if (const auto* whole = std::get_if<std::int64_t>(&value_)) return *whole;
    const double* number = std::get_if<double>(&value_);
    // What lies beyond would not be that number any more; not-a-number fails the comparison.
    constexpr double exact = 9007199254740992.0;
    if (number == nullptr || !(std::abs(*number) <= exact) || std::trunc(*number) != *number)
        return std::nullopt;
    return static_cast<std::int64_t>(*number);
}

std::optional<double> Value::asNumber() const {
    if (const double* number = std::get_if<double>(&value_)) return *number;
    if (const auto* whole = std::get_if<std::int64_t>(&value_)) return static_cast<double>(*whole);
    return std::nullopt;
}

const Table* Value::asTable() const {
    const auto* table = std::get_if<std::shared_ptr<Table>>(&value_);
    return table == nullptr ? nullptr : table->get();
}

std::optional<Numbers> Value::asNumbers() const {
    if (const Numbers* numbers = std::get_if<Numbers>(&value_)) return *numbers;
    const Table* table = asTable();
    if (table == nullptr) return std::nullopt;
    const std::size_t count = table->items.size() + table->members.size();
    if (count < 2 || count > 4 || (!table->items.empty() && !table->members.empty()))
        return std::nullopt;
    Numbers numbers;
    numbers.count = static_cast<std::uint8_t>(count);
    for (std::size_t i = 0; i < count; ++i) {
        const Value* item = table->items.empty()
                                    ? table->find(std::string_view("xyzw").substr(i, 1))
                                    : &table->items[i];
        const auto number = item == nullptr ? std::nullopt : item->asNumber();
        if (!number) return std::nullopt;
        numbers.values[i] = *number;
    }
    return numbers;
}

std::string Value::describeKind() const {
    constexpr std::array<const char*, 9> kinds{"nil",
                                               "true or false",
                                               "a whole number",
                                               "a number",
                                               "a text",
                                               "a table",
                                               "a function",
                                               "a vector",
                                               "an object"};
    const Object* object = asObject();
    return object == nullptr ? kinds[value_.index()] : object->kind + " '" + object->name + "'";
}

const Value* Table::find(std::string_view name) const {
    const auto found = std::find_if(members.begin(), members.end(), [&](const auto& member) {
        return member.first == name;
    });
    return found == members.end() ? nullptr : &found->second;
}

} // namespace vlScripts
