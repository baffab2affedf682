// watch: what others do to contacts and categories, told as it happens, and the phone book in step with it.

#include <regex>

#include "tests/support/SystemNames.h"
#include "tests/tools/ImportedFiles.h"
#include "tests/tools/Watching.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

/// How many rows of the phone book's own add to contacts.
DWORD extensionRows(const Tool& tool) {
    DWORD rows = 0;
    asAnotherProgram(tool, [&] {
        CCeDBDatabase extension;
        ASSERT_TRUE(extension.open(TEXT("QZ_PhoneBookExt"), nullptr, nullptr));
        rows = extension.getNumRecords();
    });
    return rows;
}

/// More changes at once than the store remembers, none to a contact or a category.
void makeTheStoreForget(const Tool& tool) {
    asAnotherProgram(tool, [] {
        CCeDBDatabase calls;
        ASSERT_TRUE(calls.open(TEXT("QZ_CallHistory"), nullptr, nullptr));
        CCeDBRecord call;
        call.addProp(CCeDBProp::ofUI4(0x402, 1));
        ObjectStoreBatch batch;
        ASSERT_NE(calls.seekToRecord(calls.add(call)), 0u);
        for (int i = 0; i < 100'010; ++i)
            ASSERT_TRUE(calls.writeCurrent(call));
        ASSERT_TRUE(batch.end());
    });
}

}  // namespace

TEST(ToolWatch, TellsWhatOtherCommandsDoEachOnce) {
    const Watched tool;
    Watch watch(tool.watching());
    const std::string anna = tool.added("Anna").dump();
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-created Anna"));
    tool("edit", anna, "--name", "Anne");
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-changed Anne"));
    tool("import", tool.file("people.csv", "Name,Group\nPaul,친구\n고민정\n"));
    EXPECT_THAT(watch.changes(2), ElementsAre("contact-created Paul", "contact-created 고민정"));
    tool("category", "add", "chess");
    EXPECT_THAT(watch.changes(1), ElementsAre("category-created chess"));
    tool("category", "rename", "친구", "동무");
    EXPECT_THAT(watch.changes(2), ElementsAre("contact-changed Paul", "category-changed 동무"));
    tool("category", "delete", "chess");
    EXPECT_THAT(watch.changes(1), ElementsAre("category-deleted "));
    tool("delete", anna);
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-deleted "));
    EXPECT_EQ(watch.end(), "");
}

TEST(ToolWatch, TellsNothingOfCallsSlotsAndGroupSettings) {
    const Watched tool;
    const std::string anna = tool.json(0, "add", "--name", "Anna", "--mobile", "010-1")["oid"].dump();
    Watch watch(tool.watching());
    tool("call", "log", "010-1");
    tool("speed-dial", "set", "5", anna, "mobile");
    tool("group", "ring", "친구", "--call", "ding");
    tool.added("last");
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-created last"));
    EXPECT_EQ(watch.end(), "");
}

TEST(ToolWatch, TellsNothingOfWhatWasBefore) {
    const Watched tool;
    tool.added("before");
    Watch watch(tool.watching());
    tool.added("after");
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-created after"));
}

TEST(ToolWatch, WritesAnObjectALine) {
    const Watched tool;
    Watch watch(tool.watching());
    const Json before = tool.json(0, "call", "log", "1")["time"];
    const Json anna = tool.added("Anna");
    const Json after = tool.json(0, "call", "log", "1")["time"];

    const Json created = watch.json();
    tool("delete", anna.dump());
    const Json deleted = watch.json();

    EXPECT_THAT(keysOf(created), ElementsAre("sequence", "time", "what", "oid", "name"));
    EXPECT_THAT(keysOf(deleted), ElementsAre("sequence", "time", "what", "oid"));
    EXPECT_EQ(created["oid"], anna);
    EXPECT_EQ(deleted["oid"], anna);
    EXPECT_GT(deleted["sequence"].get<std::uint64_t>(), created["sequence"].get<std::uint64_t>());
    EXPECT_GE(created["time"].get<std::string>(), before.get<std::string>());
    EXPECT_LE(created["time"].get<std::string>(), after.get<std::string>());
}

TEST(ToolWatch, LeavesOutTheNameOfWhoHasNone) {
    const Watched tool;
    Watch watch(tool.watching());
    tool("add", "--mobile", "010-1");
    EXPECT_THAT(keysOf(watch.json()), ElementsAre("sequence", "time", "what", "oid"));
}

TEST(ToolWatch, AlignsItsLinesAndShowsTheTimeAsCallsDo) {
    const Watched tool;
    Watch stream(tool.watching());
    Command command = tool.command({"watch"});
    command.environment["TZ"] = testing_support::zoneOfSeoul;
    Watch watch(command);
    tool.added("김민수");
    tool("category", "add", "chess");
    command.arguments = {"call", "log", "1", "--at", stream.json()["time"].get<std::string>()};
    const std::string time = linesOf(testing_support::run(command).out).at(1).substr(16);

    const std::string contact = watch.line();
    const std::string category = watch.line();

    const std::regex ofContact("[0-9]+ +" + time + "  contact added     [0-9]+ +김민수");
    const std::regex ofCategory("[0-9]+ +[-0-9]+ [:0-9]+  category added    [0-9]+ +chess");
    EXPECT_TRUE(std::regex_match(contact, ofContact)) << contact;
    EXPECT_TRUE(std::regex_match(category, ofCategory)) << category;
    EXPECT_EQ(contact.find("김"), category.find("chess"));
}

