// The disk that other tests put under a store fails when it is asked to, and loses what a disk may lose: no less, or
// they would show nothing, and no more.

#include <memory>
#include <random>
#include <set>
#include <string>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "tests/support/FaultyDisk.h"
#include "tests/support/PlaceInMemory.h"
#include "tests/support/Sql.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/ToolRunner.h"

namespace testing_support {
namespace {

constexpr const char* file = "numbers.db";

/// A table of the numbers from 1 on, in a file of SQLite's with a write-ahead log.
class Numbers {
public:
    explicit Numbers(const std::filesystem::path& folder, const std::string& durability = "FULL") {
        sqlite3* opened = nullptr;
        openSqlite(folder / file, opened);  // what fails here fails again below
        database_.reset(opened);
        run("PRAGMA synchronous = " + durability);
        run("PRAGMA journal_mode = WAL");
        run("CREATE TABLE IF NOT EXISTS numbers (number INTEGER PRIMARY KEY)");
    }

    int add() { return run("INSERT INTO numbers VALUES (NULL)"); }
    /// -1 when they cannot be read.
    int count() const {
        int count = -1;
        const auto take = [](void* into, int, char** values, char**) {
            *static_cast<int*>(into) = std::stoi(values[0]);
            return 0;
        };
        sqlite3_exec(database_.get(), "SELECT count(*) FROM numbers", take, &count, nullptr);
        return count;
    }

private:
    int run(const std::string& statement) {
        return sqlite3_exec(database_.get(), statement.c_str(), nullptr, nullptr, nullptr);
    }

    std::unique_ptr<sqlite3, int (*)(sqlite3*)> database_{nullptr, sqlite3_close};
};

void makeNumbers(const std::filesystem::path& folder) {
    Numbers numbers(folder, "OFF");
    for (int i = 0; i < 10; ++i)
        numbers.add();
}

/// Adds numbers until the power goes. Answers how many of those acknowledged the disk then lacks: at most.
int lostNumbers(const std::string& durability, Unsynced unsynced, unsigned seed) {
    std::mt19937 random(seed);
    const TemporaryFolder folder(placeInMemory());
    makeNumbers(folder.path());
    const TemporaryFolder left(placeInMemory());
    int acknowledged = 10;
    {
        FaultyDisk disk;
        Numbers numbers(folder.path(), durability);
        disk.cutPowerAt(1 + static_cast<long>(random() % 60));
        while (numbers.add() == SQLITE_OK && disk.hasPower())
            ++acknowledged;
        EXPECT_FALSE(disk.hasPower());
        EXPECT_EQ(-1, Numbers(folder.path()).count());
        disk.leaveIn(left.path(), unsynced, random);
    }
    const int count = Numbers(left.path()).count();
    EXPECT_TRUE(count >= 10 && count <= acknowledged + 1) << count << " of " << acknowledged;
    return acknowledged - count;
}

TEST(FaultyDisk, LosesNothingInACutThatWasWrittenThrough) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        EXPECT_LE(lostNumbers("FULL", Unsynced::lost, seed), 0) << "seed " << seed;
        EXPECT_LE(lostNumbers("FULL", Unsynced::scattered, seed), 0) << "seed " << seed;
    }
}

TEST(FaultyDisk, LosesInACutWhatNobodyWroteThrough) {
    int lost = 0;
    int scattered = 0;
    for (unsigned seed = 0; seed < 20; ++seed) {
        lost += lostNumbers("OFF", Unsynced::lost, seed);
        scattered += lostNumbers("OFF", Unsynced::scattered, seed);
    }
    EXPECT_GT(lost, scattered) << "some of what is scattered is there";
    EXPECT_GT(scattered, 0);
}

TEST(FaultyDisk, FailsOneCallOrAllFromItOn) {
    const TemporaryFolder folder(placeInMemory());
    makeNumbers(folder.path());
    FaultyDisk disk;
    Numbers numbers(folder.path());

    disk.failAt(1, FaultyDisk::Trouble::error, FaultyDisk::Lasting::once);
    EXPECT_EQ(SQLITE_IOERR, numbers.add() & 0xFF);
    EXPECT_TRUE(disk.hasFailed());
    EXPECT_EQ(SQLITE_OK, numbers.add());

    disk.failAt(1, FaultyDisk::Trouble::error, FaultyDisk::Lasting::fromThenOn);
    EXPECT_NE(SQLITE_OK, numbers.add());
    EXPECT_NE(SQLITE_OK, numbers.add());
    disk.pause();
    EXPECT_EQ(SQLITE_OK, numbers.add());
    EXPECT_EQ(12, numbers.count());
}

