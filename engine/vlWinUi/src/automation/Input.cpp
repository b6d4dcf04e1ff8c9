#include "KeyCodes.h"
#include "SurfaceNative.h"
#include "Text.h"
#include "automation/Events.h"
#include "automation/Steps.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/CheckBox.h>
#include <vlWinUi/ComponentManager.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <cmath>

namespace vlWinUi {
namespace {

using vlCommon::Result;

Qt::MouseButton qtButtonOf(Automation::Button button) {
    constexpr Qt::MouseButton BUTTONS[] = {
            Qt::NoButton, Qt::LeftButton, Qt::RightButton, Qt::MiddleButton};
    return BUTTONS[static_cast<std::size_t>(button)];
}

Result<Spot> usableSpot(const std::string& name, const std::string& item = {}) {
    const auto found = findUsable(name);
    if (!found) return tl::unexpected(found.error());
    return item.empty() ? spotOf(**found) : spotOfItem(**found, item);
}

/// Gives the keyboard to the component, as a click into it does.
Result<QWindow*> focus(const std::string& name) {
    const auto found = findUsable(name);
    if (!found) return tl::unexpected(found.error());
    QWidget& widget = *(*found)->native().widget;
    QWindow* window = windowOf(widget);
    if (auto* surface = dynamic_cast<SurfaceNative*>(&(*found)->native());
        surface != nullptr && surface->windowGuard != nullptr)
        window = static_cast<QWindow*>(surface->windowGuard.data());
    if (!widget.window()->isActiveWindow()) widget.window()->activateWindow();
    widget.setFocus(Qt::MouseFocusReason);
    return window;
}

Result<Qt::KeyboardModifiers> modifiersOf(const std::string& name, const Automation::Labels& held) {
    Qt::KeyboardModifiers modifiers;
    for (const std::string& key : held) {
        if (key == "ctrl")
            modifiers |= Qt::ControlModifier;
        else if (key == "shift")
            modifiers |= Qt::ShiftModifier;
        else if (key == "alt")
            modifiers |= Qt::AltModifier;
        else
            return refuse(name, "cannot be given '" + key + "': ctrl, shift and alt are held");
    }
    return modifiers;
}

QString textOf(std::uint32_t virtualKey, Qt::KeyboardModifiers held) {
    if ((held & (Qt::ControlModifier | Qt::AltModifier)) != 0) return {};
    if (virtualKey == 13) return "\r";
    if (virtualKey == 8) return "\b";
    if (virtualKey == 9) return "\t";
    const bool isCharacter = virtualKey == 32 || (virtualKey >= '0' && virtualKey <= '9') ||
                             (virtualKey >= 'A' && virtualKey <= 'Z');
    if (!isCharacter) return {};
    const QString text = QChar(static_cast<char16_t>(virtualKey));
    return held.testFlag(Qt::ShiftModifier) ? text : text.toLower();
}

Result<> press(const std::string& name, std::uint32_t virtualKey, const Automation::Labels& held) {
    const int key = qtKeyOf(virtualKey);
    if (key == 0) return refuse(name, "has no key of code " + std::to_string(virtualKey));
    const auto modifiers = modifiersOf(name, held);
    if (!modifiers) return tl::unexpected(modifiers.error());
    const auto window = focus(name);
    if (!window) return tl::unexpected(window.error());
    sendKey(**window, key, *modifiers, textOf(virtualKey, *modifiers));
    return {};
}

/// A window that was not the active one becomes so in a turn of its own.
Steps::Step focusStep(const std::string& name) {
    return [name]() -> Result<> {
        const auto window = focus(name);
        if (!window) return tl::unexpected(window.error());
        return {};
    };
}

/// As an input method hands it over: at once, and through what the field allows.
void commit(QWidget& field, const QString& text) {
    QInputMethodEvent event;
    event.setCommitString(text);
    QCoreApplication::sendEvent(&field, &event);
}

Result<> typeInto(const std::string& name, const QString& text) {
    const auto window = focus(name);
    if (!window) return tl::unexpected(window.error());
    QWidget& widget = *ComponentManager::get(name)->native().widget;
    const auto* line = qobject_cast<const QLineEdit*>(&widget);
    const auto* lines = qobject_cast<const QPlainTextEdit*>(&widget);
    if (line == nullptr && lines == nullptr) return refuse(name, "takes no text");
    if (line != nullptr ? line->isReadOnly() : lines->isReadOnly())
        return refuse(name, "is read-only");
    if (line != nullptr && text.contains('\n')) return refuse(name, "takes one line only");
    const QPointer<QWidget> guard = &widget;
    const QPointer<QWindow> shown = *window;
    sendKey(*shown, Qt::Key_A, Qt::ControlModifier, {});
    if (shown != nullptr) sendKey(*shown, Qt::Key_Delete, Qt::NoModifier, {});
    if (lines != nullptr) {
        if (guard != nullptr && !text.isEmpty()) commit(*guard, text);
        return {};
    }
    for (const char32_t character : text.toUcs4()) {
        if (guard == nullptr || shown == nullptr) break;
        const QString one = QString::fromUcs4(&character, 1);
        const int key = character < 128 ? QChar(character).toUpper().unicode() : 0;
        sendKey(*shown, key, Qt::NoModifier, one);
    }
    return {};
}

/// The list is folded out by a click, and what is under the mouse is taken with Enter.
void selectInCombo(const std::string& name, const std::string& label, Automation::Done done) {
    Steps::run({[name, label]() -> Result<> {
                    const auto found = findUsable(name);
                    if (!found) return tl::unexpected(found.error());
                    if (widgetAs<QComboBox>(**found).findText(toQt(label)) < 0)
                        return refuse(name, "has no line '" + label + "'");
                    const auto spot = spotOf(**found);
                    if (!spot) return tl::unexpected(spot.error());
                    sendClick(*spot, Qt::LeftButton);
                    return {};
                },
                [name, label]() -> Result<> {
                    const auto found = findComponent(name);
                    if (!found) return tl::unexpected(found.error());
                    auto& combo = widgetAs<QComboBox>(**found);
                    QAbstractItemView& view = *combo.view();
                    const int row = combo.findText(toQt(label));
                    if (row < 0 || !view.isVisible())
                        return refuse(name, "has changed meanwhile: '" + label + "'");
                    view.setCurrentIndex(combo.model()->index(row, 0));
                    if (QWindow* window = windowOf(view))
                        sendKey(*window, Qt::Key_Return, Qt::NoModifier, "\r");
                    return {};
                }},
               std::move(done));
}

} // namespace

void Automation::click(vlMemory::StringView name,
                       Button button,
                       vlMemory::StringView item,
                       Done done) {
    Steps::run({[name = std::string(name), item = std::string(item), button]() -> Result<> {
                   const auto spot = usableSpot(name, item);
                   if (!spot) return tl::unexpected(spot.error());
                   auto* surface =
                           dynamic_cast<SurfaceNative*>(&ComponentManager::get(name)->native());
                   if (surface != nullptr && surface->windowGuard != nullptr) {
                       auto& window = *static_cast<QWindow*>(surface->windowGuard.data());
                       sendMouse(window, spot->at, qtButtonOf(button), QEvent::MouseButtonPress);
                       sendMouse(window, spot->at, qtButtonOf(button), QEvent::MouseButtonRelease);
                       return {};
                   }
                   sendClick(*spot, qtButtonOf(button));
                   return {};
               }},
               std::move(done));
}

void Automation::type(vlMemory::StringView name, vlMemory::StringView text, Done done) {
    Steps::run({focusStep(std::string(name)),
                [name = std::string(name), text = toQt(text)] { return typeInto(name, text); }},
               std::move(done));
}

void Automation::key(vlMemory::StringView name,
                     std::uint32_t virtualKey,
                     const Labels& held,
                     Done done) {
    Steps::run({focusStep(std::string(name)),
                [name = std::string(name), virtualKey, held] {
                    return press(name, virtualKey, held);
                }},
               std::move(done));
}

void Automation::select(vlMemory::StringView name, vlMemory::StringView label, Done done) {
    const Component* component = ComponentManager::get(name);
    if (component != nullptr && component->getType() == ComponentType::ComboBox)
        selectInCombo(std::string(name), std::string(label), std::move(done));
    else
        click(name, Button::Left, label, std::move(done));
}

void Automation::check(vlMemory::StringView name, bool checked, Done done) {
    Steps::run({[name = std::string(name), checked]() -> Result<> {
                   const auto before = isChecked(name);
                   if (!before) return tl::unexpected(before.error());
                   const auto spot = usableSpot(name);
                   if (!spot) return tl::unexpected(spot.error());
                   auto* box = ComponentManager::get<CheckBox>(name);
                   // The first click on mixed values ticks them all.
                   if (box->isMixed()) sendClick(*spot, Qt::LeftButton);
                   box = ComponentManager::get<CheckBox>(name);
                   if (box != nullptr && box->isChecked() != checked)
                       sendClick(*spot, Qt::LeftButton);
                   return {};
               }},
               std::move(done));
}

void Automation::mouse(vlMemory::StringView name, Point at, Button button, Phase phase, Done done) {
    Steps::run({[name = std::string(name), at, button, phase]() -> Result<> {
                   const auto found = findUsable(name);
                   if (!found) return tl::unexpected(found.error());
                   constexpr QEvent::Type EVENTS[] = {
                           QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::MouseButtonRelease};
                   const QEvent::Type event = EVENTS[static_cast<std::size_t>(phase)];
                   if (button == Button::None && phase != Phase::Move)
                       return refuse(name, "needs a button that is pressed or released");
                   Native& native = (*found)->native();
                   const QPointF where(at.x, at.y);
                   auto* surface = dynamic_cast<SurfaceNative*>(&native);
                   const double scale = surface == nullptr ? 1 : surface->scale();
                   // A drag leaves the component, but it begins in it.
                   if (phase == Phase::Press) {
                       const QPoint pixel(static_cast<int>(std::floor(where.x() / scale)),
                                          static_cast<int>(std::floor(where.y() / scale)));
                       if (auto hit = hits(name, *native.widget, pixel); !hit) return hit;
                   }
                   if (surface == nullptr) {
                       sendMouse(Spot{native.widget, where.toPoint()}, qtButtonOf(button), event);
                       return {};
                   }
                   const QPointF logical = where / scale;
                   if (surface->windowGuard == nullptr)
                       sendMouse(Spot{native.widget, logical.toPoint()}, qtButtonOf(button), event);
                   else
                       sendMouse(*static_cast<QWindow*>(surface->windowGuard.data()),
                                 logical,
                                 qtButtonOf(button),
                                 event);
                   return {};
               }},
               std::move(done));
}

} // namespace vlWinUi
