#pragma once
#include "programs/CompileRequest.h"
#include "programs/Digest.h"

#include <vlMemory/String.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace vlGraphics {

/** Compiled programs, kept in a folder from run to run, one file each. What another build of this
 *  program wrote, what is damaged, and what included files that have changed since then is not
 *  found. Several threads and several programs may use one folder at once. Nothing fails: what
 *  cannot be kept is compiled again. */
class ProgramCache {
public:
    static constexpr std::uintmax_t defaultMaxBytes = std::uintmax_t{128} << 20U;

    /// The folder is made when something is kept. Of more bytes than that the files unused for
    /// longest go, now and then.
    explicit ProgramCache(vlMemory::StringView folder, std::uintmax_t maxBytes = defaultMaxBytes);
    ~ProgramCache();
    ProgramCache(const ProgramCache&) = delete;
    ProgramCache& operator=(const ProgramCache&) = delete;

    std::optional<CompileReport> find(const CompileRequest& request) const;
    /// Failures are not kept.
    void keep(const CompileRequest& request, const CompileReport& report);

private:
    vlMemory::String pathOf(const Digest& key) const;
    void removeOldest() const;

    vlMemory::String folder_;
    std::uintmax_t maxBytes_;
    std::atomic<std::uint64_t> written_ = 0;
};

} // namespace vlGraphics
