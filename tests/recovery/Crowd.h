#pragma once

#include <chrono>
#include <iosfwd>

#include "tessera/platform/objectstore/ObjectStore.h"

// Several programs write to one store at once, beside one that holds it for long again and again. What each was told is
// done must be there at the end, nothing may be there that nobody did, and no call may take for ever.

namespace crowd_test {

struct Crowd {
    unsigned programs = 0;
    unsigned operationsOfEach = 0;
    ObjectStore::Options options;
    /// What a call may take beyond the wait for other writers: its own work, the look for its turn every millisecond,
    /// and the wait for a processor among so many programs on few of them, under sanitizers, which is most of it.
    std::chrono::milliseconds margin{5'000};
};

/// What came of it.
struct Figures {
    unsigned calls = 0;
    unsigned refused = 0;  ///< They waited in vain.
    std::chrono::milliseconds longest{0};
    unsigned unitsOfTheBusyOne = 0;  ///< Each held the store for 60 ms.

    friend std::ostream& operator<<(std::ostream& out, const Figures& figures);
};

/// No store may be mounted.
Figures expectNothingLostInTheCrowd(const Crowd& crowd);

}  // namespace crowd_test
