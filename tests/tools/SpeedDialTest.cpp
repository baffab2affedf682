// speed-dial: a slot has one number, a number one slot, and nobody falls out of a group.

#include <string>
#include <utility>
#include <vector>

#include "tessera/platform/objectstore/CCeDBDatabase.h"
#include "tests/tools/ContactsOf.h"
#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

namespace {

/// A phone book of two, who share a number at home.
class Couple : public Tool {
public:
    Couple()
        : minsu(json(0, "add", "--name", "김민수", "--group", "친구", "--mobile", "010-2345-6789", "--home",
                     "02-312-4567")["oid"]),
          anna(json(0, "add", "--name", "Anna", "--mobile", "+82 10-9999-8888", "--home", "02-312-4567", "--business",
                    "031-1")["oid"]) {}

    Outcome set(const std::string& slot, const Json& oid, const std::string& number) const {
        return (*this)("speed-dial", "set", slot, oid.dump(), number);
    }
    Json slots() const { return json(0, "speed-dial", "list"); }
    Json shown(const Json& oid) const { return json(0, "show", oid.dump()); }

    Json minsu;
    Json anna;
};

/// Numbers and owners in the order of the slots.
std::vector<std::pair<int, Json>> ownersOf(const Json& slots) {
    std::vector<std::pair<int, Json>> owners;
    for (const Json& slot : slots)
        owners.emplace_back(slot["slot"].get<int>(), slot.value("oid", Json()));
    return owners;
}

using Owners = std::vector<std::pair<int, Json>>;

/// A row of the speed-dial table that no contact knows of.
struct Row {
    std::int16_t slot;
    CString number;
};

void addRows(const Tool& tool, const std::vector<Row>& rows) {
    ASSERT_TRUE(ObjectStore::mount(tool.store().string())) << ObjectStore::errorText();
    {
        CCeDBDatabase slots;
        ASSERT_TRUE(slots.open(TEXT("QZ_SpeedDialNo"), nullptr, nullptr));
        for (const Row& row : rows) {
            CCeDBRecord record;
            record.addProp(CCeDBProp::ofI2(0x200, row.slot));
            record.addProp(CCeDBProp::ofUI4(0x201, 4));
            record.addProp(CCeDBProp::ofText(0x202, row.number));
            record.addProp(CCeDBProp::ofUI2(0x203, 7));
            ASSERT_NE(slots.add(record), 0u);
        }
    }
    ObjectStore::unmount();
}

std::string onTerminal(const Tool& tool, const std::string& columns) {
    auto command = tool.command({"speed-dial", "list"});
    command.outputToTerminal = true;
    command.environment["COLUMNS"] = columns;
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    std::string text = outcome.out;
    std::erase(text, '\r');
    return text;
}

}  // namespace

TEST(ToolSpeedDial, GivesASlotToANumber) {
    const Couple tool;
    EXPECT_EQ(tool.set("5", tool.minsu, "mobile").out, "slot 5 dials 010-2345-6789, mobile of 김민수\n");
    EXPECT_EQ(tool.shown(tool.minsu)["private"], 5);
    EXPECT_EQ(
        tool.json(0, "speed-dial", "set", "99", tool.anna.dump(), "mobile"),
        (Json{{"slot", 99}, {"oid", tool.anna}, {"name", "Anna"}, {"type", "mobile"}, {"number", "01099998888"}}));
}

TEST(ToolSpeedDial, ListsTheTakenSlotsInTheirOrder) {
    const Couple tool;
    EXPECT_EQ(tool.slots(), Json::array());
    EXPECT_EQ(tool("speed-dial", "list").out, "");
    tool.set("12", tool.minsu, "home");
    tool.set("3", tool.anna, "business");
    const Json slots = tool.slots();
    ASSERT_THAT(slots, SizeIs(2));
    EXPECT_EQ(slots[0],
              (Json{{"slot", 3}, {"oid", tool.anna}, {"name", "Anna"}, {"type", "business"}, {"number", "0311"}}));
    EXPECT_THAT(keysOf(slots[1]), ElementsAre("slot", "oid", "name", "type", "number"));
    EXPECT_EQ(slots[1]["slot"], 12);
}

