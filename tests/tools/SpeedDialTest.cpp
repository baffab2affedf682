// speed-dial: a slot has one number, a number one slot, and nobody falls out of a group.

#include <string>
#include <utility>
#include <vector>

#include "tests/tools/ContactsOf.h"
#include "tests/tools/Couple.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::SizeIs;

namespace {

/// Numbers and owners in the order of the slots.
std::vector<std::pair<int, Json>> ownersOf(const Json& slots) {
    std::vector<std::pair<int, Json>> owners;
    for (const Json& slot : slots)
        owners.emplace_back(slot["slot"].get<int>(), slot.value("oid", Json()));
    return owners;
}

using Owners = std::vector<std::pair<int, Json>>;

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

TEST(ToolSpeedDial, DoesNotClearAllWhereItCannotAsk) {
    const Couple tool;
    tool.set("5", tool.minsu, "mobile");
    expectFailure(tool("speed-dial", "clear", "--all"), 2, "--yes");
    EXPECT_THAT(tool.slots(), SizeIs(1));
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
