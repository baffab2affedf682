// What a terminal gets: aligned columns, and nothing that it would obey.

#include <algorithm>

#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

/// Columns left of a text in the line that holds it, counting each character as `width` says.
std::size_t columnsBefore(const std::string& line, const std::string& text,
                          const std::map<std::string, std::size_t>& widths) {
    std::string before = line.substr(0, line.find(text));
    std::size_t columns = 0;
    for (const auto& [character, width] : widths) {
        for (std::size_t at; (at = before.find(character)) != std::string::npos; columns += width)
            before.erase(at, character.size());
    }
    return columns + before.size();
}

bool holdsRawControl(const std::string& text) {
    const bool control = std::any_of(text.begin(), text.end(),
                                     [](unsigned char byte) { return (byte < 0x20 && byte != '\n') || byte == 0x7F; });
    return control || text.find("\xC2\x9B") != std::string::npos || text.find("\u202E") != std::string::npos;
}

}  // namespace

TEST(ToolOutput, AlignsNamesByTheColumnsThatTheyTake) {
    const Tool tool;
    // A Hangul syllable, the same in jamo, a combining accent, a wide sign, an emoji.
    const std::map<std::string, std::size_t> widths = {{"김", 2},     {"민", 2},     {"\u1100", 2},
                                                       {"\u1161", 0}, {"\u11A8", 0}, {"\u0301", 0},
                                                       {"Ａ", 2},     {"😀", 2},      {"é", 1}};
    for (const std::string name : {"김민", "\u1100\u1161\u11A8", "e\u0301e", "ＡＡＡ", "😀", "é", "plain"})
        tool("add", "--name", name, "--mobile", "4711");
    const auto lines = linesOf(tool("list").out);
    ASSERT_EQ(lines.size(), 8u);
    for (std::size_t i = 1; i < lines.size(); ++i)
        EXPECT_EQ(columnsBefore(lines[i], "4711", widths), columnsBefore(lines[0], "Mobile", {})) << lines[i];
}

TEST(ToolOutput, LeavesOutColumnsThatNobodyFills) {
    const Tool tool;
    tool("add", "--name", "Anna", "--home", "02-1");
    const auto lines = linesOf(tool("list").out);
    EXPECT_THAT(lines[0], HasSubstr("Home"));
    EXPECT_THAT(lines[0], Not(HasSubstr("Mobile")));
}

TEST(ToolOutput, LetsALongTextPushOnlyItsOwnLine) {
    const Tool tool;
    tool("add", "--name", "Anna", "--mobile", "1");
    tool("add", "--name", std::string(1000, 'x'), "--mobile", "2");
    const auto lines = linesOf(tool("list").out);
    EXPECT_THAT(lines[2], HasSubstr(std::string(1000, 'x') + "  2"));
    EXPECT_LT(lines[0].size(), 100u);
    EXPECT_EQ(lines[1].find("  1"), lines[0].find("  Mobile"));
}

TEST(ToolOutput, ShowsWhatATerminalWouldObeyByItsCode) {
    const Tool tool;
    // A colour sequence, the one-character form of the escape, delete, a line feed, and a turned direction.
    const std::string name =
        "\x1B[31mred \xC2\x9B"
        "31m \x7F\n \u202Eturned";
    const std::string oid = tool.json(0, "add", "--name", name)["oid"].dump();
    EXPECT_EQ(tool("show", oid).out, "Oid             " + oid +
                                         "\n"
                                         "Name            \\u{1b}[31mred \\u{9b}31m \\u{7f}\\u{a} \\u{202e}turned\n");
}

TEST(ToolOutput, LeavesWhatOnlyDoesNotShow) {
    const Tool tool;
    // A family in one emoji, a flag that is spelled with tags, a sign in colour, a blank without width.
    const std::string name =
        "\U0001F468\u200D\U0001F469\u200D\U0001F467 "
        "\U0001F3F4\U000E0067\U000E0062\U000E0065\U000E006E\U000E0067\U000E007F "
        "\u2764\uFE0F a\u200Bb";
    tool("add", "--name", name, "--mobile", "4711");
    EXPECT_THAT(tool("list").out, HasSubstr(name + "  4711"));
}

TEST(ToolOutput, KeepsEveryCharacterInJson) {
    const Tool tool;
    const std::string name = "\x1B[31m \xC2\x9B \x7F\n\t\"quoted\" \\ \u202E 김 😀";
    EXPECT_EQ(tool.json(0, "add", "--name", name)["name"], name);
}

TEST(ToolOutput, HasNoColoursWithOrWithoutNoColor) {
    const Tool tool;
    tool("add", "--name", "Anna");
    auto command = tool.command({"list"});
    const std::string plain = run(command).out;
    command.environment["NO_COLOR"] = "1";
    EXPECT_EQ(run(command).out, plain);
    EXPECT_FALSE(holdsRawControl(plain));
}
