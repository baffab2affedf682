#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tessera/platform/base/Types.h"
#include "tessera/platform/objectstore/CCeDBRecord.h"

// All that a client can see in a phone book's store, but for what depends on the clock.

namespace testing_support {

struct StoredRecord {
    CEOID oid = 0;
    CCeDBRecord properties;

    /// The same properties in the same order, numbers bit for bit.
    friend bool operator==(const StoredRecord& left, const StoredRecord& right);
    friend std::ostream& operator<<(std::ostream& out, const StoredRecord& record);
};

struct StoredDatabase {
    WString name;
    CEOID oid = 0;
    DWORD recordCount = 0;  ///< This and the bytes are what the database's information says.
    DWORD byteCount = 0;
    std::vector<StoredRecord> records;  ///< By identifier.
    std::vector<CEOID> walk;            ///< Along the order that it declares, else that of creation.

    friend bool operator==(const StoredDatabase&, const StoredDatabase&) = default;
};

/// A database of the mounted store, each record read by the object store's own calls; an empty one with the identifier
/// 0 when there is none of that name. Throws when something cannot be read.
StoredDatabase contentsOfDatabase(const WCHAR* name);

/// The databases of a phone book that a store has. Two stores on which the same was done have equal contents,
/// identifiers included, whichever engine keeps them.
struct StoreContents {
    std::vector<StoredDatabase> databases;

    /// Throws when it is not one of a phone book's.
    const StoredDatabase& database(WStringView name) const;

    friend bool operator==(const StoreContents&, const StoreContents&) = default;
    friend std::ostream& operator<<(std::ostream& out, const StoreContents& contents);
};

/// Reads the mounted store: all of it as at one moment. Throws when something cannot be read.
StoreContents contentsOfStore();

/// What is in one and not in the other, a line each: for the message of a failed test.
std::string differencesBetween(const StoreContents& expected, const StoreContents& found);

/// What must hold of every phone book that was worked on by operations of PhoneBookWork.h, and does not hold: a
/// sentence each.
std::vector<std::string> faultsOf(const StoreContents& contents);

/// Walks the databases of the mounted store along each of their attributes (which makes the orders that are not kept
/// yet): a sentence for each walk that does not come to every record once.
std::vector<std::string> faultsOfOrders();

}  // namespace testing_support
