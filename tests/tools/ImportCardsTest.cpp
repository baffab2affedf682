// import of cards, as phones and programs write them: what comes in, what is said of the rest, and who is known
// already.

#include "tests/tools/ImportedFiles.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

const std::string anna = vcard("VERSION:3.0\nFN:Anna\nTEL;TYPE=CELL:+821012345678\n");

std::string importedCards(const Tool& tool, const std::string& bytes) {
    return imported(tool, tool.file("people.vcf", bytes));
}

}  // namespace

TEST(ToolImportCards, TakesTheCardsOfAnOldPhone) {
    const Tool tool;
    EXPECT_EQ(imported(tool, foreignFile("old-phone.vcf")),
              "left out, having no place in a contact: X-GROUP (1)\n"
              "imported 4 of 4 cards\n");
    EXPECT_EQ(contactsIn(tool),
              Json::array({{{"name", "Jörg Müller"}, {"mobile", "+49 170 1234567"}},
                           {{"name", "김민수"},
                            {"mobile", "010-2345-6789"},
                            {"home", "02-312-4567"},
                            {"email", "minsu@example.com"},
                            {"pager", "015-123-4567"},
                            {"fax", "02-312-9999"},
                            {"birthday", "1990-03-05"},
                            {"body", "오래된 전화기에서 옮긴 사람입니다.\n두 번째 줄"}},
                           {{"name", "엄마"}, {"mobile", "01031415926"}, {"home", "051-262-2038"}, {"primary", 8}},
                           {{"name", "山田花子"}, {"mobile", "+81-90-1234-5678"}}}));
    EXPECT_EQ(tool.json(0, "identify", "+821031415926")["name"], "엄마");
}

TEST(ToolImportCards, TakesCardsThatDoNotSayThatTheyAreKorean) {
    const Tool tool;
    EXPECT_EQ(imported(tool, foreignFile("old-phone-raw.vcf")), "imported 2 of 2 cards\n");
    EXPECT_THAT(namesIn(tool), ElementsAre("똠방각하", "박찬욱"));
}

TEST(ToolImportCards, TakesTheCardsOfASmartphone) {
    const Tool tool;
    EXPECT_EQ(
        imported(tool, foreignFile("smartphone.vcf")),
        "card 1 (line 1): its birthday \"1604-03-05\" has no year and is left out; its e-mail address "
        "\"annie@example.org\" has no place and is left out\n"
        "card 3 (line 36): its number \"010-3333-5555\" has no place and is left out; its number \"02-3\" has no place "
        "and is left out\n"
        "left out, having no place in a contact: X-ABADR (1), address (1), label of an e-mail address (1), nickname "
        "(1), organisation (1), picture (1), title (1)\n"
        "imported 3 of 3 cards\n");
    EXPECT_EQ(
        contactsIn(tool),
        Json::array({{{"name", "Dr. Anna Marie O'Brien"},
                      {"group", "친구"},
                      {"categories", "친구, \"테니스, 일요일\""},
                      {"mobile", "+82 10-1111-2222"},
                      {"business", "031-777-6666"},
                      {"email", "anna@example.com"},
                      {"fax", "02-999-8888"},
                      {"body", "First line\nSecond, with comma; and semicolon"},
                      {"primary", 4}},
                     {{"name", "이하늘 😀 \"별\""}, {"mobile", "010-3333-4444"}, {"home", "02-1"}, {"business", "02-2"}},
                     {{"name", "한국전력공사"}, {"business", "123"}}}));
}

TEST(ToolImportCards, TakesModernCards) {
    const Tool tool;
    const std::string said = imported(tool, foreignFile("modern.vcf"));
    EXPECT_THAT(said, HasSubstr("card 2 (line 19): its birthday \"--0305\" has no year and is left out\n"
                                "card 3 (line 25) skipped: it is a list of contacts, not one\n"));
    EXPECT_THAT(said, HasSubstr("imported 2 of 3 cards\n"));
    EXPECT_EQ(contactsIn(tool)[1], (Json{{"name", "최유리"},
                                         {"mobile", "+82-10-5555-0102"},
                                         {"home", "+82-2-555-0101"},
                                         {"business", "+82-2-555-0103"},
                                         {"email", "first@example.com"},
                                         {"birthday", "1985-04-12"},
                                         {"body", "길고 긴 메모가 여러 줄로 접혀 있습니다."},
                                         {"primary", 4}}));
}

