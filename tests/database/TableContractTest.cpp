#include <type_traits>

#include <gtest/gtest.h>

#include "tessera/database/Iterator.h"
#include "tessera/database/Table.h"
#include "tests/database/VirtualSlot.h"

namespace Database {
namespace {

using testing_support::callSlot;

static_assert(std::has_virtual_destructor_v<Table>);
static_assert(std::has_virtual_destructor_v<Iterator>);
static_assert(std::is_copy_constructible_v<Table> && std::is_copy_assignable_v<Table>);
static_assert(std::is_abstract_v<Iterator>);
static_assert(Iterator::nInvalidItemIdx_ == -1);

AttrDef columns[] = {{TEXT("ID"), CCeDBProp::typeUI4, 0x300}, {TEXT("Name"), CCeDBProp::typeText, 0x301}};
AttrDef otherColumns[] = {{TEXT("Only"), CCeDBProp::typeBool, 0x302}};
const RecordDef schema(2, columns);
RecordDef otherSchema(1, otherColumns);

TEST(Table, ThatOverridesNothingAnswersZeroFalseOrNull) {
    Table table(TEXT("QZ_Nothing"), &schema);

    EXPECT_EQ(table.create(), 0u);
    EXPECT_EQ(table.open(nullptr), FALSE);
    EXPECT_EQ(table.close(), FALSE);
    EXPECT_EQ(table.drop(), FALSE);
    EXPECT_FALSE(table.isOpen());
    EXPECT_EQ(table.getSize(), 0u);
    EXPECT_EQ(table.getNumRecords(), 0u);
    EXPECT_EQ(table.getCEOID(), 0u);
    EXPECT_EQ(table.getIterator(0, nullptr, nullptr), nullptr);
    EXPECT_EQ(table.getIterator(nullptr, nullptr), nullptr);
}

TEST(Table, ThatOverridesNothingImplementsNoRecordOperation) {
    Table table(TEXT("QZ_Nothing"), &schema);
    CCeDBRecord record;
    CCeDBProp prop;
    DWORD oid = 7;

    EXPECT_EQ(table.insertRecord(&record, oid), E_NOTIMPL);
    EXPECT_EQ(table.insertRecord(&prop, oid), E_NOTIMPL);
    EXPECT_EQ(table.insertRecord(), E_NOTIMPL);
    EXPECT_EQ(table.insertRecord(&record), E_NOTIMPL);
    EXPECT_EQ(table.insertRecord(&prop), E_NOTIMPL);
    EXPECT_EQ(table.deleteRecord(prop), E_NOTIMPL);
    EXPECT_EQ(table.deleteRecord(oid), E_NOTIMPL);
    EXPECT_EQ(table.deleteAllRecords(), E_NOTIMPL);
    EXPECT_EQ(table.updateRecord(oid, &record, 0, &prop), E_NOTIMPL);
    EXPECT_EQ(table.queryRecord(prop, &oid, &record), E_NOTIMPL);
    EXPECT_EQ(table.queryRecord(prop, &record), E_NOTIMPL);
    EXPECT_EQ(static_cast<DWORD>(E_NOTIMPL), 0x80004001u);
    EXPECT_EQ(oid, 7u);
}

TEST(Table, AnswersItsNameAndItsSchema) {
    Table table(TEXT("QZ_Nothing"), &schema);

    EXPECT_EQ(table.getName(), TEXT("QZ_Nothing"));
    EXPECT_EQ(table.getRecordDef(), &schema);
    EXPECT_EQ(table.getNumAttrs(), 2);
    EXPECT_EQ(table.getAttrDef(1), &columns[1]);
    EXPECT_EQ(&table.getAttrName(0), &columns[0].getName());
    EXPECT_EQ(table.getAttrIdent(1), 0x301);
}

TEST(Table, CopiesShareTheSchemaAndHaveTheNameThemselves) {
    Table original(TEXT("QZ_Original"), &schema);
    Table assigned(TEXT("QZ_Other"), &otherSchema);

    Table copied = original;
    assigned = original;
    original.getName() = TEXT("QZ_Changed");

    for (Table* copy : {&copied, &assigned}) {
        EXPECT_EQ(copy->getName(), TEXT("QZ_Original"));
        EXPECT_EQ(copy->getRecordDef(), &schema);
    }
}

class TableWithItsOwnSchema : public Table {
public:
    TableWithItsOwnSchema() : Table(TEXT("QZ_Own"), nullptr) {}
    RecordDef* getRecordDef() override { return &otherSchema; }
};

TEST(Table, SchemaAccessorsFollowADerivedTablesSchema) {
    TableWithItsOwnSchema table;

    EXPECT_EQ(table.getNumAttrs(), 1);
    EXPECT_EQ(table.getAttrDef(0), &otherColumns[0]);
    EXPECT_EQ(table.getAttrName(0), TEXT("Only"));
    EXPECT_EQ(table.getAttrIdent(0), 0x302);
}

/// Names every operation by the place where it expects itself to stand.
class TracingTable : public Table {
public:
    TracingTable() : Table(TEXT("QZ_Traced"), &otherSchema) {}
    ~TracingTable() override {
        if (lastDestroyed != nullptr) *lastDestroyed = true;
    }

