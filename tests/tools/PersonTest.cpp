// Whom a command means: by identifier, number, name, or a part or the initials of one.

#include "tests/tools/People.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(Person, IsMeantByIdentifierNumberNamePartOrInitials) {
    const People tool;
    const std::string oid = tool.person("김민수", "--mobile", "+82 10-2345-6789", "--fax", "02-777-8888");
    tool.person("Anna");
    for (const char* argument : {"010-2345-6789", "01023456789", "+82 10 2345 6789", "+821023456789", "027778888",
                                 "김민수", "민수", "ㄱㅁㅅ", "ㄱㅁ"})
        EXPECT_EQ(tool.shown(argument), oid) << argument;
    EXPECT_EQ(tool.shown(oid), oid);
}

TEST(Person, IsTheIdentifiersBeforeTheNumbersBeforeTheNames) {
    const People tool;
    const std::string first = tool.person("first");
    const std::string second = tool.person(first, "--mobile", "4711");
    const std::string third = tool.person("4711", "--mobile", first);

    EXPECT_EQ(tool.shown(first), first);
    EXPECT_EQ(tool.shown("oid:" + first), first);
    EXPECT_EQ(tool.shown("number:" + first), third);
    EXPECT_EQ(tool.shown("name:" + first), second);
    EXPECT_EQ(tool.shown("4711"), second);
    EXPECT_EQ(tool.shown("name:4711"), third);
}

TEST(Person, IsMeantByTheWholeNameBeforeAPartOfOne) {
    const People tool;
    tool.person("Annabel");
    const std::string anna = tool.person("Anna");
    tool.person("Susanna");
    EXPECT_EQ(tool.shown("Anna"), anna);
    EXPECT_EQ(tool.shown("anna"), anna);
    expectFailure(tool("show", "ann"), 2, "3 contacts");
}

TEST(Person, IsNeverMeantByDigitsWithinAName) {
    const People tool;
    tool.person("Room 777");
    expectFailure(tool("show", "777"), 1, "there is no contact 777");
    EXPECT_EQ(tool.json(0, "show", "Room 7")["name"], "Room 777");
}

TEST(Person, IsNotChangedForAnIdentifierThatIsGone) {
    const People tool;
    const std::string gone = tool.person("gone");
    tool("delete", gone);
    tool.person("Anna", "--mobile", gone);
    EXPECT_EQ(tool.json(0, "show", gone)["name"], "Anna");
    expectFailure(tool("show", "oid:" + gone), 1, "oid:" + gone);
    expectFailure(tool("delete", gone), 1, "there is no contact " + gone);
    expectFailure(tool("edit", gone, "--name", "Bella"), 1, "there is no contact " + gone);
    expectFailure(tool("speed-dial", "set", "5", gone, "mobile"), 1, "there is no contact " + gone);
    EXPECT_EQ(tool("delete", "number:" + gone).status, 0);
    EXPECT_THAT(tool.names(), IsEmpty());
}

TEST(Person, IsUnderstoodByEveryCommandThatWantsOne) {
    const Kims tool;
    EXPECT_EQ(tool("edit", "010-2345-6789", "--email", "minsu@example.com").out,
              "changed contact " + tool.minsu + "\n");
    EXPECT_EQ(tool.json(0, "show", tool.minsu)["email"], "minsu@example.com");
    EXPECT_THAT(tool("speed-dial", "set", "5", "021234", "home").out, HasSubstr("slot 5 dials 02-1234"));
    EXPECT_EQ(tool("delete", "김민정", tool.other).out, "deleted 2 contacts: " + tool.minjeong + " 김민정\n");
    EXPECT_THAT(tool.names(), ElementsAre("김민수"));
}

TEST(Person, IsToldWhenNobodyIsMeant) {
    const People tool;
    tool.person("Anna");
    expectFailure(tool("show", "Bella"), 1, "nobody is called or has the number \"Bella\"; \"tessera list\"");
    expectFailure(tool("edit", "010-1", "--name", "B"), 1, "\"010-1\"");
    expectFailure(tool("speed-dial", "set", "5", "Bella", "home"), 1, "\"Bella\"");
    EXPECT_EQ(tool.json(1, "show", "Bella"), Json());
    EXPECT_EQ(tool.json(1, "delete", "Bella"), (Json{{"deleted", 0}, {"missing", {"Bella"}}}));
}

TEST(Person, IsRefusedWhereTheArgumentCannotNameOne) {
    const People tool;
    tool.person("Anna");
    expectFailure(tool("show", ""), 2, "PERSON is empty");
    expectFailure(tool("show", "name:"), 2, "PERSON is empty");
    expectFailure(tool("show", "oid:Anna"), 2, "\"Anna\"");
    expectFailure(tool("show", "number:Anna"), 2, "010-2345-6789");
}

TEST(Person, IsNotGuessedWhereNobodyCanBeAsked) {
    const Kims tool;
    expectFailure(tool("show", "김민"), 2,
                  "\"김민\" can be 3 contacts: " + tool.minsu + " 김민수, " + tool.other + " 김민수, " + tool.minjeong +
                      " 김민정; use one of these identifiers");
    tool.person("김민지");
    EXPECT_THAT(tool("show", "ㄱㅁ").err, HasSubstr(" and 1 more; use one"));
    auto piped = tool.command({"show", "김민"});
    piped.input = "1\n";
    EXPECT_EQ(run(piped).status, 2);
}

TEST(Person, OfOneNameIsNotDeletedForAnother) {
    const Kims tool;
    expectFailure(tool("delete", tool.minjeong, "김민수"), 2, "2 contacts");
    EXPECT_EQ(tool.names().size(), 3u);  // nothing goes before it is certain who is meant
}

TEST(Person, IsNotDeletedForAPartOfTheNameWhereNobodyCanBeAsked) {
    const Kims tool;
    for (const std::string part : {"민정", "ㄱㅁㅈ", "name:민정"})
        expectFailure(tool("delete", tool.minsu, part), 2,
                      "\"" + part + "\" is only a part of a name; if contact " + tool.minjeong +
                          " is meant (김민정), say oid:" + tool.minjeong + " or the whole name");
    auto piped = tool.command({"delete", "민정"});
    piped.input = "y\n";
    EXPECT_EQ(run(piped).status, 2);
    EXPECT_EQ(tool.names().size(), 3u);

    tool.person("Room 777", "--home", "02-777-1");
    EXPECT_THAT(tool("delete", "02-77").err, HasSubstr("nobody"));
    expectFailure(tool("delete", "room"), 2, "(Room 777, 02-777-1)");
}

TEST(Person, IsDeletedUnaskedForIdentifierNumberAndWholeName) {
    const Kims tool;
    const std::string anna = tool.person("Anna", "--mobile", "010-1");
    EXPECT_EQ(tool("delete", "oid:" + tool.other).status, 0);
    EXPECT_EQ(tool("delete", "01023456789").status, 0);
    EXPECT_EQ(tool("delete", "김민정").status, 0);
    EXPECT_EQ(tool("delete", "anna").out, "deleted 1 contact: " + anna + " Anna\n");
    EXPECT_THAT(tool.names(), IsEmpty());
}

TEST(Person, IsShownAndChangedForAPartOfTheNameUnasked) {
    const Kims tool;
    EXPECT_EQ(tool.shown("민정"), tool.minjeong);
    EXPECT_EQ(tool("edit", "ㄱㅁㅈ", "--mobile", "010-5").status, 0);
    EXPECT_EQ(tool("speed-dial", "set", "5", "민정", "mobile").status, 0);
}
