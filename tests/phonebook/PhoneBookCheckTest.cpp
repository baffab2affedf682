#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/StoreChanges.h"
#include "tests/phonebook/CheckedPhoneBook.h"
#include "tests/support/TemporaryStore.h"

// Each thing that can be wrong, made by writing rows as the manager never does: found, told, and mended or not.

namespace PhoneBook::check_test {
namespace {

using following::extensionRowOf;
using following::extensionRows;
using following::Group;
using following::groups;
using groups_test::addCategory;
using groups_test::deleteCategory;
using speed_dial::dial;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testing_support::contact;

class PhoneBookCheckTest : public testing::Test {
protected:
    /// It is found, cannot be mended, and is left as it was.
    void expectLeft(const PhoneBookFinding& finding) {
        const Stored before;
        EXPECT_THAT(book.examine(), ElementsAre(finding));
        const auto [mended, left] = book.mend();
        EXPECT_THAT(mended, IsEmpty());
        EXPECT_THAT(left, ElementsAre(finding));
        EXPECT_TRUE(before == Stored());
    }
    /// It is found and mended, and nothing is left.
    void expectMended(const PhoneBookFinding& finding) {
        EXPECT_THAT(book.examine(), ElementsAre(finding));
        const auto [mended, left] = book.mend();
        EXPECT_THAT(mended, ElementsAre(finding));
        EXPECT_THAT(left, IsEmpty());
        EXPECT_THAT(book.examine(), IsEmpty());
    }

    const testing_support::MemoryStoreMount store;
    CheckedPhoneBook book;
    following::OtherProgram other;
};

std::string textOf(const char* before, DWORD number, const char* behind) {
    return before + std::to_string(number) + behind;
}

// Contacts and their rows

TEST_F(PhoneBookCheckTest, FindsNothingInANewPhoneBook) {
    EXPECT_THAT(book.examine(), IsEmpty());
    const auto [mended, left] = book.mend();
    EXPECT_THAT(mended, IsEmpty());
    EXPECT_THAT(left, IsEmpty());
}

TEST_F(PhoneBookCheckTest, GivesAContactThatCameWithCategoriesItsGroup) {
    const CEOID oid = other.addFiled(TEXT("Kim"), TEXT("Family, Work"));
    other.add(TEXT("without categories"));
    expectMended({.kind = Kind::contactWithoutRow,
                  .contact = oid,
                  .canBeMended = true,
                  .text = textOf("contact ", oid, " has categories, but none became its group")});
    EXPECT_EQ(CString(TEXT("Family")), extensionRowOf(oid)->group);
}

TEST_F(PhoneBookCheckTest, ClearsAGroupThatTheContactHasNoMore) {
    const DWORD oid = book.add(contact().name(TEXT("Kim")).group(TEXT("친구")).bell(TEXT("ding")));
    other.file(oid, TEXT("Work, 친구들"));
    const DWORD row = book.examine().at(0).row.value();
    expectMended({.kind = Kind::lostGroup,
                  .contact = oid,
                  .row = row,
                  .canBeMended = true,
                  .text = textOf("contact ", oid, " is in group \"친구\", which is not among its categories")});
    EXPECT_EQ(CString(), extensionRowOf(oid)->group);
    EXPECT_EQ(CString(TEXT("ding")), extensionRowOf(oid)->bell);
}

TEST_F(PhoneBookCheckTest, TakesTheRowOfAContactThatIsGoneWithItsSlots) {
    const DWORD oid = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).business(TEXT("02-2")));
    SpeedDialInfo mobile = dial(2).of(oid).mobile(TEXT("010-1"));
    SpeedDialInfo business = dial(5).of(oid).business(TEXT("02-2"));
    ASSERT_EQ(S_OK, book->insertSpeedDialInfo(2, &mobile));
    ASSERT_EQ(S_OK, book->insertSpeedDialInfo(5, &business));
    speed_dial::addRow({.slot = 7, .telType = 4, .number = TEXT("0103")});
    ASSERT_THAT(book.examine(), IsEmpty());
    other.remove(oid);
    const DWORD row = book.examine().at(0).row.value();
    const std::string whose = textOf(" is of contact ", oid, ", which does not exist");
    expectMended({.kind = Kind::rowOfMissingContact,
                  .contact = oid,
                  .row = row,
                  .canBeMended = true,
                  .text = textOf("extension row ", row, whose.c_str())});
    EXPECT_THAT(extensionRows(), IsEmpty());
    EXPECT_THAT(speed_dial::rows(), ElementsAre(speed_dial::Row{.slot = 7, .telType = 4, .number = TEXT("0103")}));
}

