#include <algorithm>
#include <random>

#include <gmock/gmock.h>

#include "tests/platform/objectstore/RecoveryFixture.h"
#include "tests/support/Privacy.h"

// What can be saved from a damaged store.

namespace objectstore_test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::quickOptions;
using testing_support::TemporaryFolder;

constexpr std::size_t rowsInAPage = 120;  ///< At most.

TEST_F(Recovery, OfASoundStoreLosesNothing) {
    makeRows(300);
    const auto before = rowsIn(file);
    const std::string bytes = readFile(file);

    const auto recovery = recover();

    EXPECT_THAT(recovery.losses, IsEmpty());
    EXPECT_EQ(recovery.records, 300u);
    EXPECT_EQ(recovery.databases, 3u) << "rows, contacts and categories";
    EXPECT_EQ(lost(before, rowsIn(saved)), 0u);
    EXPECT_EQ(readFile(file), bytes);
    EXPECT_TRUE(testing_support::isPrivate(saved));
}

TEST_F(Recovery, KeepsOrdersAndGoesOnWithNewIdentifiers) {
    makeRows(30);
    CEOID highest = rowsIn(file).rbegin()->first;
    recover();

    ASSERT_TRUE(ObjectStore::mount(saved.string(), quickOptions()));
    {
        OpenDatabase byFirstDeclared(TEXT("Rows"));
        EXPECT_EQ(byFirstDeclared.readRecord(byFirstDeclared.to(0)).name(), TEXT("김민수 a"));
        EXPECT_EQ(byFirstDeclared.readRecord(byFirstDeclared.to(1)).name(), TEXT("김민수 a"));
        EXPECT_EQ(byFirstDeclared.readRecord(byFirstDeclared.toLast()).name(), TEXT("김민수 z"));
        EXPECT_GT(byFirstDeclared.add(Row().name(TEXT("new")).number(1)), highest);
    }
    ObjectStore::unmount();
}

