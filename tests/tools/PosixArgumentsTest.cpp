// Arguments and paths of bytes that are no text.

#include <filesystem>

#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::HasSubstr;

TEST(Tool, RefusesTextsThatAreNone) {
    const Tool tool;
    expectFailure(tool("search", "\xFF\xFE"), 2, "UTF-8");
    EXPECT_FALSE(exists(tool.store()));
    tool("add", "--name", "Anna");
    expectFailure(tool("list", "--prefix", "\xFF"), 2, "UTF-8");
    expectFailure(tool("show", "\xFF"), 2, "UTF-8");
}

TEST(ToolOutput, ShowsBytesThatAreNoCharacterByTheirCode) {
    const Tool tool;
    // A control character where the rest of a longer one should be, a character in too many bytes, half of a pair,
    // one beyond the last, and the beginning of one at the end.
    const std::string bytes = "\xF0\x1B[2J\xC1\x9B\xE0\x82\x9B\xED\xA0\x80\xF4\x90\x80\x80\xC2";
    const std::string shown =
        "\\x{f0}\\u{1b}[2J\\x{c1}\\x{9b}\\x{e0}\\x{82}\\x{9b}\\x{ed}\\x{a0}\\x{80}\\x{f4}\\x{90}\\x{80}\\x{80}\\x{c2}";
    expectFailure(tool(bytes), 2, "\"" + shown + "\" is no command");
    expectFailure(tool("import", bytes), 3, shown + ": there is no such file");
}

TEST(ToolOutput, WritesJsonEvenAboutAPathThatIsNoText) {
    const Tool tool;
    const std::string store = (tool / "\xF0\x1B[2J\xFF.db").string();
    const Outcome made = tool("--store", store, "init");
    EXPECT_EQ(made.status, 0) << made.err;
    EXPECT_THAT(made.out, HasSubstr("\\x{f0}\\u{1b}[2J\\x{ff}.db\n"));
    EXPECT_TRUE(std::filesystem::exists(store));
    EXPECT_EQ(tool.json(0, "--store", store, "init")["store"], (tool / "\uFFFD\x1B[2J\uFFFD.db").string());
}
