#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <random>
#include <string>

#include "tests/support/TemporaryStore.h"

// A phone book's store that something has happened to: opened, read, examined and saved it either works or the library
// says what is wrong, the file staying as it is. Whatever else happens ends the test program.

namespace damage_test {

/// What came of damaged stores, one count each.
struct Outcomes {
    unsigned stores = 0;
    unsigned refused = 0;    ///< To open.
    unsigned found = 0;      ///< By the full examination.
    unsigned tried = 0;      ///< To be saved, and to be written to, which takes the disk's time: every eighth.
    unsigned recovered = 0;  ///< Something of it could be saved.
    unsigned written = 0;    ///< A contact could be added after all.

    friend std::ostream& operator<<(std::ostream& out, const Outcomes& outcomes);
};

class DamagedStore {
public:
    /// A whole store, worked on at random, and closed.
    explicit DamagedStore(unsigned seed);

    std::string& wholeBytes() { return whole_; }
    /// A place whose change does no damage: the version of the sort keys, for which a program that opens the store just
    /// makes the keys anew.
    bool isVersionOfKeys(std::size_t place) const;

    /// Puts these bytes in the store's place and does everything with it.
    void meet(const std::string& bytes, Outcomes& outcomes);

private:
    void recover(Outcomes& outcomes);

    testing_support::TemporaryFolder folder_;
    std::string path_;
    std::string whole_;
    std::size_t versionAt_ = 0;
    std::size_t versionLength_ = 0;
};

/// One byte changed, at so many places.
Outcomes changeBytes(DamagedStore& store, unsigned places, std::mt19937& random);
/// Cut off, at so many places.
Outcomes cutShort(DamagedStore& store, unsigned places, std::mt19937& random);
/// A page replaced, by another one of the store, zeros or anything, so many times.
Outcomes replacePages(DamagedStore& store, unsigned pages, std::mt19937& random);

}  // namespace damage_test
