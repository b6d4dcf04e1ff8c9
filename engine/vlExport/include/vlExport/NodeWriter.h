#pragma once
#include <vlExport/EnumText.h>
#include <vlExport/Node.h>
#include <vlMaths/Matrix.h>
#include <vlMaths/Quaternion.h>
#include <vlMaths/Vector.h>
#include <vlMemory/String.h>

#include <array>
#include <cassert>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace vlExport {

/** Writes a declaration into a tree, by the description that NodeReader reads it with; see there.
 * All members are written, optional ones too, in the order of the calls; only what is held in a
 *  std::optional and is not there is left out. Ranges and limits are the reader's concern.
 *  The tree must outlive the writer. One thread. */
class NodeWriter {
public:
    static constexpr bool reading = false;

    /// A tree that is no object becomes an empty one; members that are there keep their place.
    explicit NodeWriter(Node& tree) : node_(tree) {
        if (!tree.isObject()) tree = Node::object();
    }
    NodeWriter(const NodeWriter&) = delete;
    NodeWriter& operator=(const NodeWriter&) = delete;

    template <class T, class... Options>
    void required(vlMemory::StringView name, const T& value, const Options&... options) {
        node_.add(name, write(value, options...));
    }
    template <class T, class... Options>
    void optional(vlMemory::StringView name, const T& value, const Options&... options) {
        node_.add(name, write(value, options...));
    }

    template <class Write> void requiredObject(vlMemory::StringView name, Write&& writeChild) {
        Node child = Node::object();
        NodeWriter writer(child);
        writeChild(writer);
        node_.add(name, std::move(child));
    }
    template <class Write> void optionalObject(vlMemory::StringView name, Write&& writeChild) {
        requiredObject(name, writeChild);
    }
    template <class T, class Write>
    void
    optionalObject(vlMemory::StringView name, const std::optional<T>& value, Write&& writeChild) {
        if (!value) return;
        requiredObject(name, [&](NodeWriter& child) { writeChild(child, *value); });
    }

    template <class T, class Write>
    void requiredArray(vlMemory::StringView name,
                       const std::vector<T>& values,
                       Write&& writeChild,
                       std::size_t = 0) {
        Node array = Node::array();
        for (const T& value : values) {
            NodeWriter writer(array.append(Node::object()));
            writeChild(writer, value);
        }
        node_.add(name, std::move(array));
    }
    template <class T, class Write>
    void optionalArray(vlMemory::StringView name,
                       const std::vector<T>& values,
                       Write&& writeChild,
                       std::size_t maxCount = 0) {
        requiredArray(name, values, writeChild, maxCount);
    }

    std::uint32_t formatVersion(std::uint32_t current) {
        node_.add("formatVersion", current);
        return current;
    }
    void ignore(vlMemory::StringView) {}
    void check(bool, vlMemory::StringView, vlMemory::StringView) {}
    void fail(vlMemory::StringView) {}
    bool ok() const { return true; }

private:
    static Node write(bool value) { return value; }
    static Node write(const vlMemory::String& value) { return value; }
    static Node write(const Node& value) { return value; }
    static Node write(const vlMaths::Quaternion& value) {
        return floats(std::array{value.x, value.y, value.z, value.w});
    }
    static Node write(const vlMaths::Matrix& value) { return floats(value.elements); }
    template <std::integral Count = std::size_t>
    static Node write(const vlMaths::Vector& value, Count components = 4) {
        const std::array all{value.x, value.y, value.z, value.w};
        return floats(std::span(all).first(static_cast<std::size_t>(components)));
    }
    template <std::size_t N> static Node write(const std::array<float, N>& value) {
        return floats(value);
    }
    template <std::floating_point T, class... Range> static Node write(T value, const Range&...) {
        return value;
    }
    template <std::integral T, std::integral... Range>
    requires(!std::same_as<T, bool>) static Node write(T value, Range...) { return value; }

    template <class T, std::size_t N>
    static Node write(const T& value, const EnumText<T> (&texts)[N]) {
        return writeEnum(value, std::span<const EnumText<T>>(texts));
    }
    template <class T, std::size_t N>
    static Node write(const T& value, const std::array<EnumText<T>, N>& texts) {
        return writeEnum(value, std::span<const EnumText<T>>(texts));
    }
    template <class T> static Node writeEnum(const T& value, std::span<const EnumText<T>> texts) {
        for (const EnumText<T>& entry : texts) {
            if (entry.value == value) return entry.text;
        }
        assert(false && "a value without a text in its table");
        return texts.front().text;
    }

    template <class T>
    static Node write(const std::vector<T>& values, [[maybe_unused]] std::size_t maxCount = 0) {
        Node array = Node::array();
        for (const T& value : values)
            array.append(write(value));
        return array;
    }
    template <class T>
    static Node write(const std::vector<std::pair<vlMemory::String, T>>& values) {
        Node object = Node::object();
        for (const auto& [name, value] : values)
            object.add(name, write(value));
        return object;
    }

    static Node floats(std::span<const float> values) { return Node::array(values); }

    Node& node_;
};

} // namespace vlExport
