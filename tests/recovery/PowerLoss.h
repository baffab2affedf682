#pragma once

#include <iosfwd>

#include "tessera/platform/objectstore/ObjectStore.h"

// A program works on a phone book at random until the power goes, again and again on what the disk then held. The
// store must hold what the program had done up to some moment, whole operations only: with full durability up to the
// last moment, where the operation that the cut met may be there or not.

namespace power_loss {

struct Plan {
    unsigned cuts = 0;
    unsigned cutsOfAStore = 0;  ///< So many meet one store; then there is a new one.
    ObjectStore::Options options;
    /// Every cut is to come while SQLite copies its log into the store. Much is written, so that it does so by itself.
    bool inCheckpoints = false;
};

/// What came of it.
struct Outcome {
    unsigned cuts = 0;
    unsigned disks = 0;         ///< What a disk may hold after a cut, several for each.
    unsigned inCheckpoint = 0;  ///< Cuts that came while the store's file was written to,
    unsigned atEnd = 0;         ///< or the program was leaving it.
    unsigned acknowledged = 0;  ///< Operations, in all.
    unsigned foundDone = 0;     ///< Disks that have the operation that the cut met, whole.
    unsigned foundOlder = 0;    ///< Disks that lack operations which had been acknowledged: not with full durability.

    friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome);
};

Outcome expectWholeOperationsAfterCuts(const Plan& plan);

}  // namespace power_loss
