#include <array>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/conformance/EngineFactories.h"
#include "tests/platform/engine/RecordBuilders.h"

// What every engine does, one statement a test.

namespace engine_testing {
namespace {

using Platform::Change;
using Platform::ChangeKind;
using Platform::DatabaseInfo;
using Platform::Direction;
using Platform::Entry;
using Platform::Fetch;
using Platform::OrderId;
using Platform::Place;
using Platform::RecordEngine;
using Platform::SortOrder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr CEPROPID rank = property(1, Platform::kindI4);
constexpr CEPROPID name = property(2, Platform::kindText);
constexpr CEPROPID mobile = property(0x3A1C, Platform::kindText);
constexpr CEPROPID picture = property(3, Platform::kindBlob);

class Engine : public testing::TestWithParam<EngineKind> {
protected:
    CEOID makeDatabase(WStringView called = TEXT("Things"), std::vector<SortOrder> orders = {}) {
        CEOID database = 0;
        EXPECT_EQ(engine->createDatabase(called, 7, orders, database), ERROR_SUCCESS);
        return database;
    }
    CEOID put(CEOID database, const Writing& writing, CEOID record = 0) {
        EXPECT_EQ(engine->put(database, record, writing.edits()), ERROR_SUCCESS);
        return record;
    }
    OrderId openOrder(CEOID database, const SortOrder& order) {
        OrderId id = 0;
        EXPECT_EQ(engine->openOrder(database, order, id), ERROR_SUCCESS);
        return id;
    }
    std::vector<CEOID> walk(OrderId order, Direction direction = Direction::forward) {
        return recordsOf(*engine, order, direction);
    }
    static std::vector<CEOID> recordsOf(RecordEngine& of, OrderId order, Direction direction = Direction::forward) {
        std::vector<Entry> entries;
        EXPECT_EQ(of.step(order, nullptr, direction, 1'000'000, Fetch::placesOnly, entries), ERROR_SUCCESS);
        std::vector<CEOID> records;
        records.reserve(entries.size());
        for (const Entry& entry : entries)
            records.push_back(entry.place.record);
        return records;
    }
    DatabaseInfo infoOf(CEOID database) {
        DatabaseInfo info;
        EXPECT_EQ(engine->databaseInfo(database, info), ERROR_SUCCESS);
        return info;
    }
    CEOID idOfContacts() {
        CEOID database = 0;
        EXPECT_EQ(engine->findDatabase(TEXT("Contacts Database"), database), ERROR_SUCCESS);
        return database;
    }
    /// 0 when nobody has it.
    CEOID findNumber(std::string_view number) {
        CEOID record = 0;
        const DWORD error = engine->findNumber(number, {name, 0}, record);
        EXPECT_EQ(error, record == 0 ? ERROR_NO_MORE_ITEMS : ERROR_SUCCESS);
        return record;
    }
    std::uint64_t versionOf(OrderId order) {
        std::uint64_t version = 0;
        EXPECT_EQ(engine->orderVersion(order, version), ERROR_SUCCESS);
        return version;
    }
    std::vector<Change> changesAfter(std::uint64_t sequence) {
        std::vector<Change> changes;
        EXPECT_EQ(engine->changesAfter(sequence, 1'000'000, changes), ERROR_SUCCESS);
        return changes;
    }

