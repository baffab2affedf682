// Cards taken apart: broken lines put together, properties with their parameters, values decoded.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/platform/base/Unicode.h"
#include "tests/tools/CardText.h"
#include "tools/tessera/exchange/VCardReader.h"
#include "tools/tessera/exchange/VCardValue.h"

using namespace Tool;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing_support::vcard;

namespace {

std::vector<std::string> linesOf(std::string_view bytes, VCardVersion version = VCardVersion::v30) {
    VCardLines lines(bytes);
    std::vector<std::string> all;
    for (std::string line; lines.next(line, version);)
        all.push_back(std::to_string(lines.number()) + " " + line);
    return all;
}

std::vector<VCard> cardsOf(std::string_view bytes) {
    VCardReader reader(bytes);
    std::vector<VCard> all;
    for (VCard card; reader.next(card);)
        all.push_back(card);
    return all;
}

/// A card in a line: where it begins, its properties, those that hold another card, and what is wrong with it.
std::string summaryOf(const VCard& card) {
    std::string summary = std::to_string(card.line);
    for (const VCardProperty& property : card.properties)
        summary += " " + property.name + ":" + property.value;
    for (const std::string& nested : card.nested)
        summary += " " + nested + ":another";
    return card.problem.empty() ? summary : summary + ", " + card.problem;
}

std::vector<std::string> summariesOf(std::string_view bytes) {
    std::vector<std::string> all;
    for (const VCard& card : cardsOf(bytes))
        all.push_back(summaryOf(card));
    return all;
}

const std::string cutOff = ", it is cut off: its END:VCARD is missing";

std::string valueOf(std::string_view line, const FileEncoding& encoding = {}) {
    const auto property = propertyOf(line);
    if (!property) return "no property";
    const VCardText text = textOf(*property, encoding);
    return text.problem.empty() ? utf8Of(text.text) : "! " + text.problem;
}

using Parts = std::vector<WString>;

}  // namespace

TEST(VCardLines, EndInAnyWay) {
    EXPECT_THAT(linesOf("A:1\nB:2\r\nC:3\rD:4\r\r\nE:5"), ElementsAre("1 A:1", "2 B:2", "3 C:3", "4 D:4", "5 E:5"));
    EXPECT_THAT(linesOf("\r\n \nA:1\n\n"), ElementsAre("3 A:1"));
    EXPECT_THAT(linesOf(""), IsEmpty());
}

TEST(VCardLines, AreUnfoldedAlsoWithinACharacter) {
    EXPECT_THAT(linesOf("A:one\r\n  two\n\tthree\nB:2"), ElementsAre("1 A:one twothree", "4 B:2"));
    EXPECT_THAT(linesOf("A:\xEA\xB9\r\n \x80\n"), ElementsAre("1 A:김"));
}

TEST(VCardLines, OfTheOldVersionKeepTheBlankOfAFold) {
    EXPECT_THAT(linesOf("A:one\r\n two\n", VCardVersion::v21), ElementsAre("1 A:one two"));
}

TEST(VCardLines, AreJoinedAtSoftBreaks) {
    EXPECT_THAT(linesOf("N;ENCODING=QUOTED-PRINTABLE:=B1=\r\n=E8;x=\n\nA:1="),
                ElementsAre("1 N;ENCODING=QUOTED-PRINTABLE:=B1=E8;x", "4 A:1="));
}

TEST(VCardLines, ASoftBreakAtTheEndOfACardDoesNotSwallowTheEnd) {
    EXPECT_THAT(linesOf("N;QUOTED-PRINTABLE:=B1=\r\nEND:VCARD\r\n"),
                ElementsAre("1 N;QUOTED-PRINTABLE:=B1=", "2 END:VCARD"));
    EXPECT_THAT(linesOf("N;QUOTED-PRINTABLE:=B1=\nend : vcard \n"),
                ElementsAre("1 N;QUOTED-PRINTABLE:=B1=", "2 end : vcard "));
    EXPECT_THAT(linesOf("N;QUOTED-PRINTABLE:=B1=\nBEGIN:VCARD\n"),
                ElementsAre("1 N;QUOTED-PRINTABLE:=B1=", "2 BEGIN:VCARD"));
}

TEST(VCardLines, AreJoinedAtSoftBreaksAlsoBehindAColonInQuotes) {
    EXPECT_THAT(linesOf("N;X=\"a:b\";QUOTED-PRINTABLE:=B1=\n=E8\n"),
                ElementsAre("1 N;X=\"a:b\";QUOTED-PRINTABLE:=B1=E8"));
}

