#include "tests/platform/objectstore/StoreTest.h"

namespace objectstore_test {
namespace {

/// Five records with the numbers 10 to 50, made out of order.
class Seek : public StoreTest {
protected:
    Seek() {
        makeDatabase(TEXT("Rows"));
        OpenDatabase rows(TEXT("Rows"));
        for (const int number : {30, 10, 50, 20, 40}) {
            oids[number] = rows.add(Row().number(number).ui4(static_cast<std::uint32_t>(number / 20)));
        }
    }

    /// Nothing was reached, an end was run over, and the position is at the end.
    static void expectRanOff(OpenDatabase& rows, CEOID reached) {
        EXPECT_EQ(reached, 0u);
        EXPECT_EQ(GetLastError(), ERROR_SEEK);
        EXPECT_FALSE(rows.read());
        EXPECT_EQ(GetLastError(), ERROR_NO_MORE_ITEMS);
    }
    static void expectRefused(OpenDatabase& rows, CEOID reached, DWORD error, CEOID stillAt) {
        EXPECT_EQ(reached, 0u);
        EXPECT_EQ(GetLastError(), error);
        EXPECT_EQ(rows.read()->oid, stillAt);
    }

    std::map<int, CEOID> oids;
};
INSTANTIATE_TEST_SUITE_P(BothStores, Seek, bothStores, nameOfKind);

TEST_P(Seek, FreshHandleStandsOnTheFirstRecord) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    EXPECT_EQ(rows.read()->oid, oids[10]);
    OpenDatabase stepped(TEXT("Rows"), numberId);
    EXPECT_EQ(stepped.next(), oids[20]);
    OpenDatabase standing(TEXT("Rows"), numberId);
    EXPECT_EQ(standing.by(0), oids[10]);
    OpenDatabase back(TEXT("Rows"), numberId);
    expectRanOff(back, back.previous());
}

TEST_P(Seek, BeginningCountsFromTheFirst) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    DWORD index = 99;
    EXPECT_EQ(rows.seek(CEDB_SEEK_BEGINNING, 0, &index), oids[10]);
    EXPECT_EQ(index, 0u);
    EXPECT_EQ(rows.seek(CEDB_SEEK_BEGINNING, 3, &index), oids[40]);
    EXPECT_EQ(index, 3u);
    EXPECT_EQ(rows.to(1), oids[20]);
    expectRanOff(rows, rows.to(5));
    expectRanOff(rows, rows.to(0xFFFFFFFF));
}

TEST_P(Seek, EndCountsBackFromTheLast) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    DWORD index = 99;
    EXPECT_EQ(rows.seek(CEDB_SEEK_END, 0, &index), oids[50]);
    EXPECT_EQ(index, 4u);
    EXPECT_EQ(rows.seek(CEDB_SEEK_END, 2, &index), oids[30]);
    EXPECT_EQ(index, 2u);
    expectRanOff(rows, rows.seek(CEDB_SEEK_END, 5));
}

TEST_P(Seek, DescendingHandleCountsItsOwnWay) {
    OpenDatabase rows(TEXT("Rows"), numberId, CEDB_SORT_DESCENDING);
    EXPECT_EQ(rows.to(0), oids[50]);
    EXPECT_EQ(rows.to(3), oids[20]);
    EXPECT_EQ(rows.next(), oids[10]);
    EXPECT_EQ(rows.by(-2), oids[30]);
    EXPECT_EQ(rows.toLast(), oids[10]);
    EXPECT_EQ(rows.seek(CEDB_SEEK_END, 4), oids[50]);
}

TEST_P(Seek, CurrentCountsFromThePosition) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    EXPECT_EQ(rows.to(1), oids[20]);
    DWORD index = 99;
    EXPECT_EQ(rows.seek(CEDB_SEEK_CURRENT, 3, &index), oids[50]);
    EXPECT_EQ(index, 0u) << "this seek tells no index";
    EXPECT_EQ(rows.by(-2), oids[30]);
    EXPECT_EQ(rows.by(0), oids[30]);
    EXPECT_EQ(rows.by(1), oids[40]);
}

TEST_P(Seek, RunningOffEitherEndLeavesThePositionAtTheEnd) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    rows.to(4);
    expectRanOff(rows, rows.next());
    expectRanOff(rows, rows.next());
    EXPECT_EQ(rows.previous(), oids[50]) << "one back from the end is the last record";
    rows.to(0);
    expectRanOff(rows, rows.previous());
    EXPECT_EQ(rows.previous(), oids[50]) << "the beginning has no place of its own";
    rows.to(2);
    expectRanOff(rows, rows.by(3));
    rows.to(2);
    expectRanOff(rows, rows.by(-3));
    expectRanOff(rows, rows.by(0));
    EXPECT_EQ(rows.by(-5), oids[10]);
}