    DWORD create() override { return 1; }
    BOOL open(CWnd*) override { return 2; }
    BOOL close() override { return 3; }
    BOOL drop() override { return 4; }
    bool isOpen() override { return (called = 5) != 0; }
    DWORD getSize() override { return 6; }
    DWORD getNumRecords() override { return 7; }
    DWORD getCEOID() override { return 8; }
    CString& getName() override { return text; }
    RecordDef* getRecordDef() override { return &otherSchema; }
    int getNumAttrs() override { return 11; }
    AttrDef* getAttrDef(int i) override { return columns + i; }
    CString& getAttrName(int i) override { return columns[i].getName(); }
    WORD getAttrIdent(int i) override { return static_cast<WORD>(14 + i); }
    Iterator* getIterator(int, CCeDBProp*, CCeDBProp*) override { return note(15), nullptr; }
    Iterator* getIterator(CCeDBProp*, CCeDBProp*) override { return note(16), nullptr; }
    using Table::insertRecord;
    HRESULT insertRecord(CCeDBRecord*, DWORD& newOid) override { return newOid = 170, 17; }
    HRESULT insertRecord(CCeDBProp[], DWORD& newOid) override { return newOid = 180, 18; }
    HRESULT insertRecord() override { return 19; }
    HRESULT deleteRecord(CCeDBProp&) override { return 20; }
    HRESULT deleteRecord(DWORD&) override { return 21; }
    HRESULT deleteAllRecords() override { return 22; }
    HRESULT updateRecord(DWORD, CCeDBRecord*, int attrIdx, CCeDBProp*) override { return 23 + attrIdx; }
    HRESULT queryRecord(CCeDBProp&, DWORD*, CCeDBRecord*) override { return 24; }
    HRESULT queryRecord(CCeDBProp&, CCeDBRecord*) override { return 25; }

    void note(int slot) { called = slot; }

