#pragma once

#include <vector>

#include "tests/recovery/FollowLedger.h"

namespace follow_test {

/// Checks the tables of the mounted store against what the writers have done.
/// @param firstHalfMayBeMissed not all that happened in the first half was followed
void expectTablesFollow(const std::vector<Ledger>& ledgers, const std::vector<CEOID>& shared,
                        bool firstHalfMayBeMissed);

}  // namespace follow_test