TEST(ToolImportCards, SkipsWhoIsKnownByNameAndNumberInAnySpelling) {
    const Tool tool;
    tool("add", "--name", "Anna", "--mobile", "010-1234-5678");
    const std::string oid = tool.json(0, "list")[0]["oid"].dump();
    EXPECT_EQ(importedCards(tool, anna), "card 1 (line 1) skipped: is in the phone book already, as contact " + oid +
                                             "\nimported 0 of 1 card; 1 known already\n");
    const std::string bella = vcard("FN:Bella\nTEL:010-1\n");
    const std::string more = vcard("FN:Bella\nTEL:02-2\nTEL:010 1\n");
    EXPECT_EQ(importedCards(tool, bella + more),
              "card 2 (line 5) skipped: stands in the file already, in card 1, without the number 02-2\n"
              "imported 1 of 2 cards; 1 known already\n");
    EXPECT_EQ(tool.json(0, "list").size(), 2u);
}

TEST(ToolImportCards, ImportsNamesakesAndFamiliesThatShareANumber) {
    const Tool tool;
    importedCards(tool, anna);
    EXPECT_EQ(importedCards(tool, vcard("FN:Anna\nTEL:010-9\n") + vcard("FN:Paul\nTEL:010-1234-5678\n")),
              "imported 2 of 2 cards\n");
}

TEST(ToolImportCards, KnowsWhoHasNoNumberByNameAndEmail) {
    const Tool tool;
    const std::string paul = vcard("FN:Paul\nEMAIL:p@x\n");
    const std::string other = vcard("FN:Paul\nEMAIL:q@x\n");
    EXPECT_THAT(importedCards(tool, paul + paul + other), HasSubstr("imported 2 of 3 cards; 1 known already\n"));
}

TEST(ToolImportCards, KeepsDuplicatesWhenAsked) {
    const Tool tool;
    importedCards(tool, anna);
    EXPECT_EQ(imported(tool, tool.file("people.vcf", anna + anna), "--keep-duplicates"), "imported 2 of 2 cards\n");
    EXPECT_EQ(tool.json(0, "list").size(), 3u);
}

TEST(ToolImportCards, OfADryRunWritesNothing) {
    const Tool tool;
    const std::string path = tool.file("people.vcf", anna + anna + vcard("FN:Paul\nBDAY:--0305\n"));
    EXPECT_EQ(imported(tool, path, "--dry-run"),
              "card 1 (line 1) would be imported: Anna, mobile +82 1012345678\n"
              "card 2 (line 6) skipped: stands in the file already, in card 1\n"
              "card 3 (line 11) would be imported: Paul\n"
              "card 3 (line 11): its birthday \"--0305\" has no year and is left out\n"
              "would import 2 of 3 cards; 1 known already\n");
    EXPECT_FALSE(exists(tool.store()));

    tool("add", "--name", "Anna", "--home", "010-1234-5678");
    EXPECT_THAT(imported(tool, path, "--dry-run"), HasSubstr("card 1 (line 1) skipped: is in the phone book already"));
    EXPECT_EQ(tool.json(0, "list").size(), 1u);
}

TEST(ToolImportCards, WritesAnObjectALine) {
    const Tool tool;
    const std::string path = tool.file("people.vcf", anna + anna + "BEGIN:VCARD\nFN:Paul\nTITLE:Chief\n");
    const auto dry = objectsOf(imported(tool, path, "--json", "--dry-run"));
    EXPECT_EQ(dry.at(0),
              (Json{{"card", 1}, {"line", 1}, {"contact", {{"name", "Anna"}, {"mobile", "+82 1012345678"}}}}));
    EXPECT_EQ(dry.back(), (Json{{"imported", 1}, {"cards", 3}, {"skipped", 2}, {"known", 1}, {"dryRun", true}}));

    const auto objects = objectsOf(imported(tool, path, "--json"));
    const Json oid = tool.json(0, "list")[0]["oid"];
    EXPECT_THAT(
        objects,
        ElementsAre(
            Json{{"card", 1}, {"line", 1}, {"oid", oid}},
            Json{{"card", 2}, {"line", 6}, {"skipped", "stands in the file already, in card 1"}, {"knownAs", oid}},
            Json{{"card", 3}, {"line", 11}, {"skipped", "it is cut off: its END:VCARD is missing"}},
            Json{{"imported", 1}, {"cards", 3}, {"skipped", 2}, {"known", 1}}));
    const auto again = objectsOf(imported(tool, path, "--json"));
    EXPECT_EQ(again.at(0)["knownAs"], oid);
}

