#include "tests/platform/objectstore/CountingStore.h"
#include "tests/platform/objectstore/StoreTest.h"

namespace objectstore_test {
namespace {

constexpr int records = 5000;

class ReadAhead : public ::testing::Test {
protected:
    ReadAhead() {
        makeDatabase(TEXT("Rows"));
        OpenDatabase rows(TEXT("Rows"));
        const ObjectStoreBatch batch;
        for (int i = 0; i < records; ++i) {
            rows.add(Row().number(i));
        }
        log().clear();
    }
    EngineLog& log() { return mount_.log; }

private:
    CountingMount mount_;
};

TEST_F(ReadAhead, WalkForwardReadsInBlocks) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    log().clear();
    int met = 0;
    for (CEOID oid = rows.to(0); oid != 0; oid = rows.next()) {
        EXPECT_EQ(rows.read()->number(), met++);
    }
    EXPECT_EQ(met, records);
    EXPECT_LT(log().reads, 25);
}

TEST_F(ReadAhead, WalkBackReadsInBlocks) {
    OpenDatabase rows(TEXT("Rows"), numberId, CEDB_SORT_DESCENDING);
    log().clear();
    int met = 0;
    for (CEOID oid = rows.toLast(); oid != 0; oid = rows.previous()) {
        EXPECT_EQ(rows.read()->number(), met++);
    }
    EXPECT_EQ(met, records);
    EXPECT_LT(log().reads, 25);
}

TEST_F(ReadAhead, AutoincrementingReadsComeFromBlocks) {
    OpenDatabase rows(TEXT("Rows"), numberId, 0, CEDB_AUTOINCREMENT);
    rows.to(0);
    log().clear();
    for (int i = 0; i < records; ++i) {
        ASSERT_EQ(rows.read()->number(), i);
    }
    EXPECT_LT(log().reads, 25);
}

TEST_F(ReadAhead, WalkByIndexReadsInBlocks) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    log().clear();
    for (int i = 0; i < records; ++i) {
        rows.to(static_cast<DWORD>(i));
        ASSERT_EQ(rows.read()->number(), i);
    }
    EXPECT_LT(log().reads, 25);
    EXPECT_EQ(log().jumps, 0);
}

TEST_F(ReadAhead, WalkByIndexThatSeeksEachRecordAgainStaysInTheBlock) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    log().clear();
    for (int i = 0; i < records; ++i) {
        const CEOID oid = rows.to(static_cast<DWORD>(i));
        for (int column = 0; column < 3; ++column) {
            ASSERT_EQ(rows.toRecord(oid), oid);
            ASSERT_EQ(rows.read()->number(), i);
        }
    }
    EXPECT_LT(log().reads, 25);
}

TEST_F(ReadAhead, WalkByIndexThatRewritesItsRowsNeverCountsFromTheStart) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    log().clear();
    for (int i = 0; i < records; ++i) {
        const CEOID oid = rows.to(static_cast<DWORD>(i));
        ASSERT_EQ(rows.read()->number(), i);
        rows.toRecord(oid);
        rows.write(oid, Row().ui4(1));
    }
    EXPECT_EQ(log().jumps, 0);
    EXPECT_LT(log().reads, 4 * records);
    EXPECT_LT(log().entries, static_cast<std::size_t>(2 * records)) << "nothing is read ahead in vain";
}

TEST_F(ReadAhead, StepsThatRewriteTheirRowsReadNothingAheadInVain) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    log().clear();
    for (CEOID oid = rows.to(0); oid != 0; oid = rows.next()) {
        rows.write(oid, Row().ui4(1));
    }
    EXPECT_LE(log().entries, static_cast<std::size_t>(records + 2));
}

TEST_F(ReadAhead, SingleSeeksReadNoMoreThanTheirRecord) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    log().clear();
    for (int i = 0; i < 100; ++i) {
        EXPECT_NE(rows.firstEqual(Row().number(i * 37)), 0u);
        EXPECT_EQ(rows.read()->number(), i * 37);
    }
    EXPECT_EQ(log().reads, 100);
    EXPECT_EQ(log().entries, 100u);
}

