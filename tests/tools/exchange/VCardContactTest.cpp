// What the phone book can hold of a card, and what is said of the rest.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/ToolRunner.h"
#include "tests/tools/CardText.h"
#include "tests/tools/exchange/Drafts.h"
#include "tools/tessera/Failure.h"

using namespace exchange_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing_support::utf16Bytes;
using testing_support::vcard;

TEST(VCardContact, IsCalledByTheWholeName) {
    const ContactDraft draft = card("N:Kim;Anna;;;\nFN:Anna Kim\n");
    EXPECT_EQ(nameIn(draft), "Anna Kim");
    EXPECT_EQ(draft.note(), "");
}

TEST(VCardContact, IsCalledByItsPartsWhenThereIsNoWholeName) {
    EXPECT_EQ(nameIn(card("N:Kim;Anna;Marie;Dr.;Jr.\n")), "Dr. Anna Marie Kim Jr.");
    EXPECT_EQ(nameIn(card("N:김;민수\n")), "김민수");
    EXPECT_EQ(nameIn(card("N:山田;花子;;;\n")), "山田花子");
    EXPECT_EQ(nameIn(card("N:;민수;;;\nFN: \n")), "민수");
}

TEST(VCardContact, IsCalledByItsOrganisationOrNicknameWhenItHasNoName) {
    EXPECT_EQ(nameIn(card("ORG:Acme\\, Inc.;Research\nN:;;;;\n")), "Acme, Inc. Research");
    EXPECT_EQ(nameIn(card("NICKNAME:Annie\n")), "Annie");
    const ContactDraft named = card("FN:Anna\nORG:Acme\nNICKNAME:Annie\n");
    EXPECT_EQ(named.note(), "left out, having no place: nickname, organisation");
}

TEST(VCardContact, SaysWhenTheNameInPartsIsAnother) {
    EXPECT_THAT(card("FN:Dad\nN:Kim;Minsu;;;\n").note(), HasSubstr("its name in parts, \"Minsu Kim\", has no place"));
}

TEST(VCardContact, HasItsNumbersByTheirTypes) {
    const ContactDraft draft =
        card("TEL;CELL;VOICE:1\nTEL;HOME:2\nTEL;WORK;VOICE:3\nTEL;PAGER:4\nTEL;WORK;FAX:5\n", "2.1");
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "1");
    EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "2");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSTEL), "3");
    EXPECT_EQ(in(draft, PBDBATTR_PAGER), "4");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSFAX), "5");
    EXPECT_EQ(draft.note(), "");
}

TEST(VCardContact, HasItsNumbersByTheLabelsOfTheirGroups) {
    const ContactDraft draft = card(
        "item1.TEL:1\nitem1.X-ABLabel:_$!<HomeFAX>!$_\nitem2.X-ABLabel:회사\nitem2.TEL:2\nITEM3.TEL:3\nitem3.X-ABLabel:"
        "휴대폰\n");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSFAX), "1");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSTEL), "2");
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "3");
    EXPECT_EQ(draft.note(), "");
}

TEST(VCardContact, TakesThePreferredOfSeveralNumbersAndMakesItPrimary) {
    for (const char* preferred : {"TEL;TYPE=CELL,pref:2\n", "TEL;TYPE=CELL;PREF=1:2\n", "TEL;PREF;CELL:2\n"}) {
        const ContactDraft draft = card(std::string("TEL;TYPE=CELL:1\n") + preferred);
        EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "2") << preferred;
        EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "1") << preferred;
        EXPECT_EQ(in(draft, PBDBATTR_PRIMARYTELNO), "4") << preferred;
        EXPECT_EQ(draft.note(), "its second mobile number \"1\" is kept as its home number");
    }
    EXPECT_EQ(in(card("TEL;PREF=50;TYPE=home:1\nTEL;PREF=2;TYPE=work:2\n"), PBDBATTR_PRIMARYTELNO), "16");
    EXPECT_EQ(in(card("TEL;TYPE=home:1\n"), PBDBATTR_PRIMARYTELNO), "");
}

TEST(VCardContact, TakesNumbersOutOfAddresses) {
    const ContactDraft draft = card(
        "TEL;VALUE=uri;TYPE=cell:tel:+82-10-1-2\nTEL;VALUE=uri;TYPE=work:tel:+82%2D2-3;ext=12\nTEL:TEL:119;phone-"
        "context=+82\nTEL;VALUE=uri:sip:a@b\n",
        "4.0");
    EXPECT_EQ(in(draft, PBDBATTR_MOBILETEL), "+82-10-1-2");
    EXPECT_EQ(in(draft, PBDBATTR_BUSINESSTEL), "+82-2-3");
    EXPECT_EQ(in(draft, PBDBATTR_HOMETEL), "119");
    EXPECT_THAT(draft.remarks, ElementsAre("\"ext=12\" behind the number \"tel:+82%2D2-3;ext=12\" is left out",
                                           "its address \"sip:a@b\" is no telephone number and is left out"));
}

