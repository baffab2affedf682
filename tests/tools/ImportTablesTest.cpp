// import of the tables of other programs: their encodings and separators, their columns, and files that nobody knows.

#include "tests/tools/ImportedFiles.h"

using namespace tool_test;
using ::testing::ElementsAre;

TEST(ToolImportTables, TakesADesktopProgramsUtf16WithTabs) {
    const Tool tool;
    EXPECT_EQ(imported(tool, foreignFile("desktop-utf16.txt")),
              "left out, having no place in a contact: column \"Home Street\" (1), organisation (1)\n"
              "imported 3 of 3 lines\n");
    EXPECT_EQ(contactsIn(tool), Json::array({{{"name", "Anna Kim"},
                                              {"group", "Friends"},
                                              {"categories", "Friends, Tennis"},
                                              {"mobile", "010-1234-5678"},
                                              {"home", "02-1-2"},
                                              {"business", "02-1-1"},
                                              {"email", "anna@example.com"},
                                              {"pager", "015-1"},
                                              {"fax", "02-1-9"},
                                              {"birthday", "1990-03-05"},
                                              {"body", "He said \"hi\",\nthen left"}},
                                             {{"name", "김민수"}, {"mobile", "01023456789"}},
                                             {{"name", "한국전력"}, {"business", "123"}}}));
}

TEST(ToolImportTables, TakesADesktopProgramsKoreanEncodingAndHeadings) {
    const Tool tool;
    EXPECT_EQ(imported(tool, foreignFile("desktop-cp949.csv")),
              "line 4: its number \"8.21012E+11\" lost digits in a spreadsheet and is left out\n"
              "left out, having no place in a contact: column \"우편 번호\" (1)\n"
              "imported 3 of 3 lines\n");
    EXPECT_EQ(contactsIn(tool),
              Json::array({{{"name", "남궁똠방"}, {"mobile", "01055550000"}, {"business", "031-2"}, {"fax", "031-3"}},
                           {{"name", "박지성"},
                            {"group", "회사"},
                            {"categories", "회사"},
                            {"mobile", "010-1234-0000"},
                            {"home", "02-1"},
                            {"email", "js@example.com"},
                            {"birthday", "1981-02-25"},
                            {"body", "메모, 쉼표"}},
                           {{"name", "번호망가진"}}}));
}

TEST(ToolImportTables, TakesAWebAddressBooksTable) {
    const Tool tool;
    const auto objects = objectsOf(imported(tool, foreignFile("web.csv"), "--json"));
    ASSERT_EQ(objects.size(), 3u);
    EXPECT_EQ(objects[0]["line"], 2);
    EXPECT_EQ(
        objects[0]["note"],
        "its e-mail address \"lee@example.com\" has no place and is left out; its birthday \"--03-05\" has no year and "
        "is "
        "left out; its second mobile number \"010-7777-2222\" is kept as its business number; left out, having no "
        "place: column \"Website 1 - Value\", label of an e-mail address, organisation");
    EXPECT_EQ(objects[1]["line"], 4);
    EXPECT_EQ(objects[2], (Json{{"imported", 2}, {"lines", 2}, {"skipped", 0}, {"known", 0}}));
    EXPECT_EQ(contactsIn(tool)[0], (Json{{"name", "Lee \"Bob\" Jr, Robert"},
                                         {"group", "Friends"},
                                         {"categories", "Friends, Tennis"},
                                         {"mobile", "010-7777-1111"},
                                         {"home", "02-111-2222"},
                                         {"business", "010-7777-2222"},
                                         {"email", "bob@example.com"},
                                         {"fax", "02-111-3333"},
                                         {"body", "Two\nlines"},
                                         {"primary", 8}}));
}

TEST(ToolImportTables, WantsToBeToldOfColumnsThatItDoesNotKnow) {
    const Tool tool;
    const std::string path = foreignFile("unknown-headings.csv");
    expectRefusal(tool, {"import", path}, 3, "(\"Nachname\", \"Vorname\", \"Handy\", \"Festnetz\", \"Ort\")");
    expectRefusal(tool, {"import", path, "--map", "Straße=home"}, 2, "there is no column \"Straße\"");
    expectRefusal(tool, {"import", path, "--map", "Handy=shoe"}, 2, "there is no field \"shoe\"");
    expectRefusal(tool, {"import", path, "--map", "Handy"}, 2, "COLUMN=FIELD");
    expectRefusal(tool, {"import", path, "--map", "Ort=body"}, 3, "no column of it is known to tell of people");

    EXPECT_EQ(imported(tool, path, "--map", "Nachname=last-name", "--map", "Vorname=first-name", "--map",
                       "Handy=mobile", "--map", "Festnetz=home"),
              "left out, having no place in a contact: column \"Ort\" (1)\nimported 2 of 2 lines\n");
    EXPECT_EQ(contactsIn(tool),
              Json::array({{{"name", "Anna; die Zweite Schmidt"}, {"mobile", "0170-7654321"}},
                           {{"name", "Jörg Müller"}, {"mobile", "0170-1234567"}, {"home", "030-123456"}}}));
}

