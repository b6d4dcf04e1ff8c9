#include "app/automation/ScriptTrees.h"

namespace vlEditor {

using vlCommon::Result;
using vlExport::Node;

namespace {

Result<Node> listOf(const vlScripts::Table& table, const Node* like) {
    Node list = Node::array();
    const Node* element = like != nullptr && like->size() > 0 ? &like->elements()[0] : nullptr;
    for (std::size_t i = 0; i < table.items.size(); ++i) {
        auto item = treeOf(table.items[i], element);
        if (!item) return vlCommon::fail(std::to_string(i + 1) + ": " + item.error().message);
        list.append(std::move(*item));
    }
    return list;
}

Result<Node> objectOf(const vlScripts::Table& table, const Node* like) {
    Node object = Node::object();
    for (const auto& [name, value] : table.members) {
        auto member = treeOf(value, like != nullptr ? like->find(name) : nullptr);
        if (!member) return vlCommon::fail(name + ": " + member.error().message);
        object.add(name, std::move(*member));
    }
    return object;
}

} // namespace

Result<Node> treeOf(const vlScripts::Value& value, const Node* like) {
    if (value.isNil()) return Node();
    if (const auto flag = value.asBool()) return Node(*flag);
    if (const auto whole = value.asInteger()) return Node(*whole);
    if (const auto number = value.asNumber()) return Node(*number);
    if (const auto* text = value.asText()) return Node(*text);
    if (const auto* table = value.asTable()) {
        if (!table->items.empty() && !table->members.empty())
            return vlCommon::fail("expected a list or an object, got a table that is both");
        const bool isList = !table->items.empty() ||
                            (table->members.empty() && (like == nullptr || !like->isObject()));
        return isList ? listOf(*table, like) : objectOf(*table, like);
    }
    return vlCommon::fail("expected a plain value, got " + value.describeKind());
}

vlScripts::Value valueOf(const Node& tree) {
    if (const auto flag = tree.asBool()) return *flag;
    if (const auto whole = tree.asSigned()) return *whole;
    if (const auto number = tree.asDouble()) return *number;
    if (const std::string* text = tree.asString()) return *text;
    if (tree.isNull()) return {};
    vlScripts::Table table;
    for (const Node& element : tree.elements())
        table.items.push_back(valueOf(element));
    for (const vlExport::Member& member : tree.members())
        table.members.emplace_back(member.name, valueOf(member.value));
    return table;
}

Result<Node> withFields(Node members, const vlScripts::Table& fields) {
    if (!fields.items.empty()) return vlCommon::fail("fields are given by their names");
    for (const auto& [name, value] : fields.members) {
        auto member = treeOf(value, members.find(name));
        if (!member) return vlCommon::fail(name + ": " + member.error().message);
        members.add(name, std::move(*member));
    }
    return members;
}

} // namespace vlEditor
