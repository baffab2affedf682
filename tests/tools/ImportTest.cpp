// Files of contacts: both encodings, lines that are skipped, and files that make no sense.

#include "tests/support/Privacy.h"
#include "tests/tools/ImportedFiles.h"
#include "tests/tools/RefusedImport.h"
#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using testing_support::readFile;
using testing_support::utf16Bytes;

namespace {

constexpr WStringView threePeople =
    TEXT("Name,Group\n김민수,친구,,010-2345-6789\nAnna,family,,010-1111-2222\n고민정,,,010-3333-4444\n");

std::string utf8(WStringView text) {
    std::string bytes;
    for (const WCHAR unit : text) {
        if (unit < 0x80) {
            bytes += static_cast<char>(unit);
        } else {
            bytes += static_cast<char>(0xE0 | unit >> 12);
            bytes += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
            bytes += static_cast<char>(0x80 | (unit & 0x3F));
        }
    }
    return bytes;
}

/// The bytes of UTF-16 in the other order.
std::string swapped(std::string bytes) {
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        std::swap(bytes[i], bytes[i + 1]);
    return bytes;
}

std::vector<std::string> importedNames(const std::string& bytes) {
    const Tool tool;
    const Outcome outcome = tool("import", tool.file("people.csv", bytes));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("imported 3 of 3 lines\n"));
    return namesIn(tool.json(0, "list"));
}

std::vector<Json> jsonLines(const std::string& text) {
    std::vector<Json> objects;
    for (const std::string& line : linesOf(text))
        objects.push_back(Json::parse(line));
    return objects;
}

void expectRefusedBytes(const std::string& bytes, const std::string& why) {
    const Tool tool;
    expectRefused(tool, tool.file("people.csv", bytes), why);
}

}  // namespace

TEST(ToolImport, ReadsUtf16OfEitherByteOrderAndUtf8WithAMarkAndWithout) {
    const auto names = ElementsAre("Anna", "고민정", "김민수");
    EXPECT_THAT(importedNames(utf16Bytes(threePeople)), names);
    EXPECT_THAT(importedNames(swapped("\xFF\xFE" + utf16Bytes(threePeople))), names);
    EXPECT_THAT(importedNames(swapped(utf16Bytes(threePeople))), names);
    EXPECT_THAT(importedNames("\xFF\xFE" + utf16Bytes(threePeople)), names);
    EXPECT_THAT(importedNames(utf8(threePeople)), names);
    EXPECT_THAT(importedNames("\xEF\xBB\xBF" + utf8(threePeople)), names);
}

TEST(ToolImport, RecognisesUtf16WhoseHeaderHasNoLatinCharacter) {
    EXPECT_THAT(importedNames(utf16Bytes(TEXT("이름\n가\n나\n다\n"))), ElementsAre("가", "나", "다"));
    // The first byte of 上 is that of a line feed.
    EXPECT_THAT(importedNames(utf16Bytes(TEXT("上\n上가\n上나\n上다\n"))).size(), 3);
}

TEST(ToolImport, TakesLinesThatEndTheWayOfOtherSystems) {
    const Tool tool;
    tool("import", tool.file("people.csv", "Name,Group\r\nAnna,friends\r\nPaul\r\n"));
    const Json contacts = tool.json(0, "list");
    EXPECT_THAT(namesIn(contacts), ElementsAre("Anna", "Paul"));
    EXPECT_EQ(contacts[0]["group"], "friends");
}

TEST(ToolImport, TakesALastLineWithoutItsEnd) {
    const Tool tool;
    EXPECT_EQ(tool("import", tool.file("people.csv", "Name\nAnna")).out, "imported 1 of 1 line\n");
}

