// category: the platform's categories, changed as another program does, and the groups in step with them.

#include "tests/tools/ContactsOf.h"
#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::SizeIs;

namespace {

class Categories : public Tool {
public:
    Categories() : anna(json(0, "add", "--name", "Anna", "--group", "친구")["oid"]) {}

    std::vector<std::string> names() const { return namesIn(json(0, "category", "list")); }
    std::vector<std::string> groups() const { return namesIn(json(0, "group", "list")); }
    Json shown() const { return json(0, "show", anna.dump()); }

    Json anna;
};

}  // namespace

TEST(ToolCategory, ListsTheCategoriesOfANewPhoneBookByName) {
    const Tool tool;
    tool("init");
    EXPECT_EQ(tool("category", "list").out, "가족\n친구\n학교\n회사\n");
    const Json categories = tool.json(0, "category", "list");
    ASSERT_THAT(categories, SizeIs(4));
    EXPECT_THAT(keysOf(categories[0]), ElementsAre("oid", "id", "name"));
    EXPECT_EQ(categories[0]["id"], 1);
}

TEST(ToolCategory, LeavesTheCategoriesOfAnotherProgramAsTheyAre) {
    const Tool tool;
    addCategoryAlone(tool, TEXT("chess"), 40);
    tool("init");
    EXPECT_THAT(namesIn(tool.json(0, "category", "list")), ElementsAre("chess"));
    EXPECT_EQ(tool.json(0, "group", "list"), (Json{{{"id", 40}, {"name", "chess"}, {"reject", false}}}));
}

TEST(ToolCategory, IsNotAddedAgainToAPhoneBookThatExists) {
    const Categories tool;
    for (const std::string name : {"가족", "친구", "학교", "회사"})
        EXPECT_EQ(tool("category", "delete", name).status, 0);
    tool("init");
    tool("add", "--name", "Bella");
    EXPECT_EQ(tool.json(0, "category", "list"), Json::array());
    EXPECT_EQ(tool("category", "list").out, "");
    EXPECT_EQ(tool("group", "list").out, "");
}

TEST(ToolCategory, AddsACategoryAndItsGroup) {
    const Categories tool;
    EXPECT_EQ(tool("category", "add", "동호회").out, "added category 동호회\n");
    const Json added = tool.json(0, "category", "add", "chess");
    EXPECT_EQ(added["id"], 6);
    EXPECT_EQ(tool.json(0, "category", "list")[0], added);
    EXPECT_THAT(tool.groups(), ElementsAre("chess", "가족", "동호회", "친구", "학교", "회사"));
}

