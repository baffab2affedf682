#include <gtest/gtest.h>

#include "tessera/database/CeDBTable.h"
#include "tessera/phonebook/model/Schemas.h"
#include "tests/database/SampleTable.h"
#include "tests/platform/objectstore/CountingStore.h"

namespace Database {
namespace {

using testing_support::MemoryStoreMount;
using testing_support::sampleSchema;
using testing_support::SampleTable;

CEOIDINFOEX infoOf(CEOID database) {
    CEOIDINFOEX info = {};
    EXPECT_TRUE(CeOidGetInfoEx2(database, &info));
    return info;
}

TEST(CeDBTableOpen, ANameThatDoesNotExistLeavesNoDatabaseObject) {
    const MemoryStoreMount store;
    CeDBTable table(TEXT("QZ_Nowhere"), &sampleSchema);

    EXPECT_EQ(table.open(nullptr), FALSE);
    EXPECT_EQ(table.getDB(), nullptr);
    EXPECT_FALSE(table.isOpen());
    EXPECT_EQ(table.open(0, 0, nullptr), FALSE);
    EXPECT_EQ(table.getDB(), nullptr);
}

TEST(CeDBTableOpen, WhenTheDatabaseIsGoneLetsGoOfItAndIsFalse) {
    SampleTable table;
    ASSERT_TRUE(CeDeleteDatabaseEx(table.getCEOID()));

    EXPECT_EQ(table.open(nullptr), FALSE);

    EXPECT_EQ(table.getDB(), nullptr);
    EXPECT_FALSE(table.isOpen());
}

TEST(CeDBTableOpen, OpensWhatWasCreatedAndStaysOpen) {
    const MemoryStoreMount store;
    CeDBTable table(TEXT("QZ_Sample"), &sampleSchema);
    ASSERT_NE(table.create(), 0u);

    EXPECT_FALSE(table.isOpen());
    EXPECT_TRUE(table.open(nullptr));
    EXPECT_TRUE(table.isOpen());
    const CCeDBDatabase* const opened = table.getDB();
    EXPECT_TRUE(table.open(nullptr));
    EXPECT_EQ(table.getDB(), opened);
    EXPECT_TRUE(table.isOpen());
}

TEST(CeDBTableOpen, WhileOpenKeepsTheOrderItHas) {
    SampleTable table;
    const DWORD second = table.add(2, TEXT("a"));
    const DWORD first = table.add(1, TEXT("b"));

    EXPECT_TRUE(table.open(0, CEDB_SORT_DESCENDING, nullptr));

    EXPECT_EQ(table.oids(), (std::vector<DWORD>{first, second}));
}

TEST(CeDBTableOpen, WithoutASortAttributeTakesTheOrderOfCreation) {
    SampleTable table;
    const DWORD first = table.add(2, TEXT("b"));
    const DWORD second = table.add(1, TEXT("a"));

    table.close();
    ASSERT_TRUE(table.open(nullptr));

    EXPECT_EQ(table.oids(), (std::vector<DWORD>{first, second}));
}

TEST(CeDBTableOpen, SortsOnAnyAttributeEitherWay) {
    SampleTable table;
    const DWORD one = table.add(1, TEXT("c"));
    const DWORD two = table.add(2, TEXT("a"));
    const DWORD three = table.add(3, TEXT("b"));

    table.close();
    ASSERT_TRUE(table.open(0, CEDB_SORT_DESCENDING, nullptr));
    EXPECT_EQ(table.oids(), (std::vector<DWORD>{three, two, one}));
    table.close();
    ASSERT_TRUE(table.open(1, 0, nullptr));
    EXPECT_EQ(table.oids(), (std::vector<DWORD>{two, three, one}));
}

TEST(CeDBTableCreate, AnswersTheIdentifierOfANewDatabase) {
    const MemoryStoreMount store;
    CeDBTable table(TEXT("QZ_Sample"), &sampleSchema);

    const DWORD created = table.create();

    EXPECT_NE(created, 0u);
    EXPECT_EQ(table.getCEOID(), created);
    EXPECT_EQ(CString(infoOf(created).szDbaseName), TEXT("QZ_Sample"));
    EXPECT_EQ(infoOf(created).dwDbaseType, 0u);
}

TEST(CeDBTableCreate, ANameThatIsTakenGivesZero) {
    const MemoryStoreMount store;
    CeDBTable table(TEXT("QZ_Sample"), &sampleSchema);
    CeDBTable other(TEXT("QZ_Sample"), &sampleSchema);
    ASSERT_NE(table.create(), 0u);

    EXPECT_EQ(other.create(), 0u);
}

TEST(CeDBTableCreate, WhileOpenFailsAndLeavesTheTableOpen) {
    SampleTable table;
    const DWORD oid = table.add(1, TEXT("a"));

    EXPECT_EQ(table.create(), 0u);

    EXPECT_TRUE(table.isOpen());
    EXPECT_EQ(table.oids(), std::vector<DWORD>{oid});
}

TEST(CeDBTableCreate, OnlyTheCallHistoryHasASortOrderOfItsOwn) {
    const MemoryStoreMount store;
    for (int id = PhoneBook::PBDBTBL_PHONEBOOKEXT; id <= PhoneBook::PBDBTBL_CALLHISTORY; ++id) {
        CeDBTable table(PhoneBook::aszTableName_[static_cast<std::size_t>(id)], &PhoneBook::aRecDef_[id]);

        const CEOIDINFOEX info = infoOf(table.create());

        if (id != PhoneBook::PBDBTBL_CALLHISTORY) {
            EXPECT_EQ(info.wNumSortOrder, 0) << id;
            continue;
        }
        ASSERT_EQ(info.wNumSortOrder, 1);
        EXPECT_EQ(info.rgSortSpecs[0].propid, makePropId(0x400, CEVT_FILETIME));
        EXPECT_EQ(info.rgSortSpecs[0].dwFlags, CEDB_SORT_DESCENDING);
    }
}

TEST(CeDBTableCreate, TakesTheFirstFourSortedAttributes) {
    const MemoryStoreMount store;
    AttrDef columns[] = {
        {TEXT("a"), CCeDBProp::typeI4, 1, 1},   {TEXT("b"), CCeDBProp::typeI4, 2},
        {TEXT("c"), CCeDBProp::typeText, 3, 2}, {TEXT("d"), CCeDBProp::typeI2, 4, 4},
        {TEXT("e"), CCeDBProp::typeUI4, 5, 1},  {TEXT("f"), CCeDBProp::typeUI2, 6, 1},
    };
    const RecordDef schema(6, columns);
    CeDBTable table(TEXT("QZ_Sorted"), &schema);

    const CEOIDINFOEX info = infoOf(table.create());

    ASSERT_EQ(info.wNumSortOrder, 4);
    const int sorted[] = {0, 2, 3, 4};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(info.rgSortSpecs[i].propid, columns[sorted[i]].getProp().getPropId()) << i;
        EXPECT_EQ(info.rgSortSpecs[i].dwFlags, columns[sorted[i]].getSortFlags()) << i;
    }
}

TEST(CeDBTableClose, IsFalseWhenThereIsNothingToClose) {
    SampleTable table;
    CeDBTable neverOpened(TEXT("QZ_Sample"), &sampleSchema);

    EXPECT_EQ(neverOpened.close(), FALSE);
    EXPECT_EQ(table.close(), TRUE);
    EXPECT_EQ(table.close(), FALSE);
}

TEST(CeDBTableOpen, KeepsTheDatabaseObjectWhenTheStoreCannotTell) {
    objectstore_test::CountingMount store;
    CeDBTable table(TEXT("QZ_Sample"), &sampleSchema);
    ASSERT_NE(table.create(), 0u);
    CCeDBDatabase* const made = table.getDB();

    store.log.findError = ERROR_GEN_FAILURE;
    EXPECT_EQ(table.open(nullptr), FALSE);
    EXPECT_EQ(table.getDB(), made);

    store.log.findError = ERROR_SUCCESS;
    EXPECT_EQ(table.open(nullptr), TRUE);
    EXPECT_EQ(table.getDB(), made);
}

TEST(CeDBTableReopen, LetsGoOfADatabaseThatIsGone) {
    SampleTable table;
    ASSERT_TRUE(CeDeleteDatabaseEx(table.getCEOID()));

    EXPECT_EQ(table.reopen(1), FALSE);

    EXPECT_EQ(table.getDB(), nullptr);
    EXPECT_FALSE(table.isOpen());
}

TEST(CeDBTableReopen, KeepsTheOrderItHasWhenThereIsNoneByThatAttribute) {
    const MemoryStoreMount store;
    AttrDef columns[] = {{TEXT("Rank"), CCeDBProp::typeI4, testing_support::rankIdent},
                         {TEXT("Picture"), CCeDBProp::typeBlob, 0x510}};
    const RecordDef schema(2, columns);
    CeDBTable table(TEXT("QZ_Pictures"), &schema);
    ASSERT_NE(table.create(), 0u);
    ASSERT_TRUE(table.open(0, 0, nullptr));
    const CCeDBDatabase* const opened = table.getDB();

    EXPECT_EQ(table.reopen(1), FALSE);

    EXPECT_EQ(table.getDB(), opened);
    EXPECT_TRUE(table.isOpen());
}

TEST(CeDBTableClose, KeepsTheDatabaseObjectForTheNextOpen) {
    SampleTable table;
    const DWORD oid = table.add(1, TEXT("a"));

    table.close();

    EXPECT_FALSE(table.isOpen());
    EXPECT_NE(table.getDB(), nullptr);
    EXPECT_TRUE(table.openByRank());
    EXPECT_EQ(table.oids(), std::vector<DWORD>{oid});
}

TEST(CeDBTableDrop, RemovesTheDatabaseWhetherOpenOrNot) {
    SampleTable table;

    EXPECT_TRUE(table.drop());
    EXPECT_EQ(table.getDB(), nullptr);
    EXPECT_EQ(table.getCEOID(), 0u);
    EXPECT_FALSE(table.isOpen());
    EXPECT_EQ(table.open(nullptr), FALSE);

    ASSERT_NE(table.create(), 0u);
    EXPECT_TRUE(table.drop());
    EXPECT_FALSE(CCeDBDatabase::exists(TEXT("QZ_Sample")));
}

TEST(CeDBTableDrop, OfADatabaseThatDoesNotExistIsFalse) {
    const MemoryStoreMount store;
    CeDBTable table(TEXT("QZ_Nowhere"), &sampleSchema);

    EXPECT_EQ(table.drop(), FALSE);
    EXPECT_EQ(table.getDB(), nullptr);
}

}  // namespace
}  // namespace Database
