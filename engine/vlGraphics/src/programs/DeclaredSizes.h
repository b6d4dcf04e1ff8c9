#pragma once
#include <vlMemory/String.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace vlGraphics {

/** Adds up what a source's structs and variables take, before the compiler sees them: of a large
 *  struct it makes a value for each number, and it goes through structs in structs one by one.
 *  Takes the text's words and marks one after the other, as macros leave them; the texts must last.
 *  What it cannot tell counts as the least that is possible, so that nothing is refused that would
 *  do. */
class DeclaredSizes {
public:
    /// Of a struct. The language has 2048 for what buffers have elements of, and 65536 for a whole
    /// constant buffer.
    static constexpr std::uint64_t maxStructBytes = std::uint64_t{1} << 16U;
    static constexpr std::uint64_t maxBufferBytes = std::uint64_t{1} << 20U; ///< of constants
    static constexpr std::uint64_t maxVariableBytes = std::uint64_t{1} << 24U;

    /// What is too large now, as one line; empty while nothing is.
    std::string take(vlMemory::StringView token);

private:
    using StringView = vlMemory::StringView;
    using Tokens = std::vector<StringView>;
    struct Open {
        StringView name;
        std::size_t depth = 0; ///< of braces within it
        std::uint64_t bytes = 0;
        bool isStruct = false; ///< a constant buffer otherwise
    };
    /// A statement so far.
    struct Statement {
        bool isConstant = false, isTypedef = false;
        bool isNext = false; ///< a name of the same type comes now
        StringView kind;     ///< "struct" and so on, before its brace
        StringView tag;      ///< the name behind that
        StringView last;     ///< word, or what ends a type; empty behind other marks
        std::optional<std::uint64_t> type;
        StringView name;         ///< of what is being declared
        StringView valued;       ///< the name before the initial value
        std::uint64_t count = 1; ///< of the elements
    };
    enum class Expression : std::uint8_t { none, dimension, value };

    void takeWord(StringView word);
    void takeMark(char mark);
    bool takeExpression(StringView token);
    void endExpression();
    void beginExpression(Expression kind);
    void closeBrace();
    void endDeclarator();
    void check(StringView name, std::uint64_t bytes, std::uint64_t most);
    std::uint64_t sizeOf(StringView type) const;

    std::unordered_map<StringView, std::uint64_t> types_;     ///< bytes, by name
    std::unordered_map<StringView, std::uint64_t> constants_; ///< by name
    std::vector<Open> open_;
    std::size_t braces_ = 0;
    std::size_t brackets_ = 0; ///< "(" and "["
    Statement now_;
    Expression expression_ = Expression::none;
    std::size_t expressionDepth_ = 0; ///< of brackets and braces around it
    Tokens words_;                    ///< of the expression
    std::string fault_;
};

} // namespace vlGraphics