    CString text = TEXT("slot 9");
    int called = 0;
    bool* lastDestroyed = nullptr;
};

TEST(Table, OperationsStandInTheirSlots) {
    TracingTable traced;
    Table* const table = &traced;
    CCeDBRecord* const record = nullptr;
    CCeDBProp prop;
    CCeDBProp* const noProp = nullptr;
    DWORD oid = 0;

    EXPECT_EQ(callSlot<DWORD>(table, 1), 1u);
    EXPECT_EQ((callSlot<BOOL, CWnd*>(table, 2, nullptr)), 2);
    EXPECT_EQ(callSlot<BOOL>(table, 3), 3);
    EXPECT_EQ(callSlot<BOOL>(table, 4), 4);
    EXPECT_TRUE(callSlot<bool>(table, 5));
    EXPECT_EQ(traced.called, 5);
    EXPECT_EQ(callSlot<DWORD>(table, 6), 6u);
    EXPECT_EQ(callSlot<DWORD>(table, 7), 7u);
    EXPECT_EQ(callSlot<DWORD>(table, 8), 8u);
    EXPECT_EQ(&callSlot<CString&>(table, 9), &traced.text);
    EXPECT_EQ(callSlot<RecordDef*>(table, 10), &otherSchema);
    EXPECT_EQ(callSlot<int>(table, 11), 11);
    EXPECT_EQ((callSlot<AttrDef*, int>(table, 12, 1)), &columns[1]);
    EXPECT_EQ((&callSlot<CString&, int>(table, 13, 1)), &columns[1].getName());
    EXPECT_EQ((callSlot<WORD, int>(table, 14, 100)), 114);
    callSlot<Iterator*, int, CCeDBProp*, CCeDBProp*>(table, 15, 0, nullptr, nullptr);
    EXPECT_EQ(traced.called, 15);
    callSlot<Iterator*, CCeDBProp*, CCeDBProp*>(table, 16, nullptr, nullptr);
    EXPECT_EQ(traced.called, 16);
    EXPECT_EQ((callSlot<HRESULT, CCeDBRecord*, DWORD&>(table, 17, record, oid)), 17);
    EXPECT_EQ(oid, 170u);
    EXPECT_EQ((callSlot<HRESULT, CCeDBProp*, DWORD&>(table, 18, noProp, oid)), 18);
    EXPECT_EQ(oid, 180u);
    EXPECT_EQ(callSlot<HRESULT>(table, 19), 19);
    EXPECT_EQ((callSlot<HRESULT, CCeDBProp&>(table, 20, prop)), 20);
    EXPECT_EQ((callSlot<HRESULT, DWORD&>(table, 21, oid)), 21);
    EXPECT_EQ(callSlot<HRESULT>(table, 22), 22);
    EXPECT_EQ((callSlot<HRESULT, DWORD, CCeDBRecord*, int, CCeDBProp*>(table, 23, 1, record, 300, noProp)), 323);
    EXPECT_EQ((callSlot<HRESULT, CCeDBProp&, DWORD*, CCeDBRecord*>(table, 24, prop, &oid, record)), 24);
    EXPECT_EQ((callSlot<HRESULT, CCeDBProp&, CCeDBRecord*>(table, 25, prop, record)), 25);
}

TEST(Table, TheDestructorStandsInSlotZero) {
    bool isDestroyed = false;
    auto* const traced = new TracingTable;
    traced->lastDestroyed = &isDestroyed;

    testing_support::deleteThroughSlot(static_cast<Table*>(traced));

    EXPECT_TRUE(isDestroyed);
}

TEST(Table, InsertsWithoutAnIdentifierThroughTheVirtualForms) {
    TracingTable table;
    CCeDBRecord record;
    CCeDBProp props[1];

    EXPECT_EQ(table.insertRecord(&record), 17);
    EXPECT_EQ(table.insertRecord(props), 18);
}

/// The least that an iterator must supply, with its state laid open.
class PlainIterator : public Iterator {
public:
    using Iterator::Iterator;
    CCeDBProp getProp(int) override { return {}; }
    CString getString(int) override { return {}; }
    HRESULT next() override { return S_FALSE; }
    bool isOpened() override { return opened; }

    using Iterator::curIdx;
    using Iterator::getEqualValue;
    using Iterator::getMaxRange;
    using Iterator::getMinRange;
    using Iterator::getTable;
    using Iterator::init;
    using Iterator::numItems;
    using Iterator::sortIdx;

