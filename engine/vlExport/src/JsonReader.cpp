#include <vlExport/JsonExporter.h>
#include <vlMemory/Utf8.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>
#include <string_view>
#include <unordered_set>

namespace vlExport {

namespace {

/** Tells how far the parser has read, which its events do not. */
class TrackingIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    TrackingIterator(const char* at, const char** reached) : at_(at), reached_(reached) {}

    reference operator*() const { return *at_; }
    TrackingIterator& operator++() {
        ++at_;
        *reached_ = at_;
        return *this;
    }
    TrackingIterator operator++(int) {
        const TrackingIterator before = *this;
        ++*this;
        return before;
    }
    friend bool operator==(const TrackingIterator& a, const TrackingIterator& b) {
        return a.at_ == b.at_;
    }

private:
    const char* at_;
    const char** reached_;
};

/// The file's own bytes may stand in it, broken and by the million.
std::string cleaned(std::string_view text) {
    return vlMemory::printable(text, 200);
}

} // namespace

/** Builds the tree from the parser's events and refuses what is too deep, too much or named twice.
 */
class TreeBuilder {
public:
    TreeBuilder(vlMemory::StringView text, vlMemory::StringView name)
        : name_(name), reached_(text.data()), counted_(text.data()) {}

    const char** reached() { return &reached_; }
    Node takeRoot() { return std::move(root_); }
    const std::string& error() const { return error_; }

    bool null() { return place(Node()); }
    bool boolean(bool value) { return place(value); }
    bool number_integer(std::int64_t value) { return place(value); }
    bool number_unsigned(std::uint64_t value) { return place(value); }
    bool number_float(double value, const std::string& text) {
        const bool whole = text.find_first_of(".eE") == std::string::npos;
        if (whole || !std::isfinite(value)) {
            return refuse(fmt::format("the number {} is out of range", cleaned(text)));
        }
        return place(value);
    }
    bool string(std::string& value) { return place(Node(std::move(value))); }
    bool binary(std::vector<std::uint8_t>&) { return refuse("binary values are not JSON"); }

    bool start_object(std::size_t) { return open(Node::object()); }
    bool start_array(std::size_t) { return open(Node::array()); }
    bool end_object() { return close(); }
    bool end_array() { return close(); }

    bool key(std::string& name) {
        Level& level = levels_.back();
        if (isThere(level, name))
            return refuse(fmt::format("'{}' stands here twice", cleaned(name)));
        std::get<Node::Object>(level.node->value_).push_back(Member{std::move(name), Node()});
        return true;
    }

    template <class Exception>
    bool parse_error(std::size_t, const std::string&, const Exception& exception) {
        // "[id] parse error at line 3, column 7: what is wrong"
        std::string_view what = exception.what();
        what.remove_prefix(std::min(what.find("] ") + 2, what.size()));
        constexpr std::string_view position = "parse error at line ";
        if (what.substr(0, position.size()) == position) {
            what.remove_prefix(std::min(what.find(": ") + 2, what.size()));
        }
        return refuse(cleaned(what));
    }

private:
    struct Level {
        Node* node;
        std::unique_ptr<std::unordered_set<std::string>> names; ///< of large objects only
    };

    bool place(Node value) {
        Node* placed = insert(std::move(value));
        return placed != nullptr;
    }

    bool open(Node value) {
        if (levels_.size() >= JsonExporter::maxDepth) {
            return refuse(fmt::format("more than {} arrays and objects within each other",
                                      JsonExporter::maxDepth));
        }
        Node* opened = insert(std::move(value));
        if (opened) levels_.push_back({opened, nullptr});
        return opened != nullptr;
    }

    bool close() {
        levels_.pop_back();
        return true;
    }

    Node* insert(Node value) {
        if (++values_ > JsonExporter::maxValues) {
            refuse(fmt::format("more than {} values", JsonExporter::maxValues));
            return nullptr;
        }
        value.setLine(line());
        if (levels_.empty()) {
            root_ = std::move(value);
            return &root_;
        }
        Node& parent = *levels_.back().node;
        if (parent.isArray()) return &parent.append(std::move(value));
        return &(std::get<Node::Object>(parent.value_).back().value = std::move(value));
    }

    /// Remembers the name. Small objects are searched; large ones, which may be hostile, are
    /// hashed.
    static bool isThere(Level& level, const std::string& name) {
        constexpr std::size_t searched = 32;
        const auto members = std::as_const(*level.node).members();
        if (members.size() < searched) return std::as_const(*level.node).find(name) != nullptr;
        if (!level.names) {
            level.names = std::make_unique<std::unordered_set<std::string>>();
            for (const Member& member : members)
                level.names->insert(member.name);
        }
        return !level.names->insert(name).second;
    }

    /// Of the last byte that was read. A number has read one byte more, which may be a line feed.
    std::uint32_t line() {
        const char* last = reached_ > counted_ ? reached_ - 1 : reached_;
        line_ += static_cast<std::uint32_t>(std::count(counted_, last, '\n'));
        counted_ = last;
        return line_;
    }

    bool refuse(std::string_view what) {
        error_ = fmt::format("{}:{}: {}", name_, line(), what);
        return false;
    }

    vlMemory::StringView name_;
    const char* reached_;
    const char* counted_;
    std::uint32_t line_ = 1;
    std::size_t values_ = 0;
    std::vector<Level> levels_;
    Node root_;
    std::string error_;
};

vlCommon::Result<Node> JsonExporter::importIntoTree(vlMemory::StringView text,
                                                    vlMemory::StringView nameForErrors) {
    if (text.size() > maxTextSize) {
        return vlCommon::fail(fmt::format(
                "{}: {} bytes, more than the {} allowed", nameForErrors, text.size(), maxTextSize));
    }
    if (text.empty()) return vlCommon::fail(fmt::format("{}:1: the text is empty", nameForErrors));
    TreeBuilder builder(text, nameForErrors);
    const TrackingIterator first(text.data(), builder.reached());
    const TrackingIterator last(text.data() + text.size(), builder.reached());
    const bool complete = nlohmann::json::sax_parse(first, last, &builder);
    if (!complete) return vlCommon::fail(builder.error());
    return builder.takeRoot();
}

} // namespace vlExport