TEST(FaultyDisk, IsFullForWhatTakesRoomAlone) {
    const TemporaryFolder folder(placeInMemory());
    makeNumbers(folder.path());
    FaultyDisk disk;
    Numbers numbers(folder.path());

    disk.failAt(1, FaultyDisk::Trouble::full, FaultyDisk::Lasting::fromThenOn);
    EXPECT_EQ(SQLITE_FULL, numbers.add());
    EXPECT_EQ(10, numbers.count());
    EXPECT_EQ(10, Numbers(folder.path()).count()) << "and for another who reads";
}

TEST(FaultyDisk, CutsThePowerAtAChangeOfOneFile) {
    const TemporaryFolder folder(placeInMemory());
    makeNumbers(folder.path());
    FaultyDisk disk;
    disk.cutPowerAt(1, file);
    {
        Numbers numbers(folder.path());
        EXPECT_EQ(SQLITE_OK, numbers.add());
        EXPECT_TRUE(disk.hasPower()) << "the log alone was written to";
    }
    EXPECT_EQ(file, disk.changedAtTheCut().filename()) << "it is copied into the file at the end";
}

/// What the disk may hold of a file, of many tries: its content, or "-" when it is not there.
std::set<std::string> contentsAfterCuts(const DiskLog& log, Unsynced unsynced) {
    std::mt19937 random(1);
    std::set<std::string> contents;
    const TemporaryFolder left(placeInMemory());
    for (int i = 0; i < 500; ++i) {
        std::filesystem::remove(left / file);
        log.leaveIn(left.path(), unsynced, random);
        contents.insert(std::filesystem::exists(left / file) ? readFile(left / file) : "-");
    }
    return contents;
}

using Contents = std::set<std::string>;

TEST(DiskLog, HasANewFileForCertainAfterItsSync) {
    DiskLog log;
    log.open(file, true);
    log.write(file, 0, "ab");
    EXPECT_EQ(Contents({"-"}), contentsAfterCuts(log, Unsynced::lost));
    EXPECT_TRUE(contentsAfterCuts(log, Unsynced::scattered).contains("ab"));
    EXPECT_TRUE(contentsAfterCuts(log, Unsynced::scattered).contains("-"));
    log.sync(file);
    EXPECT_EQ(Contents({"ab"}), contentsAfterCuts(log, Unsynced::scattered));
}

TEST(DiskLog, TearsTheLastWriteAndLosesThoseBeforeIt) {
    DiskLog log;
    log.open(file, true);
    log.write(file, 0, "abc");
    log.sync(file);
    log.write(file, 0, "A");
    log.write(file, 1, "BC");
    EXPECT_EQ(Contents({"abc", "aBc", "aBC"}), contentsAfterCuts(log, Unsynced::lost));
    EXPECT_EQ(Contents({"abc", "aBc", "aBC", "Abc", "ABc", "ABC"}), contentsAfterCuts(log, Unsynced::scattered));
}

TEST(DiskLog, WritesASectorWholeOrNotAtAll) {
    DiskLog log;
    log.open(file, true);
    log.write(file, 0, std::string(1'024, 'a'));
    log.sync(file);
    log.write(file, 0, std::string(1'024, 'A'));
    log.write(file, 1'023, "a");
    const std::string old(512, 'a');
    const std::string fresh(512, 'A');
    const std::string last = std::string(511, 'A') + 'a';
    EXPECT_EQ(Contents({old + old, fresh + old, old + fresh, fresh + fresh, old + last, fresh + last}),
              contentsAfterCuts(log, Unsynced::scattered));
}

TEST(DiskLog, MayGiveBackARemovedFileUntilItsFolderIsWrittenThrough) {
    DiskLog log;
    log.open(file, true);
    log.write(file, 0, "old");
    log.sync(file);
    log.remove(file, false);
    EXPECT_EQ(Contents({"old", "-"}), contentsAfterCuts(log, Unsynced::lost));

    log.open(file, true);
    log.write(file, 0, "new");
    EXPECT_EQ(Contents({"old", "-"}), contentsAfterCuts(log, Unsynced::lost));
    log.sync(file);
    EXPECT_EQ(Contents({"new"}), contentsAfterCuts(log, Unsynced::lost));
    log.remove(file, true);
    EXPECT_EQ(Contents({"-"}), contentsAfterCuts(log, Unsynced::scattered));
}

}  // namespace
}  // namespace testing_support
