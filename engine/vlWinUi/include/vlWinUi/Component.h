#pragma once
#include <vlMemory/String.h>
#include <vlWinUi/ClickEvent.h>
#include <vlWinUi/ComponentType.h>
#include <vlWinUi/Geometry.h>
#include <vlWinUi/GridLayout.h>
#include <vlWinUi/KeyEvent.h>

#include <any>
#include <functional>
#include <memory>
#include <string>

namespace vlWinUi {

struct Native;

/** A widget with a unique name. Owned by the ComponentManager, which alone makes and destroys it; a
 *  pointer to it stays valid until it or a component that it was placed in is erased. UI thread
 * only. What code sets fires no callback: callbacks tell what the person did. A callback may erase
 * its own component. */
class Component {
public:
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;
    virtual ~Component();

    const std::string& getComponentName() const { return name_; }
    ComponentType getType() const { return type_; }

    /// Anything that belongs with the component; an object that it owns is held as a shared_ptr.
    void setData(std::any data);
    const std::any& getData() const { return data_; }
    /// Null when the data is of another type.
    template <class T> const T* getDataAs() const { return std::any_cast<T>(&data_); }

    /// The text shown: caption, title, or the content of a field.
    virtual void setText(vlMemory::StringView text) = 0;
    virtual std::string getText() const = 0;

    /// In device-independent pixels; a Surface answers in physical ones.
    virtual unsigned getWidth() const;
    virtual unsigned getHeight() const;
    Point getPositionInScreen() const;

    /// 0 leaves an axis free.
    void setMinSize(unsigned width, unsigned height);
    void setMaxSize(unsigned width, unsigned height);

    virtual void setVisible(bool visible);
    /// False too while a component around it is hidden.
    virtual bool isVisible() const;
    /// A disabled component shows the reason as its tooltip; enabling brings its own tooltip back.
    void setEnabled(bool enabled, vlMemory::StringView reason = {});
    bool isEnabled() const;
    void setToolTip(vlMemory::StringView text);
    /// The tooltip that is shown now.
    std::string getToolTip() const;
    /// Underlined in the accent colour, as the one of several that counts now. For Static and
    /// ToolBar.
    void setMarked(bool marked);
    /// What a screen reader calls a component that has no text of its own.
    void setAccessibleName(vlMemory::StringView name);

    /// Sees each key that is pressed while the component itself has the keyboard focus, before the
    /// component does; true takes the key away from it.
    void setKeyFilter(std::function<bool(const KeyEvent&)> filter);
    /// The menu key or Shift+F10, in the component or in something inside it that has no menu of
    /// its own.
    void setMenuKeyCallback(std::function<void()> callback);
    /// Keys ("Ctrl+T") that work anywhere in the component's window, as long as the component
    /// lives.
    void addShortcut(vlMemory::StringView keys, std::function<void()> callback);

    /// Gives it the keyboard focus, and brings its window to the front.
    void focusWindow();
    bool hasFocus() const;
    /// Gives the keyboard focus to the first thing inside, in the order of the tab key, that takes
    /// it. False when there is none.
    bool focusInside();

    /// Presses and releases of any mouse button over the component itself.
    void setClickCallback(std::function<void(const ClickEvent&)> callback);

    /// Arranges the components placed in the grid inside this one, in place of any earlier layout.
    /// The stored layout may be changed further and then updated.
    GridLayout& setLayout(GridLayout layout);
    /// Null when there is none.
    GridLayout* getLayout();

    /// The component that this one was placed in, or null.
    Component* getParent() const;

    /// For the library itself.
    Native& native() { return *native_; }
    const Native& native() const { return *native_; }

protected:
    Component(std::string name, ComponentType type, std::unique_ptr<Native> native);

private:
    friend class ComponentManager;

    std::string name_;
    ComponentType type_;
    std::any data_;
    std::unique_ptr<Native> native_;
};

} // namespace vlWinUi
