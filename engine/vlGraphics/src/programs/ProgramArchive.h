#pragma once
#include "programs/CompileRequest.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace vlGraphics {

/// What became of a compilation and what it included, as bytes for this machine and build only.
std::vector<std::byte> toBytes(const CompileReport& report);
/// Nothing where the bytes are not those of a report.
std::optional<CompileReport> reportFrom(std::span<const std::byte> bytes);

} // namespace vlGraphics
