// group: groups, the categories that they follow, and who is in them.

#include "tests/tools/ContactsOf.h"
#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::SizeIs;

namespace {

/// A phone book with the groups that it starts with, two friends and a colleague who plays chess.
class Groups : public Tool {
public:
    Groups()
        : anna(json(0, "add", "--name", "Anna", "--group", "친구")["oid"]),
          bella(json(0, "add", "--name", "Bella", "--group", "친구")["oid"]),
          clara(json(0, "add", "--name", "Clara", "--group", "회사")["oid"]) {
        fileUnder(*this, clara, TEXT("chess, 친구, 회사"));
    }

    std::vector<std::string> names() const { return namesIn(json(0, "group", "list")); }
    std::vector<std::string> categories() const { return namesIn(json(0, "category", "list")); }
    std::vector<std::string> membersOf(const std::string& group) const {
        return namesIn(Json::parse((*this)("--json", "list", "--group", group).out));
    }
    Json shown(const Json& oid) const { return json(0, "show", oid.dump()); }
    Json named(const std::string& name) const {
        for (const Json& group : json(0, "group", "list")) {
            if (group["name"] == name) return group;
        }
        return {};
    }

    Json anna;
    Json bella;
    Json clara;
};

}  // namespace

TEST(ToolGroup, ListsTheGroupsOfANewPhoneBookByName) {
    const Tool tool;
    tool("init");
    EXPECT_EQ(tool.json(0, "group", "list"), (Json{{{"id", 1}, {"name", "가족"}, {"reject", false}},
                                                   {{"id", 2}, {"name", "친구"}, {"reject", false}},
                                                   {{"id", 4}, {"name", "학교"}, {"reject", false}},
                                                   {{"id", 3}, {"name", "회사"}, {"reject", false}}}));
    EXPECT_EQ(tool("group", "list").out, "ID  Name\n1   가족\n2   친구\n4   학교\n3   회사\n");
}

TEST(ToolGroup, AddsAGroupAndItsCategoryUnderOneId) {
    const Groups tool;
    EXPECT_EQ(tool.json(0, "group", "add", "동호회"), (Json{{"id", 5}, {"name", "동호회"}, {"reject", false}}));
    EXPECT_EQ(tool("group", "add", "club").out, "added group club\n");
    EXPECT_EQ(tool.named("club")["id"], 6);
    for (const Json& category : tool.json(0, "category", "list"))
        EXPECT_EQ(category["id"], tool.named(category["name"])["id"]);
    EXPECT_THAT(tool.categories(), SizeIs(6));
    EXPECT_EQ(tool.json(0, "category", "add", "late")["id"], 7);
}

TEST(ToolGroup, RenamesAGroupWithItsMembersAndItsCategory) {
    const Groups tool;
    tool("group", "reject", "친구", "on");
    EXPECT_EQ(tool("group", "rename", "친구", "동무").out, "renamed group 동무\n");
    EXPECT_EQ(tool.named("동무"), (Json{{"id", 2}, {"name", "동무"}, {"reject", true}}));
    EXPECT_EQ(tool.named("친구"), Json());
    EXPECT_THAT(tool.membersOf("동무"), ElementsAre("Anna", "Bella"));
    EXPECT_EQ(tool("list", "--group", "친구").status, 1);
    EXPECT_EQ(tool.shown(tool.anna)["group"], "동무");
    EXPECT_EQ(tool.shown(tool.clara)["categories"], "chess, 동무, 회사");
    EXPECT_EQ(tool.shown(tool.clara)["group"], "회사");
    EXPECT_THAT(tool.categories(), ElementsAre("가족", "동무", "학교", "회사"));
}

TEST(ToolGroup, KeepsTheNewNameWhenTheGroupsAreMadeOfTheCategoriesAgain) {
    const Groups tool;
    tool("group", "rename", "친구", "동무");
    tool("group", "delete", "학교");
    tool("category", "add", "chess");  // which does just that
    EXPECT_THAT(tool.names(), ElementsAre("chess", "가족", "동무", "회사"));
    EXPECT_THAT(tool.membersOf("동무"), ElementsAre("Anna", "Bella"));
}

TEST(ToolGroup, ChangesNothingWhenAGroupIsRenamedToItself) {
    const Groups tool;
    const Json before = tool.json(0, "list");
    EXPECT_EQ(tool("group", "rename", "친구", "친구").out, "kept group 친구\n");
    EXPECT_EQ(tool.json(0, "list"), before);
    EXPECT_THAT(tool.names(), SizeIs(4));
}

