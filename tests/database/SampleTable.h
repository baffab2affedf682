#pragma once

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/database/CeDBIterator.h"
#include "tessera/database/CeDBTable.h"
#include "tests/support/TemporaryStore.h"

namespace testing_support {

inline constexpr WORD rankIdent = 0x500;
inline constexpr WORD nameIdent = 0x501;
inline constexpr WORD noteIdent = 0x502;

inline Database::AttrDef sampleColumns[] = {
    {TEXT("Rank"), CCeDBProp::typeI4, rankIdent},
    {TEXT("Name"), CCeDBProp::typeText, nameIdent},
    {TEXT("Note"), CCeDBProp::typeText, noteIdent},
};
inline const Database::RecordDef sampleSchema(3, sampleColumns);

inline CCeDBProp rank(LONG value) {
    return CCeDBProp::ofI4(rankIdent, value);
}
inline CCeDBProp name(const CString& value) {
    return CCeDBProp::ofText(nameIdent, value);
}
inline CCeDBProp note(const CString& value) {
    return CCeDBProp::ofText(noteIdent, value);
}

/// A record of these properties, in this order.
template <class... Props>
CCeDBRecord recordOf(const Props&... props) {
    CCeDBRecord record;
    (record.addProp(props), ...);
    return record;
}

/// A table "QZ_Sample" of rank, name and note in a new store in memory, open in the order of rank.
class SampleTable : private MemoryStoreMount, public Database::CeDBTable {  // the store outlives the table
public:
    SampleTable() : CeDBTable(TEXT("QZ_Sample"), &sampleSchema) {
        EXPECT_NE(create(), 0u);
        EXPECT_TRUE(openByRank());
    }

    BOOL openByRank() { return open(0, 0, nullptr); }

    DWORD add(const CCeDBRecord& given) {
        CCeDBRecord record = given;
        DWORD oid = 0;
        EXPECT_EQ(insertRecord(&record, oid), S_OK);
        return oid;
    }
    DWORD add(LONG ranked, const CString& named) { return add(recordOf(rank(ranked), name(named), note(TEXT("-")))); }

    /// The records as they are walked.
    std::vector<DWORD> oids() {
        std::vector<DWORD> walked;
        const std::unique_ptr<Database::Iterator> records(getIterator(nullptr, nullptr));
        while (records->next() == S_OK)
            walked.push_back(records->getCur());
        return walked;
    }
};

}  // namespace testing_support
