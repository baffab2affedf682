// list by group and prefix, and search within an earlier result.

#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

namespace {

class Village : public Tool {
public:
    Village() {
        (*this)("add", "--name", "Anna Kim", "--group", "friends");
        (*this)("add", "--name", "anton Berg", "--group", "Friends");
        (*this)("add", "--name", "Kim Anna-Lena", "--group", "friends");
        (*this)("add", "--name", "김민수");
        (*this)("add", "--name", "O'Neil \"A\" and [Name]");
    }
};

}  // namespace

TEST(ToolList, ListsTheMembersOfAGroupWhoseNameIsExactlyThis) {
    const Village tool;
    EXPECT_THAT(namesIn(tool.json(0, "list", "--group", "friends")), ElementsAre("Anna Kim", "Kim Anna-Lena"));
    EXPECT_THAT(namesIn(tool.json(0, "list", "--group", "Friends")), ElementsAre("anton Berg"));
    expectFailure(tool("list", "--group", "friend"), 1, "friend");
    EXPECT_EQ(tool.json(1, "list", "--group", "friend"), Json::array());
}

TEST(ToolList, ListsWhoHasNoGroup) {
    const Village tool;
    EXPECT_THAT(namesIn(tool.json(0, "list", "--no-group")), UnorderedElementsAre("김민수", "O'Neil \"A\" and [Name]"));
    const Tool grouped;
    grouped("add", "--name", "Anna", "--group", "friends");
    expectFailure(grouped("list", "--no-group"), 1, "every contact has a group");
}

TEST(ToolList, ListsNamesThatBeginWithAPrefixInAnyCase) {
    const Village tool;
    EXPECT_THAT(namesIn(tool.json(0, "list", "--prefix", "AN")), ElementsAre("Anna Kim", "anton Berg"));
    EXPECT_THAT(namesIn(tool.json(0, "list", "--prefix", "김")), ElementsAre("김민수"));
    EXPECT_EQ(tool.json(0, "list", "--prefix", "").size(), 5u);
    expectFailure(tool("list", "--prefix", "nna"), 1, "nna");
}

TEST(ToolList, RefusesTwoWaysOfChoosingAtOnce) {
    const Village tool;
    expectFailure(tool("list", "--group", "friends", "--no-group"), 2, "--group");
    expectFailure(tool("list", "--group", "friends", "--prefix", "A"), 2, "--group");
    expectFailure(tool("list", "--no-group", "--prefix", "A"), 2, "--prefix");
    expectFailure(tool("list", "--group", ""), 2, "--no-group");
}

TEST(ToolSearch, NarrowsWithEachFurtherText) {
    const Village tool;
    EXPECT_THAT(namesIn(tool.json(0, "search", "an")),
                ElementsAre("Anna Kim", "anton Berg", "Kim Anna-Lena", "O'Neil \"A\" and [Name]"));
    EXPECT_THAT(namesIn(tool.json(0, "search", "an", "--and", "kim")), ElementsAre("Anna Kim", "Kim Anna-Lena"));
    EXPECT_THAT(namesIn(tool.json(0, "search", "--and", "kim", "--and", "LENA", "an")), ElementsAre("Kim Anna-Lena"));
    EXPECT_THAT(namesIn(tool.json(0, "search", "\" and [", "--and", "O'N")), ElementsAre("O'Neil \"A\" and [Name]"));
    expectFailure(tool("search", "an", "--and", "nobody"), 1, "\"an\" and \"nobody\"");
}