TEST(ToolGroup, DeletesAGroupAndKeepsItsMembers) {
    const Groups tool;
    EXPECT_EQ(tool("group", "delete", "친구").out, "deleted group 친구\n");
    EXPECT_THAT(tool.names(), ElementsAre("가족", "학교", "회사"));
    EXPECT_THAT(tool.categories(), ElementsAre("가족", "학교", "회사"));
    EXPECT_THAT(namesIn(tool.json(0, "list", "--no-group")), ElementsAre("Anna", "Bella"));
    EXPECT_FALSE(tool.shown(tool.anna).contains("group"));
    EXPECT_EQ(tool.shown(tool.clara)["categories"], "chess, 회사");
}

TEST(ToolGroup, SaysWhetherCallsAreRejected) {
    const Groups tool;
    EXPECT_EQ(tool("group", "reject", "회사", "on").out, "changed group 회사\n");
    EXPECT_EQ(tool.named("회사")["reject"], true);
    EXPECT_EQ(tool.named("친구")["reject"], false);
    EXPECT_THAT(tool("group", "list").out, HasSubstr("3   회사  yes\n"));
    EXPECT_EQ(tool.json(0, "group", "reject", "회사", "off")["reject"], false);
    EXPECT_THAT(tool("group", "list").out, Not(HasSubstr("Reject")));
}

TEST(ToolGroup, RingsAsItIsToldAndKeepsWhatIsNotNamed) {
    const Groups tool;
    tool("group", "reject", "가족", "on");
    EXPECT_EQ(tool.json(0, "group", "ring", "가족", "--call", "종소리.mp3", "--category", "bells"),
              (Json{{"id", 1}, {"name", "가족"}, {"reject", true}, {"call", "종소리.mp3"}, {"category", "bells"}}));
    EXPECT_EQ(tool("group", "ring", "가족", "--message", "ding").out, "changed group 가족\n");
    EXPECT_EQ(tool("group", "ring", "가족", "--category", "").status, 0);
    EXPECT_EQ(tool.named("가족"),
              (Json{{"id", 1}, {"name", "가족"}, {"reject", true}, {"call", "종소리.mp3"}, {"message", "ding"}}));
}

TEST(ToolGroup, AlignsTheTableAndLeavesOutColumnsThatNobodyFills) {
    const Groups tool;
    tool("group", "add", "a longer name");
    tool("group", "ring", "친구", "--message", "ding");
    const auto lines = linesOf(tool("group", "list").out);
    ASSERT_THAT(lines, SizeIs(6));
    EXPECT_EQ(lines[0], "ID  Name           Message");
    EXPECT_EQ(lines[3], "2   친구           ding");
}

TEST(ToolGroup, FindsNothingUnderAnUnknownName) {
    const Groups tool;
    expectFailure(tool("group", "rename", "nobody", "somebody"), 1, "\"nobody\"");
    expectFailure(tool("group", "delete", "nobody"), 1, "\"nobody\"");
    expectFailure(tool("group", "reject", "nobody", "on"), 1, "\"nobody\"");
    expectFailure(tool("group", "ring", "nobody", "--call", "x"), 1, "\"nobody\"");
    EXPECT_EQ(tool.json(1, "group", "delete", "nobody"), Json());
}

TEST(ToolGroup, RefusesANameThatExists) {
    const Groups tool;
    const Json before = tool.json(0, "list");
    expectFailure(tool("group", "add", "친구"), 3, "\"친구\" already");
    expectFailure(tool("group", "rename", "회사", "친구"), 3, "\"친구\" already");
    EXPECT_EQ(tool.json(0, "list"), before);
    EXPECT_THAT(tool.names(), SizeIs(4));
}

TEST(ToolGroup, RefusesANameThatCannotStandInAListOfCategories) {
    const Groups tool;
    for (const std::string name : {"", "one, two", "one;two", "the \"one\"", "\"", " one", "one "}) {
        EXPECT_EQ(tool("group", "add", name).status, 2) << name;
        EXPECT_EQ(tool("group", "rename", "친구", name).status, 2) << name;
    }
    expectFailure(tool("group", "add", "the \"one\""), 2, "NAME cannot have a comma");
    expectFailure(tool("group", "rename", "친구", ""), 2, "NEW is empty");
    EXPECT_EQ(tool("group", "delete", "").status, 2);
    EXPECT_EQ(tool("group", "add", std::string(32'736, 'x')).status, 2);
    EXPECT_THAT(tool.names(), SizeIs(4));
}

TEST(ToolGroup, RefusesWhatMakesNoSense) {
    const Groups tool;
    expectFailure(tool("group"), 2, "command");
    expectFailure(tool("group", "dance"), 2, "\"group dance\" is no command");
    expectFailure(tool("group", "add"), 2, "NAME");
    expectFailure(tool("group", "rename", "친구"), 2, "NEW");
    expectFailure(tool("group", "reject", "친구", "maybe"), 2, "maybe");
    expectFailure(tool("group", "ring", "친구"), 2, "--call");
    expectFailure(tool("group", "ring", "친구", "--call", std::string(32'736, 'x')), 2, "too long");
}
