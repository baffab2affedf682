#include <array>
#include <csignal>
#include <functional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/platform/engine/StoreError.h"
#include "tessera/platform/port/WaitSet.h"
#include "tests/platform/engine/SqliteStoreFixture.h"
#include "tests/support/Files.h"
#include "tests/support/Forked.h"

// A store on disk among processes, and whose it is.

namespace engine_testing {
namespace {

using testing::HasSubstr;
using testing_support::folderContent;
using testing_support::readFile;

/// Runs it in a process of its own, which must end as expected.
pid_t inChild(const std::function<bool()>& body) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(body() ? 0 : 1);
    return child;
}

int statusOf(pid_t child) {
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return status;
}

int modeOf(const fs::path& path) {
    return static_cast<int>(fs::status(path).permissions() & fs::perms::mask);
}

TEST(SqliteStore, IsItsOwnersAloneWhateverTheUmask) {
    const TemporaryFolder folder;
    const fs::path file = folder / "a" / "b" / "store.db";
    const mode_t umaskBefore = ::umask(0);
    const auto engine = connect(file);
    put(*engine, TEXT("a"));
    ::umask(umaskBefore);

    EXPECT_EQ(modeOf(folder / "a"), 0700);
    EXPECT_EQ(modeOf(folder / "a" / "b"), 0700);
    std::size_t files = 0;
    for (const auto& entry : fs::directory_iterator(folder / "a" / "b")) {
        EXPECT_EQ(modeOf(entry.path()), 0600) << entry.path();
        ++files;
    }
    EXPECT_EQ(files, 3u);  // SQLite's own two beside it
}

// On other systems they may be woken for nothing.
TEST(SqliteStore, UnitThatChangesNothingWakesNobody) {
    const TemporaryFolder folder;
    const auto store = open(folder / "store.db");
    ASSERT_NE(store, nullptr);
    const auto engine = store->connect();
    const auto watch = store->watchCommits();
    const auto isReadable = [&] { return Platform::port::isReadable(watch->fd()); };
    const OrderId order = byName(*engine);
    put(*engine, TEXT("a"));
    EXPECT_TRUE(isReadable());
    watch->clear();

    ASSERT_EQ(engine->beginUnit(), ERROR_SUCCESS);
    EXPECT_EQ(walk(*engine, order).size(), 1u);
    EXPECT_EQ(engine->endUnit(), ERROR_SUCCESS);

    EXPECT_FALSE(isReadable());
}

TEST(SqliteStore, ANameThatTheSystemRefusesSaysWhy) {
    const TemporaryFolder folder;

    EXPECT_EQ(open(folder / std::string(300, 'x')), nullptr);

    EXPECT_THAT(Platform::storeErrorText(), HasSubstr("File name too long"));
}

TEST(SqliteStore, IsNotMadeBesideTheLogOfAnEarlierOne) {
    const TemporaryFolder folder;
    const fs::path file = folder / "store.db";
    ASSERT_TRUE(open(file));
    ASSERT_TRUE(WIFSIGNALED(statusOf(inChild([&] {
        const auto engine = connect(file);
        put(*engine, TEXT("of the earlier store"));
        return ::raise(SIGKILL) == 0;
    }))));
    const fs::path away = folder / "away.db";
    fs::rename(file, away);
    const fs::path log = folder / "store.db-wal";
    const std::string before = readFile(log);
    ASSERT_FALSE(before.empty());

    EXPECT_EQ(open(file), nullptr);

    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
    EXPECT_THAT(Platform::storeErrorText(), HasSubstr(log.string()));
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(readFile(log), before);
    fs::rename(away, file);
    const auto engine = connect(file);
    EXPECT_EQ(walk(*engine, byName(*engine)).size(), 1u) << "with its file the log is good again";
}

TEST(SqliteStore, NamesTheProcessThatWrites) {
    const TemporaryFolder folder;
    const fs::path file = folder / "store.db";
    ASSERT_TRUE(open(file));
    testing_support::Forked writer([&](testing_support::Line& parent) {
        const auto engine = connect(file);
        parent.say(engine->beginUnit());
        parent.hear<bool>();  // and holds it until then
    });
    ASSERT_EQ(writer.line().hear<DWORD>(), ERROR_SUCCESS);
    const auto engine = connect(file);

    CEOID record = 0;
    EXPECT_EQ(engine->put(contactsOf(*engine), record, {}), ERROR_LOCK_VIOLATION);

    EXPECT_EQ(Platform::storeErrorText(), file.string() + ": another program (engine_test, process " +
                                              std::to_string(writer.process()) +
                                              ") is writing to it; gave up after 50 ms");
    writer.line().say(true);
    EXPECT_EQ(writer.wait(), 0);
}

TEST(SqliteStore, TwoProcessesThatMakeItAtOnceHaveOne) {
    const TemporaryFolder folder;
    const fs::path file = folder / "new" / "store.db";
    std::array<int, 2> start{};
    ASSERT_EQ(::pipe(start.data()), 0);
    std::vector<pid_t> children;
    for (int i = 0; i < 4; ++i) {
        children.push_back(inChild([&] {
            char ready = 0;
            ::close(start[1]);
            if (::read(start[0], &ready, 1) != 0) return false;  // all are let go together
            const auto store = Platform::openSqliteStore(file, {std::chrono::seconds(60), false}, "");
            const auto engine = store ? store->connect() : nullptr;
            return engine && put(*engine, TEXT("a")) != 0;
        }));
    }
    ::close(start[0]);
    ::close(start[1]);
    for (const pid_t child : children) {
        EXPECT_EQ(statusOf(child), 0);
    }

    EXPECT_EQ(folderContent(folder / "new").size(), 1u);
    const auto engine = connect(file);
    EXPECT_EQ(walk(*engine, byName(*engine)).size(), 4u);
    std::uint64_t last = 0;
    EXPECT_EQ(engine->lastChange(last), ERROR_SUCCESS);
    EXPECT_EQ(last, 4u);
}

TEST(SqliteStore, ProcessKilledInAUnitLeavesNothingOfIt) {
    const TemporaryFolder folder;
    const fs::path file = folder / "store.db";
    ASSERT_TRUE(open(file));
    const int status = statusOf(inChild([&] {
        const auto engine = connect(file);
        put(*engine, TEXT("kept"));
        if (engine->beginUnit() != ERROR_SUCCESS) return false;
        for (int i = 0; i < 3'000; ++i) {  // more than SQLite holds back from the file
            put(*engine, WString(2'000, u'x'));
        }
        return ::raise(SIGKILL) == 0;
    }));
    ASSERT_TRUE(WIFSIGNALED(status));

    const auto engine = connect(file);

    EXPECT_EQ(walk(*engine, byName(*engine)).size(), 1u);
    std::uint64_t last = 0;
    EXPECT_EQ(engine->lastChange(last), ERROR_SUCCESS);
    EXPECT_EQ(last, 1u);
    EXPECT_NE(put(*engine, TEXT("next")), 0u);
}

TEST(SqliteStore, NamesTheFileAndTheWaitWhenAnotherThreadWrites) {
    const TemporaryFolder folder;
    const fs::path file = folder / "store.db";
    const auto engine = connect(file);
    const CEOID contacts = contactsOf(*engine);
    const auto other = connect(file);
    ASSERT_EQ(other->beginUnit(), ERROR_SUCCESS);

    CEOID record = 0;
    EXPECT_EQ(engine->put(contacts, record, {}), ERROR_LOCK_VIOLATION);

    EXPECT_EQ(Platform::storeErrorText(),
              file.string() + ": another thread of this program is writing to it; gave up after 50 ms");
    EXPECT_EQ(contactsOf(*engine), contacts);  // readers do not wait
    ASSERT_EQ(other->endUnit(), ERROR_SUCCESS);
    EXPECT_EQ(engine->put(contacts, record, {}), ERROR_SUCCESS);
}

}  // namespace
}  // namespace engine_testing
