#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vlEditor {

/** One of the things inside a resource, as a list in its window shows it. */
struct ListedElement {
    std::string label; ///< no other one's in the list
    /// Tells it from the others while they come and go.
    std::uint64_t key = 0;
    /// Where edits find it, by the names of their members: {"index", 2}.
    std::vector<std::pair<std::string_view, std::uint32_t>> place;
    std::string remark; ///< marks it, and is the mark's tooltip; empty: no mark

    friend bool operator==(const ListedElement&, const ListedElement&) = default;
};

/** A list inside the window of a kind, with the element in it that a person has selected. Which one
 *  is the window's own affair: no record and no undo knows of it. Something is selected whenever
 *  there is something. UI thread only. */
class ElementList {
public:
    /// `chosen` is called when the person has selected another element; `deleted` for the Delete
    /// key, `moved` for Alt and an arrow key, with -1 for up and 1 for down.
    struct Callbacks {
        std::function<void()> chosen;
        std::function<void()> deleted;
        std::function<void(int by)> moved;
    };
    ElementList(std::string component, Callbacks callbacks);
    ElementList(const ElementList&) = delete;
    ElementList& operator=(const ElementList&) = delete;

    /// What the elements are in: the resource, and the key of what is around them in it.
    struct Owner {
        const void* resource = nullptr;
        std::uint64_t key = 0;
        friend bool operator==(const Owner&, const Owner&) = default;
    };
    /// The selection stays with its element; one that has gone leaves it to what has come in its
    /// place. Of another owner's elements the first is selected.
    void show(Owner owner, std::vector<ListedElement> elements, const std::string& placeHolder);

    /// Null when there is nothing.
    const ListedElement* getSelected() const;
    std::optional<std::size_t> getSelectedIndex() const { return selected_; }
    std::size_t getCount() const { return elements_.size(); }

    /// Selects the next element that comes.
    void followNew() { followsNew_ = true; }
    /// Selects the one with that key when the elements are shown next.
    void follow(std::uint64_t key) { followed_ = key; }

private:
    std::optional<std::size_t> indexOf(std::uint64_t key) const;
    /// The first that was not among the earlier ones.
    std::optional<std::size_t> firstNew(const std::vector<ListedElement>& earlier) const;
    std::optional<std::size_t> findSelection(const std::vector<ListedElement>& earlier);
    void fillList(const std::vector<ListedElement>& earlier);

    std::string component_;
    Callbacks callbacks_;
    Owner owner_;
    std::vector<ListedElement> elements_;
    std::optional<std::size_t> selected_;
    std::optional<std::uint64_t> followed_;
    bool followsNew_ = false;
    bool isFilled_ = false; ///< the component shows these elements
};

} // namespace vlEditor