TEST(ToolImport, StoresEveryColumn) {
    const Tool tool;
    tool("import",
         tool.file("people.csv",
                   "header\n김민수,친구,ignored,010-1,02-2,031-3,m@example.com,av,ph,be,1990-03-05,0x1c,015-4,"
                   "02-5,notes,0x0201,0x10\n"));
    const Json contact = tool.json(0, "list")[0];
    EXPECT_EQ(contact, (Json{{"oid", contact["oid"]},
                             {"name", "김민수"},
                             {"group", "친구"},
                             {"categories", "친구"},
                             {"mobile", "010-1"},
                             {"home", "02-2"},
                             {"business", "031-3"},
                             {"email", "m@example.com"},
                             {"pager", "015-4"},
                             {"fax", "02-5"},
                             {"birthday", "1990-03-05"},
                             {"avatar", "av"},
                             {"photo", "ph"},
                             {"bell", "be"},
                             {"callingScreen", 28},
                             {"private", 513},
                             {"primary", 16}}));
}

TEST(ToolImport, AddsToThePhoneBookThatThereIs) {
    const Tool tool;
    tool("add", "--name", "Zoe");
    EXPECT_EQ(tool("import", tool.file("people.csv", "Name\nAnna\n")).status, 0);
    EXPECT_THAT(namesIn(tool.json(0, "list")), ElementsAre("Anna", "Zoe"));
}