TEST_P(Seek, RecordIsReachedByItsIdentifier) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    DWORD index = 99;
    EXPECT_EQ(rows.seek(CEDB_SEEK_CEOID, oids[30], &index), oids[30]);
    EXPECT_EQ(index, 0u);
    EXPECT_EQ(rows.next(), oids[40]);
    EXPECT_EQ(rows.toRecord(oids[20]), oids[20]);
    EXPECT_EQ(rows.previous(), oids[10]);
}

TEST_P(Seek, UnknownIdentifierIsAnErrorAndLeavesThePosition) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    rows.to(1);
    expectRefused(rows, rows.toRecord(0), ERROR_KEY_DELETED, oids[20]);
    expectRefused(rows, rows.toRecord(0x7FFFFFFF), ERROR_KEY_DELETED, oids[20]);
    EXPECT_EQ(rows.next(), oids[30]);
}

TEST_P(Seek, SeekOfNoKnownKindIsAnErrorAndLeavesThePosition) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    rows.to(1);
    for (const DWORD type : {DWORD{0}, DWORD{3}, DWORD{0x100}}) {
        expectRefused(rows, rows.seek(type, 0), ERROR_INVALID_PARAMETER, oids[20]);
    }
}

TEST_P(Seek, FirstEqualLooksFromTheStart) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    rows.toLast();
    EXPECT_EQ(rows.firstEqual(Row().number(20)), oids[20]);
    EXPECT_EQ(rows.read()->oid, oids[20]);
    EXPECT_EQ(rows.next(), oids[30]);
}

TEST_P(Seek, FirstEqualReachesTheFirstOfSeveralInTheOrder) {
    OpenDatabase rows(TEXT("Rows"), dwordId);  // 10 | 30 20 | 50 40
    EXPECT_EQ(rows.firstEqual(Row().ui4(1)), oids[30]);
    OpenDatabase descending(TEXT("Rows"), dwordId, CEDB_SORT_DESCENDING);
    EXPECT_EQ(descending.firstEqual(Row().ui4(1)), oids[20]);
}

TEST_P(Seek, FirstEqualWithoutAMatchRunsOff) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    for (const int missing : {5, 25, 55}) {
        rows.to(2);
        expectRanOff(rows, rows.firstEqual(Row().number(missing)));
    }
}

TEST_P(Seek, FirstEqualOnAnotherPropertyFindsTheFirstInTheHandlesOrder) {
    OpenDatabase byNumber(TEXT("Rows"), numberId);
    EXPECT_EQ(byNumber.firstEqual(Row().ui4(1)), oids[20]);
    EXPECT_EQ(byNumber.next(), oids[30]) << "the position is one in the handle's order";
    OpenDatabase descending(TEXT("Rows"), numberId, CEDB_SORT_DESCENDING);
    EXPECT_EQ(descending.firstEqual(Row().ui4(1)), oids[30]);
    OpenDatabase byCreation(TEXT("Rows"));
    EXPECT_EQ(byCreation.firstEqual(Row().number(50)), oids[50]);
    EXPECT_EQ(byCreation.next(), oids[20]);
}

TEST_P(Seek, FirstEqualOnAnotherPropertyFollowsLaterWrites) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    expectRanOff(rows, rows.firstEqual(Row().name(TEXT("late"))));
    rows.write(oids[40], Row().name(TEXT("late")));
    EXPECT_EQ(rows.firstEqual(Row().name(TEXT("late"))), oids[40]);
    rows.write(oids[40], Row().name(TEXT("later")));
    expectRanOff(rows, rows.firstEqual(Row().name(TEXT("late"))));
}

TEST_P(Seek, ValueOfAnotherKindIsAnotherProperty) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    CEPROPVAL value;
    value.propid = makePropId(identOf(numberId), CEVT_UI4);
    value.val.ulVal = 20;
    expectRanOff(rows, rows.seek(CEDB_SEEK_VALUEFIRSTEQUAL, reinterpret_cast<std::uintptr_t>(&value)));
}

TEST_P(Seek, ValueThatCannotBeSoughtIsAnErrorAndLeavesThePosition) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    rows.to(1);
    expectRefused(rows, rows.seek(CEDB_SEEK_VALUEFIRSTEQUAL, 0), ERROR_INVALID_PARAMETER, oids[20]);
    expectRefused(rows, rows.firstEqual(Row().blob("x")), ERROR_INVALID_PARAMETER, oids[20]);
    expectRefused(rows, rows.nextEqual(Row().blob("x")), ERROR_INVALID_PARAMETER, oids[20]);
}

TEST_P(Seek, NextEqualGoesExactlyOneStep) {
    OpenDatabase rows(TEXT("Rows"), dwordId);  // 10 | 30 20 | 50 40
    EXPECT_EQ(rows.firstEqual(Row().ui4(1)), oids[30]);
    EXPECT_EQ(rows.nextEqual(Row().ui4(1)), oids[20]);
    expectRanOff(rows, rows.nextEqual(Row().ui4(1)));
    rows.to(0);
    expectRanOff(rows, rows.nextEqual(Row().ui4(2)));
    rows.to(0);
    EXPECT_EQ(rows.nextEqual(Row().ui4(1)), oids[30]) << "it need not follow a first-equal";
    rows.toLast();
    expectRanOff(rows, rows.nextEqual(Row().ui4(2)));
}

