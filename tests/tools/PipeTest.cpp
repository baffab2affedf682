// Standard output that somebody stops reading, or that cannot be written.

#include "tests/tools/ImportedFiles.h"

using namespace tool_test;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using testing_support::Command;

namespace {

Command inShell(const Tool& tool, const std::string& line) {
    Command command = tool.command({"-c", line});
    command.program = "/bin/sh";
    command.environment["TESSERA"] = TESSERA_TOOL;
    return command;
}

}  // namespace

TEST(Pipe, EndsQuietlyWhenNobodyReadsOn) {
    const Tool tool;
    ASSERT_EQ(tool("import", tool.file("people.csv", fileOfPeople(2'000))).status, 0);  // more than a pipe holds
    for (const std::string options : {"list", "--json list", "--json export"}) {
        const Outcome outcome =
            run(inShell(tool, "{ \"$TESSERA\" " + options + "; echo \"status $?\" >&2; } | head -n 1"));
        EXPECT_THAT(linesOf(outcome.out), SizeIs(1));
        EXPECT_EQ(outcome.err, "status 0\n") << options;
    }
}

TEST(Pipe, SaysWhyOutputCannotBeWritten) {
    const Tool tool;
    tool("add", "--name", "Anna");
    for (const std::string options : {"list", "--json list", "show Anna", "--json export", "--help", "--version"}) {
        const Outcome outcome = run(inShell(tool, "exec \"$TESSERA\" " + options + " >/dev/full"));
        expectFailure(outcome, 3, "cannot write to standard output: No space left on device");
    }
    expectFailure(run(inShell(tool, "exec \"$TESSERA\" list >&-")), 3, "cannot write to standard output");
}

TEST(Pipe, GetsWhatWasFoundBeforeTheErrorBehindIt) {
    const Tool tool;
    tool("add", "--name", "Anna");
    const Outcome outcome = run(inShell(tool, "exec \"$TESSERA\" delete Anna Bella 2>&1"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr("\"Bella\""));
    EXPECT_THAT(outcome.out, HasSubstr("deleted 1 contact"));
}

TEST(Tool, FailsWhenItsOutputCannotBeWritten) {
    const Tool tool;
    tool("add", "--name", "Anna");
    expectFailure(run(inShell(tool, "exec \"$TESSERA\" list >/dev/full")), 3, "standard output");
}
