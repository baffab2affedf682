// edit: what is named changes, the rest stays, and nobody falls out of a group.

#include "tests/tools/ContactsOf.h"
#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::ElementsAre;

namespace {

/// A phone book with one contact that has every field.
class OneFriend : public Tool {
public:
    OneFriend()
        : before(json(0, "add", "--name", "김민수", "--group", "친구", "--mobile", "010-2345-6789", "--home",
                      "02-312-4567", "--business", "031-1", "--email", "minsu@example.com", "--pager", "015", "--fax",
                      "02-9", "--birthday", "1990-03-05", "--avatar", "a", "--photo", "p", "--bell", "b",
                      "--calling-screen", "7", "--private", "0x201", "--primary", "8")),
          oid(before["oid"].dump()) {}

    Json shown() const { return json(0, "show", oid); }

    Json before;
    std::string oid;
};

}  // namespace

TEST(ToolEdit, ChangesWhatIsNamedAndKeepsTheRest) {
    const OneFriend tool;
    Json expected = tool.before;
    expected["mobile"] = "010-9999-9999";
    expected["bell"] = "ding";
    EXPECT_EQ(tool.json(0, "edit", tool.oid, "--mobile", "010-9999-9999", "--bell", "ding"), expected);
    EXPECT_EQ(tool.shown(), expected);
}

TEST(ToolEdit, ChangesEachFieldAlone) {
    const std::vector<std::array<std::string, 3>> changes = {
        {"--name", "name", "Anna"},  {"--mobile", "mobile", "1"},
        {"--home", "home", "2"},     {"--business", "business", "3"},
        {"--email", "email", "e@x"}, {"--pager", "pager", "4"},
        {"--fax", "fax", "5"},       {"--avatar", "avatar", "aa"},
        {"--photo", "photo", "pp"},  {"--birthday", "birthday", "1991-01-02"},
        {"--bell", "bell", "bb"}};
    const OneFriend tool;
    Json expected = tool.before;
    for (const auto& [option, key, value] : changes) {
        expected[key] = value;
        EXPECT_EQ(tool.json(0, "edit", tool.oid, option, value), expected) << option;
    }
    for (const auto& [option, key] : std::map<std::string, std::string>{
             {"--calling-screen", "callingScreen"}, {"--private", "private"}, {"--primary", "primary"}}) {
        expected[key] = 16;
        EXPECT_EQ(tool.json(0, "edit", tool.oid, option, "16"), expected) << option;
    }
}

TEST(ToolEdit, EmptiesAFieldThatIsGivenEmpty) {
    const OneFriend tool;
    Json expected = tool.before;
    for (const std::string field : {"home", "email", "birthday", "avatar", "primary"}) {
        expected.erase(field);
        EXPECT_EQ(tool.json(0, "edit", tool.oid, "--" + field, ""), expected) << field;
    }
}

TEST(ToolEdit, SaysWhichContactItChanged) {
    const OneFriend tool;
    EXPECT_EQ(tool("edit", tool.oid, "--name", "Anna").out, "changed contact " + tool.oid + "\n");
}

TEST(ToolEdit, KeepsAContactInItsGroupHoweverOftenItIsChanged) {
    const OneFriend tool;
    for (const std::string name : {"Anna", "Bella", "Clara"})
        EXPECT_EQ(tool.json(0, "edit", tool.oid, "--name", name)["categories"], "친구");
    EXPECT_THAT(namesIn(tool.json(0, "list", "--group", "친구")), ElementsAre("Clara"));
}

TEST(ToolEdit, MovesAContactToAnotherGroup) {
    const OneFriend tool;
    const Json moved = tool.json(0, "edit", tool.oid, "--group", "family");
    EXPECT_EQ(moved["group"], "family");
    EXPECT_EQ(moved["categories"], "family");
    EXPECT_THAT(namesIn(tool.json(0, "list", "--group", "family")), ElementsAre("김민수"));
    EXPECT_EQ(tool("list", "--group", "친구").status, 1);
}

TEST(ToolEdit, TakesAContactOutOfItsGroup) {
    const OneFriend tool;
    const Json alone = tool.json(0, "edit", tool.oid, "--group", "");
    EXPECT_FALSE(alone.contains("group"));
    EXPECT_FALSE(alone.contains("categories"));
    EXPECT_THAT(namesIn(tool.json(0, "list", "--no-group")), ElementsAre("김민수"));
}

TEST(ToolEdit, KeepsOtherCategoriesInOrderAndNoneTwice) {
    const OneFriend tool;
    fileUnder(tool, tool.before["oid"], TEXT("work, 친구 ,chess,work,, \"a, b\""));
    EXPECT_EQ(tool.json(0, "edit", tool.oid, "--name", "Anna")["categories"], "친구, work, chess, \"a, b\"");
    EXPECT_EQ(tool.json(0, "edit", tool.oid, "--group", "chess")["categories"], "chess, work, \"a, b\"");
    EXPECT_EQ(tool.json(0, "edit", tool.oid, "--group", "")["categories"], "work, \"a, b\"");
}

TEST(ToolEdit, KeepsAGroupWhoseNameSeparates) {
    const OneFriend tool;
    for (const std::string group : {"one, two", "three;four"}) {
        tool("edit", tool.oid, "--group", group);
        tool("edit", tool.oid, "--name", "Anna");
        EXPECT_EQ(tool.shown()["group"], group);
        EXPECT_THAT(namesIn(tool.json(0, "list", "--group", group)), ElementsAre("Anna")) << tool.shown();
    }
}

TEST(ToolEdit, KeepsTheNotesOfAnotherProgram) {
    const OneFriend tool;
    takeNotes(tool, tool.before["oid"], TEXT("likes tea"));
    EXPECT_EQ(tool.json(0, "edit", tool.oid, "--name", "Anna")["body"], "likes tea");
}

TEST(ToolEdit, GivesTheFirstExtensionFieldToAContactWithoutAny) {
    const Tool tool;
    const std::string oid = tool.json(0, "add", "--name", "Anna", "--mobile", "010-1")["oid"].dump();
    EXPECT_EQ(tool.json(0, "edit", oid, "--bell", "ding")["bell"], "ding");
    EXPECT_EQ(tool.json(0, "show", oid)["mobile"], "010-1");
}

TEST(ToolEdit, FindsNothingUnderAnUnknownIdentifier) {
    const OneFriend tool;
    expectFailure(tool("edit", "999999", "--name", "A"), 1, "999999");
    expectFailure(tool("edit", "0", "--name", "A"), 1, "0");
    EXPECT_EQ(tool.json(1, "edit", "999999", "--name", "A"), Json());
}

TEST(ToolEdit, RefusesWhatItCannotStoreAndChangesNothing) {
    const OneFriend tool;
    expectFailure(tool("edit"), 2, "PERSON");
    expectFailure(tool("edit", tool.oid), 2, "at least one field");
    expectFailure(tool("edit", "twelve", "--name", "A"), 1, "twelve");
    expectFailure(tool("edit", tool.oid, "--birthday", "yesterday"), 2, "yesterday");
    expectFailure(tool("edit", tool.oid, "--primary", "5"), 2, "--primary");
    expectFailure(tool("edit", tool.oid, "--name", std::string(32'736, 'x')), 2, "32735");
    expectFailure(tool("edit", tool.oid, "--group", std::string(32'735, 'x')), 2, "too long together");
    EXPECT_EQ(tool.shown(), tool.before);
}
