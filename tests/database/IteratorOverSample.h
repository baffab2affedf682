#pragma once

#include "tests/database/SampleTable.h"

namespace testing_support {

/// An iterator whose position can be looked at.
class OpenIterator : public Database::CeDBIterator {
public:
    using CeDBIterator::CeDBIterator;
    using CeDBIterator::curIdx;
    using CeDBIterator::curOid;
    using CeDBIterator::init;
    using CeDBIterator::sortIdx;
};

/// A sample table of three records, ranked 1 to 3 and named a to c.
class ThreeRecords : public SampleTable {
public:
    DWORD first = add(1, TEXT("a"));
    DWORD second = add(2, TEXT("b"));
    DWORD third = add(3, TEXT("c"));
};

}  // namespace testing_support
