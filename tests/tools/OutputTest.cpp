// What a terminal gets: aligned columns, and nothing that it would obey.

#include <algorithm>

#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::Each;
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

TEST(ToolOutput, CutsLongTextsInTables) {
    const Tool tool;
    tool("add", "--name", std::string(1000, 'x'), "--mobile", "1");
    const auto lines = linesOf(tool("list").out);
    EXPECT_THAT(lines[1], HasSubstr(std::string(39, 'x') + "…"));
    EXPECT_LT(lines[1].size(), 100u);
}

TEST(ToolOutput, NeverHandsControlCharactersToTheTerminal) {
    const Tool tool;
    // A colour sequence, the one-character form of the escape, delete, a line feed, and a turned direction.
    const std::string name =
        "\x1B[31mred \xC2\x9B"
        "31m \x7F\n \u202Eturned";
    const std::string oid = tool.json(0, "add", "--name", name, "--mobile", "1\x1B[0m1")["oid"].dump();
    EXPECT_EQ(tool("speed-dial", "set", "5", oid, "mobile").status, 0);
    EXPECT_EQ(tool("group", "ring", "친구", "--call", name).status, 0);
    EXPECT_EQ(tool("call", "log", "101", "--cnap", name).status, 0);
    for (const auto& arguments : std::vector<std::vector<std::string>>{{"list"},
                                                                       {"show", oid},
                                                                       {"identify", "101"},
                                                                       {"identify", "101", "--all"},
                                                                       {"list", "--json"},
                                                                       {"show", oid, "--json"},
                                                                       {"search", "no \x1B[31m"},
                                                                       {"speed-dial", "list"},
                                                                       {"speed-dial", "set", "6", oid, "mobile"},
                                                                       {"group", "list"},
                                                                       {"group", "add", name},
                                                                       {"group", "rename", name, name},
                                                                       {"category", "list"},
                                                                       {"category", "delete", name},
                                                                       {"category", "delete", name},
                                                                       {"call", "last"},
                                                                       {"call", "list"},
                                                                       {"\x1B[31m"},
                                                                       {"show", "\x1B[31m"}}) {
        const Outcome outcome = run(tool.command(arguments));
        EXPECT_FALSE(holdsRawControl(outcome.out)) << arguments[0];
        EXPECT_FALSE(holdsRawControl(outcome.err)) << arguments[0];
    }
    EXPECT_THAT(tool("show", oid).out, HasSubstr("\\u{1b}[31mred \\u{9b}31m \\u{7f}\\u{a} \\u{202e}turned"));
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
