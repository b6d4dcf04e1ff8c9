#pragma once
#include "interfaces/kinds/CodeRow.h"
#include "interfaces/kinds/KindCommands.h"
#include "interfaces/kinds/Numbers.h"
#include "interfaces/kinds/ResourceEditMessage.h"
#include "interfaces/kinds/WidgetRows.h"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

namespace vlEditor {

/** One number box among those that a button reads together, and the member of the edit that it
 *  shows: `NumberBox{"_MIN_EDIT", &SamplerLodLevels::minimum}`. */
template <class Owner, class Value> struct NumberBox {
    std::string suffix;
    Value Owner::*member;
};
template <class Text, class Owner, class Value>
NumberBox(Text, Value Owner::*) -> NumberBox<Owner, Value>;

/** The widgets of one window, each bound once for both ways: what a row shows of a resource, and
 * the edit that it posts for each selected one. The edit given to a row says where it applies
 * (target, axis); its values are filled in. Owned by the window. UI thread only. */
template <class Kind> class Bindings {
public:
    using Record = typename Kind::Record;
    using Names = std::vector<std::string>;
    /// Whether the row shows what it last got; false makes it show the next in any case.
    using Known = std::shared_ptr<bool>;

    /// `selection` gives the names of the selected resources, `refresh` shows them once more.
    Bindings(std::string base, std::function<Names()> selection, std::function<void()> refresh)
        : base_(std::move(base)), selection_(std::move(selection)), refresh_(std::move(refresh)) {}
    Bindings(const Bindings&) = delete;
    Bindings& operator=(const Bindings&) = delete;

    const std::string& getBase() const { return base_; }
    Names selectedNames() const { return selection_(); }
    void refresh() const { refresh_(); }

    template <ResourceEdit Edit> void check(const std::string& suffix, Edit edit) {
        const std::string component = base_ + suffix;
        const auto show = [component](const bool* value, bool isMixed) {
            showCheck(component, value != nullptr ? std::optional(*value) : std::nullopt, isMixed);
        };
        const Known isKnown = addRow<bool>(valueOf(edit), show);
        bindCheck(component, [this, edit, isKnown](bool checked) {
            post(edit, [checked](Edit& each) { each.value = checked; });
            // The engine may refuse what the widget shows now.
            *isKnown = false;
        });
    }

    /// An edit whose value is a text carries the entry's label, any other the entry's value.
    template <ResourceEdit Edit>
    void combo(const std::string& suffix, Edit edit, const std::vector<Choice>& all) {
        using Value = decltype(edit.value);
        constexpr bool isText = std::is_same_v<Value, std::string>;
        const std::string component = base_ + suffix;
        const auto show = [component](const Value* value, bool isMixed) {
            if constexpr (isText)
                showComboLabel(component, value, isMixed);
            else
                showCombo(component,
                          value != nullptr ? std::optional(*value) : std::nullopt,
                          isMixed);
        };
        const Known isKnown = addRow<Value>(valueOf(edit), show);
        const auto chosen = [this, edit, isKnown](const std::string& label, std::uint32_t number) {
            post(edit, [&](Edit& each) {
                if constexpr (isText)
                    each.value = label;
                else
                    each.value = number;
            });
            *isKnown = false;
        };
        bindCombo(component, all, chosen);
    }

    /// Numbers that are typed into boxes and read together when the button is pressed, or Enter in
    /// one of them.
    template <ResourceEdit Edit, class... Owner, class... Value>
    void numbers(const std::string& button, Edit edit, NumberBox<Owner, Value>... boxes) {
        const std::vector<Known> known{addBox(edit, boxes)...};
        const auto pressed = [this, edit, known, boxes...] {
            post(edit, [&](Edit& each) { (read(each, boxes), ...); });
            // What was typed need not be how the number is shown.
            for (const Known& isKnown : known)
                *isKnown = false;
        };
        bindButton(base_ + button, pressed);
        (bindEdit(base_ + boxes.suffix, pressed), ...);
    }
    template <ResourceEdit Edit>
    void number(const std::string& box, const std::string& button, Edit edit) {
        numbers(button, edit, NumberBox{box, &Edit::value});
    }

    /// A source text. What is typed is posted after a pause, and before anything else is asked for.
    template <ResourceEdit Edit> void code(const std::string& suffix, Edit edit) {
        code(suffix, std::vector<Edit>{std::move(edit)});
    }
    /// Several source texts of a resource in one widget, an edit for each. What it returns shows
    /// the one of that index, from 0, and may be called as long as the window lives. An edit's
    /// value is a text, or there are `codeText(value)` and `readCode(text, value)` beside its type.
    template <ResourceEdit Edit>
    std::function<void(std::size_t)> code(const std::string& suffix, std::vector<Edit> edits) {
        const auto post = [edits](const void* record,
                                  std::size_t part,
                                  const std::string& name,
                                  const std::string& text) {
            if (ResourceUiDataTracker<Kind>::getInstance().get(name) != record) return;
            Edit each = edits[part];
            setCode(text, each.value);
            ResourceEditMessage<Edit> message(name, each);
            // Not that of an action that the text is posted before.
            message.gesture = History::nextGesture();
            postToGraphics(std::move(message));
        };
        const auto normal = [](const std::string& text) {
            Edit each;
            setCode(text, each.value);
            return codeOf(each.value);
        };
        const auto row = std::make_shared<CodeRow>(base_ + suffix, post, normal);
        const auto show = [row, edits](Records records) {
            const auto textOf = [&edits](const Record& record, std::size_t part) {
                Edit each = edits[part];
                each.readFrom(record);
                return codeOf(each.value);
            };
            if (records.size() == 1) {
                const Record& record = *records.front();
                row->show(record, record.name, [&](std::size_t part) {
                    return textOf(record, part);
                });
                return;
            }
            std::optional<std::string> text;
            bool isMixed = false;
            for (const Record* record : records) {
                const std::string each = textOf(*record, row->getPart());
                isMixed = isMixed || (text && *text != each);
                text = each;
            }
            row->showReadOnly(isMixed ? std::nullopt : std::optional(text.value_or(std::string())));
        };
        rows_.push_back([show](Records records, bool) { show(records); });
        forget_.push_back([row](const Record& record) { row->forget(record); });
        return [this, row, show](std::size_t part) {
            row->setPart(part);
            show(selectedRecords());
        };
    }

    /// A row of another make: shows what `read` says of the selected resources, null where none is.
    template <class Value>
    Known row(std::function<Value(const Record&)> read,
              std::function<void(const Value* value, bool isMixed)> show) {
        return addRow<Value>(std::move(read), std::move(show));
    }
    /// Called with the records whenever they are shown, in the order of the rows.
    void eachTime(std::function<void(std::span<const Record* const>)> show) {
        rows_.push_back([show = std::move(show)](Records records, bool) { show(records); });
    }
    /// A button that does something with the selected resources, if any.
    void button(const std::string& suffix, std::function<void(const Names&)> pressed) {
        bindButton(base_ + suffix, [this, pressed = std::move(pressed)] {
            const Names names = selection_();
            PendingEdit::flushAll();
            if (!names.empty()) pressed(names);
        });
    }

    /// Posts the edit for each selected resource as one gesture; `change` fills in what is new.
    template <ResourceEdit Edit, class Change> void post(const Edit& edit, Change change) {
        const History::Scope gesture;
        for (const std::string& name : selection_()) {
            const Record* record = ResourceUiDataTracker<Kind>::getInstance().get(name);
            if (record == nullptr) continue;
            Edit each = edit;
            each.readFrom(*record);
            change(each);
            postByUser(ResourceEditMessage<Edit>(name, each));
        }
    }

    /// Puts the records into the widgets; none empties them. What a row shows already it leaves
    /// alone, so that a number being typed survives an edit of something else, unless `isAnew`.
    void show(std::span<const Record* const> records, bool isAnew) {
        for (const auto& row : rows_)
            row(records, isAnew);
    }
    /// A record is about to go: what is being typed for it goes with it.
    void forget(const Record& record) {
        for (const auto& row : forget_)
            row(record);
    }

    /// Holds something for as long as the window lives.
    void keep(std::shared_ptr<const void> held) { kept_.push_back(std::move(held)); }

private:
    using Records = std::span<const Record* const>;

    std::vector<const Record*> selectedRecords() const {
        std::vector<const Record*> records;
        for (const std::string& name : selection_()) {
            const Record* record = ResourceUiDataTracker<Kind>::getInstance().get(name);
            if (record != nullptr) records.push_back(record);
        }
        return records;
    }

    template <class Value> static std::string codeOf(const Value& value) {
        if constexpr (std::is_same_v<Value, std::string>)
            return value;
        else
            return codeText(value);
    }
    template <class Value> static void setCode(const std::string& text, Value& value) {
        if constexpr (std::is_same_v<Value, std::string>)
            value = text;
        else
            readCode(text, value);
    }

    template <class Edit> static auto valueOf(const Edit& edit) {
        return [each = Edit(edit)](const Record& record) mutable {
            each.readFrom(record);
            return each.value;
        };
    }

    template <class Value>
    Known addRow(std::function<Value(const Record&)> read,
                 std::function<void(const Value*, bool)> show) {
        const Known isKnown = std::make_shared<bool>(false);
        std::optional<Value> last;
        bool wasMixed = false;
        rows_.push_back([=](Records records, bool isAnew) mutable {
            std::optional<Value> value;
            bool isMixed = false;
            for (const Record* record : records) {
                Value each = read(*record);
                isMixed = isMixed || (value && *value != each);
                if (!value) value = std::move(each);
            }
            if (*isKnown && !isAnew && value == last && isMixed == wasMixed) return;
            *isKnown = true;
            last = value;
            wasMixed = isMixed;
            show(value ? &*value : nullptr, isMixed);
        });
        return isKnown;
    }

    template <class Edit, class Owner, class Value>
    Known addBox(Edit edit, const NumberBox<Owner, Value>& box) {
        const auto read = [edit, member = box.member](const Record& record) mutable {
            edit.readFrom(record);
            return edit.*member;
        };
        const auto show = [component = base_ + box.suffix](const Value* value, bool isMixed) {
            std::optional<std::string> text;
            if (value != nullptr) text = showNumber(*value);
            showEdit(component, text, isMixed);
        };
        return addRow<Value>(read, show);
    }

    template <class Edit, class Owner, class Value>
    void read(Edit& edit, const NumberBox<Owner, Value>& box) const {
        const auto text = editText(base_ + box.suffix);
        if (text) edit.*box.member = parseNumber<Value>(*text);
    }

    std::string base_;
    std::function<Names()> selection_;
    std::function<void()> refresh_;
    std::vector<std::function<void(Records, bool isAnew)>> rows_;
    std::vector<std::function<void(const Record&)>> forget_;
    std::vector<std::shared_ptr<const void>> kept_;
};

} // namespace vlEditor
