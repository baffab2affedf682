// What the README shows at a terminal.

#include <filesystem>

#include "tests/tools/ToolTest.h"

using namespace tool_test;
using testing_support::readFile;

namespace {

/// The commands that the README shows at a terminal, but for the one that goes on until it is interrupted.
std::vector<std::string> readmeCommands() {
    std::vector<std::string> commands;
    for (const std::string& line : linesOf(readFile(std::filesystem::path(SAMPLE_FILE).parent_path() / "../README.md")))
        if (line.starts_with("    tessera ") && !line.starts_with("    tessera watch")) commands.push_back(line);
    return commands;
}

}  // namespace

TEST(Readme, ShowsCommandsThatWorkOneAfterTheOther) {
    const Tool tool;
    std::filesystem::create_directory_symlink(std::filesystem::path(SAMPLE_FILE).parent_path(), tool / "examples");
    const std::vector<std::string> commands = readmeCommands();
    ASSERT_GE(commands.size(), 5u);
    for (const std::string& line : commands) {
        auto shell = tool.command({"-c", "cd \"$HOME\" && PATH=\"$TOOLS:$PATH\" && " + line});
        shell.program = "/bin/sh";
        shell.environment["TOOLS"] = std::filesystem::path(TESSERA_TOOL).parent_path().string();
        EXPECT_EQ(testing_support::run(shell).status, 0) << line;
    }
}
