#include <type_traits>

#include <gtest/gtest.h>

#include "tessera/database/schema/RecordDef.h"

namespace Database {
namespace {

static_assert(std::has_virtual_destructor_v<RecordDef>);

TEST(RecordDef, AnswersItsColumnsByPosition) {
    AttrDef columns[] = {{TEXT("Name"), CCeDBProp::typeText, 0x301}, {TEXT("Reject"), CCeDBProp::typeBool, 0x302}};

    const RecordDef schema(2, columns);

    EXPECT_EQ(schema.getNumAttrs(), 2);
    EXPECT_EQ(schema.getAttrDef(0), &columns[0]);
    EXPECT_EQ(schema.getAttrDef(1), &columns[1]);
    EXPECT_EQ(&schema.getAttrName(1), &columns[1].getName());
    EXPECT_EQ(schema.getAttrName(0), TEXT("Name"));
    EXPECT_EQ(schema.getAttrIdent(1), 0x302);
}

TEST(RecordDef, CopiesShareTheColumns) {
    AttrDef columns[] = {{TEXT("Name")}, {TEXT("Bell")}, {TEXT("Flags")}};
    const RecordDef original(3, columns);
    RecordDef assigned(0, nullptr);

    const RecordDef copied = original;
    assigned = original;

    for (const RecordDef& copy : {copied, assigned}) {
        ASSERT_EQ(copy.getNumAttrs(), 3);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(copy.getAttrDef(i), original.getAttrDef(i));
    }
}

TEST(RecordDef, DestroyingItLeavesTheColumns) {
    AttrDef columns[] = {{TEXT("Name"), CCeDBProp::typeText, 0x301}};

    { const RecordDef schema(1, columns); }

    EXPECT_EQ(columns[0].getName(), TEXT("Name"));
    EXPECT_EQ(columns[0].getIdent(), 0x301);
}

}  // namespace
}  // namespace Database
