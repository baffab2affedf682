// Cards as they are written: what each version wants.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Builders.h"
#include "tools/tessera/exchange/VCardReader.h"
#include "tools/tessera/exchange/VCardWriter.h"

using namespace PhoneBook;
using ::testing::HasSubstr;
using ::testing::Not;
using Tool::VCardVersion;

namespace {

Tool::Contact anna() {
    Tool::Contact contact;
    PBRecord& record = contact.record;
    record.strName = TEXT("Kim, Anna");
    record.strMobileTelephoneNumber = TEXT("+82 10-1");
    record.strBusinessFaxNumber = TEXT("02-5");
    record.strEmail1Address = TEXT("a@x");
    record.dtBirthday = 32'937;  // 1990-03-05
    record.strGroup = TEXT("친구");
    record.strCategories = TEXT("친구, Tennis");
    record.strBody = TEXT("one\ntwo; three");
    record.strBell = TEXT("bells.mp3");
    record.dwPrimaryTelephoneNumber = 4;
    record.dwCITypeMask = 0x1 | 0x4 | 0x800 | 0x20 | 0x200 | 0x10000 | 0x2 | 0x100 | 0x100000 | 0x400000 | 0x200000;
    return contact;
}

std::string cardOf(VCardVersion version) {
    return Tool::vcardOf(anna(), version);
}

}  // namespace

TEST(VCardWriter, WritesVersion3AsMostProgramsReadIt) {
    EXPECT_EQ(cardOf(VCardVersion::v30),
              "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Kim;Anna;;;\r\nFN:Kim\\, Anna\r\nTEL;TYPE=CELL,VOICE,PREF:+82 10-1\r\n"
              "TEL;TYPE=WORK,FAX:02-5\r\nEMAIL;TYPE=INTERNET:a@x\r\nBDAY:1990-03-05\r\nCATEGORIES:친구,Tennis\r\n"
              "NOTE:one\\ntwo\\; three\r\nX-TESSERA-BELL:bells.mp3\r\nEND:VCARD\r\n");
}

TEST(VCardWriter, WritesVersion4WithItsParameters) {
    const std::string card = cardOf(VCardVersion::v40);
    EXPECT_THAT(card, HasSubstr("VERSION:4.0\r\n"));
    EXPECT_THAT(card, HasSubstr("TEL;TYPE=\"cell,voice\";PREF=1:+82 10-1\r\n"));
    EXPECT_THAT(card, HasSubstr("\r\nEMAIL:a@x\r\n"));
    EXPECT_THAT(card, HasSubstr("BDAY:19900305\r\n"));
}

TEST(VCardWriter, WritesVersion21InAscii) {
    const std::string card = cardOf(VCardVersion::v21);
    EXPECT_THAT(card, HasSubstr("VERSION:2.1\r\nN:Kim;Anna;;;\r\nFN:Kim, Anna\r\nTEL;PREF;CELL;VOICE:+82 10-1\r\n"));
    EXPECT_THAT(card, HasSubstr("CATEGORIES;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=EC=B9=9C=EA=B5=AC,Tenni=\r\ns"));
    EXPECT_THAT(card, HasSubstr("NOTE;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:one=0D=0Atwo;=20three\r\n"));
    for (const char ch : card)
        EXPECT_LT(static_cast<unsigned char>(ch), 0x80);
}

TEST(VCardWriter, BreaksLinesAtSeventyFiveBytesAndNotWithinACharacter) {
    Tool::Contact contact;
    contact.record.strName = CString(WString(200, u'김'));
    contact.record.dwCITypeMask = 0x1;
    for (const VCardVersion version : {VCardVersion::v21, VCardVersion::v30, VCardVersion::v40}) {
        const std::string card = Tool::vcardOf(contact, version);
        for (std::size_t at = 0; at < card.size();) {
            const std::size_t end = card.find("\r\n", at);
            EXPECT_LE(end - at, 76u);
            EXPECT_NE(static_cast<unsigned char>(card[at + 1]) & 0xC0, 0x80);
            at = end + 2;
        }
    }
}

TEST(VCardWriter, WritesThatNoNumberHasASlotOnlyWhereItIsAllThatOurPhoneBookHas) {
    Tool::Contact contact;
    contact.record.strName = TEXT("Anna");
    contact.record.dwCITypeMask = 0x200001;
    EXPECT_THAT(Tool::vcardOf(contact, VCardVersion::v30), HasSubstr("X-TESSERA-SPEED-DIAL:0"));
    EXPECT_THAT(cardOf(VCardVersion::v30), Not(HasSubstr("SPEED-DIAL")));
}
