// Terminals, links and devices that people may export to.

#include <filesystem>

#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::HasSubstr;
using testing_support::readFile;

TEST(ToolExport, WritesToATerminalOnlyWhatIsMeantForOne) {
    const Tool tool;
    tool("add", "--name", "\x1B[2J");
    auto command = tool.command({"export"});
    command.outputToTerminal = true;
    expectFailure(run(command), 2, "--json");
    command.arguments.emplace_back("--json");
    EXPECT_THAT(run(command).out, HasSubstr("\\u001b[2J"));
}

TEST(ToolExport, FollowsALinkAndLeavesIt) {
    const Tool tool;
    tool("add", "--name", "Anna");
    const std::string path = tool.file("people.csv", "old");
    std::filesystem::create_symlink(path, tool / "link.csv");
    EXPECT_EQ(tool("export", (tool / "link.csv").string()).status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(tool / "link.csv"));
    EXPECT_EQ(readFile(path), tool("export").out);
}

TEST(ToolExport, RefusesADevice) {
    const Tool tool;
    tool("add", "--name", "Anna");
    expectFailure(tool("export", "/dev/null"), 3, "is no regular file");
}