TEST(VCardLines, ThatAreManyCarriageReturnsTakeNoLongerThanOthers) {
    const std::string returns(300'000, '\r');
    EXPECT_THAT(linesOf(returns + "A:1"), ElementsAre("300001 A:1"));
}

TEST(VCardLines, OfBase64NeedNoBlankInFront) {
    EXPECT_THAT(linesOf("PHOTO;BASE64:AAAA\nBBBB\nCC==\n\nEND:VCARD", VCardVersion::v21),
                ElementsAre("1 PHOTO;BASE64:AAAABBBBCC==", "5 END:VCARD"));
}

TEST(VCardProperty, HasGroupNameParametersAndValue) {
    const auto property = propertyOf("item1.tel;TYPE=\"voice,cell\";type=Pref;X-A=\"a:b;c\";VALUE=uri:tel:+82-10");
    ASSERT_TRUE(property);
    EXPECT_EQ(property->group, "ITEM1");
    EXPECT_EQ(property->name, "TEL");
    EXPECT_THAT(property->types(), ElementsAre("CELL", "PREF", "VOICE"));
    EXPECT_EQ(property->parameter("X-A"), "a:b;c");
    EXPECT_EQ(property->value, "tel:+82-10");
}

TEST(VCardProperty, OfOldCardsHasTypesWithoutAName) {
    const auto property = propertyOf("TEL;CELL;VOICE;QUOTED-PRINTABLE:=30");
    ASSERT_TRUE(property);
    EXPECT_THAT(property->types(), ElementsAre("CELL", "VOICE"));
    EXPECT_TRUE(property->isQuotedPrintable());
}

TEST(VCardProperty, NeedsANameAndAColon) {
    EXPECT_FALSE(propertyOf("no colon"));
    EXPECT_FALSE(propertyOf(":value"));
    EXPECT_FALSE(propertyOf("two words:value"));
    EXPECT_FALSE(propertyOf("group.:value"));
    EXPECT_TRUE(propertyOf("X;A=\"never closed:value"));
}

TEST(VCardValue, IsDecodedAsThePropertySays) {
    EXPECT_EQ(valueOf("N;CHARSET=EUC-KR;ENCODING=QUOTED-PRINTABLE:=B1=E8;=B9=CE"), "김;민");
    EXPECT_EQ(valueOf("N;CHARSET=CP949:\x8C\x63"), "똠");
    EXPECT_EQ(valueOf("N;CHARSET=UTF-8;QUOTED-PRINTABLE:=ea=b9=80"), "김");
    EXPECT_EQ(valueOf("N;CHARSET=Shift_JIS;ENCODING=Quoted-Printable:=8E=52=93=63"), "山田");
    EXPECT_EQ(valueOf("N:plain=3D"), "plain=3D");
}

TEST(VCardValue, IsInTheEncodingOfTheFileWhenItNamesNone) {
    EXPECT_EQ(valueOf("N:김"), "김");
    EXPECT_EQ(valueOf("N:\xB1\xE8"), "김");
    EXPECT_EQ(valueOf("N:M\xFCller", {"ISO-8859-1", true}), "Müller");
    EXPECT_EQ(valueOf("N:\xC2\xAA"), "ª");                    // good UTF-8, which is what it mostly is
    EXPECT_EQ(valueOf("N:\xC2\xAA", {"CP949", true}), "짧");  // but not when the user knows better
    EXPECT_EQ(valueOf("N;QUOTED-PRINTABLE:=B1=E8", {"UTF-8", false}), "김");
}

TEST(VCardValue, SaysWhyItCannotBeRead) {
    EXPECT_EQ(valueOf("N;QUOTED-PRINTABLE:=B1=E"), "! is broken quoted-printable");
    EXPECT_EQ(valueOf("N;QUOTED-PRINTABLE:=XY"), "! is broken quoted-printable");
    EXPECT_EQ(valueOf("N;CHARSET=UTF-8;QUOTED-PRINTABLE:=EA=B9"), "! is no UTF-8 text");
    EXPECT_EQ(valueOf("N;CHARSET=X-MOON:a"), "! is in the unknown encoding X-MOON");
    EXPECT_EQ(valueOf("N:M\xFCller"), "! is in an encoding that --encoding can name");
    EXPECT_EQ(valueOf("N;ENCODING=b:QUJD"), "! is base64, not text");
    EXPECT_EQ(valueOf("N;QUOTED-PRINTABLE:a=00b"), "! holds a zero character");
}

TEST(VCardValue, LosesItsEscapes) {
    EXPECT_EQ(unescaped(TEXT("a\\, b\\; c\\nd\\Ne\\\\n"), VCardVersion::v30), TEXT("a, b; c\nd\ne\\n"));
    EXPECT_EQ(unescaped(TEXT("c:\\new\\"), VCardVersion::v21), TEXT("c:\\new\\"));
    EXPECT_EQ(unescaped(TEXT("a\\;b"), VCardVersion::v21), TEXT("a;b"));
}

TEST(VCardValue, HasPartsBetweenSeparatorsThatAreNotEscaped) {
    EXPECT_EQ(partsOf(TEXT("Kim\\; Lee;Anna;;"), u';', VCardVersion::v30),
              (Parts{TEXT("Kim; Lee"), TEXT("Anna"), TEXT(""), TEXT("")}));
    EXPECT_EQ(partsOf(TEXT("a\\\\;b"), u';', VCardVersion::v30), (Parts{TEXT("a\\"), TEXT("b")}));
    EXPECT_EQ(partsOf(TEXT("a\\"), u';', VCardVersion::v40), (Parts{TEXT("a\\")}));
    EXPECT_EQ(partsOf(TEXT(""), u';', VCardVersion::v30), (Parts{TEXT("")}));
}

TEST(VCardReader, GivesEachCardWithItsPlace) {
    EXPECT_THAT(summariesOf("BEGIN:VCARD\nN:A\nTEL:1\nEND:VCARD\nbegin : vcard\nN:B\nEND:vcard\n"),
                ElementsAre("1 N:A TEL:1", "5 N:B"));
    const auto cards = cardsOf(vcard("N:A\n") + vcard("N:B\n"));
    EXPECT_EQ(cards.at(0).number, 1);
    EXPECT_EQ(cards.at(1).number, 2);
    EXPECT_EQ(cards.at(1).properties.at(0).line, 5);
}

TEST(VCardReader, TakesTheVersionOfEachCard) {
    const auto versionIn = [](const std::string& line) { return cardsOf(vcard(line)).at(0).version; };
    EXPECT_EQ(versionIn("VERSION:2.1\n"), VCardVersion::v21);
    EXPECT_EQ(versionIn("VERSION: 2.1 \n"), VCardVersion::v21);
    EXPECT_EQ(versionIn("VERSION:3.0\n"), VCardVersion::v30);
    EXPECT_EQ(versionIn("VERSION:4.0\n"), VCardVersion::v40);
    EXPECT_EQ(versionIn(""), VCardVersion::v30);
}

TEST(VCardReader, TellsACardThatIsCutOff) {
    EXPECT_THAT(summariesOf("BEGIN:VCARD\nN:A\n" + vcard("N:B\n") + "BEGIN:VCARD\nN:C"),
                ElementsAre("1 N:A" + cutOff, "3 N:B", "6 N:C" + cutOff));
}

TEST(VCardReader, PassesOverACardWithinACard) {
    EXPECT_THAT(summariesOf(vcard("N:A\nAGENT:\n" + vcard("N:B\n") + "TEL:1\n") + vcard("N:C\n")),
                ElementsAre("1 N:A AGENT: TEL:1 AGENT:another", "9 N:C"));
    EXPECT_THAT(summariesOf(vcard("N:A\nAGENT:\n" + vcard("AGENT:" + vcard("N:B\n")) + "TEL:1\n")),
                ElementsAre("1 N:A AGENT: TEL:1 AGENT:another"));
}

TEST(VCardReader, PassesOverACardThatBeginsInTheLineOfItsProperty) {
    EXPECT_THAT(summariesOf(vcard("N:A\n:BEGIN:VCARD\nAGENT:" + vcard("N:B\n") + "TEL:1\n")),
                ElementsAre("1 N:A TEL:1 AGENT:another"));
}

TEST(VCardReader, LosesNoCardBehindOneThatLacksTheEndOfItsNested) {
    EXPECT_THAT(summariesOf("BEGIN:VCARD\nN:A\nAGENT:\n" + vcard("N:B\n") + vcard("N:C\n") + vcard("N:D\n")),
                ElementsAre("1 N:A AGENT: AGENT:another" + cutOff, "7 N:C", "10 N:D"));
    EXPECT_THAT(summariesOf("BEGIN:VCARD\nN:A\nAGENT:\nBEGIN:VCARD\nN:B\n" + vcard("N:C\n") + vcard("N:D\n")),
                ElementsAre("1 N:A AGENT: AGENT:another" + cutOff, "6 N:C", "9 N:D"));
}

TEST(VCardReader, KnowsACardBehindAByteOrderMarkAsFilesPutTogetherHaveThem) {
    EXPECT_THAT(summariesOf(vcard("N:A\n") + "\xEF\xBB\xBF" + vcard("N:B\n")), ElementsAre("1 N:A", "4 N:B"));
}

TEST(VCardReader, RemembersLinesThatBelongToNoCard) {
    const std::string bytes = "one\ntwo\n" + vcard("N:A\nno line of a card\n") + "three\n";
    VCardReader reader(bytes);
    VCard card;
    ASSERT_TRUE(reader.next(card));
    EXPECT_THAT(card.unreadableLines, ElementsAre(5));
    EXPECT_FALSE(reader.next(card));
    ASSERT_EQ(reader.stray().size(), 2u);
    EXPECT_EQ(reader.stray()[0].first, 1);
    EXPECT_EQ(reader.stray()[0].last, 2);
    EXPECT_EQ(reader.stray()[1].first, 7);
}

TEST(VCardReader, KnowsAFileOfCardsByItsFirstLines) {
    EXPECT_TRUE(beginWithVCard("BEGIN:VCARD\n", 1));
    EXPECT_TRUE(beginWithVCard("\r\n\r\nbegin:vcard", 1));
    EXPECT_FALSE(beginWithVCard("From: somebody\n\nBEGIN:VCARD\n", 1));
    EXPECT_TRUE(beginWithVCard("From: somebody\n\nBEGIN:VCARD\n", 2));
    EXPECT_FALSE(beginWithVCard("BEGIN:VCALENDAR\n", 1));
    EXPECT_FALSE(beginWithVCard("", 1));
    EXPECT_FALSE(beginWithVCard(std::string(1'000'000, 'B'), 1));
}
