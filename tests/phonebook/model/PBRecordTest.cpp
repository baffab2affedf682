#include <gtest/gtest.h>

#include "tessera/phonebook/model/PBAttributes.h"
#include "tessera/phonebook/model/PBRecord.h"
#include "tessera/phonebook/model/SpeedDialInfo.h"
#include "tessera/platform/base/COleDateTime.h"

namespace PhoneBook {
namespace {

TEST(PBRecord, IsMadeEmptyWithTheMobileNumberAsPrimary) {
    const PBRecord record;

    EXPECT_EQ(record.dwCITypeMask, 0u);
    EXPECT_EQ(record.dwCallingScreen, 0u);
    EXPECT_EQ(record.dtBirthday, 949998.0);
    EXPECT_EQ(record.dwPrivate, 0u);
    EXPECT_EQ(record.dwPrimaryTelephoneNumber, 4u);
    for (const PBAttribute& attribute : aPBAttribute_) {
        if (attribute.text != nullptr) {
            EXPECT_TRUE((record.*attribute.text).IsEmpty()) << attribute.id;
        }
    }
}

TEST(PBRecord, NoBirthdayIsTheFirstDayOfTheYear4501) {
    EXPECT_EQ(COleDateTime(4501, 1, 1).date(), dtNoBirthday_);
}

TEST(PBRecord, CopiesAreIndependent) {
    PBRecord original;
    original.strName = TEXT("김민수");
    original.dwCITypeMask = 1;

    PBRecord copy = original;
    copy.strName = TEXT("이영희");

    EXPECT_EQ(original.strName, TEXT("김민수"));
    EXPECT_EQ(copy.dwCITypeMask, 1u);
}

TEST(SpeedDialInfo, IsMadeEmpty) {
    const SpeedDialInfo slot;

    EXPECT_EQ(slot.dwSDialID, 0u);
    EXPECT_EQ(slot.dwOID, 0u);
    EXPECT_TRUE(slot.strName.IsEmpty());
    EXPECT_EQ(slot.dwTelType, 0u);
    EXPECT_TRUE(slot.strTelNo.IsEmpty());
    EXPECT_EQ(slot.dwFlags, 0u);
}

}  // namespace
}  // namespace PhoneBook
