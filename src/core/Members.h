#pragma once
#include "core/MemberValues.h"

#include <array>
#include <optional>
#include <tuple>
#include <type_traits>
#include <vector>

namespace vlEditor {

/** One member of a type that says its members by name. Such a type gets comparing and its way to
 *  and from a tree:
 *
 *      struct Point { float x = 0, y = 0;
 *          static constexpr auto members() {
 *              return std::tuple{Member{"x", &Point::x}, Member{"y", &Point::y}}; } };
 */
template <class Owner, class Value> struct Member {
    std::string_view name;
    Value Owner::*pointer;
};
template <class Owner, class Value>
Member(std::string_view, Value Owner::*) -> Member<Owner, Value>;

/// A member whose own members are told as if they were the owner's.
template <class Owner, class Value> struct Inlined { Value Owner::*pointer; };
template <class Owner, class Value> Inlined(Value Owner::*) -> Inlined<Owner, Value>;

template <class T>
concept HasMembers = requires {
    std::remove_const_t<T>::members();
};

namespace detail {

template <class T> inline constexpr bool isOptional = false;
template <class T> inline constexpr bool isOptional<std::optional<T>> = true;
template <class T> inline constexpr bool isArray = false;
template <class T, std::size_t N> inline constexpr bool isArray<std::array<T, N>> = true;
template <class T> inline constexpr bool isVector = false;
template <class T> inline constexpr bool isVector<std::vector<T>> = true;
template <class Row> inline constexpr bool isInlined = false;
template <class Owner, class Value> inline constexpr bool isInlined<Inlined<Owner, Value>> = true;

} // namespace detail

/// Calls visit(name, member) for every member in order, until one call returns false.
template <HasMembers T, class Visit> constexpr bool forEachMember(T& object, Visit&& visit) {
    const auto one = [&]<class Row>(const Row& row) {
        if constexpr (detail::isInlined<Row>)
            return forEachMember(object.*row.pointer, visit);
        else
            return static_cast<bool>(visit(row.name, object.*row.pointer));
    };
    return std::apply([&](const auto&... row) { return (one(row) && ...); },
                      std::remove_const_t<T>::members());
}

/// In the order of their declaration, the inlined ones included.
template <HasMembers T> std::vector<std::string_view> memberNames() {
    std::vector<std::string_view> names;
    T object{};
    forEachMember(object, [&](std::string_view name, const auto&) {
        names.push_back(name);
        return true;
    });
    return names;
}

template <class T> vlExport::Node toTree(const T& value) {
    if constexpr (HasMembers<T>) {
        vlExport::Node object = vlExport::Node::object();
        forEachMember(value, [&](std::string_view name, const auto& member) {
            object.add(name, toTree(member));
            return true;
        });
        return object;
    } else if constexpr (detail::isOptional<T>) {
        return value ? toTree(*value) : vlExport::Node();
    } else if constexpr (detail::isArray<T> || detail::isVector<T>) {
        vlExport::Node list = vlExport::Node::array();
        for (const auto& element : value)
            list.append(toTree(element));
        return list;
    } else {
        return valueToTree(value);
    }
}

/// Reads every member and refuses what nothing reads. On false the value is half read, and the
/// error names the place: "target: expected a whole number from 0 to 255".
template <class T> bool fromTree(const vlExport::Node& tree, T& value, ReadError& error) {
    if constexpr (HasMembers<T>) {
        if (!expectMembers(tree, memberNames<T>(), error)) return false;
        return forEachMember(value, [&](std::string_view name, auto& member) {
            if (fromTree(*tree.find(name), member, error)) return true;
            error.insert(0, std::string(name) + ": ");
            return false;
        });
    } else if constexpr (detail::isOptional<T>) {
        value.reset();
        return tree.isNull() || fromTree(tree, value.emplace(), error);
    } else if constexpr (detail::isArray<T> || detail::isVector<T>) {
        std::optional<std::size_t> count;
        if constexpr (detail::isArray<T>) count = std::tuple_size_v<T>;
        if (!expectList(tree, count, error)) return false;
        if constexpr (detail::isVector<T>) value.resize(tree.size());
        for (std::size_t i = 0; i < value.size(); ++i) {
            if (fromTree(tree.elements()[i], value[i], error)) continue;
            error.insert(0, std::to_string(i) + ": ");
            return false;
        }
        return true;
    } else {
        return valueFromTree(tree, value, error);
    }
}

template <HasMembers T> bool sameMembers(const T& a, const T& b);

template <class T> bool sameValue(const T& a, const T& b) {
    if constexpr (HasMembers<T>) {
        return sameMembers(a, b);
    } else if constexpr (detail::isVector<T>) {
        if (a.size() != b.size()) return false;
        for (std::size_t i = 0; i < a.size(); ++i) {
            if (!sameValue(a[i], b[i])) return false;
        }
        return true;
    } else {
        return a == b;
    }
}

template <HasMembers T> bool sameMembers(const T& a, const T& b) {
    const auto same = [&](const auto& row) { return sameValue(a.*row.pointer, b.*row.pointer); };
    return std::apply([&](const auto&... row) { return (same(row) && ...); }, T::members());
}

/// The bare name of a class: typeName<vlEditor::LogMessage>() is "LogMessage".
template <class T> constexpr std::string_view typeName() {
    std::string_view text = __PRETTY_FUNCTION__;
    text.remove_prefix(text.find("T = ") + 4);
    text = text.substr(0, text.find_first_of(";]"));
    return text.substr(text.rfind(':') + 1);
}

} // namespace vlEditor