TEST_F(PhoneBookCheckTest, TakesEveryRowOfAContactThatIsGone) {
    addExtensionRow(4711, TEXT("a"));
    addExtensionRow(4711, TEXT("b"));
    addExtensionRow(4712);
    EXPECT_EQ(3u, book.examine().size());
    const auto [mended, left] = book.mend();
    EXPECT_EQ(3u, mended.size());
    EXPECT_THAT(left, IsEmpty());
    EXPECT_THAT(extensionRows(), IsEmpty());
}

TEST_F(PhoneBookCheckTest, DoesNotTakeASlotFromAContactThatHasItByNow) {
    const DWORD living = book.add(contact().name(TEXT("Lee")).home(TEXT("031-1")));
    SpeedDialInfo home = dial(5).of(living).home(TEXT("031-1"));
    ASSERT_EQ(S_OK, book->insertSpeedDialInfo(5, &home));
    const DWORD row = addExtensionRow(4711, TEXT(""), 0x0503);
    const std::string whose =
        " is of contact 4711, which does not exist, but has slot 5 of another one; set that slot again";
    expectLeft({.kind = Kind::rowOfMissingContact,
                .contact = 4711,
                .row = row,
                .text = textOf("extension row ", row, whose.c_str())});
}

TEST_F(PhoneBookCheckTest, EmptiesASlotThatAnotherContactNamesButDoesNotHave) {
    book.add(contact().name(TEXT("Lee")).home(TEXT("031-1")).slots(0x0500));
    speed_dial::addRow({.slot = 5, .telType = 8, .number = TEXT("0322")});
    addExtensionRow(4711, TEXT(""), 0x0500);
    EXPECT_EQ(1u, book.mend().first.size());
    EXPECT_THAT(speed_dial::rows(), IsEmpty());
}

TEST_F(PhoneBookCheckTest, TakesTheRowThatAContactLeftWhichCouldNotBeAdded) {
    const DWORD row = addExtensionRow(0, TEXT("Work"));
    expectMended({.kind = Kind::rowOfNoContact,
                  .contact = 0,
                  .row = row,
                  .canBeMended = true,
                  .text = textOf("extension row ", row, " is of no contact")});
    EXPECT_THAT(extensionRows(), IsEmpty());
}

TEST_F(PhoneBookCheckTest, LeavesARowThatNobodyCanFind) {
    const DWORD row = addRow(PBDBTBL_PHONEBOOKEXT, {CCeDBProp::ofText(0x103, TEXT("Work"))});
    expectLeft({.kind = Kind::rowOfNoContact,
                .row = row,
                .text = textOf("extension row ", row, " does not say whose it is; nobody finds it, and it can stay")});
}

TEST_F(PhoneBookCheckTest, LeavesARowThatNamesItsContactInAnotherType) {
    const DWORD row = addRow(PBDBTBL_PHONEBOOKEXT, {CCeDBProp::ofI2(0x100, 4711)});
    const Findings found = book.examine();
    ASSERT_EQ(1u, found.size());
    EXPECT_EQ(row, found[0].row);
    EXPECT_FALSE(found[0].canBeMended);
    expectLeft(found[0]);
}

TEST_F(PhoneBookCheckTest, LeavesAContactWithTwoRows) {
    const DWORD oid = book.add(contact().name(TEXT("Kim")).group(TEXT("Work")));
    addExtensionRow(oid, TEXT("lost"));
    expectLeft({.kind = Kind::repeatedRow,
                .contact = oid,
                .text = textOf("contact ", oid, " has 2 extension rows; delete the contact and add it again")});
}

TEST_F(PhoneBookCheckTest, TakesTheSecondRowOnceItsContactIsDeleted) {
    const DWORD oid = book.add(contact().name(TEXT("Kim")).group(TEXT("Work")));
    addExtensionRow(oid);
    ASSERT_EQ(S_OK, book->deletePBRecord(oid));
    EXPECT_EQ(1u, book.mend().first.size());
    EXPECT_THAT(extensionRows(), IsEmpty());
}

// Speed dial

TEST_F(PhoneBookCheckTest, LeavesASlotWithTwoRows) {
    speed_dial::addRow({.slot = 99, .telType = 4, .number = TEXT("0101")});
    speed_dial::addRow({.slot = 99, .telType = 4, .number = TEXT("0102")});
    expectLeft({.kind = Kind::repeatedSlot, .slot = 99, .text = "slot 99 holds 2 numbers; clear it and set it again"});
}

