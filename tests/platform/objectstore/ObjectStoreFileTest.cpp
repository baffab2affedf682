#include <atomic>
#include <thread>

#include <gmock/gmock.h>

#include "tests/platform/objectstore/StoreFileFixture.h"
#include "tests/support/Privacy.h"

namespace objectstore_test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::quickOptions;

TEST_F(StoreFileCheck, FindsNothingInASoundStore) {
    EXPECT_THAT(check(Depth::quick), IsEmpty());
    EXPECT_THAT(check(Depth::full), IsEmpty());
}

TEST_F(StoreFileCheck, FindsNothingWhileAProgramWrites) {
    ASSERT_TRUE(ObjectStore::mount(file.string(), quickOptions()));
    OpenDatabase rows(TEXT("Rows"));
    ObjectStoreBatch batch;
    addRows(rows, 10);
    EXPECT_THAT(check(Depth::full), IsEmpty());
    ASSERT_TRUE(batch.end());
    EXPECT_THAT(check(Depth::full), IsEmpty());
    ObjectStore::unmount();
}

TEST_F(StoreFileCheck, LeavesNothingBesideAClosedStore) {
    EXPECT_THAT(check(Depth::full), IsEmpty());
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

struct Wrong {
    const char* name;
    const char* sql;
    const char* finding;
    Depth depth;

    friend std::ostream& operator<<(std::ostream& out, const Wrong& wrong) { return out << wrong.name; }
};

class StoreFileCheckFinds : public StoreFile, public testing::WithParamInterface<Wrong> {};

TEST_P(StoreFileCheckFinds, WhatIsWrong) {
    runSql(file, GetParam().sql);
    EXPECT_THAT(check(GetParam().depth), Contains(HasSubstr(GetParam().finding)));
    if (GetParam().depth == Depth::full) {
        EXPECT_THAT(check(Depth::quick), IsEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Tables, StoreFileCheckFinds,
    testing::Values(
        Wrong{"RecordLost", "DELETE FROM record WHERE id = (SELECT max(id) FROM record)",
              "\"Rows\": 179 records, but it counts 180", Depth::quick},
        Wrong{"BytesMiscounted", "UPDATE database SET bytes = bytes + 1", "but it counts", Depth::quick},
        Wrong{"KeyLost", "DELETE FROM sort_key WHERE record = (SELECT max(record) FROM sort_key)",
              "a sort order has 179 keys for 180 records", Depth::quick},
        Wrong{"IdentifierGivenAgain", "UPDATE store SET next_id = 5", "the next identifier is 5, but", Depth::quick},
        Wrong{"RecordOfNoDatabase", "INSERT INTO record VALUES ((99 << 32) + 7, x'')", "1 record of no database",
              Depth::quick},
        Wrong{"OrderOfNoDatabase", "INSERT INTO sort_order (database, property, flags, version) VALUES (99, 1, 0, 0)",
              "1 sort order of no database", Depth::quick},
        Wrong{"KeyOfNoOrder", "INSERT INTO sort_key VALUES (99, x'20', 7)", "1 sort key of no sort order",
              Depth::quick},
        Wrong{"NumberOfNoDatabase", "INSERT INTO number VALUES ('112', (99 << 32) + 7)",
              "1 telephone number of no database", Depth::quick},
        Wrong{"NumberOfNobody", "INSERT INTO number VALUES ('112', (1 << 32) + 7), ('113', (1 << 32) + 7)",
              "\"Contacts Database\": 2 telephone numbers that nobody has", Depth::full},
        Wrong{"DeclaredOrderLost",
              "DELETE FROM sort_key WHERE sort_order = (SELECT min(id) FROM sort_order);"
              "DELETE FROM sort_order WHERE id = (SELECT min(id) FROM sort_order)",
              "\"Contacts Database\": a declared sort order is missing", Depth::quick},
        Wrong{"NameDoesNotFold", "UPDATE database SET folded = x'41' WHERE id > 2", "it is not found by its name",
              Depth::quick},
        Wrong{"LogWithAGap", "DELETE FROM change WHERE seq = 17", "the change log has gaps", Depth::quick},
        Wrong{"LogTooShort", "DELETE FROM change WHERE seq = (SELECT max(seq) FROM change)",
              "the change log ends at 219 instead of 220", Depth::quick},
        Wrong{"ChangeOfNoKind", "UPDATE change SET kind = 1 WHERE seq = 17", "1 change of no known kind", Depth::quick},
        Wrong{"StoreRowLost", "DELETE FROM store", "some of the store cannot be read", Depth::quick},
        Wrong{"TableLost", "DROP TABLE change", "some of the store cannot be read", Depth::quick},
        Wrong{"RecordUnreadable",
              "UPDATE record SET data = zeroblob(length(data)) WHERE id = (SELECT max(id) FROM record)",
              "1 record that cannot be read", Depth::full},
        Wrong{"KeyOfAnotherValue",
              "UPDATE sort_key SET key = x'2000' WHERE sort_order = (SELECT max(id) FROM sort_order) AND record = "
              "(SELECT max(record) FROM sort_key)",
              "1 record at a wrong place in a sort order", Depth::full}),
    [](const auto& wrong) { return wrong.param.name; });

TEST_F(StoreFileCheck, FindsAnOverwrittenPage) {
    std::string bytes = readFile(file);
    bytes.replace(bytes.size() - 2 * 4'096, 4'096, 4'096, '\x5A');
    writeFile(file, bytes);
    EXPECT_THAT(check(Depth::quick), Contains(HasSubstr("the file's structure: ")));
}

TEST_F(StoreFileCheck, FindsAFileCutShort) {
    fs::resize_file(file, fs::file_size(file) / 2);
    EXPECT_THAT(check(Depth::quick), Contains(HasSubstr("cut short")));
}

TEST_F(StoreFileCheck, RefusesWhatIsNoStore) {
    Findings findings;
    EXPECT_FALSE(ObjectStoreFile::check((folder / "missing.db").string(), Depth::quick, findings, quickOptions()));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(fs::exists(folder / "missing.db"));
    writeFile(folder / "text", "a shopping list");
    EXPECT_FALSE(ObjectStoreFile::check((folder / "text").string(), Depth::quick, findings, quickOptions()));
    EXPECT_EQ(GetLastError(), ERROR_BAD_FORMAT);
    EXPECT_FALSE(ObjectStoreFile::check(folder.path().string(), Depth::quick, findings, quickOptions()));
    EXPECT_EQ(GetLastError(), ERROR_BAD_FORMAT);
}

TEST_F(StoreFileBackUp, IsTheStoreForItsOwnerOnly) {
    const fs::path copy = folder / "copy of 김's store.db";
    ASSERT_TRUE(ObjectStoreFile::backUp(file.string(), copy.string(), quickOptions())) << ObjectStore::errorText();
    EXPECT_EQ(rowsIn(copy).size(), rowsIn(file).size());
    EXPECT_TRUE(testing_support::isPrivate(copy));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 2);
    Findings findings;
    ASSERT_TRUE(ObjectStoreFile::check(copy.string(), Depth::full, findings, quickOptions()));
    EXPECT_THAT(findings, IsEmpty());
}

TEST_F(StoreFileBackUp, IsOfOneMomentWhoeverWrites) {
    std::atomic<bool> enough = false;
    std::atomic<int> pairs = 0;
    ASSERT_TRUE(ObjectStore::mount(file.string(), quickOptions()));
    std::thread writer([&] {
        OpenDatabase rows(TEXT("Rows"));
        while (!enough) {
            ObjectStoreBatch both;
            addRows(rows, 2);
            if (both.end()) ++pairs;
        }
    });
    std::vector<fs::path> copies;
    for (int i = 0; i < 5; ++i) {
        const int before = pairs;
        while (pairs < before + 3) {
            std::this_thread::yield();
        }
        copies.push_back(folder / ("copy" + std::to_string(i) + ".db"));
        EXPECT_TRUE(ObjectStoreFile::backUp(file.string(), copies.back().string(), quickOptions()))
            << ObjectStore::errorText();
    }
    enough = true;
    writer.join();
    ObjectStore::unmount();

    std::size_t last = 0;
    for (const fs::path& copy : copies) {
        const std::size_t count = rowsIn(copy).size();
        EXPECT_EQ(count % 2, 0u);
        EXPECT_GE(count, last + 6);
        last = count;
    }
}

TEST_F(StoreFileBackUp, NeverWritesOverAFile) {
    const fs::path taken = folder / "taken";
    writeFile(taken, "precious");
    EXPECT_FALSE(ObjectStoreFile::backUp(file.string(), taken.string(), quickOptions()));
    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
    EXPECT_EQ(ObjectStore::errorText(), taken.string() + ": there is a file of this name");
    EXPECT_EQ(readFile(taken), "precious");
    EXPECT_FALSE(ObjectStoreFile::backUp(file.string(), file.string(), quickOptions()));
    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
}

TEST_F(StoreFileBackUp, LeavesNothingWhereItCannotBeMade) {
    const std::string copy = (folder / "none" / "copy.db").string();
    EXPECT_FALSE(ObjectStoreFile::backUp(file.string(), copy, quickOptions()));
    EXPECT_EQ(ObjectStore::errorText(), copy + ": the store cannot be made: there is no such folder");
    EXPECT_FALSE(ObjectStoreFile::backUp((folder / "none").string(), (folder / "copy.db").string(), quickOptions()));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

}  // namespace
}  // namespace objectstore_test
