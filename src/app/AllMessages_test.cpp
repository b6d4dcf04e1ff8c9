#include "app/AllMessages.h"

#include <gtest/gtest.h>

#include <vector>

namespace vlEditor {
namespace {

using vlExport::Node;

// What every kind of message must be able to do, run over all of them.
class MessageContract : public testing::Test {
protected:
    MessageContract() { registerAllMessages(registry); }

    /// Another value of the same type, for every value in the tree.
    static Node altered(const Node& value) {
        if (value.isNull()) return value; // what may be left out
        if (const auto flag = value.asBool()) return !*flag;
        if (const std::string* text = value.asString()) return *text + "\n\"\xC3\xA9";
        // Whatever the bounds of a number are, one of its neighbours lies within them.
        if (const auto number = value.asUnsigned()) return *number > 0 ? *number - 1 : 1;
        if (const auto number = value.asDouble()) return *number + 0.5;
        if (value.isArray()) return alteredList(value);
        Node object = Node::object();
        for (const vlExport::Member& member : value.members()) {
            object.add(member.name, altered(member.value));
        }
        return object;
    }
    static Node alteredList(const Node& value) {
        Node list = Node::array();
        for (const Node& element : value.elements())
            list.append(altered(element));
        return list;
    }

    MessageRegistry registry;
};

TEST_F(MessageContract, ADefaultOneGoesThroughATreeUnchanged) {
    ASSERT_FALSE(registry.entries().empty());
    for (const auto& entry : registry.entries()) {
        SCOPED_TRACE(entry.name);
        const auto message = entry.makeDefault();
        EXPECT_EQ(registry.find(*message), &entry);
        const auto read = registry.create(entry.name, entry.write(*message));
        ASSERT_TRUE(read) << read.error().message;
        EXPECT_TRUE(registry.same(*message, **read));
    }
}

TEST_F(MessageContract, EveryMemberIsWrittenReadAndCompared) {
    for (const auto& entry : registry.entries()) {
        const auto message = entry.makeDefault();
        const Node tree = entry.write(*message);
        for (const vlExport::Member& member : tree.members()) {
            SCOPED_TRACE(entry.name + "." + member.name);
            Node other = tree;
            other.add(member.name, altered(member.value));
            const auto read = registry.create(entry.name, other);
            ASSERT_TRUE(read) << read.error().message;
            EXPECT_EQ(entry.write(**read), other);
            const bool isEmpty =
                    member.value.isNull() || (member.value.isArray() && member.value.size() == 0);
            EXPECT_EQ(registry.same(*message, **read), isEmpty);
        }
    }
}

TEST_F(MessageContract, AMissingOrAForeignMemberIsRefusedByName) {
    for (const auto& entry : registry.entries()) {
        SCOPED_TRACE(entry.name);
        const Node tree = entry.write(*entry.makeDefault());
        Node foreign = tree;
        foreign.add("nobodyKnows", 1);
        const auto read = registry.create(entry.name, foreign);
        ASSERT_FALSE(read);
        EXPECT_EQ(read.error().message, entry.name + ": nobodyKnows: is not known here");
        for (const vlExport::Member& member : tree.members()) {
            Node lacking = tree;
            lacking.remove(member.name);
            EXPECT_EQ(registry.create(entry.name, lacking).error().message,
                      entry.name + ": " + member.name + ": is missing");
        }
    }
}

TEST_F(MessageContract, PrintsItsNameOnOneLine) {
    for (const auto& entry : registry.entries()) {
        const std::string line = registry.print(*entry.makeDefault());
        EXPECT_TRUE(line.starts_with(entry.name + " {")) << line;
        EXPECT_EQ(line.find('\n'), std::string::npos) << line;
    }
}

} // namespace
} // namespace vlEditor
