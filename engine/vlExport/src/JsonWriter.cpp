#include <vlExport/JsonExporter.h>
#include <vlMemory/Utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace vlExport {

namespace {

constexpr std::size_t numbersOnALine = 16;

class JsonWriter {
public:
    void write(const Node& node, std::size_t depth) {
        switch (node.type()) {
        case Node::Type::null:
            text_ += "null";
            break;
        case Node::Type::boolean:
            text_ += *node.asBool() ? "true" : "false";
            break;
        case Node::Type::integer:
        case Node::Type::real:
            writeNumber(node);
            break;
        case Node::Type::string:
            writeString(*node.asString());
            break;
        case Node::Type::array:
            writeArray(node.elements(), depth);
            break;
        case Node::Type::object:
            writeObject(node.members(), depth);
            break;
        }
    }

    vlMemory::String take() {
        text_ += '\n';
        return std::move(text_);
    }

private:
    void newLine(std::size_t depth) {
        text_ += '\n';
        text_.append(2 * depth, ' ');
    }

    template <class T> void append(T number) {
        std::array<char, 40> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        text_.append(digits.data(), end);
    }

    void writeNumber(const Node& node) {
        if (node.isInteger()) {
            if (const auto value = node.asUnsigned()) return append(*value);
            return append(*node.asSigned());
        }
        const double value = *node.asDouble();
        const std::size_t start = text_.size();
        if (std::isnan(value)) {
            text_ += '0';
        } else {
            constexpr double largest = std::numeric_limits<double>::max();
            append(std::clamp(value, -largest, largest));
        }
        // A real stays one when it is read back.
        if (text_.find_first_of(".e", start) == vlMemory::String::npos) text_ += ".0";
    }

    void writeString(vlMemory::StringView value) {
        text_ += '"';
        while (!value.empty()) {
            const std::size_t length = vlMemory::utf8Length(value);
            if (length == 0) {
                text_ += "\xEF\xBF\xBD";
                value.remove_prefix(1);
                continue;
            }
            if (length == 1) {
                writeAscii(value.front());
            } else {
                text_ += value.substr(0, length);
            }
            value.remove_prefix(length);
        }
        text_ += '"';
    }

    void writeAscii(char character) {
        switch (character) {
        case '"':
            text_ += "\\\"";
            return;
        case '\\':
            text_ += "\\\\";
            return;
        case '\n':
            text_ += "\\n";
            return;
        case '\r':
            text_ += "\\r";
            return;
        case '\t':
            text_ += "\\t";
            return;
        default:
            break;
        }
        const auto code = static_cast<unsigned char>(character);
        if (code >= 0x20) {
            text_ += character;
            return;
        }
        constexpr vlMemory::StringView digits = "0123456789abcdef";
        text_ += "\\u00";
        text_ += digits[code >> 4U];
        text_ += digits[code & 15U];
    }

    void writeArray(std::span<const Node> elements, std::size_t depth) {
        const bool numbers = std::all_of(
                elements.begin(), elements.end(), [](const Node& e) { return e.isNumber(); });
        text_ += '[';
        const bool lines = !numbers || elements.size() > numbersOnALine;
        for (std::size_t index = 0; index < elements.size(); ++index) {
            if (index > 0) text_ += ',';
            if (lines && (!numbers || index % numbersOnALine == 0)) {
                newLine(depth + 1);
            } else if (index > 0) {
                text_ += ' ';
            }
            write(elements[index], depth + 1);
        }
        if (lines) newLine(depth);
        text_ += ']';
    }

    void writeObject(std::span<const Member> members, std::size_t depth) {
        text_ += '{';
        for (std::size_t index = 0; index < members.size(); ++index) {
            if (index > 0) text_ += ',';
            newLine(depth + 1);
            writeString(members[index].name);
            text_ += ": ";
            write(members[index].value, depth + 1);
        }
        if (!members.empty()) newLine(depth);
        text_ += '}';
    }

    vlMemory::String text_;
};

} // namespace

vlMemory::String JsonExporter::exportTreeIntoString(const Node& tree) {
    JsonWriter writer;
    writer.write(tree, 0);
    return writer.take();
}

} // namespace vlExport
