// delete: one, several, all.

#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::ElementsAre;

namespace {

class Three : public Tool {
public:
    Three() {
        for (const std::string name : {"Anna", "Bella", "Clara"})
            oids.push_back(json(0, "add", "--name", name, "--group", "friends")["oid"].dump());
    }

    std::vector<std::string> oids;
};

}  // namespace

TEST(ToolDelete, DeletesThoseThatAreNamed) {
    const Three tool;
    const Outcome outcome = tool("delete", tool.oids[0], tool.oids[2]);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "deleted 2 contacts\n");
    EXPECT_THAT(namesIn(tool.json(0, "list")), ElementsAre("Bella"));
    EXPECT_THAT(namesIn(tool.json(0, "list", "--group", "friends")), ElementsAre("Bella"));
}

TEST(ToolDelete, DeletesAContactWithoutExtensionFields) {
    const Tool tool;
    const std::string oid = tool.json(0, "add", "--name", "Anna")["oid"].dump();
    EXPECT_EQ(tool("delete", oid).out, "deleted 1 contact\n");
    EXPECT_EQ(tool.json(0, "list"), Json::array());
}

TEST(ToolDelete, DeletesAContactThatNamesAnEmptySlot) {
    const Tool tool;
    const std::string anna = tool.json(0, "add", "--name", "Anna", "--mobile", "010-1", "--private", "5")["oid"].dump();
    const std::string bella = tool.json(0, "add", "--name", "Bella")["oid"].dump();
    EXPECT_EQ(tool("delete", anna, bella).out, "deleted 2 contacts\n");
    EXPECT_EQ(tool.json(0, "list"), Json::array());
}

TEST(ToolDelete, NamesEachThatThereIsNotAndDeletesTheOthers) {
    const Three tool;
    const Outcome outcome = tool("delete", "999998", tool.oids[0], "999999");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "deleted 1 contact\n");
    EXPECT_EQ(outcome.err, "tessera: there is no contact 999998\ntessera: there is no contact 999999\n");
    EXPECT_EQ(tool.json(0, "list").size(), 2u);
    expectFailure(tool("delete", tool.oids[0]), 1, tool.oids[0]);
}

TEST(ToolDelete, WritesAnObject) {
    const Three tool;
    EXPECT_EQ(tool.json(1, "delete", tool.oids[0], "999999"), (Json{{"deleted", 1}, {"missing", {999999}}}));
    EXPECT_EQ(tool.json(0, "delete", "--all", "--yes"), (Json{{"deleted", 2}, {"missing", Json::array()}}));
}

TEST(ToolDelete, DeletesAllWithoutAskingWhenTold) {
    const Three tool;
    EXPECT_EQ(tool("delete", "--all", "--yes").out, "deleted 3 contacts\n");
    EXPECT_EQ(tool.json(0, "list"), Json::array());
    EXPECT_EQ(tool("delete", "--all", "--yes").out, "deleted 0 contacts\n");
}

TEST(ToolDelete, DoesNotDeleteAllWhereItCannotAsk) {
    const Three tool;
    expectFailure(tool("delete", "--all"), 2, "--yes");
    auto piped = tool.command({"delete", "--all"});
    piped.input = "y\n";
    expectFailure(run(piped), 2, "--yes");
    EXPECT_EQ(tool.json(0, "list").size(), 3u);
}

TEST(ToolDelete, RefusesWhatMakesNoSenseAndDeletesNothing) {
    const Three tool;
    expectFailure(tool("delete"), 2, "--all");
    expectFailure(tool("delete", "--yes"), 2, "--all");
    expectFailure(tool("delete", "--all", "--yes", tool.oids[0]), 2, "");
    expectFailure(tool("delete", tool.oids[0], "oid:twelve"), 2, "twelve");
    EXPECT_EQ(tool.json(0, "list").size(), 3u);
}
