#include <type_traits>

#include <gtest/gtest.h>

#include "tessera/database/schema/AttrDef.h"

namespace Database {
namespace {

static_assert(std::has_virtual_destructor_v<AttrDef>);

TEST(AttrDef, DefaultIsAnUnnamedUnsigned32BitColumnWithoutIdentOrFlags) {
    const AttrDef attribute;

    EXPECT_TRUE(attribute.getName().IsEmpty());
    EXPECT_EQ(attribute.getType(), CCeDBProp::typeUI4);
    EXPECT_EQ(static_cast<int>(attribute.getType()), 3);
    EXPECT_EQ(attribute.getIdent(), 0);
    EXPECT_EQ(attribute.getSortFlags(), 0);
}

TEST(AttrDef, KeepsNameTypeIdentAndSortFlags) {
    const AttrDef attribute(TEXT("Timestamp"), CCeDBProp::typeFileTime, 0x400, 1);

    EXPECT_EQ(attribute.getName(), TEXT("Timestamp"));
    EXPECT_EQ(attribute.getType(), CCeDBProp::typeFileTime);
    EXPECT_EQ(attribute.getIdent(), 0x400);
    EXPECT_EQ(attribute.getSortFlags(), 1);
}

TEST(AttrDef, PropertyIdentifierCarriesTheIdentHighAndTheKindLow) {
    const AttrDef number(TEXT("PODBOID"), CCeDBProp::typeUI4, 0x0100);
    const AttrDef text(TEXT("FileAs"), CCeDBProp::typeText, 0x4013);

    EXPECT_EQ(number.getIdent(), 0x0100);
    EXPECT_EQ(number.getProp().getPropId(), 0x01000013u);
    EXPECT_EQ(text.getProp().getPropId(), 0x4013001Fu);
}

TEST(AttrDef, TakesTheTemplateOfAGivenProperty) {
    CCeDBProp property(CCeDBProp::typeI2, 0x200, 3);

    const AttrDef attribute(TEXT("SpeedDailID"), property);

    EXPECT_EQ(attribute.getName(), TEXT("SpeedDailID"));
    EXPECT_EQ(attribute.getProp(), property);
    EXPECT_EQ(attribute.getSortFlags(), 3);
}

TEST(AttrDef, CopiesCarryNameAndPropertyOfTheirOwn) {
    AttrDef original(TEXT("Group"), CCeDBProp::typeText, 0x103, 2);
    AttrDef assigned;

    const AttrDef copied = original;
    assigned = original;
    original.getName() = TEXT("Changed");

    for (const AttrDef* copy : {&copied, static_cast<const AttrDef*>(&assigned)}) {
        EXPECT_EQ(copy->getName(), TEXT("Group"));
        EXPECT_EQ(copy->getProp(), original.getProp());
        EXPECT_EQ(copy->getSortFlags(), 2);
    }
}

}  // namespace
}  // namespace Database
