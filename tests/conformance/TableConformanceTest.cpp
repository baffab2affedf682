// What every table and its iterators have in common, whatever store is behind them.

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/database/Iterator.h"
#include "tests/conformance/TableRows.h"
#include "tests/conformance/TablesUnderTest.h"

namespace conformance {
namespace {

using Database::Iterator;
using Database::Table;

constexpr DWORD unknownOid = 0x7FFFFFFF;

class TableConformance : public testing::TestWithParam<TableKind> {
protected:
    TableConformance() : made_(GetParam().make()) {}

    Table& table() { return made_->table(); }
    void open() { ASSERT_TRUE(made_->open()); }

    DWORD add(const Row& row) {
        CCeDBRecord record = recordOf(table(), row);
        DWORD oid = 0;
        EXPECT_EQ(table().insertRecord(&record, oid), S_OK);
        return oid;
    }
    std::unique_ptr<Iterator> walk() { return std::unique_ptr<Iterator>(table().getIterator(nullptr, nullptr)); }

private:
    std::unique_ptr<TableUnderTest> made_;
};

TEST_P(TableConformance, NotOpenFailsAndCountsNothing) {
    CCeDBRecord record = recordOf(table(), {TEXT("aa"), TEXT("1"), TEXT("x")});
    std::vector<CCeDBProp> props = propsOf(table(), {TEXT("aa"), TEXT("1"), TEXT("x")});
    DWORD oid = 1;

    EXPECT_FALSE(table().isOpen());
    EXPECT_EQ(table().insertRecord(&record, oid), E_FAIL);
    EXPECT_EQ(table().insertRecord(props.data(), oid), E_FAIL);
    EXPECT_EQ(table().deleteRecord(oid), E_FAIL);
    EXPECT_EQ(table().deleteAllRecords(), E_FAIL);
    EXPECT_EQ(table().updateRecord(oid, &record, 0, nullptr), E_FAIL);
    EXPECT_EQ(table().getNumRecords(), 0u);
    EXPECT_FALSE(isWalkable(walk().get()));
}

TEST_P(TableConformance, ClosingItEndsItAndOpeningItAgainShowsItsRows) {
    open();
    const DWORD oid = add({TEXT("aa"), TEXT("1"), TEXT("x")});

    EXPECT_TRUE(table().close());
    EXPECT_FALSE(table().isOpen());
    EXPECT_EQ(table().getNumRecords(), 0u);
    open();

    EXPECT_TRUE(table().isOpen());
    EXPECT_EQ(rowsOf(table()), (Rows{{oid, {TEXT("aa"), TEXT("1"), TEXT("x")}}}));
}

TEST_P(TableConformance, ANewTableIsEmpty) {
    open();

    EXPECT_EQ(table().getNumRecords(), 0u);
    EXPECT_FALSE(isWalkable(walk().get()));
    EXPECT_EQ(table().deleteAllRecords(), S_OK);
}

TEST_P(TableConformance, RefusesARecordThatIsNotThere) {
    open();
    CCeDBRecord* const noRecord = nullptr;
    DWORD oid = 0;

    EXPECT_EQ(table().insertRecord(noRecord, oid), E_FAIL);
    EXPECT_EQ(table().updateRecord(unknownOid, noRecord, 0, nullptr), E_FAIL);
    EXPECT_EQ(table().getNumRecords(), 0u);
}

TEST_P(TableConformance, FailsOnAnIdentifierThatItDoesNotHold) {
    open();
    const DWORD kept = add({TEXT("aa"), TEXT("1"), TEXT("x")});
    CCeDBRecord record = recordOf(table(), {TEXT("bb"), TEXT("2"), TEXT("y")});
    DWORD unknown = unknownOid;

    EXPECT_TRUE(FAILED(table().deleteRecord(unknown)));
    EXPECT_TRUE(FAILED(table().updateRecord(unknown, &record, 0, nullptr)));
    EXPECT_EQ(rowsOf(table()), (Rows{{kept, {TEXT("aa"), TEXT("1"), TEXT("x")}}}));
}

TEST_P(TableConformance, TakesARowAsARecordAndAsAnArray) {
    open();
    CCeDBRecord record = recordOf(table(), {TEXT("aa"), TEXT("1"), TEXT("x")});
    std::vector<CCeDBProp> props = propsOf(table(), {TEXT("bb"), TEXT("2"), TEXT("y")});
    DWORD first = 0;
    DWORD second = 0;

    EXPECT_EQ(table().insertRecord(&record, first), S_OK);
    EXPECT_EQ(table().insertRecord(props.data(), second), S_OK);
    EXPECT_EQ(table().insertRecord(&record), S_OK);
    EXPECT_EQ(table().insertRecord(props.data()), S_OK);

    EXPECT_NE(first, second);
    EXPECT_EQ(table().getNumRecords(), 4u);
}

TEST_P(TableConformance, DescribesItselfByItsSchema) {
    for (const char* state : {"closed", "open"}) {
        ASSERT_NE(table().getRecordDef(), nullptr) << state;
        EXPECT_EQ(table().getNumAttrs(), table().getRecordDef()->getNumAttrs());
        for (int i = 0; i < table().getNumAttrs(); ++i) {
            EXPECT_EQ(table().getAttrDef(i), table().getRecordDef()->getAttrDef(i));
            EXPECT_EQ(table().getAttrName(i), table().getAttrDef(i)->getName());
            EXPECT_EQ(table().getAttrIdent(i), table().getAttrDef(i)->getIdent());
        }
        open();
    }
}

TEST_P(TableConformance, AnIteratorCountsWhatThereIsWhenItIsMade) {
    open();
    add({TEXT("aa"), TEXT("1"), TEXT("x")});
    const std::unique_ptr<Iterator> rows = walk();

    add({TEXT("bb"), TEXT("2"), TEXT("y")});

    EXPECT_TRUE(rows->isOpened());
    EXPECT_EQ(rows->getNumItems(), 1);
    EXPECT_EQ(walk()->getNumItems(), 2);
}

TEST_P(TableConformance, AnIteratorStandsOnNoRowUntilItIsMoved) {
    open();
    const DWORD oid = add({TEXT("aa"), TEXT("1"), TEXT("x")});
    const std::unique_ptr<Iterator> rows = walk();

    EXPECT_EQ(rows->getCur(), 0u);
    EXPECT_EQ(rows->next(), S_OK);
    EXPECT_EQ(rows->getCur(), oid);
}

TEST_P(TableConformance, WalksForwardInOrderAndStopsBehindTheLastRow) {
    open();
    const DWORD second = add({TEXT("bb"), TEXT("2"), TEXT("y")});
    const DWORD third = add({TEXT("cc"), TEXT("3"), TEXT("z")});
    const DWORD first = add({TEXT("aa"), TEXT("1"), TEXT("x")});
    const std::unique_ptr<Iterator> rows = walk();

    for (const DWORD expected : {first, second, third}) {
        ASSERT_EQ(rows->next(), S_OK);
        EXPECT_EQ(rows->getCur(), expected);
    }
    EXPECT_EQ(rows->next(), S_FALSE);
}

TEST_P(TableConformance, WalksBackFromTheLastRowAndStopsBeforeTheFirst) {
    open();
    const DWORD second = add({TEXT("bb"), TEXT("2"), TEXT("y")});
    const DWORD third = add({TEXT("cc"), TEXT("3"), TEXT("z")});
    const DWORD first = add({TEXT("aa"), TEXT("1"), TEXT("x")});
    const std::unique_ptr<Iterator> rows = walk();

    ASSERT_EQ(rows->last(), S_OK);
    EXPECT_EQ(rows->getCur(), third);
    for (const DWORD expected : {second, first}) {
        ASSERT_EQ(rows->prev(), S_OK);
        EXPECT_EQ(rows->getCur(), expected);
    }
    EXPECT_EQ(rows->prev(), S_FALSE);
}

TEST_P(TableConformance, RowsOfOneNameComeInTheOrderOfTheirIdentifiers) {
    open();
    std::vector<DWORD> expected;
    for (int i = 0; i < 5; ++i)
        expected.push_back(add({TEXT("aa"), TEXT("1"), TEXT("x")}));
    std::ranges::sort(expected);

    std::vector<DWORD> walked;
    for (const auto& [oid, row] : rowsOf(table()))
        walked.push_back(oid);

    EXPECT_EQ(walked, expected);
}

TEST_P(TableConformance, GoesToAnIndexWithinItsBounds) {
    open();
    const DWORD second = add({TEXT("bb"), TEXT("2"), TEXT("y")});
    const DWORD first = add({TEXT("aa"), TEXT("1"), TEXT("x")});
    const std::unique_ptr<Iterator> rows = walk();

    EXPECT_EQ(rows->getAt(1), second);
    EXPECT_EQ(rows->getString(mobileIdx), TEXT("2"));
    EXPECT_EQ(rows->getAt(0), first);
    EXPECT_EQ(rows->getString(nameIdx), TEXT("aa"));
    for (const int outside : {-1, 2, 3, 1000})
        EXPECT_EQ(rows->getAt(outside), 0u) << outside;
}

TEST_P(TableConformance, DeletingAtAnIndexKeepsToItsBounds) {
    open();
    for (const WCHAR* name : {TEXT("aa"), TEXT("bb"), TEXT("cc")})
        add({name, TEXT("1"), TEXT("x")});
    const std::unique_ptr<Iterator> rows = walk();

    EXPECT_EQ(rows->deleteAt(-1, false), E_FAIL);
    EXPECT_EQ(rows->deleteAt(4, false), E_FAIL);
    EXPECT_EQ(rows->deleteAt(2, true), S_OK);
    EXPECT_EQ(rows->getNumItems(), 3);
    EXPECT_EQ(rows->deleteAt(3, false), S_OK);
    EXPECT_EQ(rows->getNumItems(), 2);
}

TEST_P(TableConformance, DeletesEveryRow) {
    open();
    for (int i = 0; i < 50; ++i)
        add({TEXT("aa"), TEXT("1"), TEXT("x")});

    EXPECT_EQ(table().deleteAllRecords(), S_OK);

    EXPECT_EQ(table().getNumRecords(), 0u);
    EXPECT_TRUE(table().isOpen());
}

INSTANTIATE_TEST_SUITE_P(EveryTable, TableConformance, testing::ValuesIn(tableKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace conformance
