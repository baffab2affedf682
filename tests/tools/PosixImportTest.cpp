// Devices, terminals, temporary folders and standard input as an import meets them.

#include <filesystem>

#include "tests/tools/CardText.h"
#include "tests/tools/RefusedImport.h"
#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using testing_support::Command;

namespace {

/// What a shell makes of a line in which tessera is the tool.
Outcome inShell(const Tool& tool, const std::string& line) {
    Command command = tool.command({"-c", "cd \"$HOME\" && " + line});
    command.program = "/bin/sh";
    command.environment["TESSERA"] = TESSERA_TOOL;
    return run(command);
}

}  // namespace

TEST(ToolImport, RefusesADevice) {
    const Tool tool;
    expectRefused(tool, "/dev/null", "is no regular file");
}

TEST(ToolImport, DrawsItsProgressOnATerminalAndNowhereElse) {
    const Tool tool;
    auto command = tool.command({"import", tool.file("people.csv", "Name\nAnna\nPaul\n")});
    EXPECT_EQ(run(command).err, "");
    command.errorToTerminal = true;
    const Outcome onTerminal = run(command);
    EXPECT_EQ(onTerminal.status, 0);
    EXPECT_THAT(onTerminal.err, HasSubstr("2 of 2 lines"));
    EXPECT_THAT(onTerminal.err, Not(HasSubstr("\x1B")));
    EXPECT_EQ(onTerminal.out, "imported 2 of 2 lines\n");
}

TEST(ToolImport, NamesTheFolderThatHasNoRoomForItsWorkingFile) {
    const Tool tool;
    tool("init");
    const std::string people = tool.file("people.csv", "Name,Group\nAnna,family\n");
    auto command = tool.command({"-c", "trap '' XFSZ; ulimit -f 0; exec " TESSERA_TOOL " import '" + people + "'"});
    command.program = "/bin/sh";
    command.environment["TMPDIR"] = tool.store().parent_path().string();
    expectFailure(run(command), 3,
                  command.environment["TMPDIR"] + ": cannot write a temporary file here: File too large");
    command.environment["TMPDIR"] = "/proc";
    expectFailure(run(command), 3, "name another folder with TMPDIR");
    EXPECT_EQ(tool.json(0, "list"), Json::array());
}

TEST(ToolImportCards, DrawsItsProgressOnATerminal) {
    const Tool tool;
    auto command = tool.command({"import", tool.file("people.vcf", testing_support::vcard("VERSION:3.0\nFN:Anna\n"))});
    command.errorToTerminal = true;
    const Outcome outcome = run(command);
    EXPECT_THAT(outcome.err, HasSubstr("1 of 1 cards"));
    EXPECT_EQ(outcome.out, "imported 1 of 1 card\n");
}

TEST(ToolImportInput, IsNamedWhenItCannotBeRead) {
    const Tool tool;
    expectFailure(inShell(tool, "\"$TESSERA\" import - <&-"), 3, "standard input: cannot be read: Bad file descriptor");
    expectFailure(inShell(tool, "\"$TESSERA\" import - </"), 3, "standard input: cannot be read: Is a directory");
    EXPECT_FALSE(exists(tool.store()));
}

TEST(ToolImportInput, IsNotTheFileOfThatName) {
    const Tool tool;
    tool.file("-", "Name\nAnna\n");
    EXPECT_EQ(inShell(tool, "echo 'Name\nPaul' | \"$TESSERA\" import - && \"$TESSERA\" import ./-").status, 0);
    EXPECT_THAT(namesIn(tool.json(0, "list")), ElementsAre("Anna", "Paul"));
}
