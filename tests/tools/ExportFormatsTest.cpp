// export as cards and as a table: what other programs read, and what comes back from it.

#include "tests/tools/ContactsOf.h"
#include "tests/tools/ImportedFiles.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using testing_support::readFile;

namespace {

/// People with all that a contact can have, and with what the library's own format cannot hold.
void addPeople(const Tool& tool) {
    tool("import", SAMPLE_FILE);
    tool("add", "--name", "Kim, \"Anna\"; 😀", "--group", "a;b, c", "--mobile", "+821012345678", "--home", "02-1",
         "--business", "031-1", "--pager", "015", "--fax", "02-9", "--email", "a,b;c@x", "--birthday", "1601-01-01",
         "--avatar", "av", "--photo", "ph\\n", "--bell", "be", "--calling-screen", "4294967295", "--private", "513",
         "--primary", "1024");
    tool("add", "--mobile", "010-9");
    const Json noted = tool.json(0, "add", "--name", "Noted", "--group", "friends")["oid"];
    takeNotes(tool, noted, TEXT("one\ntwo, three; four \\ five"));
    fileUnder(tool, noted, TEXT("friends, chess,\"a, b\""));
    const Json ungrouped = tool.json(0, "add", "--name", "Ungrouped")["oid"];
    fileUnder(tool, ungrouped, TEXT("chess"));
    const std::string left = tool.json(0, "add", "--name", "Left", "--group", "friends")["oid"].dump();
    tool("edit", left, "--group", "");
    tool("add", "--name", "Primary of nothing", "--home", "02-2", "--primary", "16");
}

void expectTheSameBack(const Tool& tool, const std::vector<std::string>& options) {
    std::vector<std::string> arguments{"export", (tool / "people.file").string()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Outcome exported = run(tool.command(arguments));
    ASSERT_EQ(exported.status, 0) << exported.err;
    const Tool other;
    const Outcome imported = other("import", "--keep-duplicates", (tool / "people.file").string());
    EXPECT_EQ(imported.status, 0) << imported.err;
    EXPECT_EQ(linesOf(imported.out).size(), 1u) << imported.out;  // nothing was left out
    EXPECT_EQ(contactsIn(other), contactsIn(tool)) << options.back();
}

}  // namespace

TEST(ToolExportFormats, GiveTheSameContactsBack) {
    const Tool tool;
    addPeople(tool);
    for (const std::string version : {"2.1", "3.0", "4.0"})
        expectTheSameBack(tool, {"--vcard-version", version});
    expectTheSameBack(tool, {"--format", "vcard"});
    expectTheSameBack(tool, {"--format", "csv"});
}

TEST(ToolExportFormats, BringNobodyTwice) {
    const Tool tool;
    tool("import", SAMPLE_FILE);
    tool("export", "--format", "vcard", (tool / "people.vcf").string());
    EXPECT_THAT(tool("import", (tool / "people.vcf").string()).out,
                HasSubstr("imported 0 of 200 cards; 200 known already\n"));
}

TEST(ToolExportFormats, AreCardsOfVersion3ForAFileNamedForCards) {
    const Tool tool;
    tool("add", "--name", "Anna Kim", "--mobile", "010-1");
    const std::string card =
        "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Kim;Anna;;;\r\nFN:Anna Kim\r\nTEL;TYPE=CELL,VOICE:010-1\r\nEND:VCARD\r\n";
    EXPECT_EQ(tool("export", "--format", "vcard").out, card);
    EXPECT_EQ(tool("export", (tool / "people.vcf").string()).status, 0);
    EXPECT_EQ(readFile(tool / "people.vcf"), card);
    EXPECT_THAT(tool("export", "--vcard-version", "4.0").out, HasSubstr("VERSION:4.0"));
}

TEST(ToolExportFormats, AreATableThatSpreadsheetsRead) {
    const Tool tool;
    tool("add", "--name", "김 민수", "--mobile", "010-1");
    EXPECT_THAT(
        linesOf(tool("export", "--format", "csv").out),
        ElementsAre(StartsWith("\xEF\xBB\xBF\"Name\",\"First Name\",\"Last Name\",\"Mobile Phone\",\"Home Phone\","),
                    StartsWith("\"김 민수\",\"민수\",\"김\",\"010-1\",\"\",")));
}

TEST(ToolExportFormats, AreOneAtATime) {
    const Tool tool;
    tool("add", "--name", "Anna");
    expectFailure(tool("export", "--json", "--format", "csv"), 2, "--json is a format of its own");
    expectFailure(tool("export", "--format", "csv", "--vcard-version", "3.0"), 2, "--format vcard only");
    expectFailure(tool("export", "--vcard-version", "5"), 2, "--vcard-version wants one of 2.1, 3.0, 4.0");
    expectFailure(tool("export", "--format", "moon"), 2, "--format");
}

TEST(ToolExportFormats, RefuseTextThatIsNone) {
    const Tool tool;
    changeContact(tool, tool.json(0, "add", "--name", "Anna")["oid"], [](IContact& contact) {
        contact.put_Email1Address(Bstr(CString(WStringView(TEXT("\xD83D!"), 2))).get());
    });
    expectFailure(tool("export", "--format", "vcard"), 3, "\"email\" is no well-formed text");
}
