#pragma once
#include <vlWinUi/Component.h>

#include <memory>
#include <string>

namespace vlWinUi {

/** Makes the component of a type: the one place that knows every type. */
class ComponentFactory {
public:
    static std::unique_ptr<Component> make(ComponentType type, std::string name);

private:
    template <class T> static std::unique_ptr<Component> makeAs(std::string name) {
        return std::unique_ptr<Component>(new T(std::move(name)));
    }

    struct Entry {
        ComponentType type;
        std::string_view word;
        std::unique_ptr<Component> (*make)(std::string name);
    };
    template <class T> static constexpr Entry entry(std::string_view word) {
        return {T::TYPE, word, &makeAs<T>};
    }
    static const Entry& find(ComponentType type);

    friend std::string_view nameOf(ComponentType type);
};

} // namespace vlWinUi
