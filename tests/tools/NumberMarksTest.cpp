// number: the digits that were looked for stand out in the numbers, where there are colours.

#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

const std::string escape = "\x1B";

std::string marked(const std::string& digits) {
    return escape + "[1;32m" + digits + escape + "[0m";
}

/// What a search for digits shows of the one contact that there is.
class OneNumber : public Tool {
public:
    explicit OneNumber(const std::string& mobile) { (*this)("add", "--name", "Anna", "--mobile", mobile); }

    std::string found(const std::string& digits) const {
        const auto lines = linesOf((*this)("--color", "always", "number", digits).out);
        return lines.size() == 2 ? lines[1].substr(lines[1].find("Anna")) : "";
    }
};

}  // namespace

TEST(NumberMarks, AreOnTheDigitsAndWhatIsBetweenThem) {
    const OneNumber tool("010-2345-6789");
    EXPECT_EQ(tool.found("2345"), "Anna  010-" + marked("2345") + "-6789");
    EXPECT_EQ(tool.found("0-23"), "Anna  01" + marked("0-23") + "45-6789");
    EXPECT_EQ(tool.found("45 67"), "Anna  010-23" + marked("45-67") + "89");
    EXPECT_EQ(tool.found("01023456789"), "Anna  " + marked("010-2345-6789"));
}

TEST(NumberMarks, AreOnEachPlaceThatMatches) {
    EXPECT_EQ(OneNumber("02-2345-2345").found("2345"), "Anna  02-" + marked("2345") + "-" + marked("2345"));
    EXPECT_EQ(OneNumber("111 1").found("11"), "Anna  " + marked("11") + marked("1 1"));
}

TEST(NumberMarks, AreNotOnACountryCodeThatANumberIsFoundWithout) {
    const OneNumber tool("+82 10-8210-2345");
    EXPECT_EQ(tool.found("82"), "Anna  +82 10-" + marked("82") + "10-2345");
    EXPECT_EQ(tool.found("0108"), "Anna  +82 " + marked("10-8") + "210-2345");
    EXPECT_EQ(tool.found("0"), "Anna  +82 1" + marked("0") + "-821" + marked("0") + "-2345");
}

TEST(NumberMarks, AreInEveryColumnOfNumbersAndInNoOther) {
    const Tool tool;
    tool("add", "--name", "Room 777", "--mobile", "777", "--fax", "02-777");
    const std::string out = tool("--color", "always", "number", "777").out;
    EXPECT_THAT(out, HasSubstr("Room 777  " + marked("777")));
    EXPECT_THAT(out, HasSubstr("02-" + marked("777")));
}

TEST(NumberMarks, StandWhereTheyAreAmongCharactersThatAreShownOtherwise) {
    // The 31 counts as digits of the number, the 1b and the 9b of the way in which it is shown do not.
    const OneNumber tool("5\x1B[31m23\xC2\x9B-4");
    EXPECT_EQ(tool.found("123"), "Anna  5\\u{1b}[3" + marked("1m23") + "\\u{9b}-4");
    EXPECT_EQ(tool.found("34"), "Anna  5\\u{1b}[31m2" + marked("3\\u{9b}-4"));
    EXPECT_EQ(OneNumber("김\n23").found("23"), "Anna  김\\u{a}" + marked("23"));
}

TEST(NumberMarks, AreNoneWithoutColours) {
    const OneNumber tool("010-2345-6789");
    EXPECT_THAT(tool("number", "2345").out, Not(HasSubstr(escape)));
    EXPECT_THAT(tool("--color", "always", "--json", "number", "2345").out, Not(HasSubstr(escape)));
    auto onTerminal = tool.command({"number", "2345"});
    onTerminal.outputToTerminal = true;
    onTerminal.environment["TERM"] = "xterm";
    onTerminal.environment["NO_COLOR"] = "1";
    EXPECT_THAT(run(onTerminal).out, Not(HasSubstr(escape)));
    onTerminal.environment["NO_COLOR"] = "";
    EXPECT_THAT(run(onTerminal).out, HasSubstr("010-" + marked("2345") + "-6789"));
}

TEST(NumberMarks, AreCutWithTheirNumber) {
    const OneNumber tool("010-2345-6789");
    auto narrow = tool.command({"number", "2345"});
    narrow.outputToTerminal = true;
    narrow.terminalColumns = 17;
    narrow.environment["COLUMNS"] = "";
    narrow.environment["NO_COLOR"] = "";
    narrow.environment["TERM"] = "xterm";
    EXPECT_THAT(run(narrow).out, HasSubstr("010-" + marked("23") + "…"));
}

TEST(NumberMarks, DoNotMoveTheColumnsBehindThem) {
    const Tool tool;
    tool("add", "--name", "Anna", "--mobile", "010-2345", "--home", "02-1");
    tool("add", "--name", "Bella", "--mobile", "010-2345-6789", "--home", "02-2");
    std::string coloured = tool("--color", "always", "number", "2345").out;
    for (const std::string sequence : {"[1m", "[1;32m", "[0m"}) {
        for (std::size_t at; (at = coloured.find(escape + sequence)) != std::string::npos;)
            coloured.erase(at, sequence.size() + 1);
    }
    EXPECT_EQ(coloured, tool("number", "2345").out);
}