TEST(VCardContact, TakesANumberOutOfAddressesWithinAddresses) {
    EXPECT_EQ(in(card("TEL:tel:TEL:%74el:1\n"), PBDBATTR_MOBILETEL), "1");
    std::string deep = "TEL:";
    for (int i = 0; i < 50'000; ++i)
        deep += "tel:";
    EXPECT_EQ(card(deep + "1\n").record.strMobileTelephoneNumber.GetLength(), 200'001);
}

TEST(VCardContact, KeepsOneEmailAddressThePreferred) {
    const ContactDraft draft = card("EMAIL:a@x\nEMAIL;TYPE=pref:b@x\nEMAIL:b@x\n");
    EXPECT_EQ(in(draft, PBDBATTR_EMAIL), "b@x");
    EXPECT_THAT(draft.remarks, ElementsAre("its e-mail address \"a@x\" has no place and is left out"));
}

TEST(VCardContact, HasItsBirthdayInAnyOfTheForms) {
    for (const std::string day : {"19900305", "1990-03-05", "1990-03-05T00:00:00Z", "19900305T120000"})
        EXPECT_EQ(in(card("BDAY:" + day + "\n"), PBDBATTR_BIRTHDAY), "1990-03-05") << day;
    EXPECT_EQ(in(card("BDAY;VALUE=date:1990-03-05\n"), PBDBATTR_BIRTHDAY), "1990-03-05");
}

TEST(VCardContact, SaysWhyItHasNoBirthday) {
    const auto noteOn = [](const std::string& line) { return card("FN:A\n" + line).note(); };
    EXPECT_EQ(noteOn("BDAY:--0305\n"), "its birthday \"--0305\" has no year and is left out");
    EXPECT_EQ(noteOn("BDAY;X-COMPANY-OMIT-YEAR=1604:1604-03-05\n"),
              "its birthday \"1604-03-05\" has no year and is left out");
    EXPECT_EQ(noteOn("BDAY:1990-02-30\n"), "its birthday \"1990-02-30\" is no date and is left out");
    EXPECT_EQ(noteOn("BDAY;VALUE=text:circa 1800\n"), "its birthday \"circa 1800\" is no date and is left out");
    EXPECT_EQ(noteOn("BDAY:1500-01-01\n"), "its birthday \"1500-01-01\" is a date that cannot be kept and is left out");
    EXPECT_EQ(noteOn("BDAY:\n"), "");
}

TEST(VCardContact, KeepsTheFirstOfSeveralNamesOfAKind) {
    const ContactDraft scripts = card("N;ALTID=1:山田;太郎;;;\nN;ALTID=1:Yamada;Taro;;;\n", "4.0");
    EXPECT_EQ(nameIn(scripts), "山田太郎");
    EXPECT_EQ(scripts.note(), "left out, having no place: further name");
    const ContactDraft nicknames = card("NICKNAME:Annie\nNICKNAME:Bee\n");
    EXPECT_EQ(nameIn(nicknames), "Annie");
    EXPECT_EQ(nicknames.note(), "left out, having no place: nickname");
}

TEST(VCardContact, HasSeveralNamesInOneOfItsParts) {
    const std::string stevenson = "N:Stevenson;John;Philip,Paul;Dr.;Jr.,M.D.\n";
    EXPECT_EQ(nameIn(card(stevenson)), "Dr. John Philip Paul Stevenson Jr. M.D.");
    EXPECT_EQ(nameIn(card("N:Stevenson\\, Sons;John\n")), "John Stevenson, Sons");
    EXPECT_EQ(card("FN:Dr. John Philip Paul Stevenson\\, Jr.\\, M.D.\n" + stevenson).note(), "");
    EXPECT_EQ(nameIn(card("N:Kim\\; Lee;Anna,Maria\n", "2.1")), "Anna,Maria Kim; Lee");  // which has no lists
    EXPECT_EQ(nameIn(card("N:Kim, Anna\n")), "Kim, Anna");
}

TEST(VCardContact, MissesNothingWhereOnlyBlanksDiffer) {
    EXPECT_EQ(card("FN:Anna Kim\nN: Kim ;Anna ;;;\n").note(), "");
    EXPECT_EQ(nameIn(card("N: Kim ;Anna ;;;\n")), "Anna Kim");
}

TEST(VCardContact, NamesPropertiesOfOursThatItDoesNotKnow) {
    EXPECT_EQ(card("FN:Anna\nX-TESSERA-SHOE-SIZE:38\n").note(), "left out, having no place: X-TESSERA-SHOE-SIZE");
}

TEST(VCardContact, SaysWhatItHasTwice) {
    const ContactDraft draft =
        card("FN:Anna\nFN:Anna\nFN:Ana\nBDAY:19900305\nBDAY:1990-03-05\nBDAY:1991-03-05\n", "4.0");
    EXPECT_EQ(nameIn(draft), "Anna");
    EXPECT_EQ(in(draft, PBDBATTR_BIRTHDAY), "1990-03-05");
    EXPECT_EQ(
        draft.note(),
        "its second birthday \"1991-03-05\" has no place and is left out; left out, having no place: further name");
}

TEST(VCardContact, HasTheFirstCategoryAsItsGroup) {
    const ContactDraft several = card("CATEGORIES:친구,테니스\\, 일요일\nCATEGORIES:회사\n");
    EXPECT_EQ(in(several, PBDBATTR_GROUP), "친구");
    EXPECT_EQ(in(several, PBDBATTR_CATEGORIES), "친구, \"테니스, 일요일\", 회사");
    const ContactDraft one = card("CATEGORIES:친구\n");
    EXPECT_EQ(in(one, PBDBATTR_GROUP), "친구");
    EXPECT_FALSE(one.has(PBDBATTR_CATEGORIES));  // comes with the group
    EXPECT_FALSE(card("X-TESSERA-GROUP:a\\;b\n").has(PBDBATTR_CATEGORIES));
    EXPECT_TRUE(card("X-TESSERA-GROUP:a\nX-TESSERA-CATEGORIES:\n").has(PBDBATTR_CATEGORIES));
}

TEST(VCardContact, HasAllItsNotes) {
    EXPECT_EQ(in(card("NOTE:a\\nb\\, c\nNOTE:d\n"), PBDBATTR_BODY), "a\nb, c\nd");
    EXPECT_EQ(in(card("NOTE;QUOTED-PRINTABLE:a=0D=0Ab\n", "2.1"), PBDBATTR_BODY), "a\nb");
}

TEST(VCardContact, NamesWhatHasNoPlace) {
    const ContactDraft draft = card(
        "FN:A\nPHOTO;ENCODING=b;TYPE=JPEG:/9j/4AAQ\n SkZJRg==\nADR;TYPE=HOME:;;Street;;;;\nADR:;;;;;;\nTITLE:\nX-"
        "THING:1\nREV:20200101\nAGENT:\n" +
        vcard("FN:B\n"));
    EXPECT_THAT(draft.leftOut, ElementsAre("X-THING", "address", "agent", "picture"));
    EXPECT_THAT(draft.remarks, IsEmpty());
}

TEST(VCardContact, WhoseNameCannotBeReadIsNone) {
    EXPECT_EQ(card("N;QUOTED-PRINTABLE:=B1=E\nTEL:1\n", "2.1").problem, "its name is broken quoted-printable");
    EXPECT_EQ(card("FN;CHARSET=UTF-8;QUOTED-PRINTABLE:=EA\nTEL:1\n", "2.1").problem, "its name is no UTF-8 text");
    const ContactDraft saved = card("FN;QUOTED-PRINTABLE:=E\nN:Kim;Anna\n", "2.1");
    EXPECT_EQ(saved.problem, "");
    EXPECT_EQ(nameIn(saved), "Anna Kim");
}

TEST(VCardContact, LosesOnlyTheFieldThatCannotBeRead) {
    const ContactDraft draft = card("FN:Anna\nNOTE;QUOTED-PRINTABLE:=E\nno line\n", "2.1");
    EXPECT_EQ(draft.problem, "");
    EXPECT_THAT(draft.remarks, ElementsAre("its NOTE is broken quoted-printable and is left out",
                                           "line 5 is no line of a card and is left out"));
}

TEST(VCardContact, IsNoneWhereACardSaysNothingOfOnePerson) {
    EXPECT_EQ(card("FN:\nN:;;;;\n").problem, "it says nothing of anybody");
    EXPECT_EQ(card("ADR:;;Street;;;;\n").problem, "it says nothing of anybody");
    EXPECT_EQ(card("FN:Team\nKIND:group\n", "4.0").problem, "it is a list of contacts, not one");
    EXPECT_EQ(card("FN:Team\nX-ADDRESSBOOKSERVER-KIND:group\n").problem, "it is a list of contacts, not one");
}

TEST(VCardContacts, ComeWithWhatIsOutsideOfCards) {
    const DraftedFile file = cards(vcard("FN:A\n") + "x\ny\n" + vcard("FN:B\n") + "z\n");
    EXPECT_THAT(namesIn(file), ElementsAre("A", "B"));
    EXPECT_THAT(file.remarks, ElementsAre("lines 4 to 5 are outside of a card and left out",
                                          "line 9 is outside of a card and left out"));
}

TEST(VCardContacts, AreReadInUtf16AndInTheEncodingThatIsSaid) {
    EXPECT_THAT(namesIn(cards("\xFF\xFE" + utf16Bytes(TEXT("BEGIN:VCARD\r\nFN:A\r\nEND:VCARD\r\n")))),
                ElementsAre("A"));
    EXPECT_THAT(namesIn(cards(vcard("FN:M\xFCller\n"), "ISO-8859-1")), ElementsAre("Müller"));
    EXPECT_THAT(namesIn(cards(vcard("FN:M\xFCller\n"))),
                ElementsAre("! its name is in an encoding that --encoding can name"));
}

TEST(VCardContacts, StandBehindAByteOrderMarkAlsoWhenTheEncodingIsSaid) {
    EXPECT_THAT(namesIn(cards("\xEF\xBB\xBF" + vcard("FN:김\n"), "UTF-8")), ElementsAre("김"));
}

TEST(VCardContacts, OfAFileWithoutCardsAreAnError) {
    EXPECT_THROW(cards("nothing\n"), Tool::Failure);
}
