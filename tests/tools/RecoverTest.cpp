// recover: a new store of what can still be read of a damaged one.

#include "tests/support/SystemNames.h"
#include "tests/tools/StoreFolder.h"
#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

/// A phone book of some people, whose last pages can be damaged.
class Recover : public Tool {
public:
    Recover() { (*this)("import", SAMPLE_FILE); }

    std::string saved() const { return (*this / "saved.db").string(); }
    Outcome recover() const { return (*this)("recover", store().string(), saved()); }
};

}  // namespace

TEST(ToolRecover, SavesAllOfASoundStore) {
    const Recover tool;
    const Outcome outcome = tool.recover();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, StartsWith("saved "));
    EXPECT_THAT(outcome.out, HasSubstr(" of 6 databases in " + tool.saved() + "\n"));
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(isPrivate(tool.saved()));
    EXPECT_EQ(tool("--store", tool.saved(), "check", "--full").status, 0);
    for (const std::string what : {"list", "group list", "category list"}) {
        const auto words = what == "list" ? std::vector<std::string>{what}
                                          : std::vector<std::string>{what.substr(0, what.find(' ')), "list"};
        auto ofSaved = words;
        ofSaved.insert(ofSaved.begin(), {"--store", tool.saved()});
        EXPECT_EQ(run(tool.command(ofSaved)).out, run(tool.command(words)).out) << what;
    }
}

TEST(ToolRecover, SaysInJsonWhatItSaved) {
    const Recover tool;
    const Json report = tool.json(0, "recover", tool.store().string(), tool.saved());
    EXPECT_THAT(keysOf(report), ElementsAre("damaged", "store", "databases", "records", "losses"));
    EXPECT_EQ(report["damaged"], tool.store().string());
    EXPECT_EQ(report["store"], tool.saved());
    EXPECT_EQ(report["databases"], 6);
    EXPECT_GT(report["records"], 200);
    EXPECT_EQ(report["losses"], Json::array());
}

TEST(ToolRecover, SavesWhatADamagedStoreStillHoldsAndSaysWhatIsLost) {
    const Recover tool;
    const std::size_t people = tool.json(0, "list").size();
    damage(tool.store(), 3);
    const std::string damaged = testing_support::readFile(tool.store());
    ASSERT_EQ(tool("check").status, 1);

    const Outcome outcome = tool.recover();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, StartsWith("lost: "));
    EXPECT_EQ(outcome.err, "tessera: " + tool.store().string() +
                               " could not be saved whole; see what that leaves with \"tessera check\"\n");
    EXPECT_EQ(testing_support::readFile(tool.store()), damaged);

    EXPECT_NE(tool("--store", tool.saved(), "check", "--full", "--repair").status, 3);
    EXPECT_EQ(tool("--store", tool.saved(), "check", "--full").status, 0);
    const std::size_t left = tool.json(0, "--store", tool.saved(), "list").size();
    EXPECT_LE(left, people);
    EXPECT_GT(left, 0u);
}

TEST(ToolRecover, NeverWritesOverAFile) {
    const Recover tool;
    tool.file("saved.db", "precious");
    expectFailure(tool.recover(), 3, tool.saved());
    EXPECT_EQ(testing_support::readFile(tool.saved()), "precious");
    expectFailure(tool("recover", tool.store().string(), tool.store().string()), 3, tool.store().string());
    EXPECT_EQ(tool("check").status, 0);
}

TEST(ToolRecover, SaysWhatItCannotSave) {
    const Tool tool;
    tool.file("diary.txt", "Dear diary");
    std::filesystem::create_directory(tool / "folder");
    for (const char* name : {"store.db", "diary.txt", "folder"}) {
        const std::string damaged = (tool / name).string();
        expectFailure(tool("recover", damaged, (tool / "saved.db").string()), 3, damaged);
    }
    EXPECT_FALSE(std::filesystem::exists(tool / "saved.db"));
    EXPECT_FALSE(std::filesystem::exists(tool.store()));
}

TEST(ToolRecover, TakesPathsOfAnyName) {
    const Recover tool;
    const std::string saved = (tool / testing_support::boldFileName).string();
    EXPECT_EQ(linesOf(tool("recover", tool.store().string(), saved).out).size(), 1u)
        << "also a line feed in its name is shown";
    EXPECT_EQ(tool.json(0, "recover", saved, tool.saved())["damaged"], saved);
}

TEST(ToolRecover, WantsBothStoresByName) {
    const Recover tool;
    expectFailure(tool("recover"), 2, "DAMAGED");
    expectFailure(tool("recover", tool.store().string()), 2, "NEW");
    expectFailure(tool("recover", "", tool.saved()), 2, "DAMAGED");
    expectFailure(tool("--store", tool.saved(), "recover", tool.store().string(), tool.saved()), 2, "--store");
    EXPECT_FALSE(std::filesystem::exists(tool.saved()));
}