TEST_F(Recovery, SavesRecordsLongerThanAPage) {
    const WString name(30'000, u'힣');
    makeStore(file, [&](OpenDatabase& rows) {
        rows.add(Row().name(name).number(1));
        rows.add(Row().name(TEXT("short")).number(2));
        rows.add(Row().name(name).blob(std::string(65'000, 'b')).number(3));
    });
    const auto before = rowsIn(file);
    EXPECT_EQ(recover().records, 3u);
    EXPECT_EQ(lost(before, rowsIn(saved)), 0u);
}

TEST_F(Recovery, LosesTheRecordsOfAnOverwrittenPageOnly) {
    makeRows(2'000);
    const auto before = rowsIn(file);
    const std::size_t pages = readFile(file).size() / pageBytes;
    std::size_t pagesWithRecords = 0;
    for (std::size_t page = 20; page < pages; page += pages / 20) {
        const std::string whole = readFile(file);
        overwritePage(page);
        const auto recovery = recover();
        const std::size_t gone = lost(before, rowsIn(saved));
        EXPECT_LE(gone, rowsInAPage) << "of page " << page;
        if (gone != 0) {
            ++pagesWithRecords;
            EXPECT_THAT(recovery.losses, Contains("database \"Rows\": " + std::to_string(gone) + " of 2000 records"));
        }
        fs::remove(saved);
        writeFile(file, whole);
    }
    EXPECT_GT(pagesWithRecords, 0u);
}

TEST_F(Recovery, NeedsNeitherTheHeaderNorTheTables) {
    makeRows(500);
    const auto before = rowsIn(file);
    // The file's header with the schema; and, each in its own page, what the store and its databases say of themselves.
    for (std::size_t page = 0; page < 9; ++page) {
        SCOPED_TRACE("page " + std::to_string(page));
        const std::string whole = readFile(file);
        overwritePage(page);
        recover();
        EXPECT_LE(lost(before, rowsIn(saved)), rowsInAPage);
        fs::remove(saved);
        writeFile(file, whole);
    }
}

TEST_F(Recovery, LeavesOutARecordThatIsDamagedItself) {
    makeRows(50);
    const auto before = rowsIn(file);
    runSql(file, "UPDATE record SET data = x'1F00' WHERE id = (SELECT max(id) FROM record)");
    const auto recovery = recover();
    EXPECT_THAT(recovery.losses, Contains("records that are damaged themselves: 1"));
    EXPECT_EQ(recovery.records, 49u);
    EXPECT_EQ(lost(before, rowsIn(saved)), 1u);
}

// "Rows" is the first database that is made in a new store, behind the two that each has.
constexpr const WCHAR* nameInstead = TEXT("Recovered 3");
const std::string nameOfRowsIsLost = "the name of a database: its records are now in \"Recovered 3\"";

TEST_F(Recovery, GivesADatabaseAnotherNameWhenItsOwnIsNowhere) {
    makeRows(500);
    const auto before = rowsIn(file);
    const std::string name("R\0o\0w\0s", 7);
    const std::string inTheIndex("R\0O\0W\0S", 7);
    for (const std::string& wanted : {name, inTheIndex}) {
        const std::size_t place = readFile(file).find(wanted);
        ASSERT_NE(place, std::string::npos);
        overwritePage(place / pageBytes);
    }
    const auto recovery = recover();
    EXPECT_THAT(recovery.losses, Contains(nameOfRowsIsLost));
    EXPECT_EQ(recovery.records, 500u);
    EXPECT_EQ(lost(before, rowsIn(saved, nameInstead)), 0u);
}

TEST_F(Recovery, SavesTheFirstPartOfAFileCutShort) {
    makeRows(2'000);
    const auto before = rowsIn(file);
    fs::resize_file(file, fs::file_size(file) * 2 / 3 + 123);
    const auto recovery = recover();
    EXPECT_GT(recovery.records, 500u);
    EXPECT_LT(recovery.records, 2'000u);
    EXPECT_EQ(lost(before, rowsIn(saved)), 2'000u - recovery.records);
}

TEST_F(Recovery, DoesNotBringBackWhatWasDeleted) {
    makeStore(file, [&](OpenDatabase& rows) {
        addRows(rows, 2'000);
        const Oids all = rows.walk();
        for (std::size_t i = 0; i < 1'500; ++i)
            rows.erase(all[i]);
    });
    const auto before = rowsIn(file);
    ASSERT_EQ(before.size(), 500u);
    EXPECT_EQ(recover().records, 500u);
    EXPECT_EQ(lost(before, rowsIn(saved)), 0u);
}

TEST_F(Recovery, MakesNothingOfAFileThatIsNoStore) {
    ObjectStoreFile::Recovery recovery;
    for (const std::string& content : {std::string(), std::string("a shopping list"), std::string(100'000, 'x')}) {
        writeFile(file, content);
        EXPECT_FALSE(ObjectStoreFile::recover(file.string(), saved.string(), recovery, quickOptions()));
        EXPECT_EQ(GetLastError(), ERROR_BAD_FORMAT);
        EXPECT_FALSE(fs::exists(saved));
    }
    EXPECT_FALSE(ObjectStoreFile::recover((folder / "none").string(), saved.string(), recovery, quickOptions()));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
}

TEST_F(Recovery, NeverWritesOverAFile) {
    makeRows(3);
    writeFile(saved, "precious");
    ObjectStoreFile::Recovery recovery;
    EXPECT_FALSE(ObjectStoreFile::recover(file.string(), saved.string(), recovery, quickOptions()));
    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
    EXPECT_EQ(readFile(saved), "precious");
    EXPECT_FALSE(ObjectStoreFile::recover(file.string(), file.string(), recovery, quickOptions()));
}

TEST_F(Recovery, InventsNothingWhateverPagesAreReplaced) {
    makeRows(400);
    const auto before = rowsIn(file);
    const std::string whole = readFile(file);
    const auto seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const std::size_t pages = whole.size() / pageBytes;
    for (int round = 0; round < 40; ++round) {
        std::string bytes = whole;
        for (std::size_t i = 0; i < 1 + random() % 4; ++i) {
            // With another page of the file: what reads well but is at a wrong place.
            bytes.replace(random() % pages * pageBytes, pageBytes, whole, random() % pages * pageBytes, pageBytes);
        }
        writeFile(file, bytes);
        ObjectStoreFile::Recovery recovery;
        ASSERT_TRUE(ObjectStoreFile::recover(file.string(), saved.string(), recovery, quickOptions()))
            << ObjectStore::errorText();
        const bool named = std::ranges::find(recovery.losses, nameOfRowsIsLost) == recovery.losses.end();
        ASSERT_NO_FATAL_FAILURE(lost(before, rowsIn(saved, named ? TEXT("Rows") : nameInstead)));
        fs::remove(saved);
    }
}

}  // namespace
}  // namespace objectstore_test
