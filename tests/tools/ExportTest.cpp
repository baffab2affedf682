// export: the file that import reads, byte for byte the same after the way there and back, and JSON.

#include "tests/support/Privacy.h"
#include "tests/tools/ContactsOf.h"
#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using testing_support::readFile;
using testing_support::utf16Bytes;

namespace {

constexpr WStringView header =
    TEXT("\uFEFFName,Group,Categories,Mobile,Home,Business,E-mail,Avatar,Photo,Bell,Birthday,Calling screen,Pager,Fax,")
        TEXT("Notes,Private,Primary\n");

std::string exported(const Tool& tool) {
    const Outcome outcome = tool("export");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
}

/// The contacts without their identifiers.
Json contactsOf(const Tool& tool) {
    Json contacts = tool.json(0, "list");
    for (Json& contact : contacts)
        contact.erase("oid");
    return contacts;
}

/// What a new phone book exports that was made from this export.
std::string thereAndBack(const std::string& bytes) {
    const Tool other;
    const Outcome outcome = other("import", other.file("people.csv", bytes));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return exported(other);
}

/// The one contact of a phone book has a field that the format cannot hold; `why` says which and why.
void expectCannotHold(const Tool& tool, const std::string& why) {
    const std::string oid = tool.json(0, "list")[0]["oid"].dump();
    const std::string path = tool.file("kept.csv", "as it was");
    expectFailure(tool("export"), 3, "contact " + oid + " cannot be exported");
    expectFailure(tool("export", path), 3, why);
    EXPECT_EQ(readFile(path), "as it was");
    EXPECT_EQ(tool("export", "--json").status, 0);
}

}  // namespace

TEST(ToolExport, WritesALineForEachContactInTheOrderOfTheirNames) {
    const Tool tool;
    tool("add", "--name", "Bella");
    tool("add", "--name", "김민수", "--group", "친구", "--mobile", "010-1", "--home", "02-2", "--business", "031-3",
         "--email", "m@example.com", "--pager", "015-4", "--fax", "02-5", "--birthday", "1990-03-05", "--avatar", "av",
         "--photo", "ph", "--bell", "be", "--calling-screen", "28", "--private", "513", "--primary", "16");
    EXPECT_EQ(
        exported(tool),
        utf16Bytes(WString(header) +
                   TEXT("Bella,,,,,,,,,,,,,,,,\n") TEXT(
                       "김민수,친구,친구,010-1,02-2,031-3,m@example.com,av,ph,be,1990-03-05,28,015-4,02-5,,513,16\n")));
}

TEST(ToolExport, GivesTheSameFileAfterAnImportOfIt) {
    const Tool tool;
    tool("add", "--name", "Anna", "--group", "a;b", "--private", "0xFFFFFFFF", "--calling-screen", "2147483648");
    tool("add", "--name", "anna", "--group", "\tfirst tab\"quote\" 😀", "--birthday", "1601-01-01");
    tool("add", "--name", "Anna", "--birthday", "9999-12-31", "--email", "carriage\rreturn");
    tool("add", "--mobile", "010-1111-2222");
    tool("add", "--name", "Last", "--bell", "only an extension");
    const std::string emptied = tool.json(0, "add", "--name", "Left", "--group", "friends")["oid"].dump();
    tool("edit", emptied, "--group", "");
    const std::string bytes = exported(tool);
    EXPECT_THAT(bytes, HasSubstr(utf16Bytes(TEXT("a;b,a;b,"))));
    EXPECT_EQ(thereAndBack(bytes), bytes);
}

TEST(ToolExport, GivesBackEveryValueThatItDoesNotRefuse) {
    const Tool tool;
    for (const std::string before : {"\t", "\r", ";", "'", "\xEF\xBB\xBF", "\xE3\x80\x80", "0x", "\x01"}) {
        for (const std::string behind : {"\r", ";", "'", "\xEF\xBB\xBF", "\xC2\xA0", "\\", "😀"})
            tool("add", "--name", before + " \"x\" " + behind, "--group", behind + "x" + before + ".");
    }
    const std::string bytes = exported(tool);
    const Tool other;
    EXPECT_EQ(other("import", other.file("people.csv", bytes)).status, 0);
    EXPECT_EQ(contactsOf(other).size(), 56u);
    EXPECT_EQ(contactsOf(other), contactsOf(tool));
    EXPECT_EQ(exported(other), bytes);
}