TEST_P(Seek, NextEqualOnAnotherPropertyComparesTheNextRecord) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    EXPECT_EQ(rows.firstEqual(Row().ui4(1)), oids[20]);
    EXPECT_EQ(rows.nextEqual(Row().ui4(1)), oids[30]);
    expectRanOff(rows, rows.nextEqual(Row().ui4(1)));
    rows.to(0);
    expectRanOff(rows, rows.nextEqual(Row().name(TEXT("nobody has one"))));
}

TEST_P(Seek, SmallerReachesTheLargestSmallerValue) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    EXPECT_EQ(rows.smaller(Row().number(35)), oids[30]);
    EXPECT_EQ(rows.smaller(Row().number(30)), oids[20]);
    EXPECT_EQ(rows.next(), oids[30]);
    EXPECT_EQ(rows.smaller(Row().number(1000)), oids[50]);
    expectRanOff(rows, rows.smaller(Row().number(10)));
}

TEST_P(Seek, GreaterReachesTheSmallestValueThatIsNotSmaller) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    EXPECT_EQ(rows.greater(Row().number(35)), oids[40]);
    EXPECT_EQ(rows.greater(Row().number(30)), oids[30]) << "an equal value counts";
    EXPECT_EQ(rows.greater(Row().number(-1000)), oids[10]);
    expectRanOff(rows, rows.greater(Row().number(51)));
}

TEST_P(Seek, SmallerAndGreaterGoByValueWhateverTheDirection) {
    OpenDatabase rows(TEXT("Rows"), numberId, CEDB_SORT_DESCENDING);
    EXPECT_EQ(rows.smaller(Row().number(35)), oids[30]);
    EXPECT_EQ(rows.next(), oids[20]);
    EXPECT_EQ(rows.greater(Row().number(35)), oids[40]);
    EXPECT_EQ(rows.next(), oids[30]);
    expectRanOff(rows, rows.smaller(Row().number(10)));
    expectRanOff(rows, rows.greater(Row().number(51)));
}

TEST_P(Seek, SmallerAndGreaterTakeTheTieNearestToTheValue) {
    OpenDatabase rows(TEXT("Rows"), dwordId);  // 10 | 30 20 | 50 40
    EXPECT_EQ(rows.smaller(Row().ui4(2)), oids[20]);
    EXPECT_EQ(rows.next(), oids[50]);
    EXPECT_EQ(rows.greater(Row().ui4(1)), oids[30]) << "of equal ones the first in the order";
    OpenDatabase descending(TEXT("Rows"), dwordId, CEDB_SORT_DESCENDING);
    EXPECT_EQ(descending.greater(Row().ui4(1)), oids[20]);
}

TEST_P(Seek, SmallerAndGreaterPassRecordsWithoutAValue) {
    {
        OpenDatabase rows(TEXT("Rows"));
        rows.add(Row().name(TEXT("no number")));
    }
    for (const DWORD flags : {DWORD{0}, CEDB_SORT_UNKNOWNFIRST}) {
        OpenDatabase rows(TEXT("Rows"), numberId, flags);
        expectRanOff(rows, rows.smaller(Row().number(10)));
        expectRanOff(rows, rows.greater(Row().number(51)));
        EXPECT_EQ(rows.smaller(Row().number(11)), oids[10]);
        EXPECT_EQ(rows.greater(Row().number(50)), oids[50]);
    }
}

TEST_P(Seek, SmallerAndGreaterWantTheOrdersOwnProperty) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    rows.to(1);
    expectRefused(rows, rows.smaller(Row().ui4(1)), ERROR_INVALID_PARAMETER, oids[20]);
    expectRefused(rows, rows.greater(Row().ui4(1)), ERROR_INVALID_PARAMETER, oids[20]);
}

TEST_P(Seek, TextsAreSoughtExactly) {
    OpenDatabase rows(TEXT("Rows"), nameId);
    const CEOID precomposed = rows.add(Row().name(TEXT("\u00E9")));
    const CEOID decomposed = rows.add(Row().name(TEXT("e\u0301")));
    EXPECT_EQ(rows.firstEqual(Row().name(TEXT("\u00E9"))), precomposed);
    expectRanOff(rows, rows.nextEqual(Row().name(TEXT("\u00E9"))));
    EXPECT_EQ(rows.firstEqual(Row().name(TEXT("e\u0301"))), decomposed);
}

TEST_P(Seek, EmptyDatabaseHasNowhereToGo) {
    makeDatabase(TEXT("Empty"));
    OpenDatabase rows(TEXT("Empty"), numberId);
    expectRanOff(rows, rows.to(0));
    expectRanOff(rows, rows.toLast());
    expectRanOff(rows, rows.next());
    expectRanOff(rows, rows.previous());
    expectRanOff(rows, rows.firstEqual(Row().number(1)));
}

}  // namespace
}  // namespace objectstore_test
