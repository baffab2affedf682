// A phone book as large as its table can count: all of it comes in, is listed, and is identified.

#include "tests/tools/ToolTest.h"

using namespace tool_test;

namespace {

constexpr int people = 65'535;

/// Seven digits, different for each.
std::string numberOf(int person) {
    return std::to_string(1'000'000 + person * 137);
}

std::string fileOfPeople() {
    std::string text = "Name,Group\n";
    for (int person = 0; person < people; ++person)
        text += "Person " + std::to_string(person) + ",friends,,010-" + numberOf(person) + "\n";
    return text;
}

std::string cardsOfPeople() {
    std::string text;
    for (int person = 0; person < people; ++person)
        text += "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Person " + std::to_string(person) + "\r\nTEL;TYPE=CELL:010-" +
                numberOf(person) + "\r\nNOTE:noted\r\nCATEGORIES:friends\r\nEND:VCARD\r\n";
    return text;
}

}  // namespace

TEST(ToolManyContacts, ComeInAreListedAndIdentified) {
    const Tool tool;
    EXPECT_EQ(tool("import", tool.file("people.csv", fileOfPeople())).out, "imported 65535 of 65535 lines\n");
    const Json contacts = tool.json(0, "list");
    ASSERT_EQ(contacts.size(), std::size_t{people});
    for (const Json& contact : contacts)
        ASSERT_EQ(contact["group"], "friends") << contact;
    for (const int person : {0, 1, people / 2, people - 1})
        EXPECT_EQ(tool.json(0, "identify", "+8210" + numberOf(person))["name"], "Person " + std::to_string(person));
}

TEST(ToolManyContacts, ComeInAsCardsOnce) {
    const Tool tool;
    const std::string path = tool.file("people.vcf", cardsOfPeople());
    EXPECT_EQ(tool("import", path).out, "imported 65535 of 65535 cards\n");
    EXPECT_EQ(linesOf(tool("import", path).out).back(), "imported 0 of 65535 cards; 65535 known already");
    EXPECT_EQ(tool.json(0, "list").size(), std::size_t{people});
    EXPECT_EQ(tool.json(0, "identify", "+8210" + numberOf(people - 1))["body"], "noted");
}
