// Tables of other programs: which column is what, and what the phone book can hold of a row.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/exchange/Drafts.h"
#include "tools/tessera/Failure.h"

using namespace exchange_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

ContactDraft row(const std::string& headings, const std::string& values) {
    return table(headings + "\n" + values + "\n").drafts.at(0);
}

template <class Act>
std::string failureOf(Act act) {
    try {
        act();
    } catch (const Tool::Failure& failure) {
        return failure.what();
    }
    return "no failure";
}

}  // namespace

TEST(CsvTable, HasColumnsInAnyOrderUnderTheirNames) {
    const ContactDraft draft = row(
        "Notes,Business Fax,Pager,Business Phone,Home Phone,Mobile Phone,Last Name,First Name,Birthday,E-mail Address",
        "n,5,4,3,2,1,Kim,Anna,1990-03-05,a@x");
    EXPECT_EQ(nameIn(draft), "Anna Kim");
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "1");
    EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "2");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSTEL), "3");
    EXPECT_EQ(in(draft, PBDBATTR_PAGER), "4");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSFAX), "5");
    EXPECT_EQ(in(draft, PBDBATTR_EMAIL), "a@x");
    EXPECT_EQ(in(draft, PBDBATTR_BIRTHDAY), "1990-03-05");
    EXPECT_EQ(in(draft, PBDBATTR_BODY), "n");
    EXPECT_EQ(draft.note(), "");
}

TEST(CsvTable, KnowsKoreanHeadingsInAnySpelling) {
    const ContactDraft draft = row("성;이름;휴대폰 번호;집전화;회사 전화;팩스;이메일;생년월일;메모;그룹",
                                   "김;민수;1;2;3;4;a@x;1990. 3. 5.;n;친구");
    EXPECT_EQ(nameIn(draft), "김민수");
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "1");
    EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "2");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSTEL), "3");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSFAX), "4");
    EXPECT_EQ(in(draft, PBDBATTR_BIRTHDAY), "1990-03-05");
    EXPECT_EQ(in(draft, PBDBATTR_GROUP), "친구");
}

TEST(CsvTable, KnowsTheHeadingsOfAWorkplace) {
    const ContactDraft draft = row("이름,근무지 전화,근무지 팩스,기타 팩스", "민수,1,2,2");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSTEL), "1");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSFAX), "2");
    EXPECT_EQ(draft.note(), "");
}

TEST(CsvTable, HasTheSeparatorWithWhichItsHeadingsAreKnown) {
    for (const std::string separator : {",", ";", "\t"}) {
        const ContactDraft draft = row("Name" + separator + "Mobile Phone", "Anna" + separator + "010-1");
        EXPECT_EQ(nameIn(draft), "Anna") << separator;
        EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "010-1") << separator;
    }
    const DraftedFile named = table("sep=;\r\nName;Phone\r\n\"A;B\";1\r\n");
    EXPECT_EQ(nameIn(named.drafts.at(0)), "A;B");
    EXPECT_EQ(named.drafts.at(0).line, 3);
}

TEST(CsvTable, HasNumbersWithTheirTypesInColumnsBesideThem) {
    const ContactDraft draft =
        row("Name,Phone 1 - Type,Phone 1 - Value,Phone 2 - Label,Phone 2 - Value,Phone 3 - Value",
            "Anna,Work Fax,5,* Mobile,1 ::: 11,9");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSFAX), "5");
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "1");
    EXPECT_EQ(in(draft, PBDBATTR_PRIMARYTELNO), "4");
    EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "11");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSTEL), "9");
    EXPECT_THAT(draft.remarks, ElementsAre("its second mobile number \"11\" is kept as its home number"));
}

TEST(CsvTable, HasNumberedColumnsInTheOrderOfTheirNumbers) {
    const ContactDraft draft = row("Name,Phone 10 - Value,Phone 2 - Value", "Anna,10,2");
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "2");
    EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "10");
}

TEST(CsvTable, PrefersNoOtherNumberWhereThePreferredOneIsLost) {
    const ContactDraft draft = row("Name,Home Phone,Phone 1 - Label,Phone 1 - Value", "Anna,02-1,* Mobile,8.21012E+11");
    EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "02-1");
    EXPECT_FALSE(draft.has(PBDBATTR_PRIMARYTELNO));
}

TEST(CsvTable, KeepsLeadingZerosAndUndoesWhatSpreadsheetsNeedForThat) {
    const ContactDraft draft =
        row("Name,Mobile,Home Phone,Work Phone", "Anna,=\"01012345678\",'0212345678,8.21012E+11");
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "01012345678");
    EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "0212345678");
    EXPECT_EQ(draft.note(), "its number \"8.21012E+11\" lost digits in a spreadsheet and is left out");
}

