#pragma once
#include "interfaces/ContainerType.h"
#include "interfaces/Interface.h"

#include <vlCommon/SingletonClass.h>
#include <vlWinUi/Window.h>

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace vlEditor {

/** Makes containers, fills them with interfaces and owns both. UI thread only; to be ended while
 * the widget library still runs. */
class InterfaceContainerCreator final : public vlCommon::SingletonClass<InterfaceContainerCreator> {
public:
    using Creator = std::function<std::unique_ptr<Interface>()>;

    /// How interfaces of a type are made. A type without a creator is not available.
    void setCreator(ContainerType type, Creator creator);
    bool isAvailable(ContainerType type) const;

    /// An empty container, named by a number that never comes again; to be placed in a layout.
    vlWinUi::Window& createContainer();
    /// Shows a new interface in the container in place of what it showed. Otherwise a log line says
    /// why, the container stays as it was, and it is false.
    bool createInterface(vlWinUi::Window& container, ContainerType type);
    /// Null when the container is empty, or is none.
    Interface* getInterface(const vlWinUi::Window& container) const;

    /// What it shows; nothing when it is empty, or is none.
    std::optional<ContainerType> getType(const vlWinUi::Window& container) const;
    bool isContainer(vlMemory::StringView name) const { return containers_.contains(name); }

    /// Ends the container with what it shows. The cell that it was in stays, empty.
    void eraseContainer(vlWinUi::Window& container);
    /// Ends every interface and container that is placed in the component.
    void eraseInside(const vlWinUi::Component& component);
    void eraseAll();

private:
    struct Content {
        std::unique_ptr<Interface> shown;
        ContainerType type{};
    };
    static constexpr std::size_t typeCount = viewMenuEntries.size();

    std::array<Creator, typeCount + 1> creators_; ///< by number
    std::map<std::string, Content, std::less<>> containers_;
    unsigned nextNumber_ = 0;
};

} // namespace vlEditor
