#include "content/CompositorValues.h"
#include "content/KindLoader.h"

#include <vlExport/JsonExporter.h>

namespace vlGraphics {

template <> struct Declared<Compositor> {
    using Manager = CompositorManager;
    static constexpr vlMemory::StringView list = "compositors";
    struct Values {
        std::vector<NodeValues> nodes;
    };
    template <class Archive, class V> static void describe(Archive& archive, V& values) {
        describeNodes(archive, values.nodes);
    }
    static Values from(const Compositor& compositor, const DeclarationFolders&) {
        return {compositorValues(compositor)};
    }
    static vlCommon::Result<> prepare(Values& values, const DeclarationFolders&) {
        return checkCompositorValues(values.nodes);
    }
    static void apply(Compositor& compositor, const Values& values) {
        std::vector<std::unique_ptr<CompositorNode>> nodes;
        for (const NodeValues& node : values.nodes)
            nodes.push_back(makeCompositorNode(node));
        compositor.clear();
        for (auto& node : nodes)
            compositor.appendNode(std::move(node));
    }
};

vlCommon::Result<> ContentLoader::appendCompositorNodeFromSources(Compositor& compositor,
                                                                  vlMemory::StringView text) {
    constexpr vlMemory::StringView name = "compositor nodes";
    const auto tree = vlExport::JsonExporter::importIntoTree(text, name);
    if (!tree) return tl::unexpected(tree.error());
    vlExport::NodeReader reader(*tree, name);
    std::vector<NodeValues> nodes;
    describeNodes(reader, nodes);
    auto read = reader.finish();
    if (read && !reader.unknownMembers().empty()) {
        read = vlCommon::fail(reader.unknownMembers().front());
    }
    if (read) read = checkCompositorValues(nodes);
    if (!read) return read;
    for (const NodeValues& node : nodes)
        compositor.appendNode(makeCompositorNode(node));
    return {};
}

} // namespace vlGraphics

VL_DECLARED_KIND(Compositor);
