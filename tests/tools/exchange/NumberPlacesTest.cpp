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
    const std::vector<std::pair<WString, NumberKind>> words = {
        {TEXT("CELL VOICE"), NumberKind::mobile}, {TEXT("HOME VOICE"), NumberKind::home},
        {TEXT("WORK"), NumberKind::business},     {TEXT("FAX HOME"), NumberKind::fax},
        {TEXT("HomeFAX"), NumberKind::fax},       {TEXT("PAGER WORK"), NumberKind::pager},
        {TEXT("WORK CELL"), NumberKind::mobile},  {TEXT("휴대 전화"), NumberKind::mobile},
        {TEXT("집 전화"), NumberKind::home},      {TEXT("회사 팩스"), NumberKind::fax},
        {TEXT("직장"), NumberKind::business},     {TEXT("삐삐"), NumberKind::pager}};
    for (const auto& [word, kind] : words)
        EXPECT_EQ(Tool::numberKindOf(word), kind) << utf8Of(word);
    EXPECT_EQ(Tool::numberKindOf(TEXT("VOICE PREF")), std::nullopt);
    EXPECT_EQ(Tool::numberKindOf(TEXT("")), std::nullopt);
}

TEST(NumberPlaces, OfNumbersOfNoKindAreTheFirstFreeOnes) {
    const ContactDraft draft =
        placed({{NumberKind::other, TEXT("1")}, {NumberKind::mobile, TEXT("2")}, {NumberKind::other, TEXT("3")}});
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "2");
    EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "1");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSTEL), "3");
    EXPECT_THAT(draft.remarks, IsEmpty());
}

TEST(NumberPlaces, AreTwoForANumberOfTwoKindsAndNoneMoreForOneThatIsThere) {
    const ContactDraft draft =
        placed({{NumberKind::mobile, TEXT("1")}, {NumberKind::home, TEXT("1")}, {NumberKind::other, TEXT("1")}});
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "1");
    EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "1");
    EXPECT_FALSE(draft.has(PBDBATTR_BUSINESSTEL));
    EXPECT_THAT(draft.remarks, IsEmpty());
}

TEST(NumberPlaces, OfFaxesAndPagersAreNotForVoice) {
    const ContactDraft draft = placed({{NumberKind::fax, TEXT("1")},
                                       {NumberKind::fax, TEXT("2")},
                                       {NumberKind::pager, TEXT("3")},
                                       {NumberKind::pager, TEXT("4")}});
    EXPECT_FALSE(draft.has(PBDBATTR_MOBILETEL));
    EXPECT_THAT(draft.remarks, ElementsAre("its number \"2\" has no place and is left out",
                                           "its number \"4\" has no place and is left out"));
}

TEST(NumberPlaces, AreGivenToThePreferredFirst) {
    const ContactDraft draft =
        placed({{NumberKind::home, TEXT("1")}, {NumberKind::home, TEXT("2"), 7}, {NumberKind::home, TEXT("3"), 3}});
    EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "3");
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "2");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSTEL), "1");
    EXPECT_EQ(in(draft, PBDBATTR_PRIMARYTELNO), "8");
}

TEST(NumberPlaces, GiveTheMostPreferredTheFirstRankWhereverItIs) {
    const ContactDraft elsewhere = placed({{NumberKind::other, TEXT("1"), 1}, {NumberKind::mobile, TEXT("2"), 2}});
    EXPECT_EQ(in(elsewhere, PBDBATTR_HOMETEL), "1");
    EXPECT_EQ(in(elsewhere, PBDBATTR_PRIMARYTELNO), "8");
    const ContactDraft twice = placed({{NumberKind::other, TEXT("1"), 1}, {NumberKind::mobile, TEXT("1")}});
    EXPECT_EQ(in(twice, PBDBATTR_PRIMARYTELNO), "4");
    const ContactDraft leftOut =
        placed({{NumberKind::fax, TEXT("1"), 1}, {NumberKind::fax, TEXT("2"), 2}, {NumberKind::home, TEXT("3"), 3}});
    EXPECT_EQ(in(leftOut, PBDBATTR_PRIMARYTELNO), "2048");
}

TEST(PersonName, IsWrittenInTheOrderOfItsScript) {
    EXPECT_EQ(Tool::PersonName({.family = TEXT("Kim"), .given = TEXT("Anna"), .middle = TEXT("M.")}).whole(),
              TEXT("Anna M. Kim"));
    EXPECT_EQ(Tool::PersonName({.family = TEXT("남궁"), .given = TEXT("민수")}).whole(), TEXT("남궁민수"));
    EXPECT_EQ(Tool::PersonName({.family = TEXT("山田"), .given = TEXT("はなこ")}).whole(), TEXT("山田はなこ"));
    EXPECT_EQ(Tool::PersonName({.family = TEXT("김"), .given = TEXT("Anna")}).whole(), TEXT("Anna 김"));
    EXPECT_EQ(Tool::PersonName({.family = TEXT("김")}).whole(), TEXT("김"));
    EXPECT_EQ(Tool::PersonName({}).whole(), TEXT(""));
}

TEST(PersonName, IsTakenApartAsThePhoneBookDoes) {
    const auto parts = [](WStringView name) {
        const Tool::PersonName taken = Tool::partsOfName(name);
        return utf8Of(taken.family) + "|" + utf8Of(taken.given);
    };
    EXPECT_EQ(parts(TEXT("Anna Kim")), "Kim|Anna");
    EXPECT_EQ(parts(TEXT("Kim, Anna")), "Kim|Anna");
    EXPECT_EQ(parts(TEXT("김 민수")), "김|민수");
    EXPECT_EQ(parts(TEXT("김민수")), "|김민수");
    EXPECT_EQ(parts(TEXT("")), "|");
}
