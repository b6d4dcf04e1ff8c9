#pragma once
#include "core/Members.h"

#include <array>
#include <concepts>
#include <cstdint>
#include <functional>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace vlEditor {

namespace detail {

/// What a setter takes first behind the object it sets.
template <class Set> struct FirstArgument : FirstArgument<decltype(&Set::operator())> {};
template <class Owner, class Result, class First, class... More>
struct FirstArgument<Result (Owner::*)(First, More...)> {
    using type = First;
};
// A lambda's first argument is the object itself.
template <class Lambda, class Result, class Engine, class First, class... More>
struct FirstArgument<Result (Lambda::*)(Engine&, First, More...) const> {
    using type = First;
};

template <class Set> using Argument = std::remove_cvref_t<typename FirstArgument<Set>::type>;

template <class Pointer> struct Pointed;
template <class Owner, class Value> struct Pointed<Value Owner::*> { using type = Value; };
template <auto member>
using MemberValue = typename Pointed<std::remove_const_t<decltype(member)>>::type;

} // namespace detail

/** A member of a record and the property of the engine's resource that it mirrors. Records hold the
 *  engine's enumerations as numbers; a setter passes over those that are none of its values. */
template <class Record, class Value, class Get, class Set> struct Field {
    std::string_view name; ///< in files, scripts and undo texts
    Value Record::*pointer;
    Get get;
    Set set;

    template <class Engine> void pull(const Engine& engine, Record& record) const {
        record.*pointer = static_cast<Value>(std::invoke(get, engine));
    }
    template <class Engine> void push(const Record& record, Engine& engine) const {
        put(record.*pointer, engine);
    }
    template <class Engine> void put(const Value& value, Engine& engine) const {
        std::invoke(set, engine, static_cast<detail::Argument<Set>>(value));
    }
};
template <class Record, class Value, class Get, class Set>
Field(std::string_view, Value Record::*, Get, Set) -> Field<Record, Value, Get, Set>;

/** The same with one value for each index, as the targets of a blend state have. */
template <class Record, class Value, std::size_t count, class Get, class Set> struct IndexedField {
    std::string_view name;
    std::array<Value, count> Record::*pointer;
    Get get;
    Set set;

    template <class Engine> void pull(const Engine& engine, Record& record) const {
        for (std::uint32_t i = 0; i < count; ++i)
            (record.*pointer)[i] = static_cast<Value>(std::invoke(get, engine, i));
    }
    template <class Engine> void push(const Record& record, Engine& engine) const {
        for (std::uint32_t i = 0; i < count; ++i)
            put((record.*pointer)[i], i, engine);
    }
    template <class Engine> void put(const Value& value, std::uint32_t i, Engine& engine) const {
        std::invoke(set, engine, static_cast<detail::Argument<Set>>(value), i);
    }
};
template <class Record, class Value, std::size_t count, class Get, class Set>
IndexedField(std::string_view, std::array<Value, count> Record::*, Get, Set)
        -> IndexedField<Record, Value, count, Get, Set>;

/** What the record shows of the engine's resource and nobody sets. It is no part of a memento; the
 *  comparison of records leaves it out where it may change while the resource does not. */
template <class Record, class Value, class Get> struct ReadOnlyField {
    std::string_view name;
    Value Record::*pointer;
    Get get;

    template <class Engine> void pull(const Engine& engine, Record& record) const {
        record.*pointer = static_cast<Value>(std::invoke(get, engine));
    }
};
template <class Record, class Value, class Get>
ReadOnlyField(std::string_view, Value Record::*, Get) -> ReadOnlyField<Record, Value, Get>;

/// A row of Kind::fields, for a member of the record that is called as in files and scripts, and
/// the engine's getter and setter.
#define VL_FIELD(member, getter, setter)                                                           \
    Field {                                                                                        \
#member, &Record::member, &Engine::getter, &Engine::setter                                 \
    }
#define VL_INDEXED_FIELD(member, getter, setter)                                                   \
    IndexedField {                                                                                 \
#member, &Record::member, &Engine::getter, &Engine::setter                                 \
    }

