// number: the digits that were looked for stand out in the numbers, where there are colours.

#include "tests/tools/Colours.h"

using namespace tool_test;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

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
}

TEST(NumberMarks, DoNotMoveTheColumnsBehindThem) {
    const Tool tool;
    tool("add", "--name", "Anna", "--mobile", "010-2345", "--home", "02-1");
    tool("add", "--name", "Bella", "--mobile", "010-2345-6789", "--home", "02-2");
    EXPECT_EQ(withoutColours(tool("--color", "always", "number", "2345").out), tool("number", "2345").out);
}