    bool opened = true;
};

TEST(Iterator, IsMadeWithoutAPositionAndWithBorrowedBounds) {
    Table table(TEXT("QZ_Nothing"), &schema);
    CCeDBProp low;
    CCeDBProp high;

    PlainIterator unsorted(&table, &low, &high);
    PlainIterator sorted(&table, 3, nullptr, &high);

    EXPECT_EQ(unsorted.getTable(), &table);
    EXPECT_EQ(unsorted.sortIdx, 0);
    EXPECT_EQ(sorted.sortIdx, 3);
    EXPECT_EQ(unsorted.getNumItems(), 0);
    EXPECT_EQ(unsorted.curIdx, -1);
    EXPECT_EQ(unsorted.getCur(), 0u);
    EXPECT_EQ(unsorted.getEqualValue(), nullptr);
    EXPECT_EQ(unsorted.getMinRange(), &low);
    EXPECT_EQ(sorted.getMinRange(), nullptr);
    EXPECT_EQ(unsorted.getMaxRange(), &high);
}

TEST(Iterator, ThatOverridesNothingElseAnswersEmptyOrNotImplemented) {
    PlainIterator iterator(nullptr, nullptr, nullptr);
    CCeDBRecord record;

    EXPECT_EQ(iterator.getRecord(&record), E_NOTIMPL);
    EXPECT_EQ(iterator.last(), E_NOTIMPL);
    EXPECT_EQ(iterator.prev(), E_NOTIMPL);
    EXPECT_EQ(iterator.getAt(0), 0u);
    EXPECT_EQ(iterator.getRecordAt(0, &record), E_NOTIMPL);
    EXPECT_TRUE(iterator.getPropAt(0, 0).isEmpty());
    EXPECT_TRUE(iterator.getStringAt(0, 0).IsEmpty());
    EXPECT_EQ(iterator.init(), E_NOTIMPL);
}

TEST(IteratorDeleteAt, AtTheCountSucceedsAndLeavesOneLess) {
    PlainIterator iterator(nullptr, nullptr, nullptr);
    iterator.numItems = 3;

    EXPECT_EQ(iterator.deleteAt(3, false), S_OK);
    EXPECT_EQ(iterator.getNumItems(), 2);
    EXPECT_EQ(iterator.curIdx, 3);
}

TEST(IteratorDeleteAt, BeyondTheCountOrBelowZeroFails) {
    PlainIterator iterator(nullptr, nullptr, nullptr);
    iterator.numItems = 3;

    EXPECT_EQ(iterator.deleteAt(4, false), E_FAIL);
    EXPECT_EQ(iterator.deleteAt(-1, false), E_FAIL);
    EXPECT_EQ(iterator.getNumItems(), 3);
    EXPECT_EQ(iterator.curIdx, -1);
}

TEST(IteratorDeleteAt, OnAnIteratorNotOpenedIsDeniedWhateverTheIndex) {
    PlainIterator iterator(nullptr, nullptr, nullptr);
    iterator.opened = false;

    for (const int idx : {-1, 0, 100})
        EXPECT_EQ(iterator.deleteAt(idx, false), E_ACCESSDENIED);
    EXPECT_EQ(iterator.curIdx, -1);
}

TEST(IteratorDeleteAt, ForThePositionOnlyDeletesNothing) {
    PlainIterator iterator(nullptr, nullptr, nullptr);
    iterator.numItems = 3;

    EXPECT_EQ(iterator.deleteAt(2, true), S_OK);
    EXPECT_EQ(iterator.curIdx, 2);
    EXPECT_EQ(iterator.getNumItems(), 3);
}

TEST(IteratorDeleteCur, CountsOneLessOnlyWhileOpened) {
    PlainIterator iterator(nullptr, nullptr, nullptr);
    iterator.numItems = 2;

    EXPECT_EQ(iterator.deleteCur(), S_OK);
    EXPECT_EQ(iterator.getNumItems(), 1);
    iterator.opened = false;
    EXPECT_EQ(iterator.deleteCur(), S_OK);
    EXPECT_EQ(iterator.getNumItems(), 1);
}

/// Names every operation by the place where it expects itself to stand.
class TracingIterator : public Iterator {
public:
    TracingIterator() : Iterator(nullptr, nullptr, nullptr) {}
    ~TracingIterator() override {
        if (lastDestroyed != nullptr) *lastDestroyed = true;
    }