TEST_F(PhoneBookCheckTest, LeavesRowsOfSlotsThatThereAreNot) {
    for (const int slot : {0, 1, 99, 100, -1})
        speed_dial::addRow({.slot = slot, .telType = 4, .number = TEXT("0101")});
    const auto [mended, left] = book.mend();
    EXPECT_THAT(mended, IsEmpty());
    ASSERT_EQ(3u, left.size());
    EXPECT_EQ("there is no slot -1, but a number is in it; clear all slots and set them again", left[0].text);
    EXPECT_EQ(0, left[1].slot);
    EXPECT_EQ(100, left[2].slot);
    for (const PhoneBookFinding& finding : left)
        EXPECT_EQ(Kind::impossibleSlot, finding.kind);
}

// Groups

TEST_F(PhoneBookCheckTest, GivesACategoryItsGroup) {
    const CEOID oid = addCategory(TEXT("동호회"), 40);
    expectMended({.kind = Kind::categoryWithoutGroup,
                  .group = 40,
                  .category = oid,
                  .canBeMended = true,
                  .text = "category \"동호회\" has no group"});
    EXPECT_THAT(groups(), ElementsAre(Group(40, TEXT("동호회"))));
}

TEST_F(PhoneBookCheckTest, GivesAGroupTheNameOfItsCategory) {
    const CEOID oid = addCategory(TEXT("chess"), 40);
    addGroup(40, TEXT("tea"));
    expectMended({.kind = Kind::groupOfAnotherName,
                  .group = 40,
                  .category = oid,
                  .canBeMended = true,
                  .text = "group \"tea\" has another name than its category, \"chess\""});
    EXPECT_THAT(groups(), ElementsAre(Group(40, TEXT("chess"))));
}

TEST_F(PhoneBookCheckTest, GivesACategoryTheGroupWhoseNameBecomesFree) {
    addCategory(TEXT("tea"), 30);
    addCategory(TEXT("chess"), 40);
    addGroup(40, TEXT("tea"));
    EXPECT_EQ(2u, book.mend().first.size());
    EXPECT_THAT(groups(), UnorderedElementsAre(Group(30, TEXT("tea")), Group(40, TEXT("chess"))));
    EXPECT_THAT(book.examine(), IsEmpty());
}

TEST_F(PhoneBookCheckTest, DoesNotMakeASecondGroupOfOneName) {
    const CEOID oid = addCategory(TEXT("chess"), 40);
    addGroup(2, TEXT("chess"));
    expectLeft({.kind = Kind::categoryWithoutGroup,
                .group = 40,
                .category = oid,
                .text = "category \"chess\" has no group, and a group with another ID has its name; rename the "
                        "category"});
}

TEST_F(PhoneBookCheckTest, DoesNotGiveAGroupTheNameOfAnother) {
    const CEOID oid = addCategory(TEXT("chess"), 40);
    addGroup(2, TEXT("chess"));
    addGroup(40, TEXT("tea"));
    expectLeft({.kind = Kind::groupOfAnotherName,
                .group = 40,
                .category = oid,
                .text = "group \"tea\" has another name than its category, \"chess\", and so has another group; "
                        "rename the category"});
}

TEST_F(PhoneBookCheckTest, LeavesGroupsOfOneId) {
    addGroup(3, TEXT("chess"));
    addGroup(3, TEXT("tea"));
    expectLeft({.kind = Kind::repeatedGroupId,
                .group = 3,
                .text = "2 groups have the ID 3: \"chess\", \"tea\"; delete all but one and add them again"});
}

TEST_F(PhoneBookCheckTest, LeavesGroupsOfOneName) {
    addGroup(3, TEXT("chess"));
    addGroup(4, TEXT("chess"));
    expectLeft({.kind = Kind::repeatedGroupName,
                .name = TEXT("chess"),
                .text = "2 groups are called \"chess\"; rename all but one"});
}

TEST_F(PhoneBookCheckTest, LeavesCategoriesOfOneIdAndMakesTheirGroup) {
    addCategory(TEXT("chess"), 40);
    addCategory(TEXT("tea"), 40);
    const auto [mended, left] = book.mend();
    ASSERT_EQ(1u, mended.size());
    EXPECT_EQ(Kind::categoryWithoutGroup, mended[0].kind);
    EXPECT_THAT(groups(), ElementsAre(Group(40, TEXT("chess"))));
    EXPECT_THAT(left, ElementsAre(PhoneBookFinding{
                          .kind = Kind::repeatedCategoryId,
                          .group = 40,
                          .text = "2 categories have the ID 40: \"chess\", \"tea\"; delete all but one and add them "
                                  "again"}));
    expectLeft(left[0]);
}

// Calls

TEST_F(PhoneBookCheckTest, LeavesCallsBeyondTheHundred) {
    for (int i = 0; i < 100; ++i)
        addRow(PBDBTBL_CALLHISTORY, {CCeDBProp::ofText(0x401, TEXT("0101"))});
    EXPECT_THAT(book.examine(), IsEmpty());
    addRow(PBDBTBL_CALLHISTORY, {CCeDBProp::ofText(0x401, TEXT("0101"))});
    expectLeft({.kind = Kind::tooManyCalls,
                .text = "the history has 101 calls and should have 100 at most; delete the oldest"});
}

