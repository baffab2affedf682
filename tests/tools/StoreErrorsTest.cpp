// Stores that cannot be used: each a clear error that names the file, which stays as it was.

#include "tests/support/SystemNames.h"
#include "tests/tools/ContactsOf.h"
#include "tests/tools/ToolTest.h"

using namespace tool_test;
using testing_support::asHolderOfALock;
using testing_support::boldFileName;
using testing_support::pathOf;
using testing_support::readFile;

namespace {

const std::vector<std::vector<std::string>> commands = {{"init"},
                                                        {"add", "--name", "Anna"},
                                                        {"list"},
                                                        {"search", "a"},
                                                        {"number", "1"},
                                                        {"identify", "1"},
                                                        {"show", "1"},
                                                        {"export"},
                                                        {"edit", "1", "--name", "A"},
                                                        {"delete", "1"},
                                                        {"delete", "--all", "--yes"}};

void expectUnusable(const Tool& tool, const std::filesystem::path& store) {
    for (auto arguments : commands) {
        arguments.insert(arguments.begin(), {"--store", store.string()});
        expectFailure(run(tool.command(arguments)), 3, store.string());
    }
    const std::string people = tool.file("people.csv", "Name\nAnna\n");
    expectFailure(tool("--store", store.string(), "import", people), 3, store.string());
}

}  // namespace

TEST(ToolStore, LeavesAFileThatIsNoStoreUntouched) {
    const Tool tool;
    const std::string text = "Dear diary, this is no phone book.\n" + std::string(5000, '.');
    tool.file("diary.txt", text);
    expectUnusable(tool, tool / "diary.txt");
    EXPECT_EQ(readFile(tool / "diary.txt"), text);
    EXPECT_FALSE(std::filesystem::exists(tool / "diary.txt-wal"));
}

TEST(ToolStore, LeavesAStoreOfANewerVersionUntouched) {
    const Tool tool;
    tool("add", "--name", "Anna");
    std::string bytes = readFile(tool.store());
    ++bytes[63];  // the lowest byte of the version of the format
    tool.file("newer.db", bytes);
    expectUnusable(tool, tool / "newer.db");
    expectFailure(tool("--store", (tool / "newer.db").string(), "list"), 3, "newer version of Tessera");
    EXPECT_TRUE(readFile(tool / "newer.db") == bytes);
    EXPECT_FALSE(std::filesystem::exists(tool / "newer.db-wal"));
    EXPECT_FALSE(std::filesystem::exists(tool / "newer.db-shm"));
}

TEST(ToolStore, LeavesAFolderUntouched) {
    const Tool tool;
    std::filesystem::create_directory(tool / "folder");
    expectUnusable(tool, tool / "folder");
    EXPECT_TRUE(std::filesystem::is_empty(tool / "folder"));
}

TEST(ToolStore, CannotBeMadeBelowAFile) {
    const Tool tool;
    tool.file("file", "text");
    expectUnusable(tool, tool / "file/store.db");
    EXPECT_EQ(readFile(tool / "file"), "text");
}

TEST(ToolStore, IsMadeInAFolderThatIsMissing) {
    const Tool tool;
    EXPECT_EQ(tool("--store", (tool / "new/folder/store.db").string(), "add", "--name", "Anna").status, 0);
    EXPECT_TRUE(std::filesystem::exists(tool / "new/folder/store.db"));
}

TEST(ToolStore, MayHaveANameInAnyScript) {
    const Tool tool;
    const std::string store = (tool / boldFileName).string();
    EXPECT_EQ(tool("--store", store, "add", "--name", "Anna").status, 0);
    EXPECT_TRUE(exists(pathOf(store)));
}

TEST(ToolStore, ThatAnotherProgramWritesToIsToBeTriedAgain) {
    const Tool tool;
    tool("add", "--name", "Anna");
    asAnotherProgram(tool, [&] {
        const ObjectStoreBatch writing;
        ASSERT_TRUE(writing.begun());
        const Outcome outcome = tool("add", "--name", "Bella");
        expectFailure(outcome, 3,
                      tool.store().string() + ": another program" + asHolderOfALock("tool_tests") +
                          " is writing to it; gave up after 10 s; try again when that is done\n");
    });
    EXPECT_EQ(tool("add", "--name", "Bella").status, 0);
}

TEST(ToolStore, OfAnotherProgramGetsAPhoneBookFromInitAlone) {
    const Tool tool;
    ASSERT_TRUE(ObjectStore::mount(tool.store().string())) << ObjectStore::errorText();
    ObjectStore::unmount();
    expectFailure(tool("list"), 3, "tessera init");
    EXPECT_EQ(tool("init").out, "made a phone book in " + tool.store().string() + "\n");
    EXPECT_EQ(tool.json(0, "list"), Json::array());
}