    DWORD getCur() override { return 1; }
    HRESULT getRecord(CCeDBRecord*) override { return 2; }
    CCeDBProp getProp(int attrIdx) override { return CCeDBProp::ofI4(3, attrIdx); }
    CString getString(int attrIdx) override { return CString(u'4', attrIdx); }
    HRESULT last() override { return 5; }
    HRESULT next() override { return 6; }
    HRESULT prev() override { return 7; }
    HRESULT deleteCur() override { return 8; }
    DWORD getAt(int idx) override { return static_cast<DWORD>(9 + idx); }
    HRESULT getRecordAt(int idx, CCeDBRecord*) override { return 10 + idx; }
    CCeDBProp getPropAt(int idx, int attrIdx) override { return CCeDBProp::ofI4(11, idx + attrIdx); }
    CString getStringAt(int idx, int attrIdx) override { return CString(u'!', idx + attrIdx); }
    HRESULT deleteAt(int idx, bool positionOnly) override { return positionOnly ? 13 + idx : 0; }
    int getNumItems() override { return 14; }
    bool isOpened() override { return (called = 15) != 0; }

    int called = 0;
    bool* lastDestroyed = nullptr;

protected:
    HRESULT init() override { return 16; }
};

TEST(Iterator, OperationsStandInTheirSlots) {
    TracingIterator traced;
    Iterator* const iterator = &traced;
    CCeDBRecord* const record = nullptr;

    EXPECT_EQ(callSlot<DWORD>(iterator, 1), 1u);
    EXPECT_EQ((callSlot<HRESULT, CCeDBRecord*>(iterator, 2, record)), 2);
    EXPECT_EQ((callSlot<CCeDBProp, int>(iterator, 3, 33)), CCeDBProp::ofI4(3, 33));
    EXPECT_EQ((callSlot<CString, int>(iterator, 4, 3)), TEXT("444"));
    EXPECT_EQ(callSlot<HRESULT>(iterator, 5), 5);
    EXPECT_EQ(callSlot<HRESULT>(iterator, 6), 6);
    EXPECT_EQ(callSlot<HRESULT>(iterator, 7), 7);
    EXPECT_EQ(callSlot<HRESULT>(iterator, 8), 8);
    EXPECT_EQ((callSlot<DWORD, int>(iterator, 9, 100)), 109u);
    EXPECT_EQ((callSlot<HRESULT, int, CCeDBRecord*>(iterator, 10, 100, record)), 110);
    EXPECT_EQ((callSlot<CCeDBProp, int, int>(iterator, 11, 5, 6)), CCeDBProp::ofI4(11, 11));
    EXPECT_EQ((callSlot<CString, int, int>(iterator, 12, 1, 2)), TEXT("!!!"));
    EXPECT_EQ((callSlot<HRESULT, int, bool>(iterator, 13, 100, true)), 113);
    EXPECT_EQ(callSlot<int>(iterator, 14), 14);
    EXPECT_TRUE(callSlot<bool>(iterator, 15));
    EXPECT_EQ(traced.called, 15);
    EXPECT_EQ(callSlot<HRESULT>(iterator, 16), 16);
}

TEST(Iterator, TheDestructorStandsInSlotZero) {
    bool isDestroyed = false;
    auto* const traced = new TracingIterator;
    traced->lastDestroyed = &isDestroyed;

    testing_support::deleteThroughSlot(static_cast<Iterator*>(traced));

    EXPECT_TRUE(isDestroyed);
}

}  // namespace
}  // namespace Database