/// The row of Kind::fields for a member of its record.
template <class Kind, auto member> constexpr const auto& fieldOf() {
    constexpr auto count = std::tuple_size_v<std::remove_cvref_t<decltype(Kind::fields)>>;
    constexpr std::size_t at = []<std::size_t... i>(std::index_sequence<i...>) {
        std::size_t found = count;
        const auto look = [&](std::size_t index, auto pointer) {
            if constexpr (std::is_same_v<decltype(pointer),
                                         std::remove_const_t<decltype(member)>>) {
                if (pointer == member) found = index;
            }
        };
        (look(i, std::get<i>(Kind::fields).pointer), ...);
        return found;
    }
    (std::make_index_sequence<count>{});
    static_assert(at < count, "the kind's fields have no row for this member");
    return std::get<at>(Kind::fields);
}

/// The members of a record as its kind's fields name them, the name of the resource first.
template <class Kind> constexpr auto membersOfFields() {
    return std::apply(
            [](const auto&... row) {
                return std::tuple{Member{"name", &Kind::Record::name},
                                  Member{row.name, row.pointer}...};
            },
            Kind::fields);
}

/// Engine to record, every field.
template <class Kind>
void pull(const typename Kind::Engine& engine, typename Kind::Record& record) {
    std::apply([&](const auto&... row) { (row.pull(engine, record), ...); }, Kind::fields);
}

/// Calls it with the row of each field that can be set.
template <class Kind, class Call> void forEachSetting(Call&& call) {
    const auto visit = [&](const auto& row) {
        if constexpr (requires(const typename Kind::Record& record, typename Kind::Engine& engine) {
                          row.push(record, engine);
                      })
            call(row);
    };
    std::apply([&](const auto&... row) { (visit(row), ...); }, Kind::fields);
}

/// Engine to record, every field that can be set.
template <class Kind>
void pullSettings(const typename Kind::Engine& engine, typename Kind::Record& record) {
    forEachSetting<Kind>([&](const auto& row) { row.pull(engine, record); });
}

/// Record to engine, every field that can be set.
template <class Kind>
void push(const typename Kind::Record& record, typename Kind::Engine& engine) {
    forEachSetting<Kind>([&](const auto& row) { row.push(record, engine); });
}

/** A change of one resource, as a widget asks for it.
 *  - `applyTo(engine)` makes it; it may return a Result, whose error is logged.
 *  - `readFrom(record)` fills it from how the resource is now, to be shown in a widget.
 *  - `applyTo(shown, fresh)`, where it has one, brings what only the UI's side knows up to date:
 *    `shown` is the record as it was, `fresh` what the engine is read to after the edit. It is not
 *    called for an edit that the engine refused.
 *  - `onMade(record)`, where it has one, is called on the UI thread after an edit that went well.
 *  Its members() are those of its message, behind the name. */
template <class E>
concept ResourceEdit = std::copyable<E> && requires(E edit,
                                                    const E& fixed,
                                                    typename E::Kind::Engine& engine,
                                                    const typename E::Kind::Record& record) {
    fixed.applyTo(engine);
    edit.readFrom(record);
    E::members();
};

/** The edit that sets one field. */
template <class KindOfEdit, auto member> struct SetField {
    using Kind = KindOfEdit;
    detail::MemberValue<member> value{};

    static constexpr auto members() { return std::tuple{Member{"value", &SetField::value}}; }
    void applyTo(typename Kind::Engine& engine) const {
        fieldOf<Kind, member>().put(value, engine);
    }
    void readFrom(const typename Kind::Record& record) { value = record.*member; }
};

/** The edit that sets one value of an indexed field. An index that does not exist, as a script may
 *  name one, changes nothing. */
template <class KindOfEdit, auto member> struct SetElement {
    using Kind = KindOfEdit;
    using Values = detail::MemberValue<member>;
    std::uint32_t target = 0;
    typename Values::value_type value{};

    static constexpr auto members() {
        return std::tuple{Member{"target", &SetElement::target},
                          Member{"value", &SetElement::value}};
    }
    void applyTo(typename Kind::Engine& engine) const {
        if (exists()) fieldOf<Kind, member>().put(value, target, engine);
    }
    void readFrom(const typename Kind::Record& record) {
        if (exists()) value = (record.*member)[target];
    }

private:
    bool exists() const { return target < std::tuple_size_v<Values>; }
};

} // namespace vlEditor