TEST(ToolSpeedDial, WritesAnAlignedTableWhereThereIsNoTerminal) {
    const Couple tool;
    tool.set("3", tool.minsu, "mobile");
    tool.set("12", tool.anna, "home");
    const auto lines = linesOf(tool("speed-dial", "list").out);
    ASSERT_THAT(lines, SizeIs(3));
    EXPECT_EQ(lines[0], "Slot  Oid  Name    Type    Number");
    EXPECT_EQ(lines[1], "3     " + padded(tool.minsu.dump(), 5) + "김민수  mobile  010-2345-6789");
    EXPECT_EQ(lines[2], "12    " + padded(tool.anna.dump(), 5) + "Anna    home    02-312-4567");
}

TEST(ToolSpeedDial, ShowsEverySlotOnATerminalWithinItsWidth) {
    const Couple tool;
    tool.set("2", tool.minsu, "mobile");
    tool("edit", tool.anna.dump(), "--name", std::string(40, 'n'));
    tool.set("3", tool.anna, "mobile");
    const auto wide = linesOf(onTerminal(tool, "63"));
    ASSERT_THAT(wide, SizeIs(33));
    EXPECT_EQ(wide[0], " 1 -                  2 김민수             3 nnnnnnnnnnnnnnn…");
    EXPECT_EQ(wide[32], "97 -                 98 -                 99 -");
    EXPECT_THAT(linesOf(onTerminal(tool, "5")),
                AllOf(SizeIs(99),
                      Each(testing::ResultOf([](const std::string& line) { return line.size(); }, testing::Le(9u)))));
}

TEST(ToolSpeedDial, WritesJsonOnATerminalToo) {
    const Couple tool;
    tool.set("2", tool.minsu, "mobile");
    auto command = tool.command({"--json", "speed-dial", "list"});
    command.outputToTerminal = true;
    EXPECT_EQ(Json::parse(run(command).out), tool.slots());
}

TEST(ToolSpeedDial, ShowsTensOnAWideTerminal) {
    const Tool tool;
    tool("init");
    const auto lines = linesOf(onTerminal(tool, "500"));
    ASSERT_THAT(lines, SizeIs(10));
    EXPECT_THAT(lines[9], HasSubstr("91 -     92 -"));
}

TEST(ToolSpeedDial, TakesASlotFromWhoHasIt) {
    const Couple tool;
    tool.set("5", tool.minsu, "mobile");
    tool.set("6", tool.minsu, "home");
    EXPECT_EQ(tool.set("5", tool.anna, "mobile").status, 0);
    EXPECT_EQ(ownersOf(tool.slots()), (Owners{{5, tool.anna}, {6, tool.minsu}}));
    EXPECT_EQ(tool.shown(tool.minsu)["private"], 0x0600);
    EXPECT_EQ(tool.shown(tool.anna)["private"], 0x05);
}

TEST(ToolSpeedDial, MovesANumberThatHasASlotAlready) {
    const Couple tool;
    tool.set("5", tool.minsu, "mobile");
    tool.set("9", tool.minsu, "mobile");
    EXPECT_EQ(ownersOf(tool.slots()), (Owners{{9, tool.minsu}}));
    EXPECT_EQ(tool.shown(tool.minsu)["private"], 9);
    tool.set("9", tool.minsu, "home");
    EXPECT_EQ(tool.slots()[0]["type"], "home");
    EXPECT_EQ(tool.shown(tool.minsu)["private"], 0x0900);
}