TEST(ToolImportTables, SkipsRowsThatTellOfNobodyAndGoesOn) {
    const Tool tool;
    const std::string path = tool.file("people.csv", "Name,Mobile Phone\nAnna,1\n,\n\n\"Paul,2\nBella,3\nAnna,1\n");
    EXPECT_EQ(imported(tool, path),
              "line 3 skipped: it says nothing of anybody\n"
              "line 5 skipped: a quote opens in it that nothing closes\n"
              "line 7 skipped: stands in the file already, in line 2\n"
              "imported 2 of 5 lines; 1 known already\n");
    EXPECT_THAT(namesIn(tool), ElementsAre("Anna", "Bella"));
}

TEST(ToolImportTables, CountsTheLabelsOfEmailAddressesThatAreLeftOut) {
    const Tool tool;
    const Outcome outcome = tool("import", tool.file("people.csv",
                                                     "Name,E-mail 1 - Label,E-mail 1 - Value\n"
                                                     "Anna,* Home,a@x\nBella,Work,b@x\nClara,*,c@x\nDora,SMTP,d@x\n"
                                                     "Emma,Home,\nFlora,,f@x\n"));
    EXPECT_EQ(outcome.out,
              "left out, having no place in a contact: label of an e-mail address (2)\nimported 6 of 6 lines\n");
}

TEST(ToolImportTables, TakesAnEncodingThatCannotBeRecognised) {
    const Tool tool;
    const std::string path = tool.file("people.csv", "Name,Mobile Phone\nM\xFCller,1\n");
    expectRefusal(tool, {"import", path}, 3, "line 2 is neither UTF-8, UTF-16 nor CP949 text");
    expectRefusal(tool, {"import", path, "--encoding", "UTF-8"}, 3, "line 2 is no UTF-8 text");
    EXPECT_EQ(imported(tool, path, "--encoding", "latin1"), "imported 1 of 1 line\n");
    EXPECT_THAT(namesIn(tool), ElementsAre("Müller"));
}

TEST(ToolImportTables, LeavesOurOwnFormatToTheLibrary) {
    const Tool tool;
    const std::string own = tool.file("people.csv", "Name,Group\nAnna,friends\n\nAnna,friends\n");
    EXPECT_EQ(imported(tool, own, "--dry-run"), "line 3 skipped: it is blank\nwould import 2 of 3 lines\n");
    EXPECT_FALSE(exists(tool.store()));
    const auto objects = objectsOf(imported(tool, own, "--dry-run", "--json"));
    EXPECT_EQ(objects.at(0), (Json{{"line", 2}}));
    EXPECT_EQ(objects.back(), (Json{{"imported", 2}, {"lines", 3}, {"skipped", 1}, {"dryRun", true}}));
    // What was exported comes back line for line.
    EXPECT_EQ(imported(tool, own), "line 3 skipped: it is blank\nimported 2 of 3 lines\n");
    EXPECT_THAT(namesIn(tool), ElementsAre("Anna", "Anna"));
}

TEST(ToolImportTables, ReadsAFileAsWhatItIsSaidToBe) {
    const Tool tool;
    const std::string path = tool.file("people.csv", "Wer,Was\nAnna,friends\n");
    expectRefusal(tool, {"import", path}, 3, "\"Wer\", \"Was\"");
    expectRefusal(tool, {"import", path, "--format", "csv"}, 3, "\"Wer\", \"Was\"");
    expectRefusal(tool, {"import", path, "--format", "vcard"}, 3, "holds no card");
    EXPECT_EQ(imported(tool, path, "--format", "tessera"), "imported 1 of 1 line\n");
    EXPECT_EQ(tool.json(0, "list")[0]["group"], "friends");
}

TEST(ToolImportTables, RefusesWhatIsNoTable) {
    const Tool tool;
    expectRefusal(tool, {"import", tool.file("a.csv", "<html>\n")}, 3, "no file of contacts that can be recognised");
    expectRefusal(tool, {"import", tool.file("b.csv", "010-1234-5678,Anna\n")}, 3, "--map says what they are");
    expectRefusal(tool, {"import", tool.file("c.csv", std::string(300'000, ','))}, 3, "--map says what they are");
}
