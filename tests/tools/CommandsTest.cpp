// Each command by its text and its JSON, and what the shell is told.

#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

/// A phone book of three.
class Family : public Tool {
public:
    Family() {
        (*this)("add", "--name", "Walker Anna", "--group", "friends", "--mobile", "010-1111-2222");
        (*this)("add", "--name", "김민수", "--mobile", "010-2345-6789", "--home", "02-312-4567");
        (*this)("add", "--name", "고민정", "--business", "031-222-3333", "--fax", "02-999-8888");
    }
};

}  // namespace

TEST(Tool, PrintsItsVersion) {
    const Outcome outcome = Tool()("--version");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "tessera " TESSERA_VERSION "\n");
}

TEST(Tool, AnswersWrongUsageWithStatusTwoAndTouchesNothing) {
    const Tool tool;
    expectFailure(tool(), 2, "command");
    expectFailure(tool("dance"), 2, "\"dance\" is no command");
    expectFailure(tool("--json", "dance"), 2, "\"dance\" is no command");
    expectFailure(tool("show"), 2, "PERSON");
    expectFailure(tool("show", "-x"), 2, "");
    expectFailure(tool("list", "--colour"), 2, "did you mean \"--color\"?");
    expectFailure(tool("list", "extra"), 2, "extra");
    expectFailure(tool("number", "no digits"), 2, "no digits");
    expectFailure(tool("identify", "anonymous"), 2, "anonymous");
    expectFailure(tool("--store"), 2, "--store");
    expectFailure(tool("--store", "", "init"), 2, "--store");
    expectFailure(tool("init", "--store", ""), 2, "--store");
    EXPECT_FALSE(exists(tool.store()));
}

TEST(Tool, SaysThatThereIsNoPhoneBookAndWhatToDo) {
    const Tool tool;
    for (const auto& arguments : std::vector<std::vector<std::string>>{{"show", "1"},
                                                                       {"list"},
                                                                       {"export"},
                                                                       {"edit", "1", "--name", "A"},
                                                                       {"delete", "1"},
                                                                       {"search", "a"},
                                                                       {"number", "1"},
                                                                       {"identify", "1"},
                                                                       {"speed-dial", "list"},
                                                                       {"speed-dial", "set", "1", "1", "home"},
                                                                       {"group", "list"},
                                                                       {"group", "add", "A"},
                                                                       {"category", "list"},
                                                                       {"category", "add", "A"},
                                                                       {"call", "list"},
                                                                       {"call", "log", "1"}}) {
        const Outcome outcome = run(tool.command(arguments));
        expectFailure(outcome, 3, tool.store().string());
        EXPECT_THAT(outcome.err, HasSubstr("tessera init"));
        EXPECT_THAT(outcome.err, HasSubstr("tessera import"));
    }
    EXPECT_FALSE(exists(tool.store()));
}

TEST(Tool, TakesTheStoreFromItsOptionBeforeTheEnvironment) {
    const Tool tool;
    const std::string other = (tool / "other.db").string();
    EXPECT_EQ(tool("--store", other, "init").status, 0);
    EXPECT_TRUE(std::filesystem::exists(other));
    EXPECT_FALSE(exists(tool.store()));
    EXPECT_EQ(tool("list", "--store", other).status, 0);
}

TEST(StoreOption, StandsBeforeOrBehindTheCommandAndBeforeTheEnvironment) {
    const Tool tool;
    const std::string store = (tool / "other.db").string();
    ASSERT_EQ(tool("--store", store, "add", "--name", "Bella", "--mobile", "010-2345-6789").status, 0);
    tool("add", "--name", "Anna");
    EXPECT_EQ(namesIn(tool.json(0, "list")), std::vector<std::string>{"Anna"});
    EXPECT_EQ(namesIn(tool.json(0, "--store", store, "list")), std::vector<std::string>{"Bella"});
    EXPECT_EQ(namesIn(tool.json(0, "list", "--store", store)), std::vector<std::string>{"Bella"});
    EXPECT_EQ(tool.json(0, "show", "Bella", "--store", store)["name"], "Bella");
    EXPECT_EQ(tool("speed-dial", "set", "5", "Bella", "mobile", "--store", store).status, 0);
    EXPECT_EQ(tool("speed-dial", "--store", store, "call", "5").out, "010-2345-6789\n");
}

