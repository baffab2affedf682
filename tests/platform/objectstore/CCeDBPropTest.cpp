#include <array>

#include <gtest/gtest.h>

#include "tessera/platform/objectstore/CCeDBProp.h"
#include "tessera/platform/objectstore/CCeDBRecord.h"

namespace {

constexpr std::array<WORD, 9> kinds = {2, 18, 3, 19, 64, 31, 65, 11, 5};

TEST(CCeDBProp, DefaultIsTheEmptyProperty) {
    const CCeDBProp none;
    EXPECT_TRUE(none.isEmpty());
    EXPECT_EQ(none.getText(), TEXT(""));
    EXPECT_EQ(none.getUI4(), 0u);
    EXPECT_EQ(none.propVal().propid, 0u);
}

TEST(CCeDBProp, IdentifierCarriesIdentAndKindOfEachType) {
    for (std::size_t type = 0; type < kinds.size(); ++type) {
        const CCeDBProp prop(static_cast<CCeDBProp::enType>(type), 0x4001, 3);
        EXPECT_EQ(prop.getPropId(), 0x40010000u | kinds[type]);
        EXPECT_EQ(prop.getIdent(), 0x4001);
        EXPECT_EQ(prop.getFlags(), 3);
        EXPECT_EQ(static_cast<std::size_t>(prop.getType()), type);
        EXPECT_FALSE(prop.isEmpty());
    }
}

TEST(CCeDBProp, PropertyMadeWithoutAValueHoldsZero) {
    EXPECT_EQ(CCeDBProp(CCeDBProp::typeI2, 1), CCeDBProp::ofI2(1, 0));
    EXPECT_EQ(CCeDBProp(CCeDBProp::typeUI2, 1), CCeDBProp::ofUI2(1, 0));
    EXPECT_EQ(CCeDBProp(CCeDBProp::typeI4, 1), CCeDBProp::ofI4(1, 0));
    EXPECT_EQ(CCeDBProp(CCeDBProp::typeUI4, 1), CCeDBProp::ofUI4(1, 0));
    EXPECT_EQ(CCeDBProp(CCeDBProp::typeFileTime, 1), CCeDBProp::ofFileTime(1, FILETIME{}));
    EXPECT_EQ(CCeDBProp(CCeDBProp::typeText, 1), CCeDBProp::ofText(1, CString()));
    EXPECT_EQ(CCeDBProp(CCeDBProp::typeBlob, 1), CCeDBProp::ofBlob(1, nullptr, 0));
    EXPECT_EQ(CCeDBProp(CCeDBProp::typeBool, 1), CCeDBProp::ofBool(1, false));
    EXPECT_EQ(CCeDBProp(CCeDBProp::typeR8, 1), CCeDBProp::ofR8(1, 0.0));
}

TEST(CCeDBProp, ValueComesBackAsItsTypeAndIsZeroAsAnyOther) {
    EXPECT_EQ(CCeDBProp::ofI2(1, -3).getI2(), -3);
    EXPECT_EQ(CCeDBProp::ofUI2(1, 65000).getUI2(), 65000);
    EXPECT_EQ(CCeDBProp::ofI4(1, -70000).getI4(), -70000);
    EXPECT_EQ(CCeDBProp::ofUI4(1, 4000000000u).getUI4(), 4000000000u);
    EXPECT_EQ(CCeDBProp::ofFileTime(1, fileTimeOf(77)).getFileTime(), fileTimeOf(77));
    EXPECT_EQ(CCeDBProp::ofText(1, TEXT("text")).getText(), TEXT("text"));
    EXPECT_EQ(CCeDBProp::ofBlob(1, "ab", 2).getBlob(), (std::vector{std::byte{'a'}, std::byte{'b'}}));
    EXPECT_TRUE(CCeDBProp::ofBool(1, true).getBool());
    EXPECT_EQ(CCeDBProp::ofR8(1, 1.11).getR8(), 1.11);

    const CCeDBProp number = CCeDBProp::ofUI4(1, 7);
    EXPECT_EQ(number.getI4(), 0);
    EXPECT_EQ(number.getUI2(), 0);
    EXPECT_EQ(number.getText(), TEXT(""));
    EXPECT_TRUE(number.getBlob().empty());
    EXPECT_FALSE(number.getBool());
    EXPECT_EQ(number.getR8(), 0.0);
    EXPECT_EQ(number.getI2(), 0);
    EXPECT_EQ(number.getFileTime(), FILETIME{});
}

TEST(CCeDBProp, TextIsTheSameObjectAtEachCall) {
    const CCeDBProp prop = CCeDBProp::ofText(1, TEXT("same"));
    EXPECT_EQ(&prop.getText(), &prop.getText());
    const CCeDBProp copy = prop;
    EXPECT_NE(&copy.getText(), &prop.getText());
    EXPECT_EQ(copy, prop);
}

TEST(CCeDBProp, EqualMeansIdentTypeAndValue) {
    EXPECT_EQ(CCeDBProp::ofUI4(1, 5), CCeDBProp::ofUI4(1, 5));
    EXPECT_FALSE(CCeDBProp::ofUI4(1, 5) == CCeDBProp::ofUI4(2, 5));
    EXPECT_FALSE(CCeDBProp::ofUI4(1, 5) == CCeDBProp::ofI4(1, 5));
    EXPECT_FALSE(CCeDBProp::ofUI4(1, 5) == CCeDBProp::ofUI4(1, 6));
    CCeDBProp flagged = CCeDBProp::ofUI4(1, 5);
    flagged.setFlags(1);
    EXPECT_EQ(flagged, CCeDBProp::ofUI4(1, 5)) << "flags are no part of the value";
}

TEST(CCeDBProp, ThroughAPropValAndBackItIsTheSame) {
    const std::array props = {CCeDBProp::ofI2(1, -2),
                              CCeDBProp::ofUI2(2, 3),
                              CCeDBProp::ofI4(3, -4),
                              CCeDBProp::ofUI4(4, 5),
                              CCeDBProp::ofFileTime(5, fileTimeOf(0x0102030405060708)),
                              CCeDBProp::ofText(6, TEXT("한글")),
                              CCeDBProp::ofBlob(7, "\0x", 2),
                              CCeDBProp::ofBool(8, true),
                              CCeDBProp::ofR8(9, -1.5)};
    for (const CCeDBProp& prop : props) {
        EXPECT_EQ(CCeDBProp::ofPropVal(prop.propVal()), prop) << prop.getIdent();
    }
}

TEST(CCeDBProp, PropValCarriesFlagsAndPointsIntoTheProperty) {
    CCeDBProp prop = CCeDBProp::ofText(6, TEXT("text"));
    prop.setFlags(CEDB_PROPDELETE);
    const CEPROPVAL value = prop.propVal();
    EXPECT_EQ(value.wFlags, CEDB_PROPDELETE);
    EXPECT_EQ(value.val.lpwstr, static_cast<const WCHAR*>(prop.getText()));
}

TEST(CCeDBProp, PropValOfAnUnknownKindGivesTheEmptyProperty) {
    CEPROPVAL value;
    value.propid = makePropId(1, 30);
    EXPECT_TRUE(CCeDBProp::ofPropVal(value).isEmpty());
}

TEST(CCeDBProp, OfATypeThatDoesNotExistHasNoPropId) {
    for (const int type : {-1, 9, 1'000'000}) {
        const CCeDBProp odd(static_cast<CCeDBProp::enType>(type), 5);
        EXPECT_EQ(odd.getPropId(), 0u);
        EXPECT_EQ(odd.propVal().propid, 0u);
    }
}

TEST(CCeDBRecord, CopiesAnArrayAndPassesNullElementsOver) {
    CCeDBProp first = CCeDBProp::ofUI4(1, 10);
    CCeDBProp second = CCeDBProp::ofText(2, TEXT("two"));
    CObArray array;
    array.Add(&first);
    array.Add(nullptr);
    array.Add(&second);
    const CCeDBRecord record(array);
    ASSERT_EQ(record.getNumProps(), 2);
    EXPECT_EQ(record.getPropAt(0), first);
    EXPECT_EQ(record.getPropAt(1), second);
}

TEST(CCeDBRecord, CopiesAPlainArray) {
    const CCeDBProp props[] = {CCeDBProp::ofUI4(1, 10), CCeDBProp::ofUI4(2, 20)};
    EXPECT_EQ(CCeDBRecord(props, 2).getNumProps(), 2);
    EXPECT_EQ(CCeDBRecord(props, 1).getNumProps(), 1);
    EXPECT_EQ(CCeDBRecord(nullptr, 0).getNumProps(), 0);
}

TEST(CCeDBRecord, FindsAndReplacesByIdentWhateverTheType) {
    CCeDBRecord record;
    record.addProp(CCeDBProp::ofUI4(1, 10));
    record.addProp(CCeDBProp::ofText(2, TEXT("two")));
    EXPECT_EQ(record.findProp(3), nullptr);
    ASSERT_NE(record.findProp(2), nullptr);
    EXPECT_EQ(record.findProp(2)->getText(), TEXT("two"));

    EXPECT_TRUE(record.replaceProp(CCeDBProp::ofUI4(2, 22)));
    EXPECT_EQ(record.getPropAt(1), CCeDBProp::ofUI4(2, 22));
    EXPECT_FALSE(record.replaceProp(CCeDBProp::ofUI4(3, 33)));
    EXPECT_EQ(record.getNumProps(), 2);
    record.removeAll();
    EXPECT_EQ(record.getNumProps(), 0);
}

}  // namespace
