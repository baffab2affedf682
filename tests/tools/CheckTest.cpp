// check: damage in the store's file, what does not fit together in the phone book, and mending it.

#include "tests/support/Sql.h"
#include "tests/support/SystemNames.h"
#include "tests/tools/ContactsOf.h"
#include "tests/tools/StoreFolder.h"
#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

namespace {

class Check : public Tool {
public:
    Check() { (*this)("init"); }

    std::string soundLine() const { return "nothing is wrong with " + store().string() + "\n"; }
    std::string summary(const std::string& count) const {
        return "tessera: " + count + " wrong with " + store().string() + "\n";
    }

    /// Adds a row to one of the phone book's own databases, past the phone book.
    void addRow(const WCHAR* database, std::initializer_list<CCeDBProp> props) const {
        asAnotherProgram(*this, [&] {
            CCeDBDatabase rows;
            ASSERT_TRUE(rows.open(database, nullptr, nullptr));
            CCeDBRecord row;
            for (const CCeDBProp& prop : props)
                row.addProp(prop);
            ASSERT_NE(rows.add(row), 0u);
        });
    }
    void dialTwice(int slot) const {
        for (int i = 0; i < 2; ++i)
            addRow(TEXT("QZ_SpeedDialNo"),
                   {CCeDBProp::ofI2(0x200, static_cast<std::int16_t>(slot)), CCeDBProp::ofText(0x202, TEXT("0101"))});
    }
    /// The backups that repairs have made beside the store.
    std::vector<std::filesystem::path> backups() const {
        std::vector<std::filesystem::path> found;
        for (const auto& [name, bytes] : filesIn(store().parent_path())) {
            if (name.starts_with("store.db.backup-")) found.push_back(store().parent_path() / name);
        }
        return found;
    }
};

}  // namespace

TEST(ToolCheck, FindsNothingWrongInANewPhoneBook) {
    const Check tool;
    for (const Outcome& outcome : {tool("check"), tool("check", "--full"), tool("check", "--full", "--repair")}) {
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.out, tool.soundLine());
        EXPECT_EQ(outcome.err, "");
    }
    EXPECT_THAT(tool.backups(), IsEmpty());
}

TEST(ToolCheck, SaysInJsonWhatItLookedAt) {
    const Check tool;
    const std::string store = tool.store().string();
    EXPECT_EQ(tool.json(0, "check"),
              (Json{{"store", store}, {"full", false}, {"file", Json::array()}, {"phoneBook", Json::array()}}));
    EXPECT_EQ(tool.json(0, "check", "--full", "--repair"), (Json{{"store", store},
                                                                 {"full", true},
                                                                 {"file", Json::array()},
                                                                 {"phoneBook", Json::array()},
                                                                 {"mended", Json::array()}}));
}

TEST(ToolCheck, NamesWhatIsWrongAndWhatCanBeMended) {
    const Check tool;
    const Json oid = addContactAlone(tool, TEXT("Anna"), TEXT("친구, 가족"));
    tool.dialTwice(5);
    const Outcome outcome = tool("check");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "contact " + oid.dump() +
                               " has categories, but none became its group; --repair mends it\n"
                               "slot 5 holds 2 numbers; clear it and set it again\n");
    EXPECT_EQ(outcome.err, tool.summary("2 things are"));
    EXPECT_EQ(tool("check").out, outcome.out) << "to look changes nothing";
}

TEST(ToolCheck, DescribesInJsonWhatIsWrong) {
    const Check tool;
    const CEOID category = addCategoryAlone(tool, TEXT("동호회"), 40);
    tool.dialTwice(5);
    EXPECT_EQ(tool.json(1, "check")["phoneBook"], (Json{{{"what", "repeated-slot"},
                                                         {"slot", 5},
                                                         {"mendable", false},
                                                         {"text", "slot 5 holds 2 numbers; clear it and set it again"}},
                                                        {{"what", "category-without-group"},
                                                         {"group", 40},
                                                         {"category", category},
                                                         {"mendable", true},
                                                         {"text", "category \"동호회\" has no group"}}}));
}

