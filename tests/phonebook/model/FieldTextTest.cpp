#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/phonebook/model/FieldText.h"
#include "tessera/phonebook/model/PBAttributes.h"
#include "tessera/platform/base/COleDateTime.h"
#include "tessera/platform/base/Unicode.h"
#include "tests/phonebook/model/FieldFlags.h"

namespace PhoneBook {
namespace {

std::string fieldText(const PBRecord& record, DWORD mask) {
    return utf8Of(getPBRecordFieldStr(record, mask).view());
}

bool isSame(const PBRecord& left, const PBRecord& right) {
    for (const PBAttribute& attribute : aPBAttribute_) {
        if (attribute.text != nullptr && !(left.*attribute.text == right.*attribute.text)) return false;
        if (attribute.number != nullptr && left.*attribute.number != right.*attribute.number) return false;
        if (attribute.date != nullptr && left.*attribute.date != right.*attribute.date) return false;
    }
    return left.dwCITypeMask == right.dwCITypeMask;
}

TEST(FieldText, ShowsTextsNumbersAndTheBirthday) {
    PBRecord record;
    record.dwCITypeMask = 0x007F0FFF;
    record.strBody = TEXT("메모");
    record.dwCallingScreen = 0x1C;
    record.dwPrivate = 0xA0B0C0D0;
    record.dtBirthday = COleDateTime(1990, 3, 5).date();

    EXPECT_EQ(fieldText(record, 0x100), "메모");
    EXPECT_EQ(fieldText(record, callingScreenFlag), "0x0000001c");
    EXPECT_EQ(fieldText(record, dwPrivateFlag_), "0xa0b0c0d0");
    EXPECT_EQ(fieldText(record, dwPrimaryTelNoFlag_), "0x00000004");
    EXPECT_EQ(fieldText(record, birthdayFlag), utf8Of(COleDateTime(1990, 3, 5).Format().view()));
    EXPECT_NE(fieldText(record, birthdayFlag).find("1990"), std::string::npos);
}

TEST(FieldText, IsEmptyWhenTheRecordDoesNotHaveTheField) {
    PBRecord record;
    record.strName = TEXT("김민수");
    record.dwCITypeMask = ~nameFlag;

    EXPECT_EQ(fieldText(record, nameFlag), "");
}

TEST(FieldText, IsEmptyForWhatIsNotOneFieldBit) {
    PBRecord record;
    record.strName = TEXT("김민수");
    record.strCategories = TEXT("가족");
    record.dwCITypeMask = 0xFFFFFFFF;

    for (const DWORD mask : {0x0u, 0x40u, 0x80u, 0x1000u, 0x8000u, 0x800000u, 0x80000000u, 0x3u, 0xFFFFFFFFu}) {
        EXPECT_EQ(fieldText(record, mask), "") << mask;
    }
}

TEST(SetFieldText, StoresATextAndAddsItsBit) {
    for (const PBAttribute& attribute : aPBAttribute_) {
        if (attribute.text == nullptr) continue;
        PBRecord record;

        EXPECT_EQ(setPBRecordFieldStr(record, attribute.mask, TEXT(" 홍 길동 ")), 1);

        EXPECT_EQ(record.*attribute.text, TEXT(" 홍 길동 ")) << attribute.id;
        EXPECT_EQ(record.dwCITypeMask, attribute.mask);
    }
}

TEST(SetFieldText, ReadsNumbersWithBaseZero) {
    PBRecord record;

    setPBRecordFieldStr(record, callingScreenFlag, TEXT("0x0000001c"));
    setPBRecordFieldStr(record, dwPrivateFlag_, TEXT("28"));
    setPBRecordFieldStr(record, dwPrimaryTelNoFlag_, TEXT("020"));

    EXPECT_EQ(record.dwCallingScreen, 28u);
    EXPECT_EQ(record.dwPrivate, 28u);
    EXPECT_EQ(record.dwPrimaryTelephoneNumber, 16u);
    EXPECT_EQ(record.dwCITypeMask, callingScreenFlag | dwPrivateFlag_ | dwPrimaryTelNoFlag_);
}

TEST(SetFieldText, NumbersStopAtTheBoundsOfASignedLong) {
    PBRecord record;

    setPBRecordFieldStr(record, callingScreenFlag, TEXT("0xffffffff"));
    setPBRecordFieldStr(record, dwPrivateFlag_, TEXT("-1"));

    EXPECT_EQ(record.dwCallingScreen, 0x7FFFFFFFu);
    EXPECT_EQ(record.dwPrivate, 0xFFFFFFFFu);
}

TEST(SetFieldText, WhatIsNoNumberReadsAsZeroAndStillAddsTheBit) {
    PBRecord record;

    EXPECT_EQ(setPBRecordFieldStr(record, dwPrimaryTelNoFlag_, TEXT("mobile")), 1);

    EXPECT_EQ(record.dwPrimaryTelephoneNumber, 0u);
    EXPECT_EQ(record.dwCITypeMask, dwPrimaryTelNoFlag_);
}

TEST(SetFieldText, ReadsABirthdayWithoutItsTimeOfDay) {
    PBRecord record;

    setPBRecordFieldStr(record, birthdayFlag, TEXT("1990-03-05 14:30"));

    EXPECT_EQ(record.dtBirthday, COleDateTime(1990, 3, 5).date());
    EXPECT_EQ(record.dwCITypeMask, birthdayFlag);
}

TEST(SetFieldText, WhatIsNoDateReadsAsDayZero) {
    PBRecord record;

    EXPECT_EQ(setPBRecordFieldStr(record, birthdayFlag, TEXT("soon")), 1);

    EXPECT_EQ(record.dtBirthday, 0.0);
    EXPECT_EQ(record.dwCITypeMask, birthdayFlag);
}

TEST(SetFieldText, TheEmptyTextEmptiesTheFieldAndRemovesItsBit) {
    PBRecord record;
    record.dwCITypeMask = nameFlag | birthdayFlag | dwPrivateFlag_ | 0x4;
    record.strName = TEXT("김민수");
    record.dtBirthday = 1000.0;
    record.dwPrivate = 5;

    EXPECT_EQ(setPBRecordFieldStr(record, nameFlag, TEXT("")), 1);
    EXPECT_EQ(setPBRecordFieldStr(record, birthdayFlag, TEXT("")), 1);
    EXPECT_EQ(setPBRecordFieldStr(record, dwPrivateFlag_, TEXT("")), 1);

    EXPECT_TRUE(record.strName.IsEmpty());
    EXPECT_EQ(record.dtBirthday, 0.0);
    EXPECT_EQ(record.dwPrivate, 0u);
    EXPECT_EQ(record.dwCITypeMask, 0x4u);
}

TEST(SetFieldText, RefusesABitOutsideTheFields) {
    for (const DWORD mask : {0x0u, 0x1000u, 0x8000u, 0x800000u, 0x80000000u}) {
        PBRecord record;

        EXPECT_EQ(setPBRecordFieldStr(record, mask, TEXT("text")), 0) << mask;

        EXPECT_TRUE(isSame(record, PBRecord())) << mask;
    }
}

TEST(SetFieldText, TakesTheTwoSpareBitsWithoutAField) {
    for (const DWORD mask : {0x40u, 0x80u}) {
        PBRecord record;

        EXPECT_EQ(setPBRecordFieldStr(record, mask, TEXT("text")), 1) << mask;
        EXPECT_EQ(record.dwCITypeMask, mask);
        EXPECT_EQ(setPBRecordFieldStr(record, mask, TEXT("")), 1) << mask;

        EXPECT_TRUE(isSame(record, PBRecord())) << mask;
    }
}

}  // namespace
}  // namespace PhoneBook
