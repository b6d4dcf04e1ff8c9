#pragma once
#include "script/Conversion.h"
#include "script/EngineTables.h"

#include <functional>

namespace vlKestrion {

template <class T> using Find = T* (*)(const String& name);

/** Makes the description of a kind from its getters and setters, which are members or functions of
 *  the thing. What a value looks like to scripts follows from the getter's type. */
template <class T> class KindBuilder {
public:
    KindBuilder(String name, Find<T> find) : find_(find) { kind_.name = std::move(name); }

    template <class Get> KindBuilder& field(const char* name, const char* description, Get get) {
        using V = std::remove_cvref_t<std::invoke_result_t<Get, T&>>;
        kind_.fields.push_back({name,
                                Conversion<V>::type(),
                                description,
                                [find = find_, get](const String& object) -> Result<Value> {
                                    T* thing = find(object);
                                    if (thing == nullptr) return gone();
                                    return Conversion<V>::write(std::invoke(get, *thing));
                                },
                                {}});
        return *this;
    }

    /// A setter may say with false, or with an error, that it refused.
    template <class Get, class Set>
    KindBuilder& field(const char* name, const char* description, Get get, Set set) {
        using V = std::remove_cvref_t<std::invoke_result_t<Get, T&>>;
        field(name, description, get);
        kind_.fields.back().set = [find = find_, get, set](const String& object,
                                                           const Value& value) -> Result<> {
            T* thing = find(object);
            if (thing == nullptr) return gone();
            auto wanted = Conversion<V>::read(value);
            if (!wanted) return tl::unexpected(wanted.error());
            return write<V>(*thing, get, set, *wanted);
        };
        return *this;
    }

    /// Called with the thing and what the script gave.
    template <class Call>
    KindBuilder&
    method(const char* name, const char* arguments, const char* description, Call call) {
        kind_.methods.push_back(
                {name,
                 arguments,
                 description,
                 [find = find_, call](const String& object,
                                      std::span<const Value> given) -> Result<vlScripts::Values> {
                     T* thing = find(object);
                     if (thing == nullptr) return gone();
                     const Result<> done = call(*thing, given);
                     if (!done) return tl::unexpected(done.error());
                     return vlScripts::Values();
                 }});
        return *this;
    }

    vlScripts::ObjectKind take() { return std::move(kind_); }

private:
    static tl::unexpected<vlCommon::Error> gone() {
        return vlCommon::fail("it does not exist (any more)");
    }
    template <class V, class Get, class Set>
    static Result<> write(T& thing, const Get& get, const Set& set, const V& wanted) {
        using Answer = std::invoke_result_t<Set, T&, V>;
        if constexpr (std::is_void_v<Answer>) {
            // Some setters pass over what they do not take, others bring it to their range.
            const auto before = std::invoke(get, thing);
            std::invoke(set, thing, wanted);
            if (std::invoke(get, thing) == wanted) return {};
            std::invoke(set, thing, before);
        } else if constexpr (std::is_same_v<Answer, bool>) {
            if (std::invoke(set, thing, wanted)) return {};
        } else {
            return std::invoke(set, thing, wanted);
        }
        return vlCommon::fail("the value is not possible here");
    }

    Find<T> find_;
    vlScripts::ObjectKind kind_;
};

template <class Manager>
using ResourceOf = std::remove_pointer_t<decltype(std::declval<Manager>().get(""))>;

/// Starts a kind whose things live in a manager: with the fields that all of them have.
template <class Manager> KindBuilder<ResourceOf<Manager>> resourceKind(const char* name) {
    using T = ResourceOf<Manager>;
    KindBuilder<T> builder(name, [](const String& object) -> T* {
        Manager* manager = Manager::getInstance();
        return manager == nullptr ? nullptr : manager->get(object);
    });
    builder.field("name", "unique within its kind", &vlGraphics::Resource::getName);
    builder.field("hidden", "the engine's or the editor's own", &vlGraphics::Resource::isHidden);
    return builder;
}

template <class Manager>
EngineKind finish(KindBuilder<ResourceOf<Manager>>& builder, const char* plural) {
    return {builder.take(),
            plural,
            [] {
                std::vector<String> names;
                Manager* manager = Manager::getInstance();
                for (std::size_t i = 0; manager != nullptr && i < manager->getCount(); ++i) {
                    if (!manager->getByIndex(i)->isHidden())
                        names.push_back(manager->getByIndex(i)->getName());
                }
                return names;
            },
            [](const String& name) {
                Manager* manager = Manager::getInstance();
                return manager != nullptr && manager->get(name) != nullptr;
            }};
}

} // namespace vlKestrion
