#pragma once
#include <vlCommon/Result.h>
#include <vlExport/EnumText.h>
#include <vlExport/Node.h>
#include <vlMaths/Matrix.h>
#include <vlMaths/Quaternion.h>
#include <vlMaths/Vector.h>
#include <vlMemory/String.h>

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

namespace vlExport {

/** Reads a declaration out of a tree and says clearly what is wrong with it. NodeWriter has the
 * same methods, so one function describes a declaration both ways:
 *
 *      template <class Archive, class Decl> void describe(Archive& archive, Decl& decl) {
 *          archive.required("name", decl.name);
 *          archive.optional("cullMode", decl.cullMode, 1, 3);               // range
 *          archive.optional("slotType", decl.slotType, slotTypeTexts);      // enumeration
 *          archive.optional("position", decl.position, 3);                  // x, y, z of a Vector
 *          archive.optionalArray("passes", decl.passes, [](auto& child, auto& pass) {
 *              describe(child, pass);
 *          });
 *      }
 *      NodeReader reader(tree, "rust.vlm");
 *      describe(reader, decl);
 *      if (auto read = reader.finish(); !read) return tl::unexpected(read.error());
 *
 *  What `required` does not find is an error, what `optional` does not find stays as it was. The
 * first error is kept ("rust.vlm:12: passes[3]: 'shader' expected a string"); after it nothing is
 * read any more, so read into a fresh value and use it only when finish() is content. Values: bool,
 * whole numbers, float and double (finite), texts, enumerations, Vector, Quaternion, Matrix, arrays
 * of floats, vectors of the simple ones, vectors of (name, simple one) for objects with free names,
 * and Node for a part that somebody else understands. The tree must outlive the reader. One thread.
 */
class NodeReader {
public:
    static constexpr bool reading = true;

    /// The name stands before each error, usually the file's.
    NodeReader(const Node& tree, vlMemory::StringView nameForErrors);
    ~NodeReader();
    NodeReader(const NodeReader&) = delete;
    NodeReader& operator=(const NodeReader&) = delete;

    template <class T, class... Options>
    void required(vlMemory::StringView name, T& value, const Options&... options) {
        if (const Node* node = take(name, true)) read(*node, {name, {}}, value, options...);
    }
    template <class T, class... Options>
    void optional(vlMemory::StringView name, T& value, const Options&... options) {
        if (const Node* node = take(name, false)) read(*node, {name, {}}, value, options...);
    }

    /// read(child) for an object inside this one.
    template <class Read> void requiredObject(vlMemory::StringView name, Read&& readChild) {
        if (const Node* node = take(name, true)) object(*node, name, readChild);
    }
    template <class Read> void optionalObject(vlMemory::StringView name, Read&& readChild) {
        if (const Node* node = take(name, false)) object(*node, name, readChild);
    }
    /// read(child, value); the value is there exactly when the member is.
    template <class T, class Read>
    void optionalObject(vlMemory::StringView name, std::optional<T>& value, Read&& readChild) {
        value.reset();
        const Node* node = take(name, false);
        if (!node) return;
        value.emplace();
        object(*node, name, [&](NodeReader& child) { readChild(child, *value); });
    }

    /// read(child, element) for each object of an array; the vector's earlier content is dropped.
    template <class T, class Read>
    void requiredArray(vlMemory::StringView name,
                       std::vector<T>& values,
                       Read&& readChild,
                       std::size_t maxCount = noLimit) {
        if (const Node* node = take(name, true)) objects(*node, name, values, readChild, maxCount);
    }
    template <class T, class Read>
    void optionalArray(vlMemory::StringView name,
                       std::vector<T>& values,
                       Read&& readChild,
                       std::size_t maxCount = noLimit) {
        if (const Node* node = take(name, false)) objects(*node, name, values, readChild, maxCount);
    }

    /// Reads "formatVersion": 1 to current; anything newer is an error that says so.
    std::uint32_t formatVersion(std::uint32_t current);
    bool has(vlMemory::StringView name) const { return node_.find(name) != nullptr; }
    /// The member counts as known without being read.
    void ignore(vlMemory::StringView name) { static_cast<void>(take(name, false)); }
    /// An error about a member unless the condition holds: "...: 'name' text".
    void check(bool condition, vlMemory::StringView name, vlMemory::StringView text);
    /// An error about this object as a whole: "...: text".
    void fail(vlMemory::StringView text);
    bool ok() const;

    /// To be called once, on the outermost reader, after everything was read.
    vlCommon::Result<> finish();
    /// After finish(): a line for each member that nobody asked for ("file:3: passes[0]: unknown
    /// member 'colour'"), at most 100 of them. Whether that is an error is the caller's choice.
    const std::vector<vlMemory::String>& unknownMembers() const;

private:
    static constexpr std::size_t noLimit = std::numeric_limits<std::size_t>::max();

    struct State;
    /// A member, or an element of a member that is an array.
    struct Place {
        vlMemory::StringView name;
        std::optional<std::size_t> index;
    };

    NodeReader(const NodeReader& parent, const Node& node, Place place);

    /// Null where it is not there, and after an error.
    const Node* take(vlMemory::StringView name, bool required);
    void expected(const Node& node, const Place& place, vlMemory::StringView what);
    void report(std::uint32_t line, vlMemory::StringView text);
    void noteUnknownMembers();
    vlMemory::String path() const;
    bool checkObject(const Node& node, const Place& place);
    bool checkArray(const Node& node, const Place& place, std::size_t maxCount);
    bool readFloats(const Node& node, const Place& place, std::span<float> values);
    std::optional<std::int64_t>
    readSigned(const Node& node, const Place& place, std::int64_t lowest, std::int64_t highest);
    std::optional<std::uint64_t>
    readUnsigned(const Node& node, const Place& place, std::uint64_t lowest, std::uint64_t highest);

