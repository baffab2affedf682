// speed-dial list on a terminal, which has every slot in columns.

#include <string>

#include "tests/tools/Couple.h"

using namespace tool_test;
using ::testing::AllOf;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::SizeIs;

namespace {

std::string onTerminal(const Tool& tool, const std::string& columns) {
    auto command = tool.command({"speed-dial", "list"});
    command.outputToTerminal = true;
    command.environment["COLUMNS"] = columns;
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    std::string text = outcome.out;
    std::erase(text, '\r');
    return text;
}

}  // namespace

TEST(ToolSpeedDial, ShowsEverySlotOnATerminalWithinItsWidth) {
    const Couple tool;
    tool.set("2", tool.minsu, "mobile");
    tool("edit", tool.anna.dump(), "--name", std::string(40, 'n'));
    tool.set("3", tool.anna, "mobile");
    const auto wide = linesOf(onTerminal(tool, "63"));
    ASSERT_THAT(wide, SizeIs(33));
    EXPECT_EQ(wide[0], " 1 -                  2 김민수             3 nnnnnnnnnnnnnnn…");
    EXPECT_EQ(wide[32], "97 -                 98 -                 99 -");
    EXPECT_THAT(linesOf(onTerminal(tool, "5")),
                AllOf(SizeIs(99),
                      Each(testing::ResultOf([](const std::string& line) { return line.size(); }, testing::Le(9u)))));
}

TEST(ToolSpeedDial, WritesJsonOnATerminalToo) {
    const Couple tool;
    tool.set("2", tool.minsu, "mobile");
    auto command = tool.command({"--json", "speed-dial", "list"});
    command.outputToTerminal = true;
    EXPECT_EQ(Json::parse(run(command).out), tool.slots());
}

TEST(ToolSpeedDial, ShowsTensOnAWideTerminal) {
    const Tool tool;
    tool("init");
    const auto lines = linesOf(onTerminal(tool, "500"));
    ASSERT_THAT(lines, SizeIs(10));
    EXPECT_THAT(lines[9], HasSubstr("91 -     92 -"));
}

TEST(ToolSpeedDial, ShowsASlotThatIsNobodysOnATerminal) {
    const Couple tool;
    addRows(tool, {{4, CString(TEXT("01055556666"))}});
    EXPECT_THAT(onTerminal(tool, "80"), HasSubstr(" 4 010-5555-6666"));
}