TEST(ToolExport, GivesTheSampleContactsBack) {
    const Tool tool;
    tool("import", SAMPLE_FILE);
    const std::string bytes = exported(tool);
    EXPECT_GT(tool.json(0, "list").size(), 1u);
    EXPECT_EQ(thereAndBack(bytes), bytes);
}

TEST(ToolExport, OfAnEmptyPhoneBookIsTheHeader) {
    const Tool tool;
    tool("init");
    EXPECT_EQ(exported(tool), utf16Bytes(header));
    EXPECT_EQ(thereAndBack(utf16Bytes(header)), utf16Bytes(header));
    EXPECT_EQ(tool.json(0, "export"), Json::array());
}

TEST(ToolExport, RefusesValuesThatTheFormatCannotHold) {
    const std::vector<std::pair<std::string, std::string>> values = {{"Kim, Anna", "comma"},
                                                                     {"Kim\nAnna", "line feed"},
                                                                     {" Anna", "begins with a blank"},
                                                                     {"\"Anna", "begins with"},
                                                                     {"the \"Anna\"", "ends with"},
                                                                     {"Anna ", "ends with a blank"},
                                                                     {"Anna\t", "ends with a blank, a tab"}};
    for (const auto& [value, why] : values) {
        const Tool tool;
        tool("add", "--name", "Anna", "--email", value);
        expectCannotHold(tool, "\"email\" ");
        expectCannotHold(tool, why);
    }
}

TEST(ToolExport, RefusesWhatAnImportWouldNotKeep) {
    const Tool noted;
    takeNotes(noted, noted.json(0, "add", "--name", "Anna")["oid"], TEXT("likes tea"));
    expectCannotHold(noted, "notes");

    const Tool filed;
    fileUnder(filed, filed.json(0, "add", "--name", "Anna", "--group", "friends")["oid"], TEXT("friends, chess"));
    expectCannotHold(filed, "categories");

    const Tool bare;
    const std::string oid = bare.json(0, "add", "--name", "Anna")["oid"].dump();
    bare("edit", oid, "--name", "");
    expectCannotHold(bare, "no field");
}

TEST(ToolExport, RefusesABirthdayWithATimeOfDayAndBrokenText) {
    const Tool timed;
    changeContact(timed, timed.json(0, "add", "--name", "Anna")["oid"],
                  [](IContact& contact) { contact.put_Birthday(32'937.5); });
    expectCannotHold(timed, "birthday");

    const Tool broken;
    changeContact(broken, broken.json(0, "add", "--name", "Anna")["oid"], [](IContact& contact) {
        contact.put_Email1Address(Bstr(CString(WStringView(TEXT("\xD83D!"), 2))).get());
    });
    expectCannotHold(broken, "well-formed");
}

TEST(ToolExport, WritesTheArrayOfListAsJson) {
    const Tool tool;
    tool("add", "--name", "Kim, Anna", "--group", "friends");
    tool("add", "--name", "Bella");
    EXPECT_EQ(tool("export", "--json").out, tool("list", "--json").out);
    const std::string path = (tool / "people.json").string();
    EXPECT_EQ(tool("export", "--json", path).status, 0);
    EXPECT_EQ(readFile(path), tool("list", "--json").out);
}

TEST(ToolExport, ReplacesAFileWithOneThatNobodyElseCanRead) {
    const Tool tool;
    tool("add", "--name", "Anna");
    const std::string path = tool.file("people.csv", std::string(100'000, 'x'));
    const Outcome outcome = tool("export", path);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(readFile(path), exported(tool));
    EXPECT_TRUE(testing_support::isPrivate(path));
    for (const auto& entry : std::filesystem::directory_iterator(tool.store().parent_path()))
        EXPECT_THAT(entry.path().filename().string(), ::testing::Not(StartsWith("people.csv.")));
}

TEST(ToolExport, RefusesPlacesWhereNoFileCanBe) {
    const Tool tool;
    tool("add", "--name", "Anna");
    expectFailure(tool("export", tool.temporary().string()), 3, "is a folder");
    expectFailure(tool("export", (tool / "nowhere/people.csv").string()), 3, "nowhere/people.csv: cannot be written");
    expectFailure(tool("export", tool.store().string()), 2, "phone book itself");
    EXPECT_EQ(tool.json(0, "list").size(), 1u);
}
