#pragma once

#include <iosfwd>

#include "tessera/platform/objectstore/ObjectStore.h"

// A program that works on a phone book at random is killed at random instants, again and again on the same store. What
// it acknowledged is done again on a store in memory, which says what the store on disk must hold: just that, or that
// and the whole of the operation that the kill met.

namespace work_test {

struct Kills {
    unsigned kills = 0;
    unsigned killsOfAStore = 0;  ///< So many meet one store; then there is a new one.
    ObjectStore::Options options;
};

/// What came of it.
struct Killed {
    unsigned kills = 0;
    unsigned acknowledged = 0;  ///< Operations, in all.
    unsigned atWork = 0;        ///< Kills that met an operation that would change the store:
    unsigned foundDone = 0;     ///< it was there, whole, though nobody had been told;
    unsigned foundAbsent = 0;   ///< nothing of it was there.

    friend std::ostream& operator<<(std::ostream& out, const Killed& killed);
};

/// Goes on until that many kills have come, and half of them have met an operation that would change the store.
Killed expectOnlyWholeOperations(const Kills& plan);

}  // namespace work_test
