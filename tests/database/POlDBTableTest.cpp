#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/database/POlDBIterator.h"
#include "tessera/database/POlDBTable.h"
#include "tessera/phonebook/model/PBAttributes.h"
#include "tessera/phonebook/model/PBRecord.h"
#include "tessera/phonebook/model/Schemas.h"
#include "tests/platform/objectstore/CountingStore.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

namespace Database {
namespace {

using PhoneBook::PBRecord;
using testing_support::MemoryStoreMount;

class ContactsTable : public POlDBTable {
public:
    ContactsTable() : POlDBTable(TEXT("QZ_POlContacts"), &PhoneBook::aRecDef_[0], olFolderContacts) {}
    using POlDBTable::splitName;
};

/// A row of the contacts table: ten properties in attribute order.
std::vector<CCeDBProp> rowNamed(const WCHAR* name) {
    std::vector<CCeDBProp> row;
    const RecordDef& schema = PhoneBook::aRecDef_[0];
    for (int i = 0; i < schema.getNumAttrs(); ++i) {
        row.emplace_back(schema.getAttrDef(i)->getType(), schema.getAttrIdent(i));
    }
    row[0] = CCeDBProp::ofText(schema.getAttrIdent(0), name);
    return row;
}

CCeDBProp text(const WCHAR* value) {
    return CCeDBProp::ofText(0, value);
}

DWORD insert(POlDBTable& table, std::vector<CCeDBProp> row) {
    DWORD oid = 0;
    EXPECT_EQ(S_OK, table.insertRecord(row.data(), oid));
    return oid;
}

CString fieldOf(POlDBTable& table, DWORD oid, HRESULT (IContact::*get)(BSTR*)) {
    ComPtr<IDispatch> item;
    EXPECT_EQ(S_OK, table.getItemFromOid(oid, item.out()));
    Bstr value;
    (static_cast<IContact*>(item.get())->*get)(value.out());
    return value.text();
}

PBRecord callerInfo(POlDBTable& table, DWORD oid, DWORD mask, HRESULT expected, DWORD expectedFound) {
    ComPtr<IDispatch> item;
    EXPECT_EQ(S_OK, table.getItemFromOid(oid, item.out()));
    PBRecord record;
    record.dwCITypeMask = mask;
    DWORD found = 0xFFFFFFFF;
    EXPECT_EQ(expected, table.getCallerInfo(static_cast<IContact*>(item.get()), &record, &found));
    EXPECT_EQ(expectedFound, found);
    return record;
}

TEST(POlDBTable, AnswersNothingUntilItIsOpen) {
    const MemoryStoreMount store;
    ContactsTable table;
    DWORD oid = 1;
    IPOutlookItemCollection* items = nullptr;
    CCeDBRecord record;

    EXPECT_FALSE(table.isOpen());
    EXPECT_EQ(0u, table.getNumRecords());
    EXPECT_EQ(nullptr, table.getIterator(nullptr, nullptr));
    EXPECT_EQ(nullptr, table.getIterator(nullptr, CString(TEXT("[FileAs] >= \"\""))));
    EXPECT_EQ(nullptr, table.getScanIterator(nullptr, 0, CString(TEXT(""))));
    EXPECT_EQ(E_POINTER, table.getItems(nullptr));
    EXPECT_EQ(E_ACCESSDENIED, table.getItems(&items));
    EXPECT_EQ(E_FAIL, table.deleteRecord(oid));
    EXPECT_EQ(E_FAIL, table.deleteAllRecords());
    EXPECT_EQ(E_FAIL, table.insertRecord(&record, oid));
    EXPECT_EQ(E_FAIL, table.updateRecord(1, &record, 0, nullptr));
    EXPECT_EQ(E_NOTIMPL, table.insertRecord());
    EXPECT_NE(nullptr, table.getApp());
}

TEST(POlDBTable, OpensClosesAndOpensAgain) {
    const MemoryStoreMount store;
    ContactsTable table;

    EXPECT_EQ(0u, table.create());
    EXPECT_EQ(0u, table.getCEOID());
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(table.open(nullptr));
        EXPECT_TRUE(table.open(nullptr)) << "a second time is no fault";
        EXPECT_TRUE(table.isOpen());
        EXPECT_TRUE(table.close());
        EXPECT_FALSE(table.isOpen());
        EXPECT_TRUE(table.close()) << "closing what is closed is no fault";
    }
    EXPECT_TRUE(table.open(nullptr));
    EXPECT_TRUE(table.drop()) << "dropping only closes";
    EXPECT_FALSE(table.isOpen());
}

TEST(POlDBTable, ADifferentFolderIsNotOpen) {
    const MemoryStoreMount store;
    POlDBTable table(TEXT("Appointments"), &PhoneBook::aRecDef_[0], 9);
    EXPECT_TRUE(table.open(nullptr)) << "whether there is such a folder is not looked at";
    EXPECT_FALSE(table.isOpen());
    EXPECT_TRUE(table.close());
}

TEST(POlDBTable, DropLeavesTheContactsInTheStore) {
    const MemoryStoreMount store;
    ContactsTable table;
    table.open(nullptr);
    insert(table, rowNamed(TEXT("Kim")));
    EXPECT_TRUE(table.drop());
    table.open(nullptr);
    EXPECT_EQ(1u, table.getNumRecords());
}

TEST(POlDBTable, InsertsARowByPositionAndLeavesTheBodyOut) {
    const MemoryStoreMount store;
    ContactsTable table;
    table.open(nullptr);
    std::vector<CCeDBProp> row = rowNamed(TEXT("Doe, John"));
    row[1] = text(TEXT("Family;Work"));
    row[2] = text(TEXT("010-1"));
    row[3] = text(TEXT("02-2"));
    row[4] = text(TEXT("02-3"));
    row[5] = text(TEXT("john@example.com"));
    row[6] = text(TEXT("a note"));
    row[7] = CCeDBProp::ofR8(0, 32'937.0);
    row[8] = text(TEXT("012-4"));
    row[9] = text(TEXT("02-5"));

    const DWORD oid = insert(table, row);

    const PBRecord read = callerInfo(table, oid, 0xFFF, S_OK, 0xE3F);
    EXPECT_EQ(CString(TEXT("Doe, John")), read.strName);
    EXPECT_EQ(CString(TEXT("Family,Work")), read.strCategories);
    EXPECT_EQ(CString(TEXT("010-1")), read.strMobileTelephoneNumber);
    EXPECT_EQ(CString(TEXT("02-2")), read.strHomeTelephoneNumber);
    EXPECT_EQ(CString(TEXT("02-3")), read.strBusinessTelephoneNumber);
    EXPECT_EQ(CString(TEXT("john@example.com")), read.strEmail1Address);
    EXPECT_EQ(CString(TEXT("")), read.strBody);
    EXPECT_EQ(32'937.0, read.dtBirthday);
    EXPECT_EQ(CString(TEXT("012-4")), read.strPagerNumber);
    EXPECT_EQ(CString(TEXT("02-5")), read.strBusinessFaxNumber);
    EXPECT_EQ(CString(TEXT("John")), fieldOf(table, oid, &IContact::get_FirstName));
    EXPECT_EQ(CString(TEXT("Doe")), fieldOf(table, oid, &IContact::get_LastName));
}

TEST(POlDBTable, InsertsARecordAsFarAsItGoes) {
    const MemoryStoreMount store;
    ContactsTable table;
    table.open(nullptr);
    CCeDBRecord record;
    record.addProp(text(TEXT("Cher")));
    DWORD oid = 0;

    EXPECT_EQ(S_OK, table.insertRecord(&record, oid));

    EXPECT_NE(0u, oid);
    EXPECT_EQ(CString(TEXT("Cher")), callerInfo(table, oid, 0xFFF, S_OK, 0x1).strName);
    CCeDBRecord empty;
    EXPECT_EQ(E_FAIL, table.insertRecord(&empty, oid));
    EXPECT_EQ(E_FAIL, table.insertRecord(static_cast<CCeDBRecord*>(nullptr), oid));
}

TEST(POlDBTable, ATextThatTheStoreDoesNotTakeInsertsNothing) {
    const MemoryStoreMount store;
    ContactsTable table;
    table.open(nullptr);
    const CString huge(u'x', 40'000);
    std::vector<CCeDBProp> row = rowNamed(huge);
    DWORD oid = 0;
    EXPECT_TRUE(FAILED(table.insertRecord(row.data(), oid)));
    EXPECT_EQ(0u, table.getNumRecords());
}

TEST(POlDBTable, ABirthdayOfZeroIsNoBirthday) {
    const MemoryStoreMount store;
    ContactsTable table;
    table.open(nullptr);
    std::vector<CCeDBProp> row = rowNamed(TEXT("Kim"));
    row[7] = CCeDBProp::ofR8(0, 0.0);

    const DWORD oid = insert(table, row);

    ComPtr<IDispatch> item;
    ASSERT_EQ(S_OK, table.getItemFromOid(oid, item.out()));
    DATE stored = 0;
    static_cast<IContact*>(item.get())->get_Birthday(&stored);
    EXPECT_EQ(949'998.0, stored);
    EXPECT_EQ(949'998.0, callerInfo(table, oid, 0x200, E_FAIL, 0).dtBirthday);
}

TEST(POlDBTable, ABirthdayOnDayZeroReadsAsNone) {
    const MemoryStoreMount store;
    ContactsTable table;
    table.open(nullptr);
    const DWORD oid = insert(table, rowNamed(TEXT("Kim")));
    ComPtr<IDispatch> item;
    ASSERT_EQ(S_OK, table.getItemFromOid(oid, item.out()));
    auto* kim = static_cast<IContact*>(item.get());
    ASSERT_EQ(S_OK, kim->put_Birthday(0.0));  // as another program may write it
    ASSERT_EQ(S_OK, kim->Save());

    EXPECT_EQ(949'998.0, callerInfo(table, oid, 0x200, E_FAIL, 0).dtBirthday);
}

TEST(POlDBTable, CallerInfoFindsNothingWhenAllWantedFieldsAreEmpty) {
    const MemoryStoreMount store;
    ContactsTable table;
    table.open(nullptr);
    const DWORD oid = insert(table, rowNamed(TEXT("Kim")));
    callerInfo(table, oid, 0xC1C, E_FAIL, 0);
    callerInfo(table, oid, 0, E_FAIL, 0);
    callerInfo(table, oid, 0xC1D, S_OK, 0x1);

    PBRecord record;
    EXPECT_EQ(E_FAIL, table.getCallerInfo(nullptr, &record, nullptr));
    ComPtr<IDispatch> item;
    ASSERT_EQ(S_OK, table.getItemFromOid(oid, item.out()));
    EXPECT_EQ(E_FAIL, table.getCallerInfo(static_cast<IContact*>(item.get()), nullptr, nullptr));
}

TEST(POlDBTable, SplitsNamesByCommaElseByTheFirstSpace) {
    const MemoryStoreMount store;
    ContactsTable table;
    struct Case {
        const WCHAR* name;
        const WCHAR* first;
        const WCHAR* last;
    };
    for (const Case& c :
         {Case{TEXT("김 민수"), TEXT("민수"), TEXT("김")}, Case{TEXT("John Smith"), TEXT("John"), TEXT("Smith")},
          Case{TEXT("Smith, John"), TEXT("John"), TEXT("Smith")}, Case{TEXT("Smith,John"), TEXT("John"), TEXT("Smith")},
          Case{TEXT("Smith,  John"), TEXT(" John"), TEXT("Smith")}, Case{TEXT("Cher"), TEXT("Cher"), TEXT("")},
          Case{TEXT(""), TEXT(""), TEXT("")}, Case{TEXT("김민수"), TEXT("김민수"), TEXT("")},
          Case{TEXT("Anna Maria Lee"), TEXT("Anna"), TEXT("Maria Lee")},
          Case{TEXT("Lee, Anna, Maria"), TEXT("Anna, Maria"), TEXT("Lee")},
          Case{TEXT("\u00c9va Kis"), TEXT("\u00c9va"), TEXT("Kis")},
          Case{TEXT("\u0141ukasz Nowak"), TEXT("Nowak"), TEXT("\u0141ukasz")},
          Case{TEXT("\u00FF b"), TEXT("\u00FF"), TEXT("b")}, Case{TEXT("\u0100 b"), TEXT("b"), TEXT("\u0100")}}) {
        CString first(TEXT("kept?"));
        CString last(TEXT("kept?"));
        EXPECT_EQ(S_OK, table.splitName(CString(c.name), first, last));
        EXPECT_EQ(CString(c.first), first) << CString(c.name);
        EXPECT_EQ(CString(c.last), last) << CString(c.name);
    }
}

TEST(POlDBTable, UpdatesAllAttributesOfAContact) {
    const MemoryStoreMount store;
    ContactsTable table;
    table.open(nullptr);
    std::vector<CCeDBProp> row = rowNamed(TEXT("Kim"));
    row[2] = text(TEXT("010-1"));
    row[7] = CCeDBProp::ofR8(0, 100.0);
    const DWORD oid = insert(table, row);
    std::vector<CCeDBProp> changed = rowNamed(TEXT("Lee Ann"));
    changed[1] = text(TEXT("A;B;C"));
    changed[3] = text(TEXT("02-2"));
    CCeDBRecord record(changed.data(), static_cast<int>(changed.size()));

    EXPECT_EQ(S_OK, table.updateRecord(oid, &record, 0, nullptr));

    const PBRecord read = callerInfo(table, oid, 0xFFF, S_OK, 0xB);
    EXPECT_EQ(CString(TEXT("Lee Ann")), read.strName);
    EXPECT_EQ(CString(TEXT("A,B,C")), read.strCategories);
    EXPECT_EQ(CString(TEXT("Ann")), fieldOf(table, oid, &IContact::get_LastName));
    EXPECT_TRUE(FAILED(table.updateRecord(oid + 1'000, &record, 0, nullptr)));
    CCeDBRecord tooLong;
    tooLong.addProp(text(WString(32'736, u'x').c_str()));
    EXPECT_EQ(E_INVALIDARG, table.updateRecord(oid, &tooLong, 0, nullptr));
    EXPECT_EQ(CString(TEXT("Lee Ann")), fieldOf(table, oid, &IContact::get_FileAs));
    EXPECT_EQ(E_FAIL, table.updateRecord(oid, nullptr, 0, nullptr));
}

TEST(POlDBTable, DeletesOneContactAndAll) {
    const MemoryStoreMount store;
    ContactsTable table;
    table.open(nullptr);
    EXPECT_EQ(S_OK, table.deleteAllRecords()) << "nothing to delete is no fault";
    DWORD oid = insert(table, rowNamed(TEXT("A")));
    insert(table, rowNamed(TEXT("B")));
    insert(table, rowNamed(TEXT("C")));

    EXPECT_EQ(S_OK, table.deleteRecord(oid));
    EXPECT_EQ(2u, table.getNumRecords());
    EXPECT_EQ(E_FAIL, table.deleteRecord(oid)) << "it is gone";
    EXPECT_EQ(S_OK, table.deleteAllRecords());
    EXPECT_EQ(0u, table.getNumRecords());
}

TEST(POlDBTable, FindsTheFirstContactThatARestrictionAdmits) {
    const MemoryStoreMount store;
    ContactsTable table;
    table.open(nullptr);
    insert(table, rowNamed(TEXT("Ann")));
    const DWORD bob = insert(table, rowNamed(TEXT("Bob")));
    insert(table, rowNamed(TEXT("Bob")));

    ComPtr<IDispatch> item;
    ASSERT_EQ(S_OK, table.find(TEXT("[FileAs] = \"Bob\""), item.out()));
    LONG oid = 0;
    static_cast<IContact*>(item.get())->get_Oid(&oid);
    EXPECT_EQ(bob, static_cast<DWORD>(oid));
    EXPECT_EQ(E_INVALIDARG, table.find(TEXT("[FileAs] = Bob"), item.out()));
}

TEST(POlDBTable, ReportsTheSizeOfTheContactsDatabase) {
    const MemoryStoreMount store;
    ContactsTable table;
    const DWORD before = table.getSize();
    table.open(nullptr);
    insert(table, rowNamed(TEXT("Kim")));
    EXPECT_GT(table.getSize(), before);
}

TEST(POlDBTable, NarrowsAnEarlierResult) {
    const MemoryStoreMount store;
    ContactsTable table;
    table.open(nullptr);
    for (const WCHAR* name : {TEXT("Ann"), TEXT("Bob"), TEXT("Carl")})
        insert(table, rowNamed(name));
    CCeDBProp from = text(TEXT("B"));
    const std::unique_ptr<Iterator> fromB(table.getIterator(&from, nullptr));
    ASSERT_NE(nullptr, fromB);
    auto* outer = static_cast<POlDBIterator*>(fromB.get());

    CCeDBProp to = text(TEXT("Bz"));
    const std::unique_ptr<Iterator> onlyBob(table.getIterator(outer, 0, nullptr, &to));
    ASSERT_NE(nullptr, onlyBob);
    EXPECT_EQ(1, onlyBob->getNumItems());
    EXPECT_EQ(CString(TEXT("Bob")), onlyBob->getStringAt(0, 0));
    const std::unique_ptr<Iterator> onlyCarl(table.getIterator(outer, CString(TEXT("[FileAs] > \"Bob\""))));
    ASSERT_NE(nullptr, onlyCarl);
    EXPECT_EQ(CString(TEXT("Carl")), onlyCarl->getStringAt(0, 0));
    EXPECT_EQ(nullptr, table.getIterator(nullptr, 0, nullptr, &to)) << "nothing to narrow";
    EXPECT_EQ(2, outer->getNumItems()) << "the earlier result stays";
}

TEST(POlDBTable, DeletesAllContactsAsOneUnit) {
    objectstore_test::CountingMount store;
    ContactsTable table;
    table.open(nullptr);
    for (const WCHAR* name : {TEXT("Ann"), TEXT("Bob"), TEXT("Carl")})
        insert(table, rowNamed(name));

    store.log.loseNextUnit = true;
    EXPECT_EQ(E_FAIL, table.deleteAllRecords());
    EXPECT_EQ(3u, table.getNumRecords()) << "what was not committed did not happen";
    EXPECT_EQ(S_OK, table.deleteAllRecords());
    EXPECT_EQ(0u, table.getNumRecords());
}

TEST(POlDBTable, DeletesAllContactsWithinAnotherUnit) {
    const MemoryStoreMount store;
    ContactsTable table;
    table.open(nullptr);
    for (int i = 0; i < 50; ++i)
        insert(table, rowNamed(TEXT("Kim")));
    {
        ObjectStoreBatch batch;
        EXPECT_EQ(S_OK, table.deleteAllRecords());
        EXPECT_EQ(0u, table.getNumRecords());
        insert(table, rowNamed(TEXT("Lee")));
        EXPECT_TRUE(batch.end());
    }
    EXPECT_EQ(1u, table.getNumRecords());
}

TEST(POlDBTable, InsertsNothingFromNoProperties) {
    const MemoryStoreMount store;
    ContactsTable table;
    table.open(nullptr);
    DWORD oid = 0;
    EXPECT_EQ(E_FAIL, table.insertRecord(static_cast<CCeDBProp*>(nullptr), oid));
    EXPECT_EQ(E_FAIL, table.insertRecord(static_cast<CCeDBProp*>(nullptr)));
    EXPECT_EQ(0u, table.getNumRecords());
}

TEST(POlDBTable, WithoutARecordDefinitionNamesNoAttribute) {
    const MemoryStoreMount store;
    POlDBTable table;
    ASSERT_TRUE(table.open(nullptr));
    const DWORD oid = insert(table, rowNamed(TEXT("Kim")));
    CCeDBRecord record;
    record.addProp(text(TEXT("Lee")));
    DWORD unused = 0;
    EXPECT_EQ(E_FAIL, table.insertRecord(&record, unused)) << "how many attributes it has is not known";

    CCeDBProp bound = text(TEXT("A"));
    EXPECT_EQ(nullptr, table.getIterator(2, &bound, nullptr));
    EXPECT_EQ(nullptr, table.getIterator(2, nullptr, &bound));
    const std::unique_ptr<Iterator> byName(table.getIterator(0, &bound, nullptr));
    ASSERT_NE(nullptr, byName) << "the name needs no definition";
    EXPECT_EQ(nullptr, table.getIterator(static_cast<POlDBIterator*>(byName.get()), 2, &bound, nullptr));
    EXPECT_EQ(oid, byName->getAt(0));
    const std::unique_ptr<Iterator> unbounded(table.getIterator(2, nullptr, nullptr));
    EXPECT_NE(nullptr, unbounded);
}

}  // namespace
}  // namespace Database