TEST(ToolInit, MakesAPhoneBookOnceAndSaysSo) {
    const Tool tool;
    const Outcome first = tool("init");
    EXPECT_EQ(first.status, 0) << first.err;
    EXPECT_EQ(first.out, "made a phone book in " + tool.store().string() + "\n");
    const Outcome second = tool("init");
    EXPECT_EQ(second.status, 0);
    EXPECT_EQ(second.out, "there is a phone book already in " + tool.store().string() + "\n");
}

TEST(ToolInit, WritesAnObject) {
    const Tool tool;
    EXPECT_EQ(tool.json(0, "init"), (Json{{"store", tool.store().string()}, {"made", true}}));
    EXPECT_EQ(tool.json(0, "init"), (Json{{"store", tool.store().string()}, {"made", false}}));
}

TEST(ToolInit, LeavesTheContactsOfAPhoneBookAlone) {
    const Family tool;
    tool("init");
    EXPECT_EQ(tool.json(0, "list").size(), 3u);
}

TEST(ToolAdd, MakesThePhoneBookAndStoresEveryField) {
    const Tool tool;
    const Json added = tool.json(0, "add", "--name", "김민수", "--group", "친구", "--mobile", "010-2345-6789", "--home",
                                 "02-312-4567", "--business", "031-1", "--email", "minsu@example.com", "--pager", "015",
                                 "--fax", "02-9", "--birthday", "1990-03-05", "--avatar", "a", "--photo", "p", "--bell",
                                 "b", "--calling-screen", "7", "--private", "0x201", "--primary", "8");
    const Json expected{{"oid", added["oid"]},
                        {"name", "김민수"},
                        {"group", "친구"},
                        {"categories", "친구"},
                        {"mobile", "010-2345-6789"},
                        {"home", "02-312-4567"},
                        {"business", "031-1"},
                        {"email", "minsu@example.com"},
                        {"pager", "015"},
                        {"fax", "02-9"},
                        {"birthday", "1990-03-05"},
                        {"avatar", "a"},
                        {"photo", "p"},
                        {"bell", "b"},
                        {"callingScreen", 7},
                        {"private", 513},
                        {"primary", 8}};
    EXPECT_EQ(added, expected);
    EXPECT_EQ(keysOf(added), keysOf(expected));
    EXPECT_EQ(tool.json(0, "show", added["oid"].dump()), expected);
}

TEST(ToolAdd, LeavesOutWhatTheContactLacks) {
    const Tool tool;
    EXPECT_THAT(keysOf(tool.json(0, "add", "--name", "Anna", "--group", "")), ElementsAre("oid", "name"));
}

TEST(ToolAdd, SaysWhichContactItAdded) {
    const Tool tool;
    const Outcome outcome = tool("add", "--name", "Anna");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "added contact " + tool.json(0, "list")[0]["oid"].dump() + "\n");
}

