// Words for kinds of numbers, and where several numbers go; names in parts and whole.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/exchange/Drafts.h"
#include "tools/tessera/exchange/NumberPlaces.h"
#include "tools/tessera/exchange/PersonName.h"

using namespace exchange_test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Tool::FoundNumber;
using Tool::NumberKind;

namespace {

ContactDraft placed(std::vector<FoundNumber> numbers) {
    ContactDraft draft;
    Tool::placeNumbers(draft, std::move(numbers));
    return draft;
}

}  // namespace

TEST(NumberKinds, AreKnownByWordsOfCardsLabelsAndHeadings) {
    const std::vector<std::pair<std::u16string, NumberKind>> words = {
        {u"CELL VOICE", NumberKind::mobile}, {u"HOME VOICE", NumberKind::home},  {u"WORK", NumberKind::business},
        {u"FAX HOME", NumberKind::fax},      {u"HomeFAX", NumberKind::fax},      {u"PAGER WORK", NumberKind::pager},
        {u"WORK CELL", NumberKind::mobile},  {u"휴대 전화", NumberKind::mobile}, {u"집 전화", NumberKind::home},
        {u"회사 팩스", NumberKind::fax},     {u"직장", NumberKind::business},    {u"삐삐", NumberKind::pager}};
    for (const auto& [word, kind] : words)
        EXPECT_EQ(Tool::numberKindOf(word), kind) << utf8Of(word);
    EXPECT_EQ(Tool::numberKindOf(u"VOICE PREF"), std::nullopt);
    EXPECT_EQ(Tool::numberKindOf(u""), std::nullopt);
}

TEST(NumberPlaces, OfNumbersOfNoKindAreTheFirstFreeOnes) {
    const ContactDraft draft =
        placed({{NumberKind::other, u"1"}, {NumberKind::mobile, u"2"}, {NumberKind::other, u"3"}});
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "2");
    EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "1");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSTEL), "3");
    EXPECT_THAT(draft.remarks, IsEmpty());
}

TEST(NumberPlaces, AreTwoForANumberOfTwoKindsAndNoneMoreForOneThatIsThere) {
    const ContactDraft draft =
        placed({{NumberKind::mobile, u"1"}, {NumberKind::home, u"1"}, {NumberKind::other, u"1"}});
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "1");
    EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "1");
    EXPECT_FALSE(draft.has(PBDBATTR_BUSINESSTEL));
    EXPECT_THAT(draft.remarks, IsEmpty());
}

TEST(NumberPlaces, OfFaxesAndPagersAreNotForVoice) {
    const ContactDraft draft = placed(
        {{NumberKind::fax, u"1"}, {NumberKind::fax, u"2"}, {NumberKind::pager, u"3"}, {NumberKind::pager, u"4"}});
    EXPECT_FALSE(draft.has(PBDBATTR_MOBILETEL));
    EXPECT_THAT(draft.remarks, ElementsAre("its number \"2\" has no place and is left out",
                                           "its number \"4\" has no place and is left out"));
}

TEST(NumberPlaces, AreGivenToThePreferredFirst) {
    const ContactDraft draft =
        placed({{NumberKind::home, u"1"}, {NumberKind::home, u"2", 7}, {NumberKind::home, u"3", 3}});
    EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "3");
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "2");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSTEL), "1");
    EXPECT_EQ(in(draft, PBDBATTR_PRIMARYTELNO), "8");
}

TEST(NumberPlaces, GiveTheMostPreferredTheFirstRankWhereverItIs) {
    const ContactDraft elsewhere = placed({{NumberKind::other, u"1", 1}, {NumberKind::mobile, u"2", 2}});
    EXPECT_EQ(in(elsewhere, PBDBATTR_HOMETEL), "1");
    EXPECT_EQ(in(elsewhere, PBDBATTR_PRIMARYTELNO), "8");
    const ContactDraft twice = placed({{NumberKind::other, u"1", 1}, {NumberKind::mobile, u"1"}});
    EXPECT_EQ(in(twice, PBDBATTR_PRIMARYTELNO), "4");
    const ContactDraft leftOut =
        placed({{NumberKind::fax, u"1", 1}, {NumberKind::fax, u"2", 2}, {NumberKind::home, u"3", 3}});
    EXPECT_EQ(in(leftOut, PBDBATTR_PRIMARYTELNO), "2048");
}

TEST(PersonName, IsWrittenInTheOrderOfItsScript) {
    EXPECT_EQ(Tool::PersonName({.family = u"Kim", .given = u"Anna", .middle = u"M."}).whole(), u"Anna M. Kim");
    EXPECT_EQ(Tool::PersonName({.family = u"남궁", .given = u"민수"}).whole(), u"남궁민수");
    EXPECT_EQ(Tool::PersonName({.family = u"山田", .given = u"はなこ"}).whole(), u"山田はなこ");
    EXPECT_EQ(Tool::PersonName({.family = u"김", .given = u"Anna"}).whole(), u"Anna 김");
    EXPECT_EQ(Tool::PersonName({.family = u"김"}).whole(), u"김");
    EXPECT_EQ(Tool::PersonName({}).whole(), u"");
}

TEST(PersonName, IsTakenApartAsThePhoneBookDoes) {
    const auto parts = [](std::u16string_view name) {
        const Tool::PersonName taken = Tool::partsOfName(name);
        return utf8Of(taken.family) + "|" + utf8Of(taken.given);
    };
    EXPECT_EQ(parts(u"Anna Kim"), "Kim|Anna");
    EXPECT_EQ(parts(u"Kim, Anna"), "Kim|Anna");
    EXPECT_EQ(parts(u"김 민수"), "김|민수");
    EXPECT_EQ(parts(u"김민수"), "|김민수");
    EXPECT_EQ(parts(u""), "|");
}