TEST(ToolSpeedDial, LeavesASharedNumberToEachOfItsOwners) {
    const Couple tool;
    tool.set("1", tool.minsu, "home");
    tool.set("2", tool.anna, "home");
    EXPECT_EQ(ownersOf(tool.slots()), (Owners{{1, tool.minsu}, {2, tool.anna}}));
    EXPECT_EQ(tool("speed-dial", "move", "2", "3").out, "slot 3 dials 02-312-4567, home of Anna\n");
    EXPECT_EQ(ownersOf(tool.slots()), (Owners{{1, tool.minsu}, {3, tool.anna}}));
    EXPECT_EQ(tool("speed-dial", "clear", "3").status, 0);
    EXPECT_EQ(ownersOf(tool.slots()), (Owners{{1, tool.minsu}}));
    EXPECT_EQ(tool.shown(tool.minsu)["private"], 0x0100);
    EXPECT_EQ(tool.shown(tool.anna)["private"], 0);
}

TEST(ToolSpeedDial, GivesASlotThatAnotherContactOnlyClaims) {
    const Couple tool;
    const Json claiming = tool.json(0, "add", "--name", "Zoe", "--mobile", "010-7", "--private", "0x000705")["oid"];
    EXPECT_EQ(tool.slots(), Json::array());
    EXPECT_EQ(tool.set("5", tool.anna, "mobile").out, "slot 5 dials 010-9999-8888, mobile of Anna\n");
    EXPECT_EQ(ownersOf(tool.slots()), (Owners{{5, tool.anna}}));
    EXPECT_EQ(tool.shown(claiming)["private"], 0x0700);
}

TEST(ToolSpeedDial, FreesTheSlotsOfAContactThatIsDeleted) {
    const Couple tool;
    tool.set("5", tool.minsu, "mobile");
    tool.set("6", tool.minsu, "home");
    tool("delete", tool.minsu.dump());
    EXPECT_EQ(tool.slots(), Json::array());
}

TEST(ToolSpeedDial, KeepsEverythingElseOfTheContactsThatItTouches) {
    const Couple tool;
    takeNotes(tool, tool.minsu, TEXT("likes tea"));
    fileUnder(tool, tool.minsu, TEXT("친구, chess"));
    fileUnder(tool, tool.anna, TEXT("work, chess"));
    Json minsu = tool.shown(tool.minsu);
    Json anna = tool.shown(tool.anna);
    ASSERT_FALSE(anna.contains("private"));

    tool.set("5", tool.minsu, "mobile");
    minsu["private"] = 5;
    EXPECT_EQ(tool.shown(tool.minsu), minsu);
    tool("speed-dial", "move", "5", "6");
    minsu["private"] = 6;
    EXPECT_EQ(tool.shown(tool.minsu), minsu);
    tool.set("6", tool.anna, "home");
    minsu["private"] = 0;
    EXPECT_EQ(tool.shown(tool.minsu), minsu);
    anna["private"] = 0x0600;
    EXPECT_EQ(tool.shown(tool.anna), anna);
    tool("speed-dial", "clear", "6");
    EXPECT_EQ(tool.shown(tool.anna)["categories"], "work, chess");
}

TEST(ToolSpeedDial, KeepsAContactInItsGroup) {
    const Couple tool;
    for (const std::string slot : {"1", "2", "3"})
        tool.set(slot, tool.minsu, "mobile");
    tool("speed-dial", "move", "3", "4");
    tool("speed-dial", "clear", "4");
    EXPECT_EQ(tool.shown(tool.minsu)["categories"], "친구");
    EXPECT_THAT(namesIn(tool.json(0, "list", "--group", "친구")), ElementsAre("김민수"));
}

TEST(ToolSpeedDial, MovesAndClearsASlotWhoseContactIsGone) {
    const Couple tool;
    tool.set("5", tool.minsu, "mobile");
    deleteContactAlone(tool, tool.minsu);
    EXPECT_EQ(tool("speed-dial", "move", "5", "7").status, 0);
    EXPECT_EQ(tool.json(0, "speed-dial", "list"), (Json{{{"slot", 7}, {"number", "01023456789"}}}));
    EXPECT_EQ(tool("speed-dial", "clear", "7").status, 0);
    EXPECT_EQ(tool.slots(), Json::array());
}