TEST(ToolImportCards, WritesItsNotesIntoTheObjectsOfTheirCards) {
    const Tool tool;
    const auto objects =
        objectsOf(imported(tool, tool.file("p.vcf", "x\n" + vcard("FN:Anna\n")), "--json", "--format", "vcard"));
    EXPECT_EQ(objects.at(1), (Json{{"note", "line 1 is outside of a card and left out"}}));
    const auto noted = objectsOf(imported(tool, tool.file("q.vcf", vcard("FN:Bella\nBDAY:x\nTITLE:y\n")), "--json"));
    EXPECT_EQ(noted.at(0)["note"], "its birthday \"x\" is no date and is left out; left out, having no place: title");
}

TEST(ToolImportCards, SkipsWhatIsLongerThanAContactCanBe) {
    const Tool tool;
    const std::string longName = vcard("FN:" + std::string(40'000, 'x') + "\n");
    const std::string text(30'000, 'x');
    const std::string all =
        vcard("FN:Bella\nNOTE:" + text + "\nEMAIL:" + text + "\nTEL;HOME:" + std::string(30'000, '1') + "\n");
    EXPECT_EQ(importedCards(tool, longName + all + anna),
              "card 1 (line 1) skipped: its values are longer than a contact can be\n"
              "card 2 (line 4) skipped: its values are longer than a contact can be\n"
              "imported 1 of 3 cards\n");
}

TEST(ToolImportCards, TellsOfEachInTheirOrderOverManyCommits) {
    const Tool tool;
    std::string cards;
    for (int i = 1; i <= 2'500; ++i)
        cards += vcard("FN:Person " + std::to_string(i) + "\nTEL:" + std::to_string(10'000 + i) + "\n");
    const auto objects = objectsOf(imported(tool, tool.file("people.vcf", cards), "--json"));
    ASSERT_EQ(objects.size(), 2'501u);
    for (int i = 0; i < 2'500; ++i)
        ASSERT_EQ(objects[static_cast<std::size_t>(i)]["card"], i + 1);
    EXPECT_EQ(objects.back()["imported"], 2'500);
    EXPECT_EQ(tool.json(0, "list").size(), 2'500u);
}

TEST(ToolImportCards, TakesTheEncodingThatIsSaid) {
    const Tool tool;
    const std::string path = tool.file("people.vcf", vcard("FN:M\xFCller\nTEL:1\n"));
    const Outcome refused = tool("import", path);
    EXPECT_EQ(refused.status, 3);
    EXPECT_THAT(refused.out, HasSubstr("skipped: its name is in an encoding that --encoding can name"));
    EXPECT_EQ(imported(tool, path, "--encoding", "ISO-8859-1"), "imported 1 of 1 card\n");
    EXPECT_THAT(namesIn(tool), ElementsAre("Müller"));
}

TEST(ToolImportCards, CountsTheLabelsOfEmailAddressesThatAreLeftOut) {
    const Tool tool;
    const auto card = [](const std::string& name, const std::string& lines) {
        return "BEGIN:VCARD\nFN:" + name + "\n" + lines + "\nEND:VCARD\n";
    };
    const std::string cards = card("Anna", "EMAIL;TYPE=INTERNET,HOME:a@x") + card("Bella", "EMAIL;TYPE=WORK:b@x") +
                              card("Clara", "item1.EMAIL:c@x\nitem1.X-ABLabel:_$!<School>!$_") +
                              card("Dora", "EMAIL;TYPE=INTERNET;TYPE=PREF:d@x\nTEL;TYPE=HOME:1");
    EXPECT_EQ(importedCards(tool, cards),
              "left out, having no place in a contact: label of an e-mail address (3)\nimported 4 of 4 cards\n");
}

TEST(ToolImportCards, RefusesAFileThatHoldsNone) {
    const Tool tool;
    const std::string garbage = tool.file("people.vcf", std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16));
    expectRefusal(tool, {"import", garbage, "--format", "vcard"}, 3, "holds no card: no line of it is BEGIN:VCARD");
    expectRefusal(tool, {"import", garbage}, 3, "people.vcf");
    expectRefusal(tool, {"import", tool.file("empty.vcf", "")}, 3, "is empty");
    expectRefusal(tool, {"import", garbage, "--encoding", "moon"}, 2, "no encoding \"moon\"");
    expectRefusal(tool, {"import", garbage, "--format", "moon"}, 2,
                  "--format wants one of csv, tessera, vcard, not \"moon\"");
    expectRefusal(tool, {"import", garbage, "--format", "vcard", "--map", "a=name"}, 2, "--map");
}

TEST(ToolImportCards, LeavesAPhoneBookInWhichAllIsRight) {
    const Tool tool;
    imported(tool, foreignFile("smartphone.vcf"));
    imported(tool, foreignFile("old-phone.vcf"));
    const Outcome outcome = tool("check", "--full");
    EXPECT_EQ(outcome.status, 0) << outcome.out;
}
