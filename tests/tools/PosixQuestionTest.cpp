// What is asked on a terminal: whether all is to go, and who is meant.

#include "tests/tools/Couple.h"
#include "tests/tools/People.h"

using namespace tool_test;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

namespace {

/// The command with that typed where it asks, and its output read back as it stands in a file.
Outcome answering(const Tool& tool, const std::string& answer, std::vector<std::string> arguments) {
    auto asked = tool.command(std::move(arguments));
    asked.errorToTerminal = true;
    asked.typed = answer;
    asked.environment["TERM"] = "dumb";
    return run(asked);
}

}  // namespace

TEST(ToolDelete, AsksOnATerminalBeforeItDeletesAll) {
    const People tool;
    for (const std::string name : {"Anna", "Bella", "Clara"})
        tool.person(name, "--group", "friends");
    const Outcome refused = answering(tool, "n\n", {"delete", "--all"});
    EXPECT_EQ(refused.status, 3);
    EXPECT_THAT(refused.err, HasSubstr("Delete all 3 contacts of " + tool.store().string()));
    EXPECT_THAT(refused.err, HasSubstr("nothing was deleted"));
    EXPECT_EQ(answering(tool, "\n", {"delete", "--all"}).status, 3);
    EXPECT_EQ(tool.json(0, "list").size(), 3u);

    const Outcome agreed = answering(tool, "y\n", {"delete", "--all"});
    EXPECT_EQ(agreed.status, 0) << agreed.err;
    EXPECT_EQ(agreed.out, "deleted 3 contacts\n");
    EXPECT_EQ(tool.json(0, "list"), Json::array());
}

TEST(ToolCall, AsksOnATerminalBeforeItDeletesAll) {
    const Tool tool;
    tool("init");
    tool("call", "log", "1");
    tool("call", "log", "2");
    const Outcome refused = answering(tool, "n\n", {"call", "clear"});
    EXPECT_EQ(refused.status, 3);
    EXPECT_THAT(refused.err, HasSubstr("Delete all 2 calls of " + tool.store().string() + "? [y/N]"));
    EXPECT_THAT(tool.json(0, "call", "list"), SizeIs(2));

    EXPECT_EQ(answering(tool, "y\n", {"call", "clear"}).out, "deleted 2 calls\n");
    EXPECT_EQ(tool.json(0, "call", "list"), Json::array());
}

TEST(ToolSpeedDial, AsksOnATerminalBeforeItClearsAll) {
    const Couple tool;
    tool.set("5", tool.minsu, "mobile");
    const Outcome refused = answering(tool, "n\n", {"speed-dial", "clear", "--all"});
    EXPECT_EQ(refused.status, 3);
    EXPECT_THAT(refused.err, HasSubstr("Clear all 1 slot of " + tool.store().string() + "? [y/N]"));
    EXPECT_THAT(tool.slots(), SizeIs(1));

    EXPECT_EQ(answering(tool, "y\n", {"speed-dial", "clear", "--all"}).out, "cleared 1 slot\n");
    EXPECT_EQ(tool.slots(), Json::array());
}

TEST(Person, IsDeletedForAPartOfTheNameWhenTheUserAgrees) {
    const Kims tool;
    const std::string anna = tool.person("Anna Smith", "--mobile", "010-1");
    for (const char* answer : {"n\n", "\n", "1\n", "\x04"}) {
        const Outcome refused = answering(tool, answer, {"delete", tool.minsu, "anna"});
        EXPECT_EQ(refused.status, 3) << answer;
        EXPECT_THAT(refused.err, HasSubstr("Delete Anna Smith, 010-1? [y/N]"));
        EXPECT_THAT(refused.err, HasSubstr("nothing was deleted"));
    }
    EXPECT_EQ(tool.names().size(), 4u);

    EXPECT_EQ(answering(tool, "y\n", {"delete", "anna"}).out, "deleted 1 contact: " + anna + " Anna Smith\n");
    EXPECT_EQ(answering(tool, "y\n", {"delete", "ㄱㅁㅈ"}).out, "deleted 1 contact: " + tool.minjeong + " 김민정\n");
    EXPECT_THAT(tool.names(), UnorderedElementsAre("김민수", "김민수"));
}

TEST(Person, IsChosenFromANumberedListOnATerminal) {
    const Kims tool;
    const Outcome outcome = answering(tool, "2\n", {"--json", "show", "김민수"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(Json::parse(outcome.out)["oid"].dump(), tool.other);
    EXPECT_THAT(outcome.err, HasSubstr("1  " + tool.minsu + "   김민수  010-2345-6789"));
    EXPECT_THAT(outcome.err, HasSubstr("2  " + tool.other + "   김민수  02-1234"));
    EXPECT_THAT(outcome.err, HasSubstr("Which one? [1-2]"));

    EXPECT_EQ(answering(tool, "1\n", {"delete", "김민수"}).out, "deleted 1 contact: " + tool.minsu + " 김민수\n");
    EXPECT_THAT(tool.names(), UnorderedElementsAre("김민수", "김민정"));
}

TEST(Person, IsNotChosenByAnyOtherAnswer) {
    const Kims tool;
    for (const char* answer : {"\n", "0\n", "3\n", "-1\n", "x\n", "1 2\n", "\x04"}) {
        const Outcome outcome = answering(tool, answer, {"delete", "김민수"});
        EXPECT_EQ(outcome.status, 3) << answer;
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, HasSubstr("no one was chosen"));
    }
    EXPECT_EQ(tool.names().size(), 3u);
}

TEST(Person, IsOfferedAmongTwentyAtMost) {
    const People tool;
    for (int i = 0; i < 23; ++i)
        tool.person("Anna " + std::string(1, static_cast<char>('a' + i)));
    const Outcome outcome = answering(tool, "21\n", {"show", "anna"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("Anna t"));
    EXPECT_THAT(outcome.err, Not(HasSubstr("Anna u")));
    EXPECT_THAT(outcome.err, HasSubstr("and 3 more"));
}
