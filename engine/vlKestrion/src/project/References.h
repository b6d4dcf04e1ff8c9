#pragma once
#include <vlExport/Node.h>
#include <vlMemory/String.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

namespace vlKestrion {

/** The names that the declaration files of one project declare, by the list they stand in. */
class DeclaredNames {
public:
    /// A line for each name that an earlier file declares as well; only one of them can be seen.
    void gather(const vlExport::Node& tree,
                vlMemory::StringView file,
                std::vector<vlMemory::String>& errors);
    bool has(vlMemory::StringView list, const vlMemory::String& name) const;

private:
    using Files = std::unordered_map<vlMemory::String, vlMemory::String>; ///< by name
    std::map<vlMemory::String, Files, std::less<>> lists_;
};

/** References to what is not there. However many entities want the same mesh, it is one line: a
 * project must not hide its other faults behind hundreds that have one cause. */
class MissingNames {
public:
    void note(vlMemory::StringView file,
              std::uint32_t line,
              vlMemory::StringView referrer,
              vlMemory::StringView kind,
              vlMemory::StringView name);
    /// In the order in which they were met first.
    void report(std::vector<vlMemory::String>& errors) const;

private:
    struct Missing {
        vlMemory::String line;
        std::size_t more = 0;
    };
    std::vector<Missing> missing_;
    std::map<std::pair<vlMemory::String, vlMemory::String>, std::size_t> indexOf_;
};

} // namespace vlKestrion