TEST_F(ReadAhead, SeekOfARecordAndItsReadAreOneQuestion) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    const CEOID oid = rows.to(7);
    rows.toLast();
    log().clear();
    rows.toRecord(oid);
    rows.read();
    rows.toRecord(oid);
    rows.read();
    EXPECT_EQ(log().reads, 1);
}

TEST_F(ReadAhead, LargeRecordsAreReadAheadInSmallerBlocks) {
    makeDatabase(TEXT("Large"));
    OpenDatabase rows(TEXT("Large"));
    for (int i = 0; i < 100; ++i) {
        rows.add(Row().blob(std::string(60'000, 'x')));
    }
    log().clear();
    EXPECT_EQ(rows.walk().size(), 100u);
    EXPECT_LT(log().reads, 20);
    rows.to(0);
    rows.by(10);
    rows.next();
    log().clear();
    rows.next();
    EXPECT_LE(log().entries, 64u);
}

TEST_F(ReadAhead, FarIndexIsReachedByCountingOrByWalkingWhicheverIsNearer) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    for (const int index : {4000, 4300, 4999, 100, 117, 90, 0, 2500, 4999}) {
        rows.to(static_cast<DWORD>(index));
        ASSERT_EQ(rows.read()->number(), index);
    }
    EXPECT_NE(rows.by(-4998), 0u);
    EXPECT_EQ(rows.read()->number(), 1);
}

// A batch that was lost

TEST_F(ReadAhead, NothingReadInABatchThatWasLostStays) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    rows.to(2);
    {
        ObjectStoreBatch batch;
        rows.add(Row().number(-1));
        EXPECT_NE(rows.firstEqual(Row().name(TEXT("new order made in here"))), 1u);
        EXPECT_NE(rows.to(3), 0u);
        EXPECT_EQ(rows.read()->number(), 2);
        rows.next();
        log().loseNextUnit = true;
        EXPECT_FALSE(batch.end());
        EXPECT_EQ(GetLastError(), ERROR_DISK_FULL);
    }
    rows.to(3);
    EXPECT_EQ(rows.read()->number(), 3);
    EXPECT_EQ(rows.firstEqual(Row().number(-1)), 0u);
    EXPECT_EQ(rows.firstEqual(Row().name(TEXT("new order made in here"))), 0u);
    EXPECT_EQ(GetLastError(), ERROR_SEEK);
    EXPECT_EQ(rows.info().dwNumRecords, static_cast<DWORD>(records));
}

TEST_F(ReadAhead, HandleOpenedInABatchThatWasLostFindsItsOrderAgain) {
    makeDatabase(TEXT("Small"));
    OpenDatabase rows(TEXT("Small"));
    const CEOID a = rows.add(Row().number(2).ui4(1).i2(5));
    const CEOID b = rows.add(Row().number(1).ui4(2).i2(6));
    std::optional<OpenDatabase> sorted;
    {
        ObjectStoreBatch batch;
        sorted.emplace(TEXT("Small"), numberId);  // builds the order, and the batch takes it along
        EXPECT_EQ(sorted->to(0), b);
        log().loseNextUnit = true;
        EXPECT_FALSE(batch.end());
    }
    OpenDatabase other(TEXT("Small"), dwordId);
    EXPECT_EQ(other.walk(), (Oids{a, b}));
    EXPECT_EQ(sorted->next(), a);
    EXPECT_EQ(sorted->walk(), (Oids{b, a}));
}

TEST_F(ReadAhead, IndexLearntInABatchThatWasLostIsForgotten) {
    OpenDatabase rows(TEXT("Rows"), numberId);
    rows.to(2);
    {
        ObjectStoreBatch batch;
        rows.add(Row().number(-1));
        rows.to(500);
        rows.read();
        log().loseNextUnit = true;
        EXPECT_FALSE(batch.end());
    }
    rows.add(Row().number(records));  // as many changes to the order as the batch had made
    EXPECT_NE(rows.to(500), 0u);
    EXPECT_EQ(rows.read()->number(), 500);
}

}  // namespace
}  // namespace objectstore_test
