#pragma once
#include <cstdint>

namespace bench {

/// Of the whole program since its start, on all threads. Counted where allocation_count.cpp is
/// linked.
std::uint64_t allocationCount();

} // namespace bench
