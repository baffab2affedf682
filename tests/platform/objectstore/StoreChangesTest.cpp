#include <thread>

#include "tessera/platform/objectstore/StoreChanges.h"
#include "tests/platform/objectstore/CountingStore.h"
#include "tests/platform/objectstore/StoreTest.h"

namespace objectstore_test {
namespace {

class Reader : public StoreTest {
protected:
    Reader() { makeDatabase(TEXT("Rows")); }

    static Oids readAll(DatabaseReader& reader, std::uint64_t& sequence) {
        Oids met;
        EXPECT_TRUE(reader.readAll(sequence, [&](const RecordView& record) { met.push_back(record.oid()); }));
        return met;
    }
    static std::vector<std::pair<CEOID, StoreChange::Kind>> changes(DatabaseReader& reader, std::uint64_t& sequence) {
        std::vector<StoreChange> found;
        EXPECT_EQ(reader.changesSince(sequence, found), ChangesResult::complete);
        std::vector<std::pair<CEOID, StoreChange::Kind>> pairs;
        for (const StoreChange& change : found) {
            pairs.emplace_back(change.oid, change.kind);
        }
        return pairs;
    }
};
INSTANTIATE_TEST_SUITE_P(BothStores, Reader, bothStores, nameOfKind);

TEST_P(Reader, VisitsAllRecordsInOrder) {
    OpenDatabase rows(TEXT("Rows"), nameId);
    for (int i = 0; i < 1500; ++i) {
        WString name = TEXT("nnnn");
        for (std::size_t digit = 0; digit < 4; ++digit) {
            name[digit] = static_cast<WCHAR>(u'a' + (i * 7919 >> (4 * digit)) % 13);
        }
        rows.add(Row().name(name));
    }
    DatabaseReader reader(TEXT("Rows"), nameId);
    std::uint64_t sequence = 0;
    EXPECT_EQ(readAll(reader, sequence), rows.walk());
}

TEST_P(Reader, ShowsTheTextsInTheirOrderAndNothingElse) {
    const CEPROPID odd = makePropId(30, CEVT_LPWSTR);
    OpenDatabase rows(TEXT("Rows"));
    rows.add(Row().blob("x").name(TEXT("가나다")).number(1).text(odd, TEXT("")));
    DatabaseReader reader(TEXT("Rows"), nameId);
    std::uint64_t sequence = 0;
    int visits = 0;
    EXPECT_TRUE(reader.readAll(sequence, [&](const RecordView& record) {
        ++visits;
        ASSERT_EQ(record.texts().size(), 2u);
        EXPECT_EQ(record.texts()[0].id, nameId);
        EXPECT_EQ(record.texts()[0].text, TEXT("가나다"));
        EXPECT_EQ(record.texts()[1].id, odd);
        EXPECT_EQ(record.text(nameId), TEXT("가나다"));
        EXPECT_EQ(record.text(odd), TEXT("")) << "an empty text is there";
        EXPECT_FALSE(record.text(makePropId(31, CEVT_LPWSTR))) << "a missing one is not";
    }));
    EXPECT_EQ(visits, 1);
}

TEST_P(Reader, SortKeysOrderTheRecordsAndAreTheSameForASingleRead) {
    OpenDatabase rows(TEXT("Rows"), nameId);
    for (const WCHAR* name : {TEXT("b"), TEXT("a"), TEXT("B"), TEXT("나"), TEXT("가"), TEXT("")}) {
        rows.add(Row().name(name));
    }
    rows.add(Row().number(1));
    DatabaseReader reader(TEXT("Rows"), nameId);
    std::uint64_t sequence = 0;
    std::vector<std::pair<std::string, CEOID>> places;
    reader.readAll(sequence,
                   [&](const RecordView& record) { places.emplace_back(std::string(record.sortKey()), record.oid()); });
    EXPECT_EQ(places.size(), 7u);
    EXPECT_TRUE(std::is_sorted(places.begin(), places.end()));
    for (const auto& place : places) {
        EXPECT_TRUE(reader.read(place.second, [&](const RecordView& record) {
            EXPECT_EQ(record.sortKey(), place.first);
            EXPECT_EQ(record.oid(), place.second);
        }));
    }
}

TEST_P(Reader, ReadOfARecordThatIsGoneSaysSo) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID oid = rows.add(Row().name(TEXT("a")));
    DatabaseReader reader(TEXT("Rows"), nameId);
    std::uint64_t sequence = 0;
    readAll(reader, sequence);
    rows.erase(oid);
    EXPECT_FALSE(reader.read(oid, [](const RecordView&) { ADD_FAILURE(); }));
    EXPECT_EQ(GetLastError(), ERROR_KEY_DELETED);
}

TEST_P(Reader, FollowsWhatBecameOfTheRecordsAndOfNoOtherDatabase) {
    makeDatabase(TEXT("Other"));
    OpenDatabase rows(TEXT("Rows"));
    OpenDatabase other(TEXT("Other"));
    const CEOID a = rows.add(Row().name(TEXT("a")));
    const CEOID b = rows.add(Row().name(TEXT("b")));
    DatabaseReader reader(TEXT("Rows"), nameId);
    std::uint64_t sequence = 0;
    readAll(reader, sequence);
    EXPECT_TRUE(changes(reader, sequence).empty());

    other.add(Row().name(TEXT("elsewhere")));
    rows.write(a, Row().name(TEXT("aa")));
    const CEOID c = rows.add(Row().name(TEXT("c")));
    rows.erase(b);

    using Kind = StoreChange::Kind;
    const std::vector<std::pair<CEOID, Kind>> expected = {{a, Kind::changed}, {c, Kind::created}, {b, Kind::deleted}};
    EXPECT_EQ(changes(reader, sequence), expected);
    EXPECT_TRUE(changes(reader, sequence).empty()) << "none twice";
}

TEST_P(Reader, CountsTheChangesOfAllDatabasesTogether) {
    makeDatabase(TEXT("Other"));
    OpenDatabase rows(TEXT("Rows"));
    OpenDatabase others(TEXT("Other"));
    DatabaseReader reader(TEXT("Rows"), nameId);
    DatabaseReader otherReader(TEXT("Other"), nameId);
    std::uint64_t sequence = 0;
    std::uint64_t otherSequence = 0;
    readAll(reader, sequence);
    readAll(otherReader, otherSequence);
    const std::uint64_t start = sequence;

    const CEOID a = rows.add(Row().name(TEXT("a")));
    others.add(Row().name(TEXT("b")));
    rows.erase(a);

    const auto sequencesOf = [](DatabaseReader& each, std::uint64_t& since) {
        std::vector<StoreChange> found;
        EXPECT_EQ(each.changesSince(since, found), ChangesResult::complete);
        std::vector<std::uint64_t> sequences;
        for (const StoreChange& change : found)
            sequences.push_back(change.sequence);
        return sequences;
    };
    EXPECT_EQ(sequencesOf(reader, sequence), (std::vector{start + 1, start + 3}));
    EXPECT_EQ(sequencesOf(otherReader, otherSequence), (std::vector{start + 2}));
    EXPECT_EQ(sequence, start + 3);
    EXPECT_EQ(otherSequence, start + 3);
}

TEST_P(Reader, TellsWhenEachChangeWasWritten) {
    OpenDatabase rows(TEXT("Rows"));
    DatabaseReader reader(TEXT("Rows"), nameId);
    std::uint64_t sequence = 0;
    readAll(reader, sequence);

    std::vector<std::uint64_t> written;
    const CEOID oid = rows.add(Row().number(1));
    written.push_back(ticksOf(rows.info().ftLastModified));
    rows.write(oid, Row().number(2));
    written.push_back(ticksOf(rows.info().ftLastModified));
    rows.erase(oid);
    written.push_back(ticksOf(rows.info().ftLastModified));

    std::vector<StoreChange> found;
    EXPECT_EQ(reader.changesSince(sequence, found), ChangesResult::complete);
    std::vector<std::uint64_t> told;
    for (const StoreChange& change : found)
        told.push_back(ticksOf(change.time));
    EXPECT_EQ(told, written);
}

TEST_P(Reader, FollowsManyChanges) {
    OpenDatabase rows(TEXT("Rows"));
    DatabaseReader reader(TEXT("Rows"), nameId);
    std::uint64_t sequence = 0;
    readAll(reader, sequence);
    {
        const ObjectStoreBatch batch;
        for (int i = 0; i < 1024; ++i) {
            rows.add(Row().number(i));
        }
    }
    EXPECT_EQ(changes(reader, sequence).size(), 1024u);
}

TEST_P(Reader, StampDiffersOnceAnybodyWroteAndNotBefore) {
    OpenDatabase rows(TEXT("Rows"));
    const DatabaseReader reader(TEXT("Rows"), nameId);
    const StoreStamp before = reader.stamp();
    rows.to(0);
    rows.read();
    EXPECT_EQ(reader.stamp(), before);
    rows.add(Row().number(1));
    const StoreStamp own = reader.stamp();
    EXPECT_FALSE(own == before);
    std::thread([] { OpenDatabase(TEXT("Rows")).add(Row().number(2)); }).join();
    EXPECT_FALSE(reader.stamp() == own);
}

TEST_P(Reader, StampDiffersInsideABatchAfterEachWrite) {
    OpenDatabase rows(TEXT("Rows"));
    const DatabaseReader reader(TEXT("Rows"), nameId);
    const ObjectStoreBatch batch;
    StoreStamp before = reader.stamp();
    for (int i = 0; i < 3; ++i) {
        rows.add(Row().number(i));
        EXPECT_FALSE(reader.stamp() == before);
        before = reader.stamp();
    }
}

TEST_P(Reader, AnotherStoreIsReadAnew) {
    OpenDatabase(TEXT("Rows")).add(Row().name(TEXT("old")));
    DatabaseReader reader(TEXT("Rows"), nameId);
    std::uint64_t sequence = 0;
    EXPECT_EQ(readAll(reader, sequence).size(), 1u);
    const StoreStamp before = reader.stamp();

    ASSERT_TRUE(ObjectStore::mountMemory());
    makeDatabase(TEXT("Rows"));

    EXPECT_FALSE(reader.stamp() == before);
    std::vector<StoreChange> found;
    EXPECT_EQ(reader.changesSince(sequence, found), ChangesResult::tooOld);
    EXPECT_TRUE(readAll(reader, sequence).empty());
    EXPECT_EQ(reader.changesSince(sequence, found), ChangesResult::complete);
}

TEST_P(Reader, DatabaseMadeAnewIsReadAnew) {
    DatabaseReader reader(TEXT("Rows"), nameId);
    std::uint64_t sequence = 0;
    readAll(reader, sequence);
    CeDeleteDatabaseEx(OpenDatabase(TEXT("Rows")).oid());
    makeDatabase(TEXT("Rows"));
    std::vector<StoreChange> found;
    EXPECT_EQ(reader.changesSince(sequence, found), ChangesResult::tooOld);
}

TEST_P(Reader, DatabaseThatIsNotThereCannotBeRead) {
    DatabaseReader reader(TEXT("Nowhere"), nameId);
    std::uint64_t sequence = 0;
    EXPECT_FALSE(reader.readAll(sequence, [](const RecordView&) {}));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
}

TEST_P(Reader, SequenceThatTheLogNoLongerReachesIsTooOld) {
    DatabaseReader reader(TEXT("Rows"), nameId);
    std::uint64_t start = 0;
    readAll(reader, start);
    OpenDatabase rows(TEXT("Rows"));
    const CEOID oid = rows.add(Row().number(0));
    {
        const ObjectStoreBatch batch;
        for (int i = 0; i < 100'010; ++i) {
            ASSERT_EQ(rows.write(oid, Row().number(i)), oid);
        }
    }
    std::vector<StoreChange> found;
    EXPECT_EQ(reader.changesSince(start, found), ChangesResult::tooOld);
}

TEST(ReaderOfALostBatch, WhatWasReadInABatchThatWasLostIsTooOld) {
    CountingMount mount;
    makeDatabase(TEXT("Rows"));
    OpenDatabase rows(TEXT("Rows"));
    DatabaseReader reader(TEXT("Rows"), nameId);
    std::uint64_t sequence = 0;
    std::vector<StoreChange> found;
    const auto ignore = [](const RecordView&) {};
    {
        ObjectStoreBatch batch;
        rows.add(Row().name(TEXT("never was")));
        EXPECT_TRUE(reader.readAll(sequence, ignore));
        mount.log.loseNextUnit = true;
        EXPECT_FALSE(batch.end());
    }
    rows.add(Row().name(TEXT("is")));
    EXPECT_EQ(reader.changesSince(sequence, found), ChangesResult::tooOld);
    int visits = 0;
    EXPECT_TRUE(reader.readAll(sequence, [&](const RecordView& record) {
        EXPECT_EQ(record.text(nameId), TEXT("is"));
        ++visits;
    }));
    EXPECT_EQ(visits, 1);
}

TEST(ReaderOfALostBatch, AnotherThreadsLostBatchShowsInTheStamp) {
    CountingMount mount;
    makeDatabase(TEXT("Rows"));
    const DatabaseReader reader(TEXT("Rows"), nameId);
    const StoreStamp before = reader.stamp();
    std::thread([&] {
        ObjectStoreBatch batch;
        OpenDatabase(TEXT("Rows")).add(Row().name(TEXT("never was")));
        mount.log.loseNextUnit = true;
        EXPECT_FALSE(batch.end());
    }).join();
    EXPECT_FALSE(reader.stamp() == before);
}

}  // namespace
}  // namespace objectstore_test