    FreshStore store{GetParam().onDisk, quickOptions(), ""};
    std::unique_ptr<RecordEngine> engine = store.connect();
    std::unique_ptr<RecordEngine> second = store.connect();
};

TEST_P(Engine, NewStoreHoldsTheSystemDatabases) {
    CEOID contacts = 0;
    CEOID categories = 0;
    ASSERT_EQ(engine->findDatabase(TEXT("Contacts Database"), contacts), ERROR_SUCCESS);
    ASSERT_EQ(engine->findDatabase(TEXT("\\Categories Database"), categories), ERROR_SUCCESS);

    EXPECT_THAT(infoOf(contacts).declaredOrders, ElementsAre(SortOrder{property(0x4013, Platform::kindText), 0}));
    EXPECT_THAT(infoOf(categories).declaredOrders, IsEmpty());
    EXPECT_EQ(infoOf(contacts).records, 0u);
}

TEST_P(Engine, DatabaseNamesAreComparedWithoutCaseAndCutAtThirtyOneCharacters) {
    const CEOID plain = makeDatabase(TEXT("Straße und 김"));
    const CEOID longer = makeDatabase(WString(40, u'x'));

    CEOID found = 0;
    EXPECT_EQ(engine->findDatabase(TEXT("STRAßE UND 김"), found), ERROR_SUCCESS);
    EXPECT_EQ(found, plain);
    EXPECT_EQ(engine->findDatabase(WString(31, u'X'), found), ERROR_SUCCESS);
    EXPECT_EQ(found, longer);
    EXPECT_EQ(engine->findDatabase(WString(50, u'x'), found), ERROR_SUCCESS);
    EXPECT_EQ(found, longer);
    EXPECT_EQ(infoOf(longer).name, WString(31, u'x'));
    EXPECT_EQ(infoOf(plain).name, TEXT("Straße und 김"));
    EXPECT_EQ(engine->createDatabase(WString(35, u'X'), 0, {}, found), ERROR_ALREADY_EXISTS);
}

TEST_P(Engine, DatabaseInformationIsWhatItWasMadeWith) {
    const std::vector<SortOrder> orders{{rank, Platform::sortDescending}, {name, 2}, {name, 0}, {0, 0}};

    const DatabaseInfo info = infoOf(makeDatabase(TEXT("Things"), orders));

    EXPECT_EQ(info.type, 7u);
    EXPECT_EQ(info.declaredOrders, orders);
    EXPECT_NE(info.id, 0u);
    EXPECT_NE(info.modified, 0u);
}

TEST_P(Engine, RefusesDatabasesThatCannotBe) {
    CEOID database = 77;
    const std::vector<SortOrder> five(5, SortOrder{rank, 0});
    const std::vector<SortOrder> ofBlob{{picture, 0}};
    const std::vector<SortOrder> unknown{{property(1, 4), 0}};

    EXPECT_EQ(engine->createDatabase(TEXT(""), 0, {}, database), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(engine->createDatabase(TEXT("a"), 0, five, database), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(engine->createDatabase(TEXT("a"), 0, ofBlob, database), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(engine->createDatabase(TEXT("a"), 0, unknown, database), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(database, 77u);
    EXPECT_EQ(engine->findDatabase(TEXT("a"), database), ERROR_FILE_NOT_FOUND);
    EXPECT_THAT(Platform::storeErrorText(), Not(IsEmpty()));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
}

TEST_P(Engine, MissingThingsAreNamedByTheirError) {
    const CEOID database = makeDatabase();
    const CEOID gone = 0x00FF'FFFF;
    CEOID record = 0;
    CEOID missing = 12'345;
    DatabaseInfo info;
    OrderId order = 0;
    std::string packed;
    Place place;

    EXPECT_EQ(engine->databaseInfo(gone, info), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(engine->dropDatabase(gone), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(engine->openOrder(gone, {rank, 0}, order), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(engine->openOrder(gone, {}, order), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(engine->openOrder(database, {picture, 0}, order), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(engine->put(gone, record, {}), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(record, 0u);
    EXPECT_EQ(engine->put(database, missing, {}), ERROR_KEY_DELETED);
    EXPECT_EQ(engine->erase(gone, 1), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(engine->erase(database, missing), ERROR_KEY_DELETED);
    EXPECT_EQ(engine->get(database, missing, packed), ERROR_KEY_DELETED);
    EXPECT_EQ(engine->get(gone, missing, packed), ERROR_KEY_DELETED);
    EXPECT_EQ(engine->placeOf(openOrder(database, {rank, 0}), missing, place), ERROR_KEY_DELETED);
    EXPECT_EQ(engine->endUnit(), ERROR_NOT_READY);
}

TEST_P(Engine, RecordOfAnotherDatabaseIsNotFound) {
    const CEOID here = makeDatabase(TEXT("Here"));
    const CEOID there = makeDatabase(TEXT("There"));
    CEOID record = put(there, Writing().set(rank, 1));

    std::string packed;
    EXPECT_EQ(engine->get(here, record, packed), ERROR_KEY_DELETED);
    EXPECT_EQ(engine->erase(here, record), ERROR_KEY_DELETED);
    EXPECT_EQ(engine->put(here, record, {}), ERROR_KEY_DELETED);
}

TEST_P(Engine, IdentifiersAreNeverGivenAgain) {
    const CEOID database = makeDatabase();
    const CEOID first = put(database, {});
    const CEOID last = put(database, {});
    ASSERT_EQ(engine->erase(database, last), ERROR_SUCCESS);
    ASSERT_EQ(engine->dropDatabase(database), ERROR_SUCCESS);

    const CEOID again = makeDatabase();
    const CEOID record = put(again, {});

    EXPECT_LT(database, first);
    EXPECT_LT(first, last);
    EXPECT_LT(last, again);
    EXPECT_LT(again, record);
}

TEST_P(Engine, RefusedWriteChangesNothing) {
    const CEOID database = makeDatabase();
    const OrderId order = openOrder(database, {rank, 0});
    CEOID record = put(database, Writing().set(rank, 1));
    const DatabaseInfo before = infoOf(database);
    const std::uint64_t version = versionOf(order);

    const Writing tooLarge = Writing().set(rank, 2).setBytes(picture, std::string(65'472, 'x'));
    EXPECT_EQ(engine->put(database, record, tooLarge.edits()), ERROR_INVALID_PARAMETER);
    const Writing badWidth = Writing().setBytes(rank, "abc");
    EXPECT_EQ(engine->put(database, record, badWidth.edits()), ERROR_INVALID_PARAMETER);
    CEOID none = 0;
    EXPECT_EQ(engine->put(database, none, badWidth.edits()), ERROR_INVALID_PARAMETER);

    EXPECT_EQ(none, 0u);
    EXPECT_EQ(infoOf(database).modified, before.modified);
    EXPECT_EQ(infoOf(database).records, 1u);
    EXPECT_EQ(versionOf(order), version);
    EXPECT_THAT(changesAfter(1), IsEmpty());
}

TEST_P(Engine, LargestRecordIsKept) {
    const CEOID database = makeDatabase();
    const std::string large(65'471, 'y');
    const Writing writing =
        Writing().setBytes(picture, large).setBytes(property(4, 65), large).setBytes(property(5, 65), "123");

    const CEOID record = put(database, writing);

    std::string packed;
    ASSERT_EQ(engine->get(database, record, packed), ERROR_SUCCESS);
    EXPECT_EQ(Platform::findProperty(packed, picture)->bytes, large);
}

TEST_P(Engine, TiesGoByIdentifierAndBackwardsMirrorsThem) {
    const CEOID database = makeDatabase();
    const CEOID a = put(database, Writing().set(rank, 5));
    const CEOID b = put(database, Writing().set(rank, 5));
    const CEOID c = put(database, Writing().set(rank, -5));
    const CEOID lacking = put(database, {});

    EXPECT_THAT(walk(openOrder(database, {rank, 0})), ElementsAre(c, a, b, lacking));
    EXPECT_THAT(walk(openOrder(database, {rank, 0}), Direction::backward), ElementsAre(lacking, b, a, c));
    EXPECT_THAT(walk(openOrder(database, {rank, Platform::sortUnknownFirst})), ElementsAre(lacking, c, a, b));
    EXPECT_THAT(walk(openOrder(database, {})), ElementsAre(a, b, c, lacking));
}

TEST_P(Engine, OrdersThatDifferOnlyInDirectionAreOne) {
    const CEOID database = makeDatabase(TEXT("Things"), {{rank, Platform::sortDescending}});

    EXPECT_EQ(openOrder(database, {rank, 0}), openOrder(database, {rank, Platform::sortDescending}));
    EXPECT_EQ(openOrder(database, {rank, 0}), openOrder(database, {rank, Platform::sortCaseInsensitive}));
    EXPECT_NE(openOrder(database, {name, 0}), openOrder(database, {name, Platform::sortCaseInsensitive}));
    EXPECT_NE(openOrder(database, {name, 0}), openOrder(database, {name, Platform::sortUnknownFirst}));
    EXPECT_EQ(openOrder(database, {0, Platform::sortDescending}), openOrder(database, {}));
}

TEST_P(Engine, UndeclaredOrderIsBuiltOfTheRecordsThereAndKeptUp) {
    const CEOID database = makeDatabase();
    const CEOID b = put(database, Writing().set(name, TEXT("b")));
    const CEOID a = put(database, Writing().set(name, TEXT("a")));

    const OrderId order = openOrder(database, {name, 0});
    const CEOID middle = put(database, Writing().set(name, TEXT("ab")));

    EXPECT_THAT(walk(order), ElementsAre(a, middle, b));
    EXPECT_THAT(recordsOf(*second, order), ElementsAre(a, middle, b));
}

TEST_P(Engine, OrderBuiltByAnotherIsKnownAtOnce) {
    const CEOID database = makeDatabase();
    const CEOID record = put(database, Writing().set(name, TEXT("b")));
    OrderId order = 0;
    ASSERT_EQ(second->openOrder(database, {name, 0}, order), ERROR_SUCCESS);

    Place place;
    Place found;
    ASSERT_EQ(engine->placeOf(order, record, place), ERROR_SUCCESS);
    ASSERT_EQ(engine->findEqual(order, place.key, openOrder(database, {}), Direction::forward, found), ERROR_SUCCESS);

    EXPECT_EQ(place.key, *engine->sortKeys().keyOf({name, 0}, bytesOf(TEXT("b"))));
    EXPECT_EQ(found.record, record);
}

TEST_P(Engine, APlaceOutlivesItsRecord) {
    const CEOID database = makeDatabase();
    const OrderId order = openOrder(database, {rank, 0});
    put(database, Writing().set(rank, 1));
    const CEOID two = put(database, Writing().set(rank, 2));
    const CEOID three = put(database, Writing().set(rank, 3));
    Place place;
    ASSERT_EQ(engine->placeOf(order, two, place), ERROR_SUCCESS);

    put(database, Writing().set(rank, 9), two);
    std::vector<Entry> next;
    ASSERT_EQ(engine->step(order, &place, Direction::forward, 1, Fetch::placesOnly, next), ERROR_SUCCESS);
    EXPECT_EQ(next.front().place.record, three);

    ASSERT_EQ(engine->erase(database, three), ERROR_SUCCESS);
    ASSERT_EQ(engine->step(order, &place, Direction::forward, 1, Fetch::placesOnly, next), ERROR_SUCCESS);
    EXPECT_EQ(next.front().place.record, two);
}

TEST_P(Engine, FindEqualTakesTheFirstAlongAnotherOrder) {
    const CEOID database = makeDatabase();
    const OrderId byRank = openOrder(database, {rank, 0});
    const OrderId byName = openOrder(database, {name, 0});
    put(database, Writing().set(rank, 1).set(name, TEXT("m")));
    const CEOID z = put(database, Writing().set(rank, 2).set(name, TEXT("z")));
    const CEOID c = put(database, Writing().set(rank, 2).set(name, TEXT("c")));
    const std::string key = *engine->sortKeys().keyOf({rank, 0}, bytesOf(2));

    Place found;
    ASSERT_EQ(engine->findEqual(byRank, key, byName, Direction::forward, found), ERROR_SUCCESS);
    EXPECT_EQ(found.record, c);
    ASSERT_EQ(engine->findEqual(byRank, key, byName, Direction::backward, found), ERROR_SUCCESS);
    EXPECT_EQ(found.record, z);
    ASSERT_EQ(engine->findEqual(byRank, key, byRank, Direction::forward, found), ERROR_SUCCESS);
    EXPECT_EQ(found, (Place{key, z}));
    ASSERT_EQ(engine->findEqual(byRank, key, openOrder(database, {}), Direction::backward, found), ERROR_SUCCESS);
    EXPECT_EQ(found, (Place{"", c}));
    ASSERT_EQ(engine->findEqual(openOrder(database, {}), "", byName, Direction::backward, found), ERROR_SUCCESS);
    EXPECT_EQ(found.record, z);
    EXPECT_EQ(engine->findEqual(openOrder(database, {}), "x", byName, Direction::forward, found), ERROR_NO_MORE_ITEMS);
}

TEST_P(Engine, FindEqualAmongVeryManyStillTakesTheFirst) {
    const CEOID database = makeDatabase();
    const OrderId byRank = openOrder(database, {rank, 0});
    const OrderId byName = openOrder(database, {name, 0});
    ASSERT_EQ(engine->beginUnit(), ERROR_SUCCESS);
    put(database, Writing().set(rank, 1).set(name, TEXT("0")));
    CEOID last = 0;
    for (int i = 999; i > 100; --i) {
        const std::string digits = std::to_string(i);
        last = put(database, Writing().set(rank, 2).set(name, WStringView(WString(digits.begin(), digits.end()))));
    }
    ASSERT_EQ(engine->endUnit(), ERROR_SUCCESS);

    Place found;
    const std::string key = *engine->sortKeys().keyOf({rank, 0}, bytesOf(2));
    ASSERT_EQ(engine->findEqual(byRank, key, byName, Direction::forward, found), ERROR_SUCCESS);
    EXPECT_EQ(found.record, last);
}

TEST_P(Engine, FindEqualRefusesOrdersOfTwoDatabases) {
    const OrderId here = openOrder(makeDatabase(TEXT("Here")), {rank, 0});
    const OrderId there = openOrder(makeDatabase(TEXT("There")), {rank, 0});

    Place found;
    EXPECT_EQ(engine->findEqual(here, "x", there, Direction::forward, found), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(engine->findEqual(here, "x", 0, Direction::forward, found), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(engine->findEqual(987'654, "x", here, Direction::forward, found), ERROR_FILE_NOT_FOUND);
}

TEST_P(Engine, AContactIsFoundByAnyOfItsFiveNumbersHoweverItIsWritten) {
    const CEOID contacts = idOfContacts();
    std::vector<CEOID> records;
    for (const WORD ident : std::to_array<WORD>({0x3A1C, 0x3A09, 0x3A08, 0x4009, 0x3A24})) {
        const WString number = TEXT("+82 10-1234-567") + WString(1, TEXT("56789")[records.size()]);
        records.push_back(put(contacts, Writing().set(property(ident, Platform::kindText), WStringView(number))));
    }

    EXPECT_EQ(findNumber("01012345675"), records[0]);
    EXPECT_EQ(findNumber("01012345676"), records[1]);
    EXPECT_EQ(findNumber("01012345677"), records[2]);
    EXPECT_EQ(findNumber("01012345678"), records[3]);
    EXPECT_EQ(findNumber("01012345679"), records[4]);
    EXPECT_EQ(findNumber("0101234567"), 0u) << "a part of a number is none";
}

TEST_P(Engine, OfTwoHoldersOfANumberTheFirstInTheOrderIsFound) {
    const CEOID contacts = idOfContacts();
    const CEOID zoe = put(contacts, Writing().set(name, TEXT("Zoe")).set(mobile, TEXT("112")));
    const CEOID anna = put(contacts, Writing().set(name, TEXT("Anna")).set(mobile, TEXT("1-1-2")));

    EXPECT_EQ(findNumber("112"), anna);
    put(contacts, Writing().set(mobile, TEXT("113")), anna);
    EXPECT_EQ(findNumber("112"), zoe);
    EXPECT_EQ(findNumber("113"), anna);
    EXPECT_EQ(engine->erase(contacts, zoe), ERROR_SUCCESS);
    EXPECT_EQ(findNumber("112"), 0u);
}

TEST_P(Engine, OnlyContactsAreFoundByTheirNumbers) {
    const CEOID things = makeDatabase();
    put(things, Writing().set(mobile, TEXT("112")));
    EXPECT_EQ(findNumber("112"), 0u);

    put(idOfContacts(), Writing().set(mobile, TEXT("112")));
    EXPECT_EQ(engine->dropDatabase(idOfContacts()), ERROR_SUCCESS);
    const CEOID again = makeDatabase(TEXT("CONTACTS DATABASE"));
    EXPECT_EQ(findNumber("112"), 0u) << "its contacts went with the first database";
    const CEOID holder = put(again, Writing().set(mobile, TEXT("112")));
    EXPECT_EQ(findNumber("112"), holder);
}

TEST_P(Engine, NothingThatOthersCommitDuringAGlanceIsMissedAfterIt) {
    const CEOID database = makeDatabase();
    const CEOID record = put(database, Writing().set(rank, 1));
    const std::uint64_t before = second->storeVersion();
    std::string packed;
    second->beginGlance();
    EXPECT_EQ(second->get(database, record, packed), ERROR_SUCCESS);

    put(database, Writing().set(rank, 2));
    DatabaseInfo info;
    EXPECT_EQ(second->databaseInfo(database, info), ERROR_SUCCESS);
    second->endGlance();

    EXPECT_NE(second->storeVersion(), before);
    EXPECT_EQ(second->databaseInfo(database, info), ERROR_SUCCESS);
    EXPECT_EQ(info.records, 2u);
}

TEST_P(Engine, WhatIsWrittenInAGlanceIsSeenInItAndByOthers) {
    const CEOID database = makeDatabase();
    std::string packed;
    engine->beginGlance();
    EXPECT_EQ(engine->get(database, 7'000, packed), ERROR_KEY_DELETED);
    const CEOID alone = put(database, Writing().set(rank, 1));
    EXPECT_EQ(engine->get(database, alone, packed), ERROR_SUCCESS);
    EXPECT_EQ(engine->beginUnit(), ERROR_SUCCESS);
    const CEOID inUnit = put(database, Writing().set(rank, 2));
    engine->endGlance();
    EXPECT_EQ(engine->endUnit(), ERROR_SUCCESS);

    EXPECT_EQ(second->get(database, alone, packed), ERROR_SUCCESS);
    EXPECT_EQ(second->get(database, inUnit, packed), ERROR_SUCCESS);
}

TEST_P(Engine, OrderVersionMovesWithItsEntriesOnly) {
    const CEOID database = makeDatabase();
    const OrderId byRank = openOrder(database, {rank, 0});
    const OrderId byName = openOrder(database, {name, 0});
    const OrderId created = openOrder(database, {});
    const CEOID record = put(database, Writing().set(rank, 1).set(name, TEXT("a")));
    const auto versions = [&] { return std::array{versionOf(byRank), versionOf(byName), versionOf(created)}; };
    const auto before = versions();

    put(database, Writing().set(rank, 2), record);
    const auto moved = versions();
    put(database, Writing().set(rank, 2), record);
    const auto same = versions();
    ASSERT_EQ(engine->erase(database, record), ERROR_SUCCESS);
    const auto erased = versions();

    EXPECT_GT(moved[0], before[0]);
    EXPECT_EQ(moved[1], before[1]);
    EXPECT_EQ(moved[2], before[2]);
    EXPECT_EQ(same, moved);
    EXPECT_GT(erased[0], moved[0]);
    EXPECT_GT(erased[1], moved[1]);
    EXPECT_GT(erased[2], moved[2]);
}

TEST_P(Engine, StoreVersionTellsOfEverybodysCommits) {
    const CEOID database = makeDatabase();
    const std::uint64_t before = engine->storeVersion();
    const std::uint64_t beforeSecond = second->storeVersion();
    EXPECT_EQ(engine->storeVersion(), before);
    EXPECT_EQ(second->storeVersion(), beforeSecond);

    put(database, {});
    const std::uint64_t after = engine->storeVersion();
    const std::uint64_t afterSecond = second->storeVersion();

    EXPECT_NE(after, before);
    EXPECT_NE(afterSecond, beforeSecond);
    EXPECT_EQ(engine->storeVersion(), after);
}

TEST_P(Engine, ChangesAreNumberedWithoutGapsInCommitOrder) {
    const CEOID database = makeDatabase();
    const CEOID record = put(database, {});
    put(database, Writing().set(rank, 1), record);
    CEOID other = 0;
    ASSERT_EQ(second->put(database, other, {}), ERROR_SUCCESS);
    ASSERT_EQ(engine->erase(database, record), ERROR_SUCCESS);

    const std::vector<Change> changes = changesAfter(0);
    std::uint64_t last = 0;
    ASSERT_EQ(second->lastChange(last), ERROR_SUCCESS);

    ASSERT_EQ(changes.size(), 4u);
    EXPECT_EQ(last, 4u);
    for (std::uint64_t i = 0; i < 4; ++i) {
        EXPECT_EQ(changes[i].sequence, i + 1);
        EXPECT_EQ(changes[i].database, database);
    }
    EXPECT_EQ(changes[0].kind, ChangeKind::created);
    EXPECT_EQ(changes[1].kind, ChangeKind::changed);
    EXPECT_EQ(changes[2].record, other);
    EXPECT_EQ(changes[2].origin, second->origin());
    EXPECT_EQ(changes[3].kind, ChangeKind::deleted);
    EXPECT_EQ(changes[3].origin, engine->origin());
    EXPECT_NE(engine->origin(), second->origin());
}

TEST_P(Engine, DroppingADatabaseRecordsEachOfItsRecordsAsDeleted) {
    const CEOID kept = makeDatabase(TEXT("Kept"));
    const CEOID dropped = makeDatabase(TEXT("Dropped"));
    const CEOID survivor = put(kept, {});
    const CEOID first = put(dropped, Writing().set(rank, 2));
    const CEOID last = put(dropped, Writing().set(rank, 1));
    const OrderId order = openOrder(dropped, {rank, 0});

    ASSERT_EQ(engine->dropDatabase(dropped), ERROR_SUCCESS);

    const std::vector<Change> changes = changesAfter(3);
    ASSERT_EQ(changes.size(), 2u);
    EXPECT_EQ(changes[0].record, first);
    EXPECT_EQ(changes[1].record, last);
    EXPECT_EQ(changes[1].sequence, 5u);
    EXPECT_EQ(changes[1].kind, ChangeKind::deleted);
    EXPECT_THAT(walk(openOrder(kept, {})), ElementsAre(survivor));
    std::vector<Entry> entries;
    EXPECT_EQ(second->step(order, nullptr, Direction::forward, 1, Fetch::records, entries), ERROR_FILE_NOT_FOUND);
    std::uint64_t version = 0;
    EXPECT_EQ(second->orderVersion(order, version), ERROR_FILE_NOT_FOUND);
    put(kept, {});
    EXPECT_EQ(changesAfter(5).front().sequence, 6u);
}

TEST_P(Engine, LogKeepsTheLastHundredThousandChanges) {
    const CEOID database = makeDatabase();
    constexpr std::uint64_t written = Platform::keptChanges + 3'000;
    CEOID record = put(database, {});
    for (std::uint64_t done = 1; done < written;) {
        ASSERT_EQ(engine->beginUnit(), ERROR_SUCCESS);
        for (int i = 0; i < 10'000 && done < written; ++i, ++done) {
            ASSERT_EQ(engine->put(database, record, {}), ERROR_SUCCESS);
        }
        ASSERT_EQ(engine->endUnit(), ERROR_SUCCESS);
    }

    std::vector<Change> changes;
    EXPECT_EQ(second->changesAfter(written - Platform::keptChanges, 1, changes), ERROR_SUCCESS);
    EXPECT_EQ(changes.front().sequence, written - Platform::keptChanges + 1);
    EXPECT_EQ(second->changesAfter(written, 1, changes), ERROR_SUCCESS);
    EXPECT_THAT(changes, IsEmpty());
    EXPECT_EQ(second->changesAfter(0, 10, changes), ERROR_NO_MORE_ITEMS);
    EXPECT_THAT(changes, IsEmpty());
}

TEST_P(Engine, UnitIsSeenByOthersAtItsEndAndByItselfAtOnce) {
    const CEOID database = makeDatabase();
    const OrderId created = openOrder(database, {});
    ASSERT_EQ(engine->beginUnit(), ERROR_SUCCESS);
    const CEOID record = put(database, Writing().set(rank, 1));

    EXPECT_THAT(walk(created), ElementsAre(record));
    EXPECT_EQ(changesAfter(0).size(), 1u);
    EXPECT_THAT(recordsOf(*second, created), IsEmpty());
    std::uint64_t last = 9;
    ASSERT_EQ(second->lastChange(last), ERROR_SUCCESS);
    EXPECT_EQ(last, 0u);

    ASSERT_EQ(engine->endUnit(), ERROR_SUCCESS);
    EXPECT_THAT(recordsOf(*second, created), ElementsAre(record));
}

TEST_P(Engine, FailedCallLeavesTheUnitAsItWas) {
    const CEOID database = makeDatabase();
    ASSERT_EQ(engine->beginUnit(), ERROR_SUCCESS);
    const CEOID record = put(database, Writing().set(rank, 1));
    CEOID missing = 99'999;
    EXPECT_EQ(engine->put(database, missing, {}), ERROR_KEY_DELETED);
    EXPECT_EQ(engine->put(database, missing = 0, Writing().setBytes(rank, "").edits()), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(engine->createDatabase(TEXT("things"), 0, {}, missing), ERROR_ALREADY_EXISTS);

    EXPECT_EQ(engine->endUnit(), ERROR_SUCCESS);

    EXPECT_THAT(recordsOf(*second, openOrder(database, {})), ElementsAre(record));
}

TEST_P(Engine, UnitThatIsDroppedLeavesNothing) {
    const CEOID database = makeDatabase();
    engine->dropUnit();  // there is none
    const CEOID kept = put(database, Writing().set(rank, 1));
    ASSERT_EQ(engine->beginUnit(), ERROR_SUCCESS);
    put(database, Writing().set(rank, 2));
    EXPECT_EQ(engine->erase(database, kept), ERROR_SUCCESS);

    engine->dropUnit();

    EXPECT_EQ(engine->endUnit(), ERROR_NOT_READY);
    EXPECT_THAT(walk(openOrder(database, {})), ElementsAre(kept));
    EXPECT_EQ(changesAfter(0).size(), 1u);
    ASSERT_EQ(second->beginUnit(), ERROR_SUCCESS) << "it is another's turn";
    EXPECT_EQ(second->endUnit(), ERROR_SUCCESS);
    const CEOID next = put(database, Writing().set(rank, 3));
    EXPECT_THAT(recordsOf(*second, openOrder(database, {})), ElementsAre(kept, next));
}

TEST_P(Engine, UnitThatIsNeverEndedLeavesNothing) {
    const CEOID database = makeDatabase();
    ASSERT_EQ(engine->beginUnit(), ERROR_SUCCESS);
    put(database, {});
    makeDatabase(TEXT("Other"));

    engine.reset();
    engine = store.connect();

    EXPECT_THAT(walk(openOrder(database, {})), IsEmpty());
    CEOID other = 0;
    EXPECT_EQ(engine->findDatabase(TEXT("Other"), other), ERROR_FILE_NOT_FOUND);
    EXPECT_THAT(changesAfter(0), IsEmpty());
}

TEST_P(Engine, WriterGivesUpWaitingForAUnitWithAReason) {
    const CEOID database = makeDatabase();
    ASSERT_EQ(engine->beginUnit(), ERROR_SUCCESS);

    CEOID record = 0;
    EXPECT_EQ(second->put(database, record, {}), ERROR_LOCK_VIOLATION);
    EXPECT_THAT(Platform::storeErrorText(), testing::HasSubstr("another"));
    EXPECT_EQ(GetLastError(), ERROR_LOCK_VIOLATION);
    EXPECT_EQ(second->beginUnit(), ERROR_LOCK_VIOLATION);
    EXPECT_EQ(engine->beginUnit(), ERROR_NOT_READY);

    ASSERT_EQ(engine->endUnit(), ERROR_SUCCESS);
    EXPECT_EQ(second->put(database, record, {}), ERROR_SUCCESS);
}

TEST_P(Engine, WritersOfSeveralThreadsWaitForEachOther) {
    FreshStore shared(GetParam().onDisk, {std::chrono::seconds(60), false}, "");
    CEOID database = 0;
    ASSERT_EQ(shared.connect()->createDatabase(TEXT("Shared"), 0, {}, database), ERROR_SUCCESS);
    constexpr int writes = 50;
    const auto count = [&] {
        const auto own = shared.connect();
        for (int i = 0; i < writes; ++i) {
            // Adding one to a number is safe in a unit only.
            if (own->beginUnit() != ERROR_SUCCESS) return;
            DatabaseInfo info;
            CEOID record = 0;
            EXPECT_EQ(own->databaseInfo(database, info), ERROR_SUCCESS);
            EXPECT_EQ(own->put(database, record, Writing().set(rank, static_cast<std::int32_t>(info.records)).edits()),
                      ERROR_SUCCESS);
            EXPECT_EQ(own->endUnit(), ERROR_SUCCESS);
        }
    };

    std::thread one(count);
    std::thread two(count);
    one.join();
    two.join();

    const auto own = shared.connect();
    OrderId order = 0;
    ASSERT_EQ(own->openOrder(database, {rank, 0}, order), ERROR_SUCCESS);
    std::vector<Entry> entries;
    ASSERT_EQ(own->step(order, nullptr, Direction::forward, 1'000, Fetch::records, entries), ERROR_SUCCESS);
    ASSERT_EQ(entries.size(), 2u * writes);
    for (std::int32_t i = 0; i < 2 * writes; ++i) {
        EXPECT_EQ(Platform::findProperty(entries[static_cast<std::size_t>(i)].packed, rank)->bytes, bytesOf(i));
    }
}

INSTANTIATE_TEST_SUITE_P(Engines, Engine, testing::ValuesIn(engineKinds), nameOf);

}  // namespace
}  // namespace engine_testing