TEST(CsvTable, TakesNumbersOutOfAddresses) {
    const ContactDraft draft = row("Name,Mobile,Home Phone", "Anna,tel:+82-10-1,https://x");
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "+82-10-1");
    EXPECT_EQ(draft.note(), "its address \"https://x\" is no telephone number and is left out");
}

TEST(CsvTable, HasGroupsAsEachProgramWritesThem) {
    EXPECT_EQ(in(row("Name,Categories", "Anna,Friends;Tennis"), PBDBATTR_GROUP), "Friends");
    EXPECT_EQ(in(row("Name,Categories", "Anna,Friends;Tennis"), PBDBATTR_CATEGORIES), "Friends, Tennis");
    const ContactDraft labelled = row("Name,Group Membership", "Anna,* myContacts ::: 가족 ::: * Tennis");
    EXPECT_EQ(in(labelled, PBDBATTR_GROUP), "가족");
    EXPECT_EQ(in(labelled, PBDBATTR_CATEGORIES), "가족, Tennis");
    EXPECT_EQ(in(row("Name,Labels", "Anna,* myContacts"), PBDBATTR_GROUP), "");
    const ContactDraft whole = row("Name,Group", "Anna,\"a, b\"");
    EXPECT_EQ(in(whole, PBDBATTR_GROUP), "a, b");
    EXPECT_FALSE(whole.has(PBDBATTR_CATEGORIES));
}

TEST(CsvTable, PutsABirthdayTogetherFromThreeColumns) {
    EXPECT_EQ(in(row("Display Name,Birth Year,Birth Month,Birth Day", "Anna,1990,3,5"), PBDBATTR_BIRTHDAY),
              "1990-03-05");
    EXPECT_EQ(row("Name,Birth Year,Birth Month,Birth Day", "Anna,,3,5").note(),
              "its birthday \"--03-05\" has no year and is left out");
}

TEST(CsvTable, NamesTheColumnsThatItLeavesOut) {
    const ContactDraft draft = row("Name,Street,Shoe size", "Anna,Road 1,,extra");
    EXPECT_THAT(draft.leftOut, ElementsAre("column \"Street\"", "values behind the last column"));
}

TEST(CsvTable, TakesTheUsersWordForAColumn) {
    const DraftedFile file = table("Wer,Funk,Name\nAnna,1,x\n", {"Wer=name", "Funk=mobile", "Name=nothing"});
    EXPECT_EQ(nameIn(file.drafts.at(0)), "Anna");
    EXPECT_EQ(in(file.drafts.at(0), PBDBATTR_MOBILETEL), "1");
    EXPECT_EQ(file.drafts.at(0).note(), "");
    const DraftedFile equals = table("Name,a=b\nAnna,1\n", {"a=b=home"});
    EXPECT_EQ(in(equals.drafts.at(0), PBDBATTR_HOMETEL), "1");
}

TEST(CsvTable, RefusesAMappingThatMeansNothing) {
    EXPECT_THAT(failureOf([] { table("Name\nAnna\n", {"Name"}); }), HasSubstr("COLUMN=FIELD"));
    EXPECT_THAT(failureOf([] { table("Name\nAnna\n", {"=name"}); }), HasSubstr("COLUMN=FIELD"));
    EXPECT_THAT(failureOf([] { table("Name\nAnna\n", {"Name=shoe"}); }),
                HasSubstr("there is no field \"shoe\"; there are name,"));
    EXPECT_THAT(failureOf([] { table("Name,\nAnna\n", {"#=name"}); }), HasSubstr("there is no column \"#\""));
    EXPECT_THAT(failureOf([] { table("Name\nAnna\n", {"Shoe=name"}); }),
                HasSubstr("there is no column \"Shoe\"; there are \"Name\""));
}

TEST(CsvTable, WhoseColumnsTellOfNobodyIsAnError) {
    EXPECT_THAT(failureOf([] { table("Street,Birthday\nRoad,1990-03-05\n"); }),
                HasSubstr("it has \"Street\", \"Birthday\""));
}

TEST(CsvTable, ReportsRowsThatCannotBeContacts) {
    const DraftedFile file = table("Name,Phone\n,\nA" + std::string(1, '\0') + "B,1\nAnna,2\n\"open,3\nPaul,4\n");
    EXPECT_THAT(namesIn(file), ElementsAre("! it says nothing of anybody", "! it holds a zero character", "Anna",
                                           "! a quote opens in it that nothing closes", "Paul"));
    EXPECT_EQ(file.drafts.back().line, 6);
}

TEST(CsvTable, MakesEndsOfLinesLineFeeds) {
    EXPECT_EQ(in(row("Name,Notes", "Anna,\"a\r\nb\rc\""), PBDBATTR_BODY), "a\nb\nc");
}
