#include <clocale>
#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "tests/database/schema/ShownText.h"

namespace Database {
namespace {

TEST(PropText, ShowsEachTypeInItsOwnForm) {
    EXPECT_EQ(shown(CCeDBProp::ofI2(1, -7)), "-7");
    EXPECT_EQ(shown(CCeDBProp::ofUI2(1, 7)), "0x0007");
    EXPECT_EQ(shown(CCeDBProp::ofUI2(1, 0xBEEF)), "0xbeef");
    EXPECT_EQ(shown(CCeDBProp::ofI4(1, -70000)), "-70000");
    EXPECT_EQ(shown(CCeDBProp::ofUI4(1, 0x1C)), "0x0000001c");
    EXPECT_EQ(shown(CCeDBProp::ofText(1, TEXT("김민수 %d"))), "김민수 %d");
    EXPECT_EQ(shown(CCeDBProp::ofBool(1, true)), "1");
    EXPECT_EQ(shown(CCeDBProp::ofBool(1, false)), "0");
    EXPECT_EQ(shown(CCeDBProp::ofR8(1, 1.11)), "1.110000");
}

TEST(PropText, ShowsTheHighHalfOfATimeFirst) {
    const FILETIME time{.dwLowDateTime = 0x89ABCDEF, .dwHighDateTime = 0x01234567};

    EXPECT_EQ(shown(CCeDBProp::ofFileTime(1, time)), "0x01234567:0x89abcdef");
    EXPECT_EQ(shown(CCeDBProp::ofFileTime(1, fileTimeOf(0x1'0000'0002))), "0x00000001:0x00000002");
}

TEST(PropText, ShowsTheAddressOfABlobsBytes) {
    const CCeDBProp blob = CCeDBProp::ofBlob(1, "bytes", 5);

    const auto address = reinterpret_cast<std::uintptr_t>(blob.getBlob().data());
    EXPECT_EQ(shown(blob), printed("%08llx", static_cast<unsigned long long>(address)));
    EXPECT_EQ(shown(CCeDBProp(CCeDBProp::typeBlob, 1)), "00000000");
}

TEST(PropText, ShowsZeroForAPropertyWithoutAValue) {
    EXPECT_EQ(shown(CCeDBProp(CCeDBProp::typeI2, 1)), "0");
    EXPECT_EQ(shown(CCeDBProp(CCeDBProp::typeUI4, 1)), "0x00000000");
    EXPECT_EQ(shown(CCeDBProp(CCeDBProp::typeText, 1)), "");
    EXPECT_EQ(shown(CCeDBProp(CCeDBProp::typeR8, 1)), "0.000000");
}

TEST(PropText, TheEmptyPropertyIsEmpty) {
    EXPECT_EQ(shown(CCeDBProp()), "");
}

TEST(PropText, AnUnknownTypeIsEmpty) {
    EXPECT_EQ(shown(CCeDBProp(static_cast<CCeDBProp::enType>(9), 1)), "");
    EXPECT_EQ(shown(CCeDBProp(static_cast<CCeDBProp::enType>(14), 1)), "");
}

TEST(PropText, ShowsTheLongestDouble) {
    const double longest = -std::numeric_limits<double>::max();

    EXPECT_EQ(shown(CCeDBProp::ofR8(1, longest)), printed("%f", longest));
}

TEST(PropText, DoesNotFollowTheLocale) {
    const char* const comma = std::setlocale(LC_NUMERIC, "de_DE.UTF-8");

    const std::string text = shown(CCeDBProp::ofR8(1, 1234.5));

    std::setlocale(LC_NUMERIC, "C");
    EXPECT_EQ(text, "1234.500000") << (comma != nullptr ? comma : "no such locale here");
}

}  // namespace
}  // namespace Database
