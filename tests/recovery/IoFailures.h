#pragma once

#include <span>

#include "tests/recovery/ManagerOperations.h"

namespace recovery {

/// Tries each operation with one of its calls to the disk failing, or all from that one on: as errors, and as on a full
/// disk.
/// @param stride 1: every call in each of the four ways; else about one in so many, the ways in turn
void failCallsToDisk(std::span<const ManagerOperation> operations, int stride);

}  // namespace recovery
