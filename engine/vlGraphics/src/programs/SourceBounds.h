#pragma once
#include "programs/DeclaredSizes.h"
#include "programs/IncludeFiles.h"

#include <vlMemory/String.h>

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace vlGraphics {

/// What is wrong at a place of a source.
struct SourceFault {
    const IncludeFiles::File* file = nullptr; ///< null: the source itself
    std::size_t line = 1;
    std::string text;
};

/** Says whether a source is of a size that the compiler can take: it descends its stack with
 * brackets, with operators of one statement and with branches, follows macros however often they
 * double, and doubles its work with each bracket of an initial value that is one too many. Looks at
 * the text as it is after macros are expanded, taking all branches of #if. Any thread. */
class SourceBounds {
public:
    static constexpr std::size_t maxNesting = 256;        ///< open brackets at one place
    static constexpr std::size_t maxInitialisers = 12;    ///< of them, those of initial values
    static constexpr std::size_t maxOperators = 1U << 16; ///< marks in one statement
    static constexpr std::size_t maxBranches = 1U << 12;  ///< words such as "if" and "for"
    static constexpr std::size_t maxExpanded = 1U << 20;  ///< words and marks made by macros

    /// Different ones: the compiler looks each up among all that came before.
    static constexpr std::size_t maxNumbers = 1U << 15U;

    /// What is too much. Follows #include where there is a walk to follow it with; what cannot be
    /// included is left to the compiler. Macros stay known for the texts that follow, and so all
    /// texts must last.
    std::optional<SourceFault> findFault(vlMemory::StringView text, IncludeWalk* walk = nullptr);

private:
    using Tokens = std::vector<vlMemory::StringView>;
    struct Macro {
        bool takesArguments = false;
        Tokens parameters;
        Tokens body;
        bool isActive = false; ///< being expanded: within itself a macro's name is a plain word
    };
    struct Environment;
    struct Argument {
        const vlMemory::StringView* first = nullptr;
        const vlMemory::StringView* last = nullptr;
        const Environment* environment = nullptr;
    };
    struct Environment {
        const Macro* macro = nullptr;
        std::vector<Argument> arguments;
    };

    void scan(vlMemory::StringView text);
    void scanLine(const Tokens& tokens);
    void include(const Tokens& tokens);
    void define(const Tokens& tokens);
    void visit(const Argument& list, std::size_t depth);
    const vlMemory::StringView*
    expand(Macro& macro, const vlMemory::StringView* at, const Argument& list, std::size_t depth);
    void count(vlMemory::StringView token);
    void countNumber(vlMemory::StringView token);
    void fail(std::string text);

    std::unordered_map<vlMemory::StringView, Macro> macros_; ///< names point into the texts
    IncludeWalk* walk_ = nullptr;
    std::string fault_;
    std::optional<SourceFault> placed_; ///< the same with its place
    std::size_t nesting_ = 0;
    std::size_t initialisers_ = 0; ///< open brackets of initial values
    vlMemory::StringView last_;    ///< counted
    std::size_t operators_ = 0;
    std::size_t branches_ = 0;
    std::size_t expanded_ = 0;
    vlMemory::StringView number_; ///< so far: a fraction comes in several words
    std::unordered_set<vlMemory::StringView> numbers_;
    DeclaredSizes sizes_;
};

} // namespace vlGraphics
