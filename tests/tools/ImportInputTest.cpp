// import -: the file is standard input.

#include "tests/tools/ImportedFiles.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing_support::Command;
using testing_support::utf16Bytes;

namespace {

Command reading(const Tool& tool, const std::string& bytes, std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"import", "-"});
    Command command = tool.command(std::move(options));
    command.input = bytes;
    return command;
}

}  // namespace

TEST(ToolImportInput, IsRecognisedAsAFileIs) {
    const std::string ours = "Name,Group,Categories,Mobile\nAnna,,,010-1\n";
    for (const std::string& bytes : {ours, utf16Bytes(TEXT("Name,Group\nAnna,,,010-1\n")),
                                     std::string("BEGIN:VCARD\nFN:Anna\nTEL;CELL:010-1\nEND:VCARD\n"),
                                     std::string("Mobile Phone;Full Name\n010-1;Anna\n")}) {
        const Tool tool;
        const Outcome outcome = run(reading(tool, bytes));
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(contactsIn(tool), Json::array({{{"name", "Anna"}, {"mobile", "010-1"}}})) << bytes;
    }
}

TEST(ToolImportInput, IsWhatTheOptionsSay) {
    const Tool tool;
    EXPECT_EQ(
        run(reading(tool, "Who\nM\xFCller\n", {"--format", "csv", "--map", "Who=name", "--encoding", "latin1"})).out,
        "imported 1 of 1 line\n");
    EXPECT_EQ(run(reading(tool, "whatever,else\nAnna,friends\n", {"--format", "tessera"})).out,
              "imported 1 of 1 line\n");
    EXPECT_EQ(run(reading(tool, "Name\nPaul\n", {"--dry-run"})).out, "would import 1 of 1 line\n");
    EXPECT_THAT(namesIn(tool.json(0, "list")), ElementsAre("Anna", "Müller"));
}

TEST(ToolImportInput, IsNamedInErrors) {
    const Tool tool;
    expectFailure(run(reading(tool, "")), 3, "tessera: standard input: is empty");
    expectFailure(run(reading(tool, "a,b\n1,2\n")), 3, "standard input: is no file of contacts");
    expectFailure(run(reading(tool, "Name\n\xFF\n")), 3, "standard input: line 2 is neither UTF-8");
    expectFailure(run(reading(tool, "x", {"--format", "vcard"})), 3, "standard input: holds no card");
    EXPECT_FALSE(exists(tool.store()));
}

TEST(ToolImportInput, TakesWhatExportWrites) {
    const Tool tool;
    tool("add", "--name", "김민수", "--group", "친구", "--mobile", "010-2345-6789", "--birthday", "1990-03-05");
    tool("add", "--name", "O'Brien", "--email", "o@example.com");
    for (const std::string format : {"tessera", "vcard", "csv"}) {
        const std::string copy = (tool / (format + ".db")).string();
        const Outcome outcome = run(reading(tool, tool("export", "--format", format).out, {"--store", copy}));
        EXPECT_EQ(outcome.err, "");
        EXPECT_THAT(outcome.out, HasSubstr("imported 2 of 2 "));
        EXPECT_EQ(tool("--store", copy, "export").out, tool("export").out) << format;
    }
}
