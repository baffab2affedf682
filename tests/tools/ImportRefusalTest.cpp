// Files of which nothing can be imported: the exit status tells, and the reasons are given.

#include "tests/tools/ImportedFiles.h"
#include "tests/tools/RefusedImport.h"

using namespace tool_test;
using ::testing::AllOf;
using ::testing::HasSubstr;

namespace {

struct BadFile {
    const char* format;
    std::string bytes;
    std::string reasons;
    const char* units;
};

const BadFile badFiles[] = {
    {"vcard", "BEGIN:VCARD\nFN:Anna\nBEGIN:VCARD\nVERSION:3.0\nEND:VCARD\n",
     "card 1 (line 1) skipped: it is cut off: its END:VCARD is missing\n"
     "card 2 (line 3) skipped: it says nothing of anybody\n",
     "2 cards"},
    {"vcard", "BEGIN:VCARD\nFN:" + std::string(40'000, 'x') + "\nEND:VCARD\n",
     "card 1 (line 1) skipped: its values are longer than a contact can be\n", "1 card"},
    {"csv", "Name,Mobile Phone\n\"Anna,1\n,\n", "line 2 skipped: a quote opens in it that nothing closes\n", ""},
    {"tessera", "Name\n\nAnna,,,,,,,,,,,,,,,,,,x\n",
     "line 2 skipped: it is blank\nline 3 skipped: it has more columns than the format\n", "2 lines"},
};

/// Random bytes, none of which is a zero if it is not to be.
std::string junk(bool holdsZero) {
    std::string bytes;
    unsigned state = 4711;
    for (int i = 0; i < 2'000; ++i) {
        state = state * 1'103'515'245 + 12'345;
        const auto byte = static_cast<char>(state >> 16);
        bytes += byte == 0 && !holdsZero ? 'x' : byte;
    }
    return bytes;
}

}  // namespace

TEST(ToolImportRefusal, IsAFailureWhenNothingOfAFileCanBeImported) {
    for (const BadFile& bad : badFiles) {
        for (const bool isDryRun : {false, true}) {
            const Tool tool;
            const std::string path = tool.file("people", bad.bytes);
            const Outcome outcome =
                isDryRun ? tool("import", "--dry-run", path) : tool("import", "--format", bad.format, path);
            EXPECT_EQ(outcome.status, 3) << bad.bytes;
            EXPECT_THAT(outcome.out, AllOf(HasSubstr(bad.reasons), HasSubstr("import"), HasSubstr(" 0 of ")));
            EXPECT_THAT(outcome.out, HasSubstr(bad.units));
            EXPECT_THAT(outcome.err, HasSubstr(path + ": none of its "));
            EXPECT_THAT(outcome.err, HasSubstr(" can be imported\n"));
            EXPECT_FALSE(exists(tool.store()));
        }
    }
}

TEST(ToolImportRefusal, TellsTheReasonsInJsonToo) {
    const Tool tool;
    const Outcome outcome = tool("--json", "import", tool.file("people.vcf", badFiles[0].bytes));
    EXPECT_EQ(outcome.status, 3);
    const auto objects = objectsOf(outcome.out);
    ASSERT_EQ(objects.size(), 3u);
    EXPECT_EQ(objects[1]["skipped"], "it says nothing of anybody");
    EXPECT_EQ(objects[2], (Json{{"imported", 0}, {"cards", 2}, {"skipped", 2}, {"known", 0}}));
}

TEST(ToolImportRefusal, IsNoneWhenOnlySomeAreBadOrAllAreKnownOrThereAreNone) {
    const Tool tool;
    const std::string anna = "BEGIN:VCARD\nFN:Anna\nTEL:1\nEND:VCARD\n";
    EXPECT_EQ(tool("import", tool.file("some.vcf", badFiles[0].bytes + anna)).status, 0);
    EXPECT_EQ(tool("import", tool.file("known.vcf", anna)).out,
              "card 1 (line 1) skipped: is in the phone book already, as contact " +
                  tool.json(0, "list")[0]["oid"].dump() + "\nimported 0 of 1 card; 1 known already\n");
    EXPECT_EQ(tool("import", tool.file("known.vcf", anna)).status, 0);
    EXPECT_EQ(tool("import", tool.file("known-or-bad.vcf", anna + badFiles[0].bytes)).status, 0);
    EXPECT_EQ(tool("import", tool.file("header.csv", "Name,Group\n")).status, 0);
    EXPECT_EQ(tool("import", tool.file("blank.csv", "Name,Group\n\n\n")).status, 0);
}

TEST(ToolImportRefusal, SaysWhatToDoAboutJunk) {
    const Tool tool;
    const std::string advice = "encoding with --encoding";
    const std::string formats = "if it holds cards, a table or an export at all (--format vcard, csv or tessera)";
    for (const std::string& bytes : {junk(true), junk(false), junk(true) + "x"}) {
        const std::string path = tool.file("junk", bytes);
        expectRefusal(tool, {"import", path}, 3, "; name its " + advice);
        expectRefusal(tool, {"import", path}, 3, formats);
        expectRefusal(tool, {"import", path, "--format", "csv", "--encoding", "UTF-8"}, 3, "; name another " + advice);
    }
}

TEST(ToolImport, RefusesFilesThatItCannotRead) {
    const Tool tool;
    expectRefused(tool, (tool / "missing.csv").string(), "there is no such file");
    expectRefused(tool, tool.temporary().string(), "is a folder");
}

TEST(ToolImport, SaysWhenThereIsNoPlaceForItsWorkingFile) {
    const Tool tool;
    auto command = tool.command({"import", tool.file("people.csv", "Name\nAnna\n")});
    for (const char* variable : {"TMPDIR", "TMP"})
        command.environment[variable] = (tool / "nowhere").string();
    expectFailure(run(command), 3, "temporary");
    EXPECT_FALSE(exists(tool.store()));
}