    template <class Read>
    void object(const Node& node, vlMemory::StringView name, Read&& readChild) {
        if (!checkObject(node, {name, {}})) return;
        NodeReader child(*this, node, {name, {}});
        readChild(child);
        child.noteUnknownMembers();
    }
    template <class T, class Read>
    void objects(const Node& node,
                 vlMemory::StringView name,
                 std::vector<T>& values,
                 Read&& readChild,
                 std::size_t maxCount) {
        if (!checkArray(node, {name, {}}, maxCount)) return;
        const auto elements = node.elements();
        values.clear();
        values.reserve(elements.size());
        for (std::size_t index = 0; index < elements.size() && ok(); ++index) {
            if (!checkObject(elements[index], {name, index})) return;
            NodeReader child(*this, elements[index], {name, index});
            readChild(child, values.emplace_back());
            child.noteUnknownMembers();
        }
    }

    void read(const Node& node, const Place& place, bool& value);
    void read(const Node& node, const Place& place, vlMemory::String& value);
    void read(const Node& node, const Place& place, vlMaths::Vector& value);
    void read(const Node& node, const Place& place, vlMaths::Quaternion& value);
    void read(const Node& node, const Place& place, vlMaths::Matrix& value);
    void read(const Node& node, const Place&, Node& value) { value = node; }
    bool checkReal(const Node& node,
                   const Place& place,
                   std::optional<double> number,
                   double lowest,
                   double highest);

    /// The first 1 to 4 members.
    template <std::integral Count>
    void read(const Node& node, const Place& place, vlMaths::Vector& value, Count components) {
        std::array<float, 4> floats{value.x, value.y, value.z, value.w};
        if (!readFloats(
                    node, place, std::span(floats).first(static_cast<std::size_t>(components)))) {
            return;
        }
        value = {floats[0], floats[1], floats[2], floats[3]};
    }
    template <std::size_t N>
    void read(const Node& node, const Place& place, std::array<float, N>& value) {
        std::array<float, N> floats;
        if (readFloats(node, place, floats)) value = floats;
    }

    template <std::floating_point T> void read(const Node& node, const Place& place, T& value) {
        read(node, place, value, std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max());
    }
    template <std::floating_point T, class Lowest, class Highest>
    void read(const Node& node, const Place& place, T& value, Lowest lowest, Highest highest) {
        // A float is rounded first: its shortest text may lie outside the range by a hair.
        std::optional<double> number = node.asDouble();
        if constexpr (std::same_as<T, float>) number = node.asFloat();
        if (checkReal(node,
                      place,
                      number,
                      static_cast<double>(lowest),
                      static_cast<double>(highest))) {
            value = static_cast<T>(*number);
        }
    }

    template <std::integral T>
    requires(!std::same_as<T, bool>) void read(const Node& node, const Place& place, T& value) {
        read(node, place, value, std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max());
    }
    template <std::integral T, std::integral Lowest, std::integral Highest>
    requires(!std::same_as<T, bool>) void read(
            const Node& node, const Place& place, T& value, Lowest lowest, Highest highest) {
        if constexpr (std::signed_integral<T>) {
            const auto number = readSigned(node,
                                           place,
                                           static_cast<std::int64_t>(lowest),
                                           static_cast<std::int64_t>(highest));
            if (number) value = static_cast<T>(*number);
        } else {
            const auto number = readUnsigned(node,
                                             place,
                                             static_cast<std::uint64_t>(lowest),
                                             static_cast<std::uint64_t>(highest));
            if (number) value = static_cast<T>(*number);
        }
    }

    template <class T, std::size_t N>
    void read(const Node& node, const Place& place, T& value, const EnumText<T> (&texts)[N]) {
        readEnum(node, place, value, std::span<const EnumText<T>>(texts));
    }
    template <class T, std::size_t N>
    void
    read(const Node& node, const Place& place, T& value, const std::array<EnumText<T>, N>& texts) {
        readEnum(node, place, value, std::span<const EnumText<T>>(texts));
    }
    template <class T>
    void
    readEnum(const Node& node, const Place& place, T& value, std::span<const EnumText<T>> texts) {
        const vlMemory::String* text = node.asString();
        for (const EnumText<T>& entry : texts) {
            if (!text || entry.text != *text) continue;
            value = entry.value;
            return;
        }
        vlMemory::String list;
        for (const EnumText<T>& entry : texts) {
            if (!list.empty()) list += ", ";
            list += '"';
            list += entry.text;
            list += '"';
        }
        expected(node, place, "one of " + list);
    }

    template <class T>
    void read(const Node& node,
              const Place& place,
              std::vector<T>& values,
              std::size_t maxCount = noLimit) {
        if (!checkArray(node, place, maxCount)) return;
        const auto elements = node.elements();
        values.clear();
        values.reserve(elements.size());
        for (std::size_t index = 0; index < elements.size() && ok(); ++index) {
            T value{};
            read(elements[index], {place.name, index}, value);
            values.push_back(std::move(value));
        }
    }
    template <class T>
    void read(const Node& node,
              const Place& place,
              std::vector<std::pair<vlMemory::String, T>>& values) {
        if (!checkObject(node, place)) return;
        values.clear();
        for (const Member& member : node.members()) {
            if (!ok()) return;
            T value{};
            read(member.value, {member.name, {}}, value);
            values.emplace_back(member.name, std::move(value));
        }
    }

    const Node& node_;
    const NodeReader* parent_ = nullptr;
    Place place_;
    std::unique_ptr<State> ownState_; ///< the outermost reader's
    State& state_;
    std::vector<bool> known_; ///< by the position of the member
};

} // namespace vlExport
