// What is written is read again as the same contact, in every format and every encoding.

#include <string>

#include <gtest/gtest.h>

#include "tests/tools/exchange/WrittenContacts.h"

using namespace exchange_test;
using Tool::Contact;
using Tool::VCardVersion;

namespace {

Contact named(const WString& name) {
    Contact contact;
    contact.record.strName = CString(name);
    contact.record.dwCITypeMask = 0x1;
    return contact;
}

}  // namespace

TEST(RoundTrip, OfNumbersThatLookMarkedForASpreadsheetGivesTheSameContact) {
    for (const WString number : {TEXT("''1"), TEXT("'1"), TEXT("=\"1\"")}) {
        Contact contact = named(TEXT("Anna"));
        contact.record.strMobileTelephoneNumber = CString(number);
        contact.record.dwCITypeMask |= 0x4;
        const DraftedFile file = readAgain(written(contact, Written::table), Written::table);
        EXPECT_EQ(in(file.drafts.at(0), PBDBATTR_MOBILETEL), utf8Of(number));
    }
}

TEST(RoundTrip, OfTheLongestNameGivesTheSameContact) {
    WString longest;
    while (longest.size() + 4 < Tool::longestText)
        longest += TEXT("김😀\\");
    const Contact contact = named(longest);
    for (const Written how : allWritten) {
        const DraftedFile file = readAgain(written(contact, how), how);
        EXPECT_TRUE(file.drafts.at(0).record.strName == contact.record.strName) << static_cast<int>(how);
    }
}

TEST(RoundTrip, OfATextThatEndsAsACardBeginsOrEndsGivesTheSameContact) {
    for (const WString mark : {TEXT("BEGIN:VCARD"), TEXT("begin:vcard"), TEXT("END:VCARD"), TEXT("end:vcard")}) {
        for (std::size_t length = 0; length < 80; ++length) {  // in some of these the mark begins a line
            const Contact contact = named(TEXT("é") + WString(length, u'x') + mark);
            const DraftedFile file = cards(Tool::vcardOf(contact, VCardVersion::v21));
            ASSERT_EQ(file.drafts.size(), 1u) << length;
            EXPECT_TRUE(file.drafts[0].record.strName == contact.record.strName) << length;
        }
    }
}
