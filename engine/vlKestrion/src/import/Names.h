#pragma once
#include <vlMemory/String.h>

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace vlKestrion {

/// Broken UTF-8 and control characters become '_'; at most 200 bytes; the fallback where nothing
/// is left.
vlMemory::String cleanName(vlMemory::StringView name, vlMemory::StringView fallback);
/// A clean name that is also one part of a path on any file system: no separators, no reserved
/// characters, no leading or trailing dots and blanks.
vlMemory::String cleanFileName(vlMemory::StringView name, vlMemory::StringView fallback);
/// The last part of a path with '/' or '\\' in it.
vlMemory::StringView lastPathPart(vlMemory::StringView path);
/// ASCII letters made small.
vlMemory::String lowerCase(vlMemory::StringView text);

/** Names that are taken. Two names count as one where they differ in the case of ASCII letters
 * only, since some file systems think so. */
class NameSet {
public:
    bool has(vlMemory::StringView name) const { return names_.contains(lowerCase(name)); }
    void add(vlMemory::StringView name) { names_.insert(lowerCase(name)); }
    /// The name, or with " (2)", " (3)" and so on before its extension; taken from now on.
    vlMemory::String unique(vlMemory::StringView name, vlMemory::StringView extension = {});

private:
    std::unordered_set<std::string> names_;
    std::unordered_map<std::string, std::uint64_t> numbers_; ///< last one given to each name
};

} // namespace vlKestrion