TEST(ToolWatch, ShowsWhatMightUpsetATerminalInPlainText) {
    const Watched tool;
    Watch stream(tool.watching());
    Watch watch(tool.command({"watch"}));
    tool.added("김\x1b[2J\xc2\x9b\n수");
    EXPECT_THAT(watch.line(), HasSubstr("김\\u{1b}[2J\\u{9b}\\u{a}수"));
    const std::string line = stream.line();
    EXPECT_THAT(line, HasSubstr("김\\u001b[2J\\u009b\\n수"));
    EXPECT_EQ(Json::parse(line)["name"], "김\x1b[2J\xc2\x9b\n수");
}

TEST(ToolWatch, GivesAContactWithCategoriesItsGroupBeforeItTells) {
    const Watched tool;
    Watch watch(tool.watching());
    const Json anna = addContactAlone(tool, TEXT("Anna"), TEXT("친구, 회사"));
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-created Anna"));
    EXPECT_EQ(tool.json(0, "show", anna.dump())["group"], "친구");
    fileUnder(tool, anna, TEXT("회사"));
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-changed Anna"));
    EXPECT_FALSE(tool.json(0, "show", anna.dump()).contains("group"));
}

TEST(ToolWatch, HasFollowedAllThatItTellsOf) {
    const Watched tool;
    Watch watch(tool.watching());
    asAnotherProgram(tool, [] {
        const testing_support::ContactsSession session;
        const ObjectStoreBatch batch;
        for (int i = 0; i < 500; ++i) {
            const ComPtr<IContact> contact = session.newContact();
            contact->put_Categories(testing_support::bstr(TEXT("친구")).get());
            ASSERT_EQ(contact->Save(), S_OK);
        }
    });
    watch.changes(500);
    EXPECT_EQ(extensionRows(tool), 500u);
}

TEST(ToolWatch, EmptiesTheSlotsOfAContactThatIsGone) {
    const Watched tool;
    const Json anna = tool.json(0, "add", "--name", "Anna", "--mobile", "010-1")["oid"];
    tool("speed-dial", "set", "5", anna.dump(), "mobile");
    Watch watch(tool.watching());
    deleteContactAlone(tool, anna);
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-deleted "));
    EXPECT_EQ(tool.json(0, "speed-dial", "list"), Json::array());
    EXPECT_EQ(extensionRows(tool), 0u);
}

TEST(ToolWatch, MakesAndDropsTheGroupsOfCategories) {
    const Watched tool;
    addCategoryAlone(tool, TEXT("before"), 40);
    Watch watch(tool.watching());
    EXPECT_THAT(tool.groups(), ElementsAre("before", "가족", "친구", "학교", "회사"));
    const CEOID chess = addCategoryAlone(tool, TEXT("chess"), 41);
    EXPECT_THAT(watch.changes(1), ElementsAre("category-created chess"));
    EXPECT_THAT(tool.groups(), ElementsAre("before", "chess", "가족", "친구", "학교", "회사"));
    deleteCategoryAlone(tool, chess);
    EXPECT_THAT(watch.changes(1), ElementsAre("category-deleted "));
    EXPECT_THAT(tool.groups(), ElementsAre("before", "가족", "친구", "학교", "회사"));
}

TEST(ToolWatch, FollowsAnImportCompletely) {
    const Watched tool;
    Watch watch(tool.watching());
    tool("import", tool.file("people.csv", fileOfPeople(2'000)));
    std::vector<std::string> expected;
    for (int person = 1; person <= 2'000; ++person)
        expected.push_back("contact-created Person " + std::to_string(person));
    EXPECT_EQ(watch.changes(2'000), expected);
    EXPECT_EQ(watch.end(), "");
}

TEST(ToolWatch, WorksSideBySideWithAnother) {
    const Watched tool;
    Watch one(tool.watching());
    Watch other(tool.watching());
    for (const CString name : {TEXT("Anna"), TEXT("Paul"), TEXT("Bella")})
        addContactAlone(tool, name, TEXT("친구"));
    const auto three = ElementsAre("contact-created Anna", "contact-created Paul", "contact-created Bella");
    EXPECT_THAT(one.changes(3), three);
    EXPECT_THAT(other.changes(3), three);
    EXPECT_EQ(one.end(), "");
    EXPECT_EQ(other.end(), "");
    EXPECT_EQ(extensionRows(tool), 3u);
}

TEST(ToolWatch, EndsWellWhenNobodyReadsWhatItTells) {
    const Watched tool;
    Watch watch(tool.watching());
    watch.process().closeOutput();
    tool.added("Anna");
    const Outcome outcome = watch.process().wait();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
}

TEST(ToolWatch, GoesOnFromNowWhenTheStoreHasForgottenWhatWas) {
    const Watched tool;
    Watch watch(tool.watching());
    makeTheStoreForget(tool);
    EXPECT_THAT(watch.errorLine(), HasSubstr("tessera: more has changed"));
    tool.added("Anna");
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-created Anna"));
}

TEST(ToolWatch, WantsAPhoneBook) {
    const Tool tool;
    expectFailure(tool("watch"), 3, "there is no phone book in " + tool.store().string());
    expectFailure(tool("watch", "contacts"), 2, "contacts");
    EXPECT_FALSE(exists(tool.store()));
}
