#pragma once
#include "programs/Digest.h"

#include <vlMemory/String.h>
#include <vlResources/ResourceManager.h>

#include <tl/expected.hpp>

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vlGraphics {

/** A place where #include looked for a file, and what was there. */
struct IncludeProbe {
    vlMemory::String path;         ///< relative to the working directory
    std::optional<Digest> content; ///< nothing: it could not be read
    friend bool operator==(const IncludeProbe&, const IncludeProbe&) = default;
};

/** The files that one compilation reads through #include, each once, so that all its stages see the
 *  same. Only files inside the working directory are read. A value of one thread; what it hands
 *  out lives as long as it does. */
class IncludeFiles {
public:
    static constexpr std::size_t maxFileBytes = std::size_t{4} << 20U;

    struct File {
        vlMemory::String path; ///< relative to the working directory
        std::string text;
        std::string fault;          ///< why it cannot be included; its text is then empty
        vlMemory::StringView guard; ///< see includeGuardOf()
        bool exists = false;
        bool isOnce = false; ///< says "#pragma once"
        std::size_t index = 0;
    };

    /// An empty working path has no files. The sources themselves lie in the folder, which is
    /// relative to the working path. Names are told with the prefix before the path.
    IncludeFiles(vlMemory::StringView workingPath,
                 vlMemory::StringView folder,
                 vlMemory::StringView prefix);

    /// The file that is meant by a name, in quotes (local) or in angle brackets, within a file or,
    /// where that is null, within the sources themselves. An error says why there is none.
    tl::expected<const File*, std::string>
    find(vlMemory::StringView name, bool isLocal, const File* includer);

    /// By the number of its order.
    const File& at(std::size_t index) const { return *order_[index]; }
    std::size_t count() const { return order_.size(); }

    /// Every place looked at, for saying later whether all is as it was.
    std::vector<IncludeProbe> probes() const;
    /// A file as it is told.
    vlMemory::String nameOf(const File& file) const { return prefix_ + file.path; }
    /// The files read, and those that were asked for and are not there; each once.
    std::vector<vlMemory::String> names() const;

private:
    const File* read(const vlMemory::String& path);

    vlResources::ResourceManager files_; ///< its own: the common one belongs to another thread
    vlMemory::String workingPath_;
    vlMemory::String folder_;
    vlMemory::String prefix_;
    std::map<vlMemory::String, File> known_; ///< by path; those not there have a fault
    std::map<vlMemory::String, std::optional<Digest>> contents_;
    std::vector<const File*> order_;
    std::set<vlMemory::String> missed_; ///< asked for, and no other is in its stead
};

/// What is now at the places of earlier probes is what was there.
bool areUnchanged(vlMemory::StringView workingPath, const std::vector<IncludeProbe>& probes);

/** The way of one stage through the files it includes. */
class IncludeWalk {
public:
    static constexpr std::size_t maxDepth = 32;
    static constexpr std::size_t maxFiles = 1024;                  ///< counting each time
    static constexpr std::size_t maxBytes = std::size_t{4} << 20U; ///< of all, likewise

    explicit IncludeWalk(IncludeFiles& files) : files_(files) {}

    /// Steps into the file, which leave() ends. Null: the file is there, and "#pragma once" says
    /// that it has been read; there is nothing to leave. An error says why it cannot be included.
    tl::expected<const IncludeFiles::File*, std::string> enter(vlMemory::StringView name,
                                                               bool isLocal);
    void leave();
    /// Null in the sources themselves.
    const IncludeFiles::File* current() const { return open_.empty() ? nullptr : open_.back(); }

private:
    IncludeFiles& files_;
    std::vector<const IncludeFiles::File*> open_;
    std::vector<bool> entered_; ///< by a file's index
    std::size_t fileCount_ = 0;
    std::size_t byteCount_ = 0;
};

} // namespace vlGraphics
