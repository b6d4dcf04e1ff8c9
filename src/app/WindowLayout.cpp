#include "app/WindowLayout.h"

#include <vlExport/JsonExporter.h>
#include <vlExport/NodeReader.h>
#include <vlExport/NodeWriter.h>

namespace vlEditor {
namespace {

constexpr std::size_t longestLabel = 1024; ///< bytes
constexpr float largestSize = 1e6F;
constexpr int furthest = 100'000; ///< pixels of a screen
constexpr std::size_t mostBeside = 64;

bool hasParts(const vlExport::NodeReader& reader) {
    return reader.has("parts");
}
bool hasParts(const vlExport::NodeWriter&) {
    return false;
}

/** One description for reading and writing; P is a part, or a constant one. */
template <class Archive, class P>
void describeParts(Archive& archive, P& part, int depth, std::size_t& count) {
    archive.optional("rows", part.rows);
    archive.requiredArray(
            "parts",
            part.parts,
            [&](auto& child, auto& inner) {
                child.check(++count <= WindowLayout::mostParts, "size", "is of one part too many");
                child.optional("fixed", inner.fixed);
                child.required("size", inner.size, 0.0F, largestSize);
                const bool divided = Archive::reading ? hasParts(child) : !inner.parts.empty();
                if (!divided) return child.optional("view", inner.view);
                child.check(depth < WindowLayout::deepest, "parts", "is nested too deeply");
                if (child.ok()) describeParts(child, inner, depth + 1, count);
            },
            mostBeside);
    archive.check(!part.parts.empty(), "parts", "expected at least one part");
}

template <class Archive, class R> void describeRectangle(Archive& archive, R& rectangle) {
    archive.required("x", rectangle.x, -furthest, furthest);
    archive.required("y", rectangle.y, -furthest, furthest);
    archive.required("width", rectangle.width, 1, furthest);
    archive.required("height", rectangle.height, 1, furthest);
}

template <class Archive, class L> void describe(Archive& archive, L& layout) {
    archive.formatVersion(WindowLayout::formatVersion);
    archive.optionalObject("window", layout.rectangle, [](auto& child, auto& rectangle) {
        describeRectangle(child, rectangle);
    });
    archive.optional("maximized", layout.maximized);
    archive.optional("selectedTab", layout.selectedTab);
    archive.requiredArray(
            "tabs",
            layout.tabs,
            [](auto& child, auto& tab) {
                child.required("label", tab.label);
                child.check(!tab.label.empty() && tab.label.size() <= longestLabel &&
                                    tab.label != "+",
                            "label",
                            "is no name for a tab");
                std::size_t count = 0;
                describeParts(child, tab.content, 1, count);
            },
            WindowLayout::mostTabs);
    archive.check(!layout.tabs.empty(), "tabs", "expected at least one tab");
    archive.check(layout.selectedTab < layout.tabs.size(), "selectedTab", "is no tab");
}

} // namespace

vlMemory::String WindowLayout::toText() const {
    vlExport::Node tree;
    vlExport::NodeWriter writer(tree);
    describe(writer, *this);
    return vlExport::JsonExporter::exportTreeIntoString(tree);
}

vlCommon::Result<WindowLayout> WindowLayout::fromText(vlMemory::StringView text,
                                                      vlMemory::StringView nameForErrors) {
    const auto tree = vlExport::JsonExporter::importIntoTree(text, nameForErrors);
    if (!tree) return tl::unexpected(tree.error());
    WindowLayout layout;
    vlExport::NodeReader reader(*tree, nameForErrors);
    describe(reader, layout);
    if (auto read = reader.finish(); !read) return tl::unexpected(read.error());
    return layout;
}

} // namespace vlEditor
