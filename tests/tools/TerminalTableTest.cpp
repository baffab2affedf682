// Tables and colours: as a terminal has room for them and shows them.

#include "tests/tools/Colours.h"
#include "tests/tools/WideBook.h"

using namespace tool_test;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::SizeIs;
using testing_support::Command;

namespace {

/// The columns that a line of these texts takes, by the characters that they are made of.
std::size_t columnsOf(std::string line) {
    const auto take = [&line](const std::string& character, std::size_t width) {
        std::size_t columns = 0;
        for (std::size_t at; (at = line.find(character)) != std::string::npos; columns += width)
            line.erase(at, character.size());
        return columns;
    };
    std::size_t columns = take("\u0301", 0) + take("…", 1) + take("😀", 2);
    std::string narrow;
    for (std::size_t i = 0; i < line.size();) {
        const bool isWide =
            static_cast<unsigned char>(line[i]) >= 0xE0;  // what is left is ASCII, Hangul and full width
        columns += isWide ? 2 : 1;
        i += isWide ? 3 : 1;
    }
    return columns;
}

std::string withoutReturns(std::string text) {
    std::erase(text, '\r');
    return text;
}

}  // namespace

TEST(TerminalTable, FitsTheTerminal) {
    const WideBook tool;
    for (const unsigned short columns : std::initializer_list<unsigned short>{90, 80, 60, 50, 40}) {
        const Outcome outcome = run(tool.onTerminal({"list"}, columns));
        const auto lines = linesOf(withoutColours(withoutReturns(outcome.out)));
        ASSERT_THAT(lines, SizeIs(7));
        for (const std::string& line : lines)
            EXPECT_LE(columnsOf(line), columns) << line;
        EXPECT_THAT(outcome.out, HasSubstr("…")) << columns;
        for (std::size_t i = 1; i < lines.size(); ++i)  // texts are cut, numbers not
            EXPECT_THAT(lines[i], HasSubstr("  010-2345-6789"));
    }
}

TEST(TerminalTable, StaysAlignedWhereItIsCut) {
    const WideBook tool;
    const auto lines = linesOf(withoutColours(withoutReturns(run(tool.onTerminal({"list"}, 50)).out)));
    ASSERT_THAT(lines, SizeIs(7));
    const std::size_t place = columnsOf(lines[0].substr(0, lines[0].find("Mobile")));
    for (std::size_t i = 1; i < lines.size(); ++i)
        EXPECT_EQ(columnsOf(lines[i].substr(0, lines[i].find("010-"))), place) << lines[i];
}

TEST(TerminalTable, IsWholeWhereTheTerminalHasRoom) {
    const WideBook tool;
    const std::string out = run(tool.onTerminal({"list"}, 200)).out;
    EXPECT_THAT(out, Not(HasSubstr("…")));
    EXPECT_THAT(out, HasSubstr(std::string(60, 'x') + "  친구들과 가족"));
}

TEST(TerminalTable, IsAsWideAsColumnsSays) {
    const WideBook tool;
    Command command = tool.onTerminal({"list"}, 200);
    command.environment["COLUMNS"] = "50";
    for (const std::string& line : linesOf(withoutColours(withoutReturns(run(command).out))))
        EXPECT_LE(columnsOf(line), 50u) << line;
}

TEST(TerminalTable, FitsWhateverTheCommand) {
    const WideBook tool;
    const std::string longText(60, 'y');
    tool("group", "ring", "친구", "--call", longText);
    tool("call", "log", "0212345678", "--cnap", longText);
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"search", "x"}, {"number", "2345"}, {"group", "list"}, {"call", "list"}}) {
        const Outcome outcome = run(tool.onTerminal(arguments, 60));
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        for (const std::string& line : linesOf(withoutColours(withoutReturns(outcome.out))))
            EXPECT_LE(columnsOf(line), 60u) << line;
    }
}

TEST(Colour, MarksHeadingsTheMatchedNumberAndErrorsOnATerminal) {
    const WideBook tool;
    EXPECT_THAT(run(tool.onTerminal({"list"}, 80)).out, ::testing::StartsWith(escape + "[1mOid"));
    EXPECT_THAT(run(tool.onTerminal({"identify", "01023456789"}, 80)).out,
                HasSubstr("Matched         " + escape + "[1;32m01023456789" + escape + "[0m"));
    EXPECT_THAT(run(tool.onTerminal({"identify", "999"}, 80)).err,
                HasSubstr(escape + "[1;31mtessera:" + escape + "[0m nobody"));
    EXPECT_THAT(run(tool.onTerminal({"lst"}, 80)).err, HasSubstr(escape + "[1;31mtessera:" + escape + "[0m"));
}

TEST(Colour, IsLeftOutWhereItIsNotWanted) {
    const WideBook tool;
    const std::vector<std::pair<std::string, std::string>> refusals = {
        {"NO_COLOR", "1"}, {"TERM", "dumb"}, {"TERM", ""}};
    for (const auto& [variable, value] : refusals) {
        for (const std::vector<std::string>& arguments :
             {std::vector<std::string>{"list"}, {"identify", "01023456789"}, {"identify", "999"}}) {
            Command command = tool.onTerminal(arguments, 80);
            command.environment[variable] = value;
            const Outcome outcome = run(command);
            EXPECT_THAT(outcome.out + outcome.err, Not(HasSubstr(escape))) << variable << '=' << value;
        }
    }
    const Outcome never = run(tool.onTerminal({"--color", "never", "list"}, 80));
    EXPECT_THAT(never.out, Not(HasSubstr(escape)));
    const Outcome json = run(tool.onTerminal({"--json", "identify", "999"}, 80));
    EXPECT_THAT(json.out + json.err, Not(HasSubstr(escape)));
}

TEST(NumberMarks, AreOnATerminalUnlessItWantsNoColours) {
    const Tool tool;
    tool("add", "--name", "Anna", "--mobile", "010-2345-6789");
    auto onTerminal = tool.command({"number", "2345"});
    onTerminal.outputToTerminal = true;
    onTerminal.environment["TERM"] = "xterm";
    onTerminal.environment["NO_COLOR"] = "1";
    EXPECT_THAT(run(onTerminal).out, Not(HasSubstr(escape)));
    onTerminal.environment["NO_COLOR"] = "";
    EXPECT_THAT(run(onTerminal).out, HasSubstr("010-" + marked("2345") + "-6789"));
}

TEST(NumberMarks, AreCutWithTheirNumber) {
    const Tool tool;
    tool("add", "--name", "Anna", "--mobile", "010-2345-6789");
    auto narrow = tool.command({"number", "2345"});
    narrow.outputToTerminal = true;
    narrow.terminalColumns = 17;
    narrow.environment["COLUMNS"] = "";
    narrow.environment["NO_COLOR"] = "";
    narrow.environment["TERM"] = "xterm";
    EXPECT_THAT(run(narrow).out, HasSubstr("010-" + marked("23") + "…"));
}
