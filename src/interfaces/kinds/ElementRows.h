#pragma once
#include "interfaces/PickListDialog.h"
#include "interfaces/kinds/Bindings.h"
#include "interfaces/kinds/ElementList.h"

#include <vlWinUi/ComponentManager.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vlEditor {

/// The numbers of an edit that are typed into boxes, and how one is reached.
template <class Edit, class Value> struct ElementBox {
    std::string suffix;
    std::function<Value&(Edit&)> value;
};

/** A list of what the selected resource holds, and the widgets that act on the element selected in
 *  it. Edits are aimed at that element: those of their members that its place names are set. With
 *  none or several resources selected there is no element, and the widgets say why they do nothing.
 *  Kept by the window, whose bindings outlive it. UI thread only. */
template <class Kind> class ElementRows {
public:
    using Record = typename Kind::Record;
    using Elements = std::function<std::vector<ListedElement>(const Record&)>;
    /// What the elements are in within their resource; without it they are in the resource itself.
    using Around = std::function<std::uint64_t()>;

    /// Kept by the window from then on.
    static std::shared_ptr<ElementRows>
    make(Bindings<Kind>& window, const std::string& suffix, Elements elements, Around around = {}) {
        const std::shared_ptr<ElementRows> made(
                new ElementRows(window, suffix, std::move(elements), std::move(around)));
        window.keep(made);
        return made;
    }
    ElementRows(const ElementRows&) = delete;
    ElementRows& operator=(const ElementRows&) = delete;

    /// Null when there is none.
    const ListedElement* getSelected() const { return list_.getSelected(); }
    std::optional<std::size_t> getSelectedIndex() const { return list_.getSelectedIndex(); }

    /// Selects the next element that comes.
    void followNew() { list_.followNew(); }

    /// A button that adds an element, which is selected when it comes.
    template <ResourceEdit Edit> void adds(const std::string& suffix, Edit edit) {
        addsBy(suffix, [this, edit] {
            list_.followNew();
            postToResource(edit, [](Edit&) {});
        });
    }
    /// The same where more is to be done for it: `add` calls followNew() when it posts.
    void addsBy(const std::string& suffix, std::function<void()> add) {
        const std::string component = window_.getBase() + suffix;
        bindButton(component, std::move(add));
        able(component, [this] { return whyNoResource(); });
    }
    /// A button, and the Delete key, that do away with the selected element.
    template <ResourceEdit Edit> void deletes(const std::string& suffix, Edit edit) {
        delete_ = [this, edit] { post(edit, [](Edit&) {}); };
        bindButton(window_.getBase() + suffix, delete_);
        able(window_.getBase() + suffix, [this] { return whyNone(); });
    }
    /// Buttons, and keys, that move the selected element; the keys of elements are their indices.
    template <ResourceEdit Up, ResourceEdit Down>
    void moves(const std::string& up, Up upEdit, const std::string& down, Down downEdit) {
        move_ = [this, upEdit, downEdit](int by) {
            if (!whyNoMove(by).empty()) return;
            list_.follow(getSelected()->key + static_cast<std::uint64_t>(by));
            by < 0 ? post(
                             upEdit, [](Up&) {})
                   : post(
                             downEdit, [](Down&) {});
        };
        for (const int by : {-1, 1}) {
            const std::string component = window_.getBase() + (by < 0 ? up : down);
            bindButton(component, [this, by] { move_(by); });
            able(component, [this, by] { return whyNoMove(by); });
        }
    }

    /// Numbers that are read together when the button is pressed, or Enter in one of the boxes.
    /// Where one of them is none, `complaint` is logged and nothing is posted.
    template <ResourceEdit Edit, class Value>
    void numbers(const std::string& button,
                 Edit edit,
                 std::vector<ElementBox<Edit, Value>> boxes,
                 const std::string& complaint) {
        std::vector<Known> known;
        for (const auto& box : boxes)
            known.push_back(showBox(edit, box));
        const auto pressed = [this, edit, boxes, known, complaint] {
            std::vector<Value> typed;
            for (const auto& box : boxes) {
                const auto text = editText(window_.getBase() + box.suffix);
                const auto number = readNumber<Value>(text.value_or(std::string()));
                if (getSelected() != nullptr && !number) logEditorText(complaint);
                if (!number) return;
                typed.push_back(*number);
            }
            post(edit, [&](Edit& each) {
                for (std::size_t i = 0; i < boxes.size(); ++i)
                    boxes[i].value(each) = typed[i];
            });
            // What was typed need not be how the number is shown.
            for (const Known& isKnown : known)
                *isKnown = false;
        };
        bindButton(window_.getBase() + button, pressed);
        able(window_.getBase() + button, [this] { return whyNone(); });
        for (const auto& box : boxes) {
            bindEdit(window_.getBase() + box.suffix, pressed);
            able(window_.getBase() + box.suffix, [this] { return whyNone(); });
        }
    }

    template <ResourceEdit Edit>
    void combo(const std::string& suffix, Edit edit, const std::vector<Choice>& all) {
        const std::string component = window_.getBase() + suffix;
        using Shown = std::optional<Keyed<std::uint32_t>>;
        const Known isKnown = window_.template row<Shown>(
                [this, edit](const Record& record) -> Shown {
                    return read<std::uint32_t>(edit, record, [](Edit& each) { return each.value; });
                },
                [component](const Shown* shown, bool) {
                    std::optional<std::uint32_t> value;
                    if (shown != nullptr && *shown) value = (*shown)->value;
                    showCombo(component, value, false);
                });
        bindCombo(component, all, [this, edit, isKnown](const std::string&, std::uint32_t value) {
            post(edit, [&](Edit& each) { each.value = value; });
            *isKnown = false;
        });
        able(component, [this] { return whyNone(); });
    }

    /// A name that is shown by a static and chosen from a pick list by a button. The edit's `value`
    /// carries the list's entry; `entryOf` makes of the shown name the entry that is selected then.
    template <ResourceEdit Edit>
    void picks(const std::string& label,
               const std::string& button,
               const std::string& pickList,
               Edit edit,
               std::function<std::string(const std::string&)> entryOf = {}) {
        const std::string base = window_.getBase();
        const auto nameOf = [this, edit](const Record& record) {
            return read<std::string>(edit, record, [](Edit& each) { return each.value; });
        };
        using Shown = std::optional<Keyed<std::string>>;
        window_.template row<Shown>(nameOf, [component = base + label](const Shown* shown, bool) {
            const bool isNamed = shown != nullptr && *shown && !(*shown)->value.empty();
            showLabel(component, isNamed ? (*shown)->value : "-");
        });
        bindButton(
                base + button, [this, component = base + button, pickList, edit, nameOf, entryOf] {
                    const Record* record = getRecord();
                    const auto* anchor = vlWinUi::ComponentManager::get(component);
                    if (record == nullptr || getSelected() == nullptr || anchor == nullptr) return;
                    const std::string name = nameOf(*record)->value;
                    const auto chosen = [this, edit, of = record->name, key = getSelected()->key](
                                                const std::string& entry) {
                        // The dialog leaves the window usable.
                        const Record* now = getRecord();
                        const bool isSame = now != nullptr && now->name == of &&
                                            getSelected() != nullptr && getSelected()->key == key;
                        if (isSame) post(edit, [&](Edit& each) { each.value = entry; });
                    };
                    PickListDialog::open(
                            pickList, *anchor, guarded(chosen), entryOf ? entryOf(name) : name);
                });
        able(base + button, [this] { return whyNone(); });
    }

    /// A row of another make: `read` says what of the element it shows; nothing when there is none.
    template <class Value>
    void row(std::function<Value(const Record&, const ListedElement&)> read,
             std::function<void(const Value* value)> show) {
        using Shown = std::optional<Keyed<Value>>;
        window_.template row<Shown>(
                [this, read = std::move(read)](const Record& record) -> Shown {
                    const ListedElement* element = getSelected();
                    if (element == nullptr) return {};
                    return Keyed<Value>{element->key, around(), read(record, *element)};
                },
                [show = std::move(show)](const Shown* shown, bool) {
                    show(shown != nullptr && *shown ? &(*shown)->value : nullptr);
                });
    }

    /// Posts the edit, aimed at the selected element; `change` fills in what is new.
    template <ResourceEdit Edit, class Change> void post(const Edit& edit, Change change) {
        const ListedElement* element = getSelected();
        const Record* record = getRecord();
        if (element == nullptr || record == nullptr) return;
        Edit aimed = aim(edit, *element);
        aimed.readFrom(*record);
        postToResource(aimed, [&](Edit& each) {
            each = aimed;
            change(each);
        });
    }
    /// Posts it for the one selected resource, whatever is selected in the list.
    template <ResourceEdit Edit, class Change>
    void postToResource(const Edit& edit, Change change) {
        if (getRecord() != nullptr) window_.post(edit, change);
    }
    /// Why nothing can be done with an element; empty where something can.
    std::string whyNone() const {
        const std::string reason = whyNoResource();
        if (!reason.empty() || getSelected() != nullptr) return reason;
        return "Nothing is selected in the list.";
    }
    std::string whyNoResource() const {
        const std::string thing = Kind::texts.thing();
        const std::size_t count = window_.selectedNames().size();
        if (count == 1) return {};
        return count == 0 ? "No " + thing + " is selected."
                          : "Several are selected: select one " + thing + " alone.";
    }
    /// The one selected resource; null when there are none or several.
    const Record* getRecord() const {
        const auto names = window_.selectedNames();
        if (names.size() != 1) return nullptr;
        return ResourceUiDataTracker<Kind>::getInstance().get(names.front());
    }
    /// Does nothing once the window has gone.
    PickListDialog::Chosen guarded(PickListDialog::Chosen chosen) const {
        return [alive = std::weak_ptr(alive_),
                chosen = std::move(chosen)](const std::string& entry) {
            if (!alive.expired()) chosen(entry);
        };
    }
    /// Keeps a component enabled while there is no reason against it.
    void able(const std::string& component, std::function<std::string()> whyNot) {
        window_.eachTime(
                [component, whyNot = std::move(whyNot)](auto) { showAble(component, whyNot()); });
    }

private:
    using Known = typename Bindings<Kind>::Known;
    /// Of the same element, so that another one with the same value is told from it.
    template <class Value> struct Keyed {
        std::uint64_t key = 0;
        std::uint64_t around = 0;
        Value value{};
        friend bool operator==(const Keyed&, const Keyed&) = default;
    };

    ElementRows(Bindings<Kind>& window, const std::string& suffix, Elements elements, Around around)
        : window_(window), elements_(std::move(elements)), around_(std::move(around)),
          list_(window.getBase() + suffix,
                {.chosen = [this] { window_.refresh(); },
                 .deleted =
                         [this] {
                             if (delete_) delete_();
                         },
                 .moved =
                         [this](int by) {
                             if (move_) move_(by);
                         }}) {
        window_.eachTime([this](std::span<const Record* const> records) {
            const Record* only = records.size() == 1 ? records.front() : nullptr;
            const std::string whyNot = whyNoResource();
            list_.show({only, only == nullptr ? 0 : this->around()},
                       only == nullptr ? std::vector<ListedElement>() : elements_(*only),
                       whyNot.empty() ? "Nothing here yet: \"+\" adds" : whyNot);
        });
    }

    std::uint64_t around() const { return around_ ? around_() : 0; }
    std::string whyNoMove(int by) const {
        const std::string reason = whyNone();
        if (!reason.empty()) return reason;
        const std::size_t index = *list_.getSelectedIndex();
        if (by < 0 && index == 0) return "It is the first.";
        return by > 0 && index + 1 >= list_.getCount() ? "It is the last." : "";
    }
    static void logEditorText(const std::string& line) {
        EditorLogger::getInstance().log(line, "Editor");
    }
    template <class Edit> static Edit aim(Edit edit, const ListedElement& element) {
        forEachMember(edit, [&](std::string_view name, auto& member) {
            if constexpr (std::is_same_v<std::remove_cvref_t<decltype(member)>, std::uint32_t>) {
                for (const auto& [of, value] : element.place)
                    if (of == name) member = value;
            }
            return true;
        });
        return edit;
    }
    template <class Value, class Edit, class Get>
    std::optional<Keyed<Value>> read(const Edit& edit, const Record& record, Get get) const {
        const ListedElement* element = getSelected();
        if (element == nullptr) return {};
        Edit aimed = aim(edit, *element);
        aimed.readFrom(record);
        return Keyed<Value>{element->key, around(), get(aimed)};
    }
    template <class Edit, class Value>
    Known showBox(const Edit& edit, const ElementBox<Edit, Value>& box) {
        using Shown = std::optional<Keyed<Value>>;
        return window_.template row<Shown>(
                [this, edit, value = box.value](const Record& record) -> Shown {
                    return read<Value>(edit, record, value);
                },
                [component = window_.getBase() + box.suffix](const Shown* shown, bool) {
                    std::optional<std::string> text;
                    if (shown != nullptr && *shown) text = showNumber((*shown)->value);
                    showEdit(component, text, false);
                });
    }

    Bindings<Kind>& window_;
    Elements elements_;
    Around around_;
    ElementList list_;
    std::function<void()> delete_;
    std::function<void(int by)> move_;
    std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true);
};

} // namespace vlEditor