TEST(ToolAdd, RefusesWhatItCannotStore) {
    const Tool tool;
    expectFailure(tool("add"), 2, "at least one field");
    expectFailure(tool("add", "--name", ""), 2, "at least one field");
    expectFailure(tool("add", "--name", "A", "--birthday", "yesterday"), 2, "yesterday");
    expectFailure(tool("add", "--name", "A", "--birthday", "1990-02-30"), 2, "1990-02-30");
    expectFailure(tool("add", "--name", "A", "--birthday", "1500-01-01"), 2, "1500-01-01");
    expectFailure(tool("add", "--name", "A", "--primary", "5"), 2, "--primary");
    expectFailure(tool("add", "--name", "A", "--private", "x"), 2, "--private");
    expectFailure(tool("add", "--name", std::string(32'736, 'x')), 2, "32735");
    EXPECT_FALSE(exists(tool.store()));
}

TEST(ToolAdd, SeparatesTheCountryCodeOfANumberAndLeavesOtherTextsAsTyped) {
    const Tool tool;
    const Json separated =
        tool.json(0, "add", "--name", "+821012345678", "--mobile", "+821012345678", "--home", "+442079460958",
                  "--business", "+82.10.6666.7777", "--pager", "+8210-1-2", "--fax", "+12125550123", "--bell", "+821");
    EXPECT_EQ(separated["name"], "+821012345678");
    EXPECT_EQ(separated["mobile"], "+82 1012345678");
    EXPECT_EQ(separated["home"], "+44 2079460958");
    EXPECT_EQ(separated["business"], "+82 .10.6666.7777");
    EXPECT_EQ(separated["pager"], "+82 10-1-2");
    EXPECT_EQ(separated["fax"], "+1 2125550123");
    EXPECT_EQ(separated["bell"], "+821");
    for (const std::string typed : {"+82 10-1-2", "+82-10-1-2", "010-1234-5678", "821012345678", "00821012345678",
                                    "+82", "+8", "+", "+0101", "+99912", "(+82) 10-1", "+82) 10-1"})
        EXPECT_EQ(tool.json(0, "add", "--mobile", typed)["mobile"], typed);
}

TEST(ToolAdd, StoresTheLongestTextThereCanBe) {
    const Tool tool;
    const std::string name(32'735, 'x');
    EXPECT_EQ(tool.json(0, "add", "--name", name)["name"], name);
}

TEST(ToolShow, WritesTheFieldsBelowOneAnother) {
    const Family tool;
    const Json contact = tool.json(0, "search", "김민수")[0];
    const Outcome outcome = tool("show", contact["oid"].dump());
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "Oid             " + contact["oid"].dump() +
                               "\n"
                               "Name            김민수\n"
                               "Mobile          010-2345-6789\n"
                               "Home            02-312-4567\n");
}

TEST(ToolShow, FindsNothingUnderAnUnknownIdentifier) {
    const Family tool;
    expectFailure(tool("show", "999999"), 1, "999999");
    expectFailure(tool("show", "0"), 1, "0");
    EXPECT_EQ(tool.json(1, "show", "999999"), Json());
}

TEST(ToolList, ListsAllInTheOrderOfTheirNames) {
    const Family tool;
    EXPECT_THAT(namesIn(tool.json(0, "list")), ElementsAre("Walker Anna", "고민정", "김민수"));
}

TEST(ToolList, OfAnEmptyPhoneBookIsEmptyAndDone) {
    const Tool tool;
    tool("init");
    EXPECT_EQ(tool.json(0, "list"), Json::array());
    const Outcome outcome = tool("list");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "");
}

TEST(ToolSearch, FindsPartsOfNamesInAnyCase) {
    const Family tool;
    EXPECT_THAT(namesIn(tool.json(0, "search", "WALK")), ElementsAre("Walker Anna"));
    EXPECT_THAT(namesIn(tool.json(0, "search", "민")), ElementsAre("고민정", "김민수"));
}

TEST(ToolSearch, FindsInitialConsonants) {
    const Family tool;
    EXPECT_THAT(namesIn(tool.json(0, "search", "ㄱㅁ")), ElementsAre("고민정", "김민수"));
    EXPECT_THAT(namesIn(tool.json(0, "search", "ㄱㅁㅅ")), ElementsAre("김민수"));
}

TEST(ToolSearch, SaysWhenNoNameHoldsTheText) {
    const Family tool;
    expectFailure(tool("search", "Nobody"), 1, "Nobody");
    EXPECT_EQ(tool.json(1, "search", "Nobody"), Json::array());
}

TEST(ToolNumber, FindsPartsOfAnyNumberHoweverItIsSpelled) {
    const Family tool;
    EXPECT_THAT(namesIn(tool.json(0, "number", "2345")), ElementsAre("김민수"));
    EXPECT_THAT(namesIn(tool.json(0, "number", "11-2")), ElementsAre("Walker Anna"));
    EXPECT_THAT(namesIn(tool.json(0, "number", "9998888")), ElementsAre("고민정"));
    EXPECT_THAT(namesIn(tool.json(0, "number", "0")), ElementsAre("Walker Anna", "고민정", "김민수"));
}

TEST(ToolNumber, SaysWhenNoNumberHoldsTheDigits) {
    const Family tool;
    expectFailure(tool("number", "7777"), 1, "7777");
    EXPECT_EQ(tool.json(1, "number", "7777"), Json::array());
}

TEST(Candidates, AreOfNoConcernToPeople) {
    const Tool tool;
    EXPECT_THAT(tool("--help").out, Not(HasSubstr("candidates")));
    EXPECT_THAT(tool("candidate").err, Not(HasSubstr("candidates")));
    const Outcome none = tool("candidates", "persons");
    EXPECT_EQ(none.status, 0);
    EXPECT_EQ(none.out + none.err, "");
    EXPECT_FALSE(exists(tool.store()));
}
