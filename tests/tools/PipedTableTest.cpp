// Tables and colours where there is no terminal: whole and plain.

#include "tests/tools/Colours.h"
#include "tests/tools/WideBook.h"

using namespace tool_test;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using testing_support::Command;

TEST(TerminalTable, IsWholeInAPipeWhateverColumnsSays) {
    const WideBook tool;
    Command command = tool.command({"list"});
    command.environment["COLUMNS"] = "20";
    const std::string out = run(command).out;
    EXPECT_THAT(out, Not(HasSubstr("…")));
    EXPECT_THAT(out, AllOf(HasSubstr(std::string(60, 'x') + "  "), HasSubstr("가나다라마바사아자차카타파하")));
}

TEST(Colour, IsInAPipeOnlyWhenTheCommandLineAsksForIt) {
    const WideBook tool;
    EXPECT_THAT(tool("list").out, Not(HasSubstr(escape)));
    EXPECT_THAT(tool("list", "--color", "always").out, ::testing::StartsWith(escape + "[1mOid"));
    EXPECT_THAT(tool("list", "--color", "always", "--json").out, Not(HasSubstr(escape)));
    EXPECT_EQ(withoutColours(tool("list", "--color", "always").out), tool("list").out);
    expectFailure(tool("list", "--color", "blue"), 2, "auto, always or never");
}