TEST(ToolSpeedDial, ListsASlotThatIsNobodys) {
    const Couple tool;
    addRows(tool, {{4, CString(TEXT("01055556666"))}});
    EXPECT_EQ(tool.slots(), (Json{{{"slot", 4}, {"number", "01055556666"}}}));
    EXPECT_EQ(tool("speed-dial", "list").out, "Slot  Number\n4     010-5555-6666\n");
    EXPECT_THAT(onTerminal(tool, "80"), HasSubstr(" 4 010-5555-6666"));
    EXPECT_EQ(tool("speed-dial", "move", "4", "8").out, "slot 8 dials 010-5555-6666\n");
    EXPECT_EQ(tool.slots(), (Json{{{"slot", 8}, {"number", "01055556666"}}}));
}

TEST(ToolSpeedDial, LeavesASlotThatIsNobodysToNobodyWhenItIsMoved) {
    const Couple tool;
    addRows(tool, {{4, CString(TEXT("01023456789"))}});
    tool("speed-dial", "move", "4", "8");
    EXPECT_EQ(tool.slots(), (Json{{{"slot", 8}, {"number", "01023456789"}}}));
    EXPECT_EQ(tool.shown(tool.minsu)["private"], 0);
}

TEST(ToolSpeedDial, LeavesNoRowOfTheNumberBehindThatIsNobodys) {
    const Couple tool;
    addRows(tool, {{4, CString(TEXT("01023456789"))}});
    tool.set("8", tool.minsu, "mobile");
    EXPECT_EQ(ownersOf(tool.slots()), (Owners{{8, tool.minsu}}));
}

TEST(ToolSpeedDial, ClearsASlotThatHasTwoRows) {
    const Couple tool;
    tool.set("4", tool.minsu, "mobile");
    addRows(tool, {{4, CString(TEXT("1"))}, {4, CString(TEXT("2"))}});
    EXPECT_EQ(tool("speed-dial", "clear", "4").out, "cleared slot 4\n");
    EXPECT_EQ(tool.slots(), Json::array());
    EXPECT_EQ(tool.shown(tool.minsu)["private"], 0);
}

TEST(ToolSpeedDial, RefusesToMoveOntoATakenSlot) {
    const Couple tool;
    tool.set("5", tool.minsu, "mobile");
    tool.set("6", tool.anna, "mobile");
    expectFailure(tool("speed-dial", "move", "6", "5"), 3, "slot 5 is taken; clear it first");
    EXPECT_EQ(ownersOf(tool.slots()), (Owners{{5, tool.minsu}, {6, tool.anna}}));
}

TEST(ToolSpeedDial, SaysThatASlotIsEmpty) {
    const Couple tool;
    expectFailure(tool("speed-dial", "move", "5", "6"), 1, "slot 5 is empty");
    expectFailure(tool("speed-dial", "clear", "5"), 1, "slot 5 is empty");
    expectFailure(tool("speed-dial", "call", "5"), 1, "slot 5 is empty");
    EXPECT_EQ(tool.json(1, "speed-dial", "call", "5"), Json());
}

TEST(ToolSpeedDial, PrintsTheNumberToDialAndNothingElse) {
    const Couple tool;
    tool.set("5", tool.anna, "mobile");
    EXPECT_EQ(tool("speed-dial", "call", "5").out, "010-9999-8888\n");
    EXPECT_EQ(tool.json(0, "speed-dial", "call", "5"), (Json{{"slot", 5}, {"number", "01099998888"}}));
}

TEST(ToolSpeedDial, ClearsOneSlotOrAll) {
    const Couple tool;
    tool.set("5", tool.minsu, "mobile");
    tool.set("6", tool.minsu, "home");
    tool.set("7", tool.anna, "mobile");
    EXPECT_EQ(tool("speed-dial", "clear", "6").out, "cleared slot 6\n");
    EXPECT_EQ(tool.shown(tool.minsu)["private"], 5);
    EXPECT_EQ(tool.json(0, "speed-dial", "clear", "--all", "--yes"), (Json{{"cleared", 2}}));
    EXPECT_EQ(tool.slots(), Json::array());
    EXPECT_EQ(tool.shown(tool.minsu)["private"], 0);
    EXPECT_EQ(tool("speed-dial", "clear", "--all", "--yes").out, "cleared 0 slots\n");
}

