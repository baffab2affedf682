// backup: a copy of the store as it is at one moment, never over another file.

#include <algorithm>
#include <chrono>

#include "tessera/platform/objectstore/CCeDBDatabase.h"
#include "tests/support/SystemNames.h"
#include "tests/tools/StoreFolder.h"
#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::SizeIs;

namespace {

class Backup : public Tool {
public:
    Backup() { (*this)("add", "--name", "Anna", "--group", "친구", "--mobile", "010-1"); }

    std::string copy() const { return (*this / "copy.db").string(); }
};

std::ptrdiff_t contactsIn(const std::string& store) {
    EXPECT_TRUE(ObjectStore::mount(store)) << ObjectStore::errorText();
    CCeDBDatabase contacts;
    EXPECT_TRUE(contacts.open(TEXT("Contacts Database"), nullptr, nullptr));
    const std::ptrdiff_t count = contacts.getNumRecords();
    contacts.close();
    ObjectStore::unmount();
    return count;
}

}  // namespace

TEST(ToolBackup, CopiesTheStoreForItsOwnerAlone) {
    const Backup tool;
    const Outcome outcome = tool("backup", tool.copy());
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "backed " + tool.store().string() + " up to " + tool.copy() + "\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(isPrivate(tool.copy()));
    EXPECT_EQ(tool("--store", tool.copy(), "check", "--full").status, 0);
    EXPECT_EQ(tool.json(0, "--store", tool.copy(), "list"), tool.json(0, "list"));
    EXPECT_THAT(filesIn(tool.store().parent_path()), SizeIs(2));
}

TEST(ToolBackup, SaysInJsonWhatItCopied) {
    const Backup tool;
    EXPECT_EQ(tool.json(0, "backup", tool.copy()), (Json{{"store", tool.store().string()}, {"backup", tool.copy()}}));
}

TEST(ToolBackup, TakesPathsOfAnyName) {
    const Backup tool;
    const std::string copy = (tool / testing_support::boldFileName).string();
    EXPECT_EQ(linesOf(tool("backup", copy).out).size(), 1u) << "also a line feed in its name is shown";
    const std::string again = (tool / "다시.db").string();
    EXPECT_EQ(tool.json(0, "--store", copy, "backup", again)["store"], copy);
    EXPECT_EQ(tool.json(0, "--store", again, "list"), tool.json(0, "list"));
}

TEST(ToolBackup, NeverWritesOverAFile) {
    const Backup tool;
    tool.file("copy.db", "precious");
    expectFailure(tool("backup", tool.copy()), 3, tool.copy());
    EXPECT_EQ(testing_support::readFile(tool.copy()), "precious");
    const std::string before = testing_support::readFile(tool.store());
    expectFailure(tool("backup", tool.store().string()), 3, tool.store().string());
    EXPECT_EQ(testing_support::readFile(tool.store()), before);
    expectFailure(tool("backup", tool.temporary().string()), 3, tool.temporary().string());
}

TEST(ToolBackup, SaysWhatItCannotCopy) {
    const Tool tool;
    tool.file("diary.txt", "Dear diary");
    std::filesystem::create_directory(tool / "folder");
    for (const char* name : {"store.db", "diary.txt", "folder"}) {
        const std::string store = (tool / name).string();
        expectFailure(tool("--store", store, "backup", (tool / "copy.db").string()), 3, store);
    }
    EXPECT_FALSE(std::filesystem::exists(tool / "copy.db"));
    EXPECT_FALSE(std::filesystem::exists(tool.store()));
}

TEST(ToolBackup, SaysWhereItCannotCopyTo) {
    const Backup tool;
    const std::string copy = (tool / "none/copy.db").string();
    expectFailure(tool("backup", copy), 3, copy);
    expectFailure(tool("backup", ""), 2, "FILE");
    expectFailure(tool("backup"), 2, "FILE");
    expectFailure(tool("backup", tool.copy(), "more"), 2, "more");
    EXPECT_THAT(filesIn(tool.store().parent_path()), SizeIs(1));
}

TEST(ToolBackup, IsWholeWhileAnotherProcessWrites) {
    const Backup tool;
    std::string people = "Name,Group,Categories,Mobile\n";
    for (int i = 0; i < 20'000; ++i)
        people += "Kim " + std::to_string(i) + ",친구,,010-" + std::to_string(i) + "\n";
    const std::string file = tool.file("people.csv", people);
    testing_support::Process import(tool.command({"--json", "import", file}));
    std::ptrdiff_t told = 0;
    for (int i = 0; i < 3; ++i) {
        const auto lines = import.read(std::chrono::seconds(60));
        ASSERT_TRUE(lines) << "the import has ended";
        told += std::ranges::count(*lines, '\n');
        const std::string copy = (tool / ("copy" + std::to_string(i) + ".db")).string();
        ASSERT_EQ(tool("backup", copy).status, 0);
        EXPECT_EQ(tool("--store", copy, "check", "--full").status, 0);
        EXPECT_GE(contactsIn(copy), told) << "what was told to be imported is there";
    }
    import.kill();
    import.wait();
    EXPECT_EQ(tool("check", "--full").status, 0);
}