TEST(ToolCheck, MendsWhatItCanAfterABackup) {
    const Check tool;
    const Json oid = addContactAlone(tool, TEXT("Anna"), TEXT("친구"));
    const Outcome outcome = tool("check", "--repair");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(tool.json(0, "show", oid.dump())["group"], "친구");

    ASSERT_THAT(tool.backups(), SizeIs(1));
    const std::string backup = tool.backups().front().string();
    EXPECT_EQ(outcome.out, "kept as it was in " + backup + "\nmended: contact " + oid.dump() +
                               " has categories, but none became its group\n" + tool.soundLine());
    EXPECT_TRUE(isPrivate(backup));
    EXPECT_EQ(tool("--store", backup, "check").status, 1) << "the backup is as the store was";
    EXPECT_EQ(tool("check").out, tool.soundLine());
}

TEST(ToolCheck, SaysInJsonWhatItMended) {
    const Check tool;
    const Json oid = addContactAlone(tool, TEXT("Anna"), TEXT("친구"));
    tool.dialTwice(5);
    const Json report = tool.json(1, "check", "--repair");
    EXPECT_THAT(keysOf(report), ElementsAre("store", "full", "file", "phoneBook", "backup", "mended"));
    EXPECT_EQ(report["backup"], tool.backups().at(0).string());
    ASSERT_THAT(report["mended"], SizeIs(1));
    EXPECT_EQ(report["mended"][0]["contact"], oid);
    ASSERT_THAT(report["phoneBook"], SizeIs(1));
    EXPECT_EQ(report["phoneBook"][0]["what"], "repeated-slot");
}

TEST(ToolCheck, MakesABackupOfItsOwnForEachRepair) {
    const Check tool;
    for (const WCHAR* name : {TEXT("Anna"), TEXT("Bella"), TEXT("Cara")}) {
        addContactAlone(tool, name, TEXT("친구"));
        EXPECT_EQ(tool("check", "--repair").status, 0);
    }
    EXPECT_THAT(tool.backups(), SizeIs(3));
}

TEST(ToolCheck, MakesNoBackupWhenNothingCanBeMended) {
    const Check tool;
    tool.dialTwice(5);
    const Outcome outcome = tool("check", "--repair");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "slot 5 holds 2 numbers; clear it and set it again\n");
    EXPECT_EQ(outcome.err, tool.summary("one thing is"));
    EXPECT_THAT(tool.backups(), IsEmpty());
    EXPECT_EQ(tool("speed-dial", "clear", "5").status, 0);
    EXPECT_EQ(tool("check").status, 0);
}

TEST(ToolCheck, MendsNothingWithoutABackup) {
    const Tool tool;
    // Long enough that no name is left for a backup.
    const std::string store = (tool / (std::string(245, 's') + ".db")).string();
    ASSERT_EQ(tool("--store", store, "init").status, 0);
    const Json oid = tool.json(0, "--store", store, "add", "--name", "Anna", "--group", "친구")["oid"];
    ASSERT_TRUE(ObjectStore::mount(store)) << ObjectStore::errorText();
    testing_support::ContactsSession().remove(oid.get<CEOID>());
    ObjectStore::unmount();
    const Outcome before = tool("--store", store, "check");
    EXPECT_EQ(before.status, 1);
    expectFailure(tool("--store", store, "check", "--repair"), 3, "nothing was repaired, as no backup could be made");
    EXPECT_EQ(tool("--store", store, "check").out, before.out);
}

TEST(ToolCheck, LooksAtADamagedFileAloneAndSendsToRecover) {
    const Check tool;
    ASSERT_EQ(tool("import", SAMPLE_FILE).status, 0);
    damage(tool.store(), 2);
    const auto before = filesIn(tool.store().parent_path());
    for (const Outcome& outcome : {tool("check"), tool("check", "--full"), tool("check", "--repair")}) {
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.out, HasSubstr("the file's structure: "));
        EXPECT_THAT(outcome.err, HasSubstr("wrong with " + tool.store().string()));
        EXPECT_THAT(outcome.err, HasSubstr("the phone book in it was not looked at"));
        EXPECT_THAT(outcome.err, HasSubstr("\"tessera recover\""));
    }
    const Json report = tool.json(1, "check", "--repair");
    EXPECT_THAT(keysOf(report), ElementsAre("store", "full", "file", "phoneBook"));
    EXPECT_THAT(report["file"][0].get<std::string>(), StartsWith("the file's structure: "));
    EXPECT_EQ(report["phoneBook"], Json());
    EXPECT_EQ(filesIn(tool.store().parent_path()), before);
}