TEST(ToolImport, SkipsLinesThatCannotBecomeContactsAndSaysWhy) {
    const Tool tool;
    const std::string columns(16, ',');
    const std::string bytes =
        "Name\n"     // 1
        "Anna\n"     // 2
        "\n"         // 3
        " ,\t,\r\n"  // 4
        "Paul\n" +   // 5
        std::string(100'000, 'x') +
        "\n"  // 6
        "Nu" +
        std::string(1, '\0') +
        "ll\n"  // 7
        "Many" +
        columns +
        "17,18\n"  // 8
        "Enough" +
        columns +
        "4,,,\n"  // 9
        "a," +
        std::string(32'735, 'y') + "\n\n";  // 10, 11
    const Outcome outcome = tool("import", tool.file("people.csv", bytes));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out,
              "line 3 skipped: it is blank\n"
              "line 4 skipped: it is blank\n"
              "line 6 skipped: a value is longer than 32735 characters\n"
              "line 7 skipped: it holds a zero character\n"
              "line 8 skipped: it has more columns than the format\n"
              "line 11 skipped: it is blank\n"
              "imported 4 of 10 lines\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(namesIn(tool.json(0, "list")), ElementsAre("a", "Anna", "Enough", "Paul"));
}

TEST(ToolImport, WritesAnObjectALineInTheirOrderAndTheSums) {
    const Tool tool;
    const Outcome outcome = tool("import", "--json", tool.file("people.csv", "Name\n\nAnna\n\n\nPaul\n\n"));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    const Json contacts = tool.json(0, "list");
    EXPECT_THAT(
        jsonLines(outcome.out),
        ElementsAre(Json{{"line", 2}, {"skipped", "it is blank"}}, Json{{"line", 3}, {"oid", contacts[0]["oid"]}},
                    Json{{"line", 4}, {"skipped", "it is blank"}}, Json{{"line", 5}, {"skipped", "it is blank"}},
                    Json{{"line", 6}, {"oid", contacts[1]["oid"]}}, Json{{"line", 7}, {"skipped", "it is blank"}},
                    Json{{"imported", 2}, {"lines", 6}, {"skipped", 4}}));
}

TEST(ToolImport, SkipsALineWhoseValuesFitOneByOneButNotTogether) {
    const Tool tool;
    std::string line = "Big";
    for (int column = 0; column < 6; ++column)
        line += "," + std::string(30'000, 'x');
    const Outcome outcome = tool("import", tool.file("people.csv", "Name\nAnna\n" + line + "\nPaul\n"));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out,
              "line 3 skipped: its values together are longer than a contact can be\n"
              "imported 2 of 3 lines\n");
}

TEST(ToolImport, OfAHeaderAloneImportsNothingAndIsDone) {
    const Tool tool;
    EXPECT_EQ(tool("import", tool.file("people.csv", "Name,Group\n")).out, "imported 0 of 0 lines\n");
    EXPECT_EQ(tool.json(0, "list"), Json::array());
}

TEST(ToolImport, SeparatesTheCountryCodesOfTheFiveNumbers) {
    const Tool tool;
    tool("import", tool.file("people.csv",
                             "Name\n+821,+822,,+821012345678,\"+442079460958\",  +82.10.6666.7777,+823,,,,,,"
                             "+12125550123,\"+8210-1,2\"\nAs typed,,,+82 10-1-2,010-1-2\n"));
    const Json contacts = tool.json(0, "list");
    ASSERT_EQ(contacts.size(), 2u);
    EXPECT_EQ(contacts[0]["name"], "+821");
    EXPECT_EQ(contacts[0]["group"], "+822");
    EXPECT_EQ(contacts[0]["mobile"], "+82 1012345678");
    EXPECT_EQ(contacts[0]["home"], "+44 2079460958");
    EXPECT_EQ(contacts[0]["business"], "+82 .10.6666.7777");
    EXPECT_EQ(contacts[0]["email"], "+823");
    EXPECT_EQ(contacts[0]["pager"], "+1 2125550123");
    EXPECT_EQ(contacts[0]["fax"], "+82 10-1,2");
    EXPECT_EQ(contacts[1]["mobile"], "+82 10-1-2");
    EXPECT_EQ(contacts[1]["home"], "010-1-2");
    for (const std::string received : {"+821012345678", "010-1234-5678", "+44 20 7946 0958", "+821066667777"})
        EXPECT_EQ(tool.json(0, "identify", received)["name"], "+821") << received;
}

TEST(ToolImport, TakesCommasInQuotesAndDropsWhatStandsAroundValues) {
    const Tool tool;
    const std::string notes(32, ',');
    const Outcome outcome =
        tool("import", tool.file("people.csv", "Name\n\"Kim, Minsu\",  friends \t\n\"\", \"\" ,\nA,,,,,,,,,,,,,,\"" +
                                                   notes + "\",,8\nB \"the\" bee,\"open\n"));
    EXPECT_EQ(outcome.out, "line 3 skipped: it is blank\nimported 3 of 4 lines\n");
    const Json contacts = tool.json(0, "list");
    EXPECT_THAT(namesIn(contacts), ElementsAre("A", "B \"the\" bee", "Kim, Minsu"));
    EXPECT_EQ(contacts[0]["primary"], 8);
    EXPECT_EQ(contacts[1]["group"], "open");
    EXPECT_EQ(contacts[2]["group"], "friends");
}

TEST(ToolImport, SaysWhatItDoesNotKeepOfALine) {
    const Tool tool;
    const std::string before(10, ',');
    const std::string path =
        tool.file("people.csv", "Name\n\nGood" + before + "1990-03-05,0x7fffffff,,,,0,10\nDay" + before +
                                    "yesterday\nOld" + before + "1500-01-01\nAll" + before +
                                    "1990-02-30,x,,,,12 3,-1\nRead" + before + ",010,,,,4294967295,4294967296\n");
    const Outcome outcome = tool("import", path);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out,
              "line 2 skipped: it is blank\n"
              "line 4: its birthday is no date and is left out\n"
              "line 5: its birthday is a date that cannot be kept and is left out\n"
              "line 6: its birthday is no date and is left out; its calling screen is no whole number of 32 bits and "
              "becomes 0; its private is no whole number of 32 bits and becomes 12; its primary is no whole number of "
              "32 bits and becomes 4294967295\n"
              "line 7: its calling screen is taken for 8; its private is taken for 2147483647; its primary is no "
              "whole number of 32 bits and becomes 2147483647\n"
              "imported 5 of 6 lines\n");
    const Json contacts = tool.json(0, "list");
    ASSERT_THAT(namesIn(contacts), ElementsAre("All", "Day", "Good", "Old", "Read"));
    EXPECT_FALSE(contacts[0].contains("birthday"));
    EXPECT_FALSE(contacts[0].contains("callingScreen"));
    EXPECT_EQ(contacts[0]["private"], 12);
    EXPECT_EQ(contacts[0]["primary"], 4294967295u);
    EXPECT_FALSE(contacts[1].contains("birthday"));
    EXPECT_EQ(contacts[2]["callingScreen"], 2147483647);
    EXPECT_FALSE(contacts[3].contains("birthday"));
    EXPECT_EQ(contacts[4]["callingScreen"], 8);
    EXPECT_EQ(contacts[4]["private"], 2147483647);
    EXPECT_EQ(contacts[4]["primary"], 2147483647);
}

TEST(ToolImport, WritesItsNotesIntoTheObjectsOfTheirLines) {
    const Tool tool;
    const std::string before(10, ',');
    const Outcome outcome =
        tool("import", "--json", tool.file("people.csv", "Name\nA" + before + "1990-03-05\nB" + before + "never\n"));
    const Json contacts = tool.json(0, "list");
    EXPECT_THAT(
        jsonLines(outcome.out),
        ElementsAre(Json{{"line", 2}, {"oid", contacts[0]["oid"]}},
                    Json{{"line", 3}, {"oid", contacts[1]["oid"]}, {"note", "its birthday is no date and is left out"}},
                    Json{{"imported", 2}, {"lines", 2}, {"skipped", 0}}));
}

TEST(ToolImport, RefusesLinesThatEndWithCarriageReturnsAlone) {
    expectRefusedBytes("Name\rAnna\rPaul\r", "its lines end with carriage returns alone");
    expectRefusedBytes("Name\rAnna", "its lines end with carriage returns alone");
    expectRefusedBytes("\xFF\xFE" + utf16Bytes(TEXT("Name\rAnna\r")), "its lines end with carriage returns alone");
}

TEST(ToolImport, RefusesFilesThatAreNoText) {
    expectRefusedBytes("", "is empty");
    expectRefusedBytes("\xFF\xFE", "is empty");
    expectRefusedBytes("\xEF\xBB\xBF", "is empty");
    expectRefusedBytes(utf16Bytes(threePeople) + "x", "even number of bytes");
    expectRefusedBytes("\xFF\xFE" + utf16Bytes(threePeople) + "x", "even number of bytes");
    expectRefusedBytes("Name\nAnna\nP\xE9ter\n", "line 3 is neither UTF-8, UTF-16 nor CP949 text");
    expectRefusedBytes(utf16Bytes(TEXT("Name\nAnna\n")) + std::string("\x3D\xD8 \0", 4), "line 3 is no UTF-16LE text");
    expectRefusedBytes(std::string(4096, '\0'), "zero character");
}

TEST(ToolImport, TakesNamesWithQuotesAndEmoji) {
    const Tool tool;
    tool("import", tool.file("people.csv", "Name\nO'Brien [\"the 😀\"]\n"));
    EXPECT_THAT(namesIn(tool.json(0, "list")), ElementsAre("O'Brien [\"the 😀\"]"));
    EXPECT_THAT(namesIn(tool.json(0, "search", "\"the 😀\"]")), ElementsAre("O'Brien [\"the 😀\"]"));
}

TEST(ToolImport, TakesNumbersOfFortyDigits) {
    const Tool tool;
    const std::string number = "1234567890123456789012345678901234567890";
    tool("import", tool.file("people.csv", "Name\nAnna,,," + number + "\n"));
    EXPECT_EQ(tool.json(0, "list")[0]["mobile"], number);
    EXPECT_EQ(tool.json(0, "identify", number)["name"], "Anna");
}

TEST(ToolImport, LeavesItsSourceAndTheTemporaryFolderAsTheyWere) {
    const Tool tool;
    const std::string path = tool.file("people.csv", "Name\r\nAnna\r\n\r\n");
    tool("import", path);
    EXPECT_EQ(readFile(path), "Name\r\nAnna\r\n\r\n");
    EXPECT_TRUE(std::filesystem::is_empty(tool.temporary()));
}

TEST(ToolImport, KeepsPeopleApartFromOtherUsersOfTheMachine) {
    const Tool tool;
    tool("import", tool.file("people.csv", "Name\nAnna\n"));
    EXPECT_TRUE(testing_support::isPrivate(tool.store()));
}

// A shell can take a program's room away, the signal for that ignored.

TEST(Pipe, LosesNothingOfAnImportThatNobodyReadsAbout) {
    const Tool tool;
    testing_support::Process process(tool.command({"--json", "import", tool.file("people.csv", fileOfPeople(2'000))}));
    process.closeOutput();
    const Outcome outcome = process.wait();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(tool.json(0, "list"), SizeIs(2000));
}