TEST(ToolCategory, GivesTheNextIdAfterThoseOfAllCategoriesAndGroups) {
    const Categories tool;
    addCategoryAlone(tool, TEXT("chess"), 40);
    EXPECT_EQ(tool.json(0, "group", "add", "club")["id"], 41);
    EXPECT_EQ(tool.json(0, "category", "add", "tea")["id"], 42);
    EXPECT_EQ(tool.json(0, "group", "list")[0]["id"], 40);
    addCategoryAlone(tool, TEXT("last"), 32'767);
    expectFailure(tool("category", "add", "more"), 3, "no ID left");
    expectFailure(tool("group", "add", "more"), 3, "no ID left");
}

TEST(ToolCategory, GivesAGroupToACategoryWithoutOne) {
    const Categories tool;
    addCategoryAlone(tool, TEXT("chess"), 40);
    EXPECT_EQ(tool.json(0, "group", "add", "chess")["id"], 40);
    EXPECT_THAT(tool.names(), SizeIs(5));
    EXPECT_THAT(tool.groups(), SizeIs(5));
}

TEST(ToolCategory, RenamesACategoryInAllContactsThatCarryItAndItsGroup) {
    const Categories tool;
    const Json bella = tool.json(0, "add", "--name", "Bella", "--group", "학교")["oid"];
    fileUnder(tool, bella, TEXT("chess , \"친구\",학교"));
    tool("group", "ring", "친구", "--call", "ding");
    EXPECT_EQ(tool("category", "rename", "친구", "동무").out, "renamed category 동무\n");
    EXPECT_EQ(tool.shown()["group"], "동무");
    EXPECT_THAT(namesIn(tool.json(0, "list", "--group", "동무")), ElementsAre("Anna"));
    EXPECT_EQ(tool.json(0, "show", bella.dump())["categories"], "chess, 동무, 학교");
    EXPECT_THAT(tool.names(), ElementsAre("가족", "동무", "학교", "회사"));
    EXPECT_EQ(tool.json(0, "group", "list")[1],
              (Json{{"id", 2}, {"name", "동무"}, {"reject", false}, {"call", "ding"}}));
}

TEST(ToolCategory, DoesNotTouchNamesThatOnlyHoldTheCategory) {
    const Categories tool;
    fileUnder(tool, tool.anna, TEXT("옛 친구, 친구들"));
    tool("category", "rename", "친구", "동무");
    EXPECT_EQ(tool.shown()["categories"], "옛 친구, 친구들");
}

TEST(ToolCategory, ChangesNothingWhenACategoryIsRenamedToItself) {
    const Categories tool;
    EXPECT_EQ(tool("category", "rename", "친구", "친구").out, "kept category 친구\n");
    EXPECT_THAT(tool.names(), SizeIs(4));
    EXPECT_EQ(tool.shown()["categories"], "친구");
}

TEST(ToolCategory, DeletesACategoryFromAllContactsThatCarryItAndItsGroup) {
    const Categories tool;
    const Json bella = tool.json(0, "add", "--name", "Bella", "--group", "학교")["oid"];
    fileUnder(tool, bella, TEXT("친구, chess, 친구"));
    EXPECT_EQ(tool("category", "delete", "친구").out, "deleted category 친구\n");
    EXPECT_FALSE(tool.shown().contains("group"));
    EXPECT_FALSE(tool.shown().contains("categories"));
    EXPECT_EQ(tool.json(0, "show", bella.dump())["categories"], "chess");
    EXPECT_THAT(tool.names(), ElementsAre("가족", "학교", "회사"));
    EXPECT_THAT(tool.groups(), ElementsAre("가족", "학교", "회사"));
}

TEST(ToolCategory, DeletesACategoryThatHasNoGroup) {
    const Categories tool;
    tool("group", "add", "temporary");
    addCategoryAlone(tool, TEXT("one, two"), 40);
    EXPECT_EQ(tool("category", "delete", "one, two").status, 0);
    EXPECT_THAT(tool.names(), SizeIs(5));
    EXPECT_THAT(tool.groups(), SizeIs(5));
}

TEST(ToolCategory, FindsNothingUnderAnUnknownName) {
    const Categories tool;
    expectFailure(tool("category", "rename", "nobody", "x"), 1, "\"nobody\"");
    expectFailure(tool("category", "delete", "nobody"), 1, "\"nobody\"");
    EXPECT_EQ(tool.json(1, "category", "delete", "nobody"), Json());
}

TEST(ToolCategory, RefusesANameThatExists) {
    const Categories tool;
    expectFailure(tool("category", "add", "친구"), 3, "\"친구\" already");
    expectFailure(tool("category", "rename", "회사", "친구"), 3, "\"친구\" already");
    EXPECT_THAT(tool.names(), SizeIs(4));
    EXPECT_THAT(tool.groups(), SizeIs(4));
}

TEST(ToolCategory, RefusesANameThatCannotStandInAListOfCategories) {
    const Categories tool;
    for (const std::string name : {"", "one, two", "one;two", "the \"one\""}) {
        EXPECT_EQ(tool("category", "add", name).status, 2) << name;
        EXPECT_EQ(tool("category", "rename", "친구", name).status, 2) << name;
    }
    expectFailure(tool("category", "dance"), 2, "\"category dance\" is no command");
    EXPECT_THAT(tool.names(), SizeIs(4));
}