TEST(ToolCheck, SendsToRecoverForARecordThatCannotBeRead) {
    const Check tool;
    ASSERT_EQ(tool("add", "--name", "Anna").status, 0);
    std::string bytes = testing_support::readFile(tool.store());
    const std::string name(
        "\x1F\x00\x13\x40\x08\x00"
        "A\x00n\x00",
        10);
    const std::size_t place = bytes.find(name);
    ASSERT_NE(place, std::string::npos);
    bytes[place] = '\x7E';  // no property has this kind
    testing_support::writeFile(tool.store(), bytes);
    for (const Outcome& outcome : {tool("check"), tool("check", "--repair"), tool("check", "--full")}) {
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(linesOf(outcome.out).size(), 1u) << outcome.out;
        EXPECT_THAT(outcome.err, HasSubstr("\"tessera recover\""));
    }
    EXPECT_EQ(tool.json(1, "check")["phoneBook"], Json());
    EXPECT_THAT(tool.backups(), IsEmpty());
}

TEST(ToolCheck, SendsToRecoverAndNotToItselfForDamageThatShowsWhenItMends) {
    const Check tool;
    addCategoryAlone(tool, TEXT("chess"), 40);
    testing_support::runSql(tool.store(),
                            "CREATE TRIGGER damage BEFORE INSERT ON record "
                            "BEGIN SELECT RAISE(ABORT, 'damaged'); END");
    const Outcome outcome = tool("check", "--repair");
    expectFailure(outcome, 3, "the store is damaged; save what can be read with \"tessera recover\"");
    EXPECT_THAT(outcome.err, Not(HasSubstr("tessera check")));
    expectFailure(tool("add", "--name", "Anna"), 3, "see how far with \"tessera check\"");
}

TEST(ToolCheck, DoesNotMakeAStoreThatIsMissing) {
    const Tool tool;
    expectFailure(tool("check"), 3, tool.store().string());
    expectFailure(tool("check", "--full", "--repair"), 3, tool.store().string());
    EXPECT_THAT(filesIn(tool.store().parent_path()), IsEmpty());
}

TEST(ToolCheck, SaysWhatItCannotLookAt) {
    const Tool tool;
    tool.file("diary.txt", "Dear diary");
    std::filesystem::create_directory(tool / "folder");
    for (const char* name : {"diary.txt", "folder", "none/store.db"}) {
        const std::string store = (tool / name).string();
        expectFailure(tool("--store", store, "check"), 3, store);
    }
    EXPECT_EQ(testing_support::readFile(tool / "diary.txt"), "Dear diary");
    EXPECT_TRUE(std::filesystem::is_empty(tool / "folder"));
}

TEST(ToolCheck, SaysThatAStoreOfAnotherProgramHasNoPhoneBook) {
    const Tool tool;
    ASSERT_TRUE(ObjectStore::mount(tool.store().string())) << ObjectStore::errorText();
    ObjectStore::unmount();
    expectFailure(tool("check"), 3, "tessera init");
    expectFailure(tool("check", "--repair"), 3, "tessera init");
}

TEST(ToolCheck, TakesAStoreOfAnyName) {
    const Tool tool;
    const std::string store = (tool / testing_support::boldFileName).string();
    ASSERT_EQ(tool("--store", store, "add", "--name", "Anna").status, 0);
    EXPECT_EQ(tool("--store", store, "check", "--full").status, 0);
    EXPECT_EQ(linesOf(tool("--store", store, "check").out).size(), 1u) << "also a line feed in its name is shown";
    EXPECT_EQ(tool.json(0, "--store", store, "check")["store"], store);
}

TEST(ToolCheck, ShowsNamesInAWayThatATerminalDoesNotObey) {
    const Check tool;
    const Json oid = tool.json(0, "add", "--name", "Anna", "--group", "\x1B[31mred")["oid"];
    fileUnder(tool, oid, TEXT("친구"));
    for (const Outcome& outcome : {tool("check"), tool("check", "--repair")}) {
        EXPECT_THAT(outcome.out, HasSubstr("is in group \"\\u{1b}[31mred\", which"));
        EXPECT_THAT(outcome.out, Not(HasSubstr("\x1B")));
    }
}

TEST(ToolCheck, TakesNoArguments) {
    const Check tool;
    expectFailure(tool("check", "more"), 2, "more");
    expectFailure(tool("check", "--mend"), 2, "--mend");
}
