// Standard output that somebody stops reading, or that cannot be written; and the store named anywhere on the line.

#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using testing_support::Command;
using testing_support::Process;

namespace {

/// More than a pipe holds.
std::string manyPeople() {
    std::string people = "Name,Group,Categories,Mobile\n";
    for (int i = 0; i < 2000; ++i)
        people += "A name of some length " + std::to_string(i) + ",friends,,010-" + std::to_string(10000 + i) + "\n";
    return people;
}

Command inShell(const Tool& tool, const std::string& line) {
    Command command = tool.command({"-c", line});
    command.program = "/bin/sh";
    command.environment["TESSERA"] = TESSERA_TOOL;
    return command;
}

}  // namespace

TEST(Pipe, EndsQuietlyWhenNobodyReadsOn) {
    const Tool tool;
    ASSERT_EQ(tool("import", tool.file("people.csv", manyPeople())).status, 0);
    for (const std::string options : {"list", "--json list", "--json export"}) {
        const Outcome outcome =
            run(inShell(tool, "{ \"$TESSERA\" " + options + "; echo \"status $?\" >&2; } | head -n 1"));
        EXPECT_THAT(linesOf(outcome.out), SizeIs(1));
        EXPECT_EQ(outcome.err, "status 0\n") << options;
    }
}

TEST(Pipe, LosesNothingOfAnImportThatNobodyReadsAbout) {
    const Tool tool;
    Process process(tool.command({"--json", "import", tool.file("people.csv", manyPeople())}));
    process.closeOutput();
    const Outcome outcome = process.wait();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(tool.json(0, "list"), SizeIs(2000));
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

TEST(StoreOption, StandsBeforeOrBehindTheCommandAndBeforeTheEnvironment) {
    const Tool tool;
    const std::string store = (tool / "other.db").string();
    ASSERT_EQ(tool("--store", store, "add", "--name", "Bella", "--mobile", "010-2345-6789").status, 0);
    tool("add", "--name", "Anna");
    EXPECT_EQ(namesIn(tool.json(0, "list")), std::vector<std::string>{"Anna"});
    EXPECT_EQ(namesIn(tool.json(0, "--store", store, "list")), std::vector<std::string>{"Bella"});
    EXPECT_EQ(namesIn(tool.json(0, "list", "--store", store)), std::vector<std::string>{"Bella"});
    EXPECT_EQ(tool.json(0, "show", "Bella", "--store", store)["name"], "Bella");
    EXPECT_EQ(tool("speed-dial", "set", "5", "Bella", "mobile", "--store", store).status, 0);
    EXPECT_EQ(tool("speed-dial", "--store", store, "call", "5").out, "010-2345-6789\n");
}

TEST(Tool, FailsWhenItsOutputCannotBeWritten) {
    const Tool tool;
    tool("add", "--name", "Anna");
    expectFailure(run(inShell(tool, "exec \"$TESSERA\" list >/dev/full")), 3, "standard output");
}
