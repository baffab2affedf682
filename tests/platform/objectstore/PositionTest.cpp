#include <thread>

#include "tests/platform/objectstore/StoreTest.h"

namespace objectstore_test {
namespace {

/// Five records with the numbers 10 to 50.
class Position : public StoreTest {
protected:
    Position() {
        makeDatabase(TEXT("Rows"));
        OpenDatabase rows(TEXT("Rows"));
        for (const int number : {10, 20, 30, 40, 50}) {
            oids[number] = rows.add(Row().number(number));
        }
    }
    std::map<int, CEOID> oids;
};
INSTANTIATE_TEST_SUITE_P(BothStores, Position, bothStores, nameOfKind);

TEST_P(Position, DeletingTheRecordStoodOnLeavesThePlace) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    rows.to(1);
    EXPECT_TRUE(rows.erase(oids[20]));
    EXPECT_FALSE(rows.read());
    EXPECT_EQ(GetLastError(), ERROR_KEY_DELETED);
    EXPECT_EQ(rows.by(0), 0u);
    EXPECT_EQ(GetLastError(), ERROR_KEY_DELETED);
    EXPECT_EQ(rows.next(), oids[30]);
    EXPECT_EQ(rows.previous(), oids[10]);
}

TEST_P(Position, DeletingEveryRecordWhileWalkingDeletesThemAll) {
    for (const DWORD flags : {DWORD{0}, CEDB_SORT_DESCENDING}) {
        OpenDatabase rows(TEXT("Rows"), numberId, flags);
        for (int i = 0; i < 100; ++i) {
            rows.add(Row().number(i));
        }
        for (CEOID oid = rows.to(0); oid != 0; oid = rows.next()) {
            EXPECT_TRUE(rows.erase(oid));
        }
        EXPECT_EQ(GetLastError(), ERROR_SEEK);
        EXPECT_EQ(rows.info().dwNumRecords, 0u);
    }
}

TEST_P(Position, SortingTheRecordElsewhereLeavesThePlace) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    rows.to(1);
    rows.write(oids[20], Row().number(45));
    EXPECT_EQ(rows.read()->number(), 45) << "the record last reached is still the one that is read";
    EXPECT_EQ(rows.next(), oids[30]);
    EXPECT_EQ(rows.next(), oids[40]);
    EXPECT_EQ(rows.next(), oids[20]) << "it is met again where it stands now";
    EXPECT_EQ(rows.next(), oids[50]);
}

TEST_P(Position, SeekToTheRecordItselfGoesWhereItStandsNow) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    rows.to(1);
    rows.write(oids[20], Row().number(45));
    rows.read();
    EXPECT_EQ(rows.toRecord(oids[20]), oids[20]);
    EXPECT_EQ(rows.next(), oids[50]);
}

TEST_P(Position, RewritingEveryRecordOfAnEqualGroupMeetsEachOnce) {
    OpenDatabase rows(TEXT("Rows"), nameId);
    for (int i = 0; i < 40; ++i) {
        rows.add(Row().name(TEXT("Family")));
    }
    int renamed = 0;
    CEOID oid = rows.firstEqual(Row().name(TEXT("Family")));
    while (oid != 0) {
        rows.write(oid, Row().name(TEXT("Relatives")));
        ++renamed;
        oid = rows.nextEqual(Row().name(TEXT("Family")));
    }
    EXPECT_EQ(renamed, 40);
}

TEST_P(Position, RecordAddedBehindThePlaceIsMet) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    rows.to(1);
    const CEOID added = rows.add(Row().number(25));
    EXPECT_EQ(rows.next(), added);
    EXPECT_EQ(rows.previous(), oids[20]);
    const CEOID before = rows.add(Row().number(15));
    EXPECT_EQ(rows.previous(), before);
}

TEST_P(Position, WriteDoesNotMoveIt) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    rows.to(1);
    rows.add(Row().number(60));
    rows.write(oids[50], Row().number(5));
    EXPECT_EQ(rows.read()->oid, oids[20]);
    EXPECT_EQ(rows.next(), oids[30]);
}

TEST_P(Position, WritesThroughAnotherHandleAreSeenAtOnce) {
    OpenDatabase walk(TEXT("Rows"), numberId);
    OpenDatabase other(TEXT("Rows"));
    walk.to(0);
    walk.next();
    walk.next();  // some records are read ahead by now
    other.erase(oids[40]);
    other.write(oids[50], Row().name(TEXT("fresh")));
    EXPECT_EQ(walk.next(), oids[50]);
    EXPECT_EQ(walk.read()->name(), TEXT("fresh"));
}

TEST_P(Position, WritesOfAnotherThreadAreSeenAtOnce) {
    OpenDatabase walk(TEXT("Rows"), numberId);
    walk.to(0);
    walk.next();
    walk.next();
    std::thread([this] {
        OpenDatabase other(TEXT("Rows"));
        other.erase(oids[40]);
        other.write(oids[30], Row().name(TEXT("fresh")));
    }).join();
    EXPECT_EQ(walk.read()->name(), TEXT("fresh"));
    EXPECT_EQ(walk.next(), oids[50]);
}

TEST_P(Position, IndexesFollowInsertionsAndDeletions) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    EXPECT_EQ(rows.to(2), oids[30]);
    rows.erase(oids[10]);
    EXPECT_EQ(rows.to(2), oids[40]);
    const CEOID added = rows.add(Row().number(1));
    EXPECT_EQ(rows.to(2), oids[30]);
    EXPECT_EQ(rows.to(1), oids[20]);
    EXPECT_EQ(rows.to(0), added);
}

TEST_P(Position, IndexIsKnownAfterStepsFromAnIndexedPlace) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    rows.to(1);
    rows.next();
    rows.next();
    EXPECT_EQ(rows.to(3), oids[40]);
    rows.previous();
    EXPECT_EQ(rows.to(1), oids[20]);
    rows.toRecord(oids[50]);
    EXPECT_EQ(rows.to(2), oids[30]);
    rows.by(5);
    EXPECT_EQ(rows.to(3), oids[40]);
    EXPECT_EQ(rows.to(3), oids[40]);
}

TEST_P(Position, WalkByIndexMayRewriteWhatItReads) {
    makeDatabase(TEXT("Many"));
    OpenDatabase rows(TEXT("Many"), numberId);
    for (int i = 0; i < 300; ++i) {
        rows.add(Row().number(i * 7 % 300));
    }
    for (DWORD i = 0; i < 300; ++i) {
        const CEOID oid = rows.to(i);
        const auto record = rows.read();
        ASSERT_TRUE(record);
        EXPECT_EQ(record->number(), static_cast<int>(i));
        EXPECT_EQ(rows.toRecord(oid), oid);
        rows.write(oid, Row().name(TEXT("seen")));
    }
    EXPECT_EQ(rows.to(300), 0u);
}

}  // namespace
}  // namespace objectstore_test
