#include <atomic>
#include <fstream>
#include <functional>
#include <map>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "tessera/platform/engine/StoreError.h"
#include "tests/platform/engine/SqliteStoreFixture.h"
#include "tests/support/Files.h"
#include "tests/support/Sql.h"
#include "tests/support/TemporaryStore.h"

// What only a store on disk can show: its file.

namespace engine_testing {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::folderContent;
using testing_support::readFile;
using testing_support::runSql;
using testing_support::writeFile;

/// A finished store's bytes, nothing beside them.
std::string storeBytes() {
    const TemporaryFolder folder;
    put(*connect(folder / "store.db"), TEXT("someone"));
    return readFile(folder / "store.db");
}

std::string foreignBytes() {
    const TemporaryFolder folder;
    runSql(folder / "foreign.db", "CREATE TABLE t (a); INSERT INTO t VALUES (1)");
    return readFile(folder / "foreign.db");
}

std::string patched(std::string bytes, std::size_t at, const std::string& with) {
    return bytes.replace(at, with.size(), with);
}

TEST(SqliteStore, ReopenedHoldsWhatWasWritten) {
    const TemporaryFolder folder;
    std::vector<CEOID> written;
    std::uint64_t modified = 0;
    {
        const auto engine = connect(folder / "store.db");
        byName(*engine);
        written = {put(*engine, TEXT("b")), put(*engine, TEXT("a"))};
        Platform::DatabaseInfo info;
        ASSERT_EQ(engine->databaseInfo(contactsOf(*engine), info), ERROR_SUCCESS);
        modified = info.modified;
    }

    const auto engine = connect(folder / "store.db");

    EXPECT_THAT(walk(*engine, byName(*engine)), ElementsAre(written[1], written[0]));
    std::uint64_t last = 0;
    EXPECT_EQ(engine->lastChange(last), ERROR_SUCCESS);
    EXPECT_EQ(last, 2u);
    Platform::DatabaseInfo info;
    EXPECT_EQ(engine->databaseInfo(contactsOf(*engine), info), ERROR_SUCCESS);
    EXPECT_EQ(info.modified, modified);
    EXPECT_EQ(info.records, 2u);
    EXPECT_GT(put(*engine, TEXT("c")), written[1]);
}

TEST(SqliteStore, LeavesOneFileWhenAllHaveClosedIt) {
    const TemporaryFolder folder;

    put(*connect(folder / "store.db"), TEXT("a"));

    EXPECT_EQ(folderContent(folder.path()).size(), 1u);
}

TEST(SqliteStore, FullDurabilityKeepsARecordToo) {
    const TemporaryFolder folder;
    const auto store = Platform::openSqliteStore(folder / "store.db", {}, "");
    ASSERT_TRUE(store);
    const auto engine = store->connect();
    const CEOID record = put(*engine, TEXT("a"));

    EXPECT_THAT(walk(*connect(folder / "store.db"), byName(*engine)), ElementsAre(record));
}

TEST(SqliteStore, EveryConnectionAfterTheFirstIsAnotherWriter) {
    const TemporaryFolder folder;
    const auto store = open(folder / "store.db");
    const auto one = store->connect();
    const auto two = store->connect();
    ASSERT_TRUE(one && two);

    const CEOID record = put(*one, TEXT("a"));

    EXPECT_THAT(walk(*two, byName(*two)), ElementsAre(record));
    EXPECT_NE(one->origin(), two->origin());
}

TEST(SqliteStore, LocaleIsFixedWhenItIsMade) {
    const TemporaryFolder folder;
    ASSERT_TRUE(open(folder / "store.db", "ko_KR"));

    const auto engine = connect(folder / "store.db");

    const Platform::SortKeys korean("ko_KR");
    EXPECT_EQ(engine->sortKeys().keyOf({name, 0}, bytesOf(TEXT("가a"))), korean.keyOf({name, 0}, bytesOf(TEXT("가a"))));
}

struct Refused {
    const char* called;
    std::string (*content)();
    DWORD error;
    const char* says;
};

void PrintTo(const Refused& refused, std::ostream* out) {
    *out << refused.called;
}

class SqliteStoreRefuses : public testing::TestWithParam<Refused> {};

TEST_P(SqliteStoreRefuses, TheFileAndLeavesItUntouched) {
    const TemporaryFolder folder;
    const fs::path file = folder / "store.db";
    writeFile(file, GetParam().content());
    const auto before = folderContent(folder.path());

    EXPECT_EQ(open(file), nullptr);

    EXPECT_EQ(GetLastError(), GetParam().error);
    EXPECT_THAT(Platform::storeErrorText(), HasSubstr(file.string() + ": "));
    EXPECT_THAT(Platform::storeErrorText(), HasSubstr(GetParam().says));
    EXPECT_EQ(folderContent(folder.path()), before);
}

INSTANTIATE_TEST_SUITE_P(
    Files, SqliteStoreRefuses,
    testing::Values(
        Refused{"Empty", [] { return std::string(); }, ERROR_BAD_FORMAT, "not a Tessera store"},
        Refused{"Text", [] { return std::string("Name,Mobile\nKim,010\n"); }, ERROR_BAD_FORMAT, "not a Tessera store"},
        Refused{"LongText", [] { return std::string(20'000, 'x'); }, ERROR_BAD_FORMAT, "not a Tessera store"},
        Refused{"ForeignDatabase", foreignBytes, ERROR_BAD_FORMAT, "not a Tessera store"},
        Refused{"HeaderOnly", [] { return storeBytes().substr(0, 60); }, ERROR_FILE_CORRUPT, "damaged"},
        Refused{"CutWithinAPage", [] { return storeBytes().substr(0, 6'000); }, ERROR_FILE_CORRUPT, "damaged"},
        Refused{"CutBetweenPages", [] { return storeBytes().substr(0, 4 * 4'096); }, ERROR_FILE_CORRUPT, "damaged"},
        Refused{"FirstPageOverwritten", [] { return patched(storeBytes(), 100, std::string(3'900, '\xA5')); },
                ERROR_FILE_CORRUPT, "damaged"},
        Refused{"TablesOverwritten", [] { return patched(storeBytes(), 4'096, std::string(4'096, '\xA5')); },
                ERROR_FILE_CORRUPT, "damaged"},
        Refused{"NoVersion", [] { return patched(storeBytes(), 60, std::string(4, '\0')); }, ERROR_FILE_CORRUPT,
                "damaged"},
        Refused{"NewerVersion", [] { return patched(storeBytes(), 60, std::string("\0\0\0\3", 4)); },
                ERROR_REVISION_MISMATCH, "newer version"}),
    [](const auto& each) { return std::string(each.param.called); });

/// All but the index of the log, which every reader may write.
std::map<std::string, std::string> storeAndLog(const fs::path& folder) {
    auto files = folderContent(folder);
    files.erase("store.db-shm");
    return files;
}

/// A store that a newer program, still at work, has made one of its own version: so far only the log says so.
class StoreBecomeNewer {
public:
    explicit StoreBecomeNewer(const fs::path& file) {
        put(*connect(file), TEXT("a"));
        EXPECT_EQ(testing_support::openSqlite(file, newer_), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(newer_, "PRAGMA user_version = 3; CREATE TABLE newer (a)", nullptr, nullptr, nullptr),
                  SQLITE_OK);
    }
    ~StoreBecomeNewer() { sqlite3_close(newer_); }
    StoreBecomeNewer(const StoreBecomeNewer&) = delete;
    StoreBecomeNewer& operator=(const StoreBecomeNewer&) = delete;

private:
    sqlite3* newer_ = nullptr;
};

TEST(SqliteStore, IsRefusedWhenANewerProgramAtWorkHasChangedItsFormat) {
    const TemporaryFolder folder;
    const StoreBecomeNewer newer(folder / "store.db");
    const auto before = storeAndLog(folder.path());

    EXPECT_EQ(open(folder / "store.db"), nullptr);

    EXPECT_EQ(GetLastError(), ERROR_REVISION_MISMATCH);
    EXPECT_THAT(Platform::storeErrorText(), HasSubstr("newer version"));
    EXPECT_TRUE(storeAndLog(folder.path()) == before);
}

TEST(SqliteStore, IsRefusedWhenANewerProgramWasKilledThatHadChangedItsFormat) {
    const TemporaryFolder folder;
    const TemporaryFolder left;
    {
        const StoreBecomeNewer newer(folder / "store.db");
        for (const char* file : {"store.db", "store.db-wal"})
            fs::copy(folder / file, left / file);
    }
    const auto before = storeAndLog(left.path());

    EXPECT_EQ(open(left / "store.db"), nullptr);

    EXPECT_EQ(GetLastError(), ERROR_REVISION_MISMATCH);
    EXPECT_TRUE(storeAndLog(left.path()) == before);
}

/// A program killed while it folds the log into the file has written the first page, which says how long the file will
/// be, before the last ones.
TEST(SqliteStore, HoldsEverythingAfterADeathWithinACheckpoint) {
    const TemporaryFolder folder;
    const TemporaryFolder left;
    const fs::path file = folder / "store.db";
    constexpr std::size_t page = 4'096;
    std::vector<CEOID> written;
    {
        const auto engine = connect(file);
        ASSERT_EQ(engine->beginUnit(), ERROR_SUCCESS);
        for (int i = 0; i < 100; ++i)
            written.push_back(put(*engine, WString(500, u'a')));
        ASSERT_EQ(engine->endUnit(), ERROR_SUCCESS);
        for (const char* each : {"store.db", "store.db-wal"})
            fs::copy(folder / each, left / each);
    }
    const std::string before = readFile(left / "store.db");
    const std::string folded = readFile(file);
    ASSERT_LT(before.size(), folded.size());
    writeFile(left / "store.db", folded.substr(0, page) + before.substr(page));

    const auto engine = connect(left / "store.db");

    ASSERT_NE(engine, nullptr) << Platform::storeErrorText();
    EXPECT_EQ(walk(*engine, byName(*engine)), written);
}

TEST(SqliteStore, SaysWhereItCannotBeMade) {
    const TemporaryFolder folder;
    writeFile(folder / "file", "not a folder");

    EXPECT_EQ(open(folder / "file" / "store.db"), nullptr);

    EXPECT_NE(GetLastError(), ERROR_SUCCESS);
    EXPECT_THAT(Platform::storeErrorText(), HasSubstr((folder / "file").string()));
    EXPECT_EQ(readFile(folder / "file"), "not a folder");
}

TEST(SqliteStore, AFolderIsNotAStore) {
    const TemporaryFolder folder;

    EXPECT_EQ(open(folder.path()), nullptr);

    EXPECT_EQ(GetLastError(), ERROR_BAD_FORMAT);
    EXPECT_THAT(Platform::storeErrorText(), HasSubstr("it is a folder"));
}

TEST(SqliteStore, WaitingWriterHasItsTurnBetweenTheLongUnitsOfAnother) {
    const TemporaryFolder folder;
    const fs::path file = folder / "store.db";
    ASSERT_TRUE(open(file));
    std::atomic<bool> served = false;
    std::atomic<int> units = 0;
    std::thread greedy([&] {
        const auto store = Platform::openSqliteStore(file, {std::chrono::seconds(60), false}, "");
        const auto engine = store->connect();
        while (!served && units < 100) {
            if (engine->beginUnit() != ERROR_SUCCESS) continue;
            const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(60);
            while (std::chrono::steady_clock::now() < end) {
                put(*engine, TEXT("greedy"));
            }
            ++units;
            EXPECT_EQ(engine->endUnit(), ERROR_SUCCESS);
        }
    });
    const auto store = Platform::openSqliteStore(file, {std::chrono::seconds(60), false}, "");
    const auto engine = store->connect();
    while (units == 0) {
        std::this_thread::yield();
    }

    put(*engine, TEXT("modest"));
    served = true;
    greedy.join();

    EXPECT_LT(units, 100);
}

TEST(SqliteStore, DamagedRecordIsAnErrorAndNotMore) {
    const TemporaryFolder folder;
    const fs::path file = folder / "store.db";
    const auto engine = connect(file);
    const OrderId order = byName(*engine);
    CEOID damaged = put(*engine, TEXT("a"));
    const CEOID whole = put(*engine, TEXT("b"));
    runSql(file, "UPDATE record SET data = x'010203' WHERE id = (SELECT min(id) FROM record)");
    const CEOID contacts = contactsOf(*engine);
    std::string packed;
    std::vector<Entry> entries;
    Platform::Place place;

    EXPECT_EQ(engine->get(contacts, damaged, packed), ERROR_FILE_CORRUPT);
    EXPECT_THAT(Platform::storeErrorText(), HasSubstr(file.string()));
    EXPECT_EQ(engine->step(order, nullptr, Direction::forward, 9, Fetch::records, entries), ERROR_FILE_CORRUPT);
    EXPECT_EQ(engine->placeOf(order, damaged, place), ERROR_FILE_CORRUPT);
    ASSERT_EQ(engine->beginUnit(), ERROR_SUCCESS);
    EXPECT_EQ(engine->put(contacts, damaged, Writing().set(name, TEXT("c")).edits()), ERROR_FILE_CORRUPT);
    EXPECT_EQ(engine->erase(contacts, damaged), ERROR_FILE_CORRUPT);
    EXPECT_EQ(engine->endUnit(), ERROR_SUCCESS);

    EXPECT_EQ(engine->get(contacts, whole, packed), ERROR_SUCCESS);
    EXPECT_THAT(walk(*engine, order), ElementsAre(damaged, whole));
}

TEST(SqliteStore, MoreChangesThanCanBeCountedAreDamage) {
    const TemporaryFolder folder;
    const fs::path file = folder / "store.db";
    const auto engine = connect(file);
    put(*engine, TEXT("a"));
    runSql(file, "UPDATE store SET last_change = -200");

    std::uint64_t last = 0;
    EXPECT_EQ(engine->lastChange(last), ERROR_FILE_CORRUPT);
    EXPECT_EQ(open(file), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_FILE_CORRUPT);
}

TEST(SqliteStore, IndexEntryWithoutItsRecordIsDamage) {
    const TemporaryFolder folder;
    const fs::path file = folder / "store.db";
    const auto engine = connect(file);
    const OrderId order = byName(*engine);
    put(*engine, TEXT("a"));
    runSql(file, "DELETE FROM record");

    std::vector<Entry> entries;
    EXPECT_EQ(engine->step(order, nullptr, Direction::forward, 9, Fetch::records, entries), ERROR_FILE_CORRUPT);
}

TEST(SqliteStore, FailureOfStorageGivesUpTheWholeUnit) {
    const TemporaryFolder folder;
    const fs::path file = folder / "store.db";
    const auto engine = connect(file);
    const OrderId order = byName(*engine);
    const CEOID kept = put(*engine, TEXT("kept"));
    const CEOID contacts = contactsOf(*engine);
    runSql(file,
           "CREATE TRIGGER refuse BEFORE INSERT ON record WHEN length(NEW.data) > 1000 "
           "BEGIN SELECT RAISE(ABORT, 'no'); END");
    ASSERT_EQ(engine->beginUnit(), ERROR_SUCCESS);
    put(*engine, TEXT("lost"));

    CEOID record = 0;
    const Writing large = Writing().set(name, WStringView(WString(1'000, u'x')));
    EXPECT_EQ(engine->put(contacts, record, large.edits()), ERROR_FILE_CORRUPT);
    EXPECT_EQ(record, 0u);
    EXPECT_EQ(engine->put(contacts, record, {}), ERROR_FILE_CORRUPT);
    EXPECT_EQ(engine->erase(contacts, kept), ERROR_FILE_CORRUPT);
    EXPECT_THAT(walk(*engine, order), ElementsAre(kept));
    EXPECT_EQ(engine->endUnit(), ERROR_FILE_CORRUPT);
    EXPECT_THAT(Platform::storeErrorText(), HasSubstr(file.string()));

    const CEOID next = put(*engine, TEXT("next"));
    EXPECT_THAT(walk(*engine, order), ElementsAre(kept, next));
    std::uint64_t last = 0;
    EXPECT_EQ(engine->lastChange(last), ERROR_SUCCESS);
    EXPECT_EQ(last, 2u);
}

TEST(SqliteStore, KeysOfAnotherCollationAreMadeAnew) {
    const TemporaryFolder folder;
    const fs::path file = folder / "store.db";
    CEOID b = 0;
    CEOID a = 0;
    OrderId order = 0;
    std::uint64_t versionBefore = 0;
    {
        const auto engine = connect(file);
        order = byName(*engine);
        b = put(*engine, TEXT("b"));
        a = put(*engine, TEXT("a"));
        ASSERT_EQ(engine->orderVersion(order, versionBefore), ERROR_SUCCESS);
    }
    runSql(file, "UPDATE store SET collation = 'of old'; UPDATE sort_key SET key = CAST('k' || record AS BLOB)");

    const auto engine = connect(file);

    EXPECT_THAT(walk(*engine, order), ElementsAre(a, b));
    std::uint64_t version = 0;
    EXPECT_EQ(engine->orderVersion(order, version), ERROR_SUCCESS);
    EXPECT_GT(version, versionBefore);
}

TEST(SqliteStore, KeysOfTwoCollationsAreNeverMixed) {
    const TemporaryFolder folder;
    const fs::path file = folder / "store.db";
    const auto engine = connect(file);
    const CEOID contacts = contactsOf(*engine);
    put(*engine, TEXT("a"));
    runSql(file, "UPDATE store SET collation = 'of a newer program'");

    CEOID record = 0;
    EXPECT_EQ(engine->put(contacts, record, {}), ERROR_REVISION_MISMATCH);
    EXPECT_EQ(engine->beginUnit(), ERROR_REVISION_MISMATCH);
    EXPECT_THAT(Platform::storeErrorText(), HasSubstr("collation"));
    EXPECT_NE(put(*connect(file), TEXT("b")), 0u);  // which brings the keys back
    EXPECT_EQ(engine->put(contacts, record, {}), ERROR_SUCCESS);
}

}  // namespace
}  // namespace engine_testing