TEST(ToolSpeedDial, AsksOnATerminalBeforeItClearsAll) {
    const Couple tool;
    tool.set("5", tool.minsu, "mobile");
    auto asked = tool.command({"speed-dial", "clear", "--all"});
    expectFailure(run(asked), 2, "--yes");
    asked.errorToTerminal = true;
    asked.typed = "n\n";
    const Outcome refused = run(asked);
    EXPECT_EQ(refused.status, 3);
    EXPECT_THAT(refused.err, HasSubstr("Clear all 1 slot of " + tool.store().string() + "? [y/N]"));
    EXPECT_THAT(tool.slots(), SizeIs(1));
    asked.typed = "y\n";
    EXPECT_EQ(run(asked).out, "cleared 1 slot\n");
    EXPECT_EQ(tool.slots(), Json::array());
}

TEST(ToolSpeedDial, TellsTheLowestFreeSlot) {
    const Couple tool;
    EXPECT_EQ(tool("speed-dial", "free").out, "1\n");
    tool.set("1", tool.minsu, "mobile");
    tool.set("2", tool.minsu, "home");
    tool.set("4", tool.anna, "mobile");
    EXPECT_EQ(tool("speed-dial", "free").out, "3\n");
    tool("speed-dial", "clear", "1");
    EXPECT_EQ(tool.json(0, "speed-dial", "free"), (Json{{"slot", 1}}));
}

TEST(ToolSpeedDial, HasNoFreeSlotWhenAllAreTaken) {
    const Tool tool;
    tool("init");
    std::vector<Row> rows;
    for (std::int16_t slot = 1; slot <= 99; ++slot)
        rows.push_back({slot, CString(TEXT("1"))});
    addRows(tool, rows);
    EXPECT_THAT(tool.json(0, "speed-dial", "list"), SizeIs(99));
    expectFailure(tool("speed-dial", "free"), 1, "all 99 slots are taken");
    EXPECT_EQ(tool.json(1, "speed-dial", "free"), Json());
}

TEST(ToolSpeedDial, SaysWhichNumberIsMissing) {
    const Couple tool;
    expectFailure(tool.set("5", tool.minsu, "business"), 3, "has no business number");
    const Json caller = tool.json(0, "add", "--name", "Z", "--mobile", "call me")["oid"];
    expectFailure(tool.set("5", caller, "mobile"), 3, "mobile number of contact " + caller.dump());
    EXPECT_EQ(tool.slots(), Json::array());
}

TEST(ToolSpeedDial, FindsNothingUnderAnUnknownIdentifier) {
    const Couple tool;
    expectFailure(tool("speed-dial", "set", "5", "999999", "mobile"), 1, "999999");
    EXPECT_EQ(tool.json(1, "speed-dial", "set", "5", "999999", "mobile"), Json());
}

TEST(ToolSpeedDial, RefusesWhatMakesNoSense) {
    const Couple tool;
    for (const std::string slot : {"0", "100", "-1", "five", ""})
        EXPECT_EQ(tool.set(slot, tool.minsu, "mobile").status, 2) << slot;
    expectFailure(tool.set("5", tool.minsu, "fax"), 2, "fax");
    expectFailure(tool("speed-dial", "set", "5", "twelve", "mobile"), 1, "twelve");
    expectFailure(tool("speed-dial", "move", "5", "5"), 2, "same slot");
    expectFailure(tool("speed-dial", "move", "5", "100"), 2, "TO");
    expectFailure(tool("speed-dial", "call", "100"), 2, "1 to 99");
    expectFailure(tool("speed-dial", "clear"), 2, "--all");
    expectFailure(tool("speed-dial", "clear", "--yes"), 2, "--all");
    EXPECT_EQ(tool("speed-dial", "clear", "5", "--all").status, 2);
    expectFailure(tool("speed-dial"), 2, "command");
    expectFailure(tool("speed-dial", "dance"), 2, "\"speed-dial dance\" is no command");
    EXPECT_EQ(tool.slots(), Json::array());
}
