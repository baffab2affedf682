#pragma once

#include <span>

#include "tests/recovery/ManagerOperations.h"

namespace recovery {

/// Tries each operation with one of its allocations failing: one of the library's, or of SQLite's, or all of SQLite's
/// from that one on.
/// @param stride 1: every allocation; else about one in so many
void failAllocations(std::span<const ManagerOperation> operations, int stride);

}  // namespace recovery