// What is in order

TEST_F(PhoneBookCheckTest, HasNothingAgainstWhatSlotsAndContactsSayOfEachOther) {
    speed_dial::addRow({.slot = 1, .telType = 4, .number = TEXT("0101")});  // nobody's
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-2")).slots(2));   // an empty slot
    book.add(contact().name(TEXT("Lee")).mobile(TEXT("010-3")).slots(1));   // another's number
    book.add(
        contact().name(TEXT("Cho")).mobile(TEXT("010-4")).home(TEXT("031-4")).slots(0xFF01));  // one that there is not
    EXPECT_THAT(book.examine(), IsEmpty());
}

TEST_F(PhoneBookCheckTest, HasNothingAgainstGroupsWithoutCategoriesNorGroupsThatThereAreNot) {
    addGroup(70, TEXT("nobody's"));
    book.add(contact().name(TEXT("Kim")).group(TEXT("no group at all")));
    EXPECT_THAT(book.examine(), IsEmpty());
}

TEST_F(PhoneBookCheckTest, HasNothingAgainstAContactWithCategoriesThatHasNoGroup) {
    const DWORD oid = book.add(contact().name(TEXT("Kim")).bell(TEXT("ding")));
    other.file(oid, TEXT("Work, Family"));
    EXPECT_THAT(book.examine(), IsEmpty());
}

TEST_F(PhoneBookCheckTest, HasNothingAgainstAGroupWhoseNameReadsDifferentlyInAList) {
    for (const WCHAR* group :
         {TEXT("a,b"), TEXT("a;b"), TEXT(" a "), TEXT("\"a\""), TEXT("a,"), TEXT(";"), TEXT(",")}) {
        const DWORD oid = book.add(contact().name(TEXT("Kim")).group(group));
        EXPECT_THAT(book.examine(), IsEmpty()) << CString(group);
        PBRecord record = contact().name(TEXT("Lee")).group(group).record();
        ASSERT_EQ(S_OK, book->updatePBRecord(oid, record));
        EXPECT_THAT(book.examine(), IsEmpty()) << CString(group);
    }
}

TEST_F(PhoneBookCheckTest, HasNothingAgainstACategoryInQuotes) {
    const CEOID oid = other.addFiled(TEXT("Kim"), TEXT("\"Work, home\" , Family"));
    book.mend();
    EXPECT_EQ(CString(TEXT("Work, home")), extensionRowOf(oid)->group);
    EXPECT_THAT(book.examine(), IsEmpty());
}

TEST_F(PhoneBookCheckTest, HasNothingAgainstARowThatIsOlderThanItsContact) {
    const DWORD oid = book.add(contact().name(TEXT("Kim")).group(TEXT("Work")).mobile(TEXT("010-1")));
    other.rename(oid, TEXT("Lee"));
    EXPECT_THAT(book.examine(), IsEmpty());
}

// How it looks

TEST(PhoneBookCheck, WritesNothingWhenItLooks) {
    const testing_support::TemporaryStore store;
    CheckedPhoneBook book;
    const following::OtherProgram other;
    other.addFiled(TEXT("Kim"), TEXT("Work"));
    addExtensionRow(4711);
    addCategory(TEXT("chess"), 40);
    const DatabaseReader reader(szContactsDatabase, ContactProperty::fileAs);
    const StoreStamp before = reader.stamp();
    EXPECT_EQ(3u, book.examine().size());
    EXPECT_TRUE(before == reader.stamp());
}

TEST_F(PhoneBookCheckTest, SeesWhatTheCallersUnitHasWritten) {
    const ObjectStoreBatch unit;
    addExtensionRow(4711);
    EXPECT_EQ(1u, book.examine().size());
    EXPECT_EQ(1u, book.mend().first.size());
    EXPECT_THAT(book.examine(), IsEmpty());
}

TEST_F(PhoneBookCheckTest, AnswersAFailureWhereATableIsMissing) {
    addExtensionRow(4711);
    following::openBeside(PBDBTBL_CALLHISTORY)->drop();
    Findings findings(1);
    Findings left(1);
    EXPECT_EQ(E_FAIL, book.check().examine(findings));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, GetLastError());
    EXPECT_THAT(findings, IsEmpty());
    findings.resize(1);
    EXPECT_EQ(E_FAIL, book.check().mend(findings, left));
    EXPECT_THAT(findings, IsEmpty());
    EXPECT_THAT(left, IsEmpty());
    EXPECT_EQ(1u, extensionRows().size());
}

}  // namespace
}  // namespace PhoneBook::check_test
