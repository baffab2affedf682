#include <initializer_list>
#include <limits>

#include <gtest/gtest.h>

#include "tessera/platform/base/Results.h"
#include "tests/platform/engine/TextOrders.h"

namespace engine_testing {
namespace {

using Platform::SortKeys;
using Platform::SortOrder;

TEST(SortKeys, RealsOrderAtTheirEdges) {
    const SortKeys keys("");
    const SortOrder order{property(1, Platform::kindR8), 0};
    using Limits = std::numeric_limits<double>;
    const std::vector<double> ascending{-Limits::infinity(),
                                        Limits::lowest(),
                                        -1.0,
                                        -Limits::denorm_min(),
                                        0.0,
                                        Limits::denorm_min(),
                                        1.0,
                                        Limits::max(),
                                        Limits::infinity(),
                                        Limits::quiet_NaN()};
    for (std::size_t i = 1; i < ascending.size(); ++i) {
        EXPECT_LT(keyOf(keys, order, bytesOf(ascending[i - 1])), keyOf(keys, order, bytesOf(ascending[i]))) << i;
    }
    EXPECT_EQ(keyOf(keys, order, bytesOf(0.0)), keyOf(keys, order, bytesOf(-0.0)));
    EXPECT_EQ(keyOf(keys, order, bytesOf(Limits::quiet_NaN())), keyOf(keys, order, bytesOf(-Limits::quiet_NaN())));
}

TEST(SortKeys, FalseComesBeforeTrueWhateverTrueIsWrittenAs) {
    const SortKeys keys("");
    const SortOrder order{property(1, Platform::kindBool), 0};

    EXPECT_LT(keyOf(keys, order, bytesOf(std::uint16_t{0})), keyOf(keys, order, bytesOf(std::uint16_t{1})));
    EXPECT_EQ(keyOf(keys, order, bytesOf(std::uint16_t{0xFFFF})), keyOf(keys, order, bytesOf(std::uint16_t{1})));
}

TEST(SortKeys, HangulOrdersAsInADictionary) {
    const SortKeys keys("ko_KR");
    const std::vector<const WCHAR*> dictionary{TEXT("가"),     TEXT("가나"), TEXT("각"), TEXT("김민수"),
                                               TEXT("김민지"), TEXT("까치"), TEXT("나"), TEXT("힣")};
    for (std::size_t i = 1; i < dictionary.size(); ++i) {
        EXPECT_LT(keyOf(keys, byText, bytesOf(dictionary[i - 1])), keyOf(keys, byText, bytesOf(dictionary[i]))) << i;
    }
}

TEST(SortKeys, CollationIsTheLocales) {
    const SortKeys swedish("sv_SE");
    const SortKeys english("en_US");

    EXPECT_LT(keyOf(swedish, byText, bytesOf(TEXT("z"))), keyOf(swedish, byText, bytesOf(TEXT("\u00F6"))));
    EXPECT_LT(keyOf(english, byText, bytesOf(TEXT("\u00F6"))), keyOf(english, byText, bytesOf(TEXT("z"))));
}

TEST(SortKeys, CaseOrdersLastAndNotAtAllWithoutCase) {
    const SortKeys keys("en_US");

    EXPECT_LT(keyOf(keys, byText, bytesOf(TEXT("a"))), keyOf(keys, byText, bytesOf(TEXT("A"))));
    EXPECT_LT(keyOf(keys, byText, bytesOf(TEXT("A"))), keyOf(keys, byText, bytesOf(TEXT("b"))));
    // Equal without case, they go by code unit.
    EXPECT_LT(keyOf(keys, byTextWithoutCase, bytesOf(TEXT("AB"))), keyOf(keys, byTextWithoutCase, bytesOf(TEXT("aB"))));
    EXPECT_LT(keyOf(keys, byTextWithoutCase, bytesOf(TEXT("aB"))), keyOf(keys, byTextWithoutCase, bytesOf(TEXT("ab"))));
    EXPECT_LT(keyOf(keys, byTextWithoutCase, bytesOf(TEXT("ab"))), keyOf(keys, byTextWithoutCase, bytesOf(TEXT("AC"))));
}

TEST(SortKeys, RecordsWithoutThePropertyComeLastOrFirst) {
    const SortKeys keys("");
    for (const WORD kind : std::initializer_list<WORD>{2, 3, 5, 11, 18, 19, 31, 64}) {
        const CEPROPID id = property(1, kind);
        const std::size_t width = kind == 31 ? 40 : (kind == 5 || kind == 64 ? 8 : (kind == 3 || kind == 19 ? 4 : 2));
        for (const char filling : {'\0', '\x7F', '\xFF'}) {
            const std::string key = keyOf(keys, {id, 0}, std::string(width, filling));
            EXPECT_LT(key, keys.keyOfRecord({id, 0}, {})) << kind;
            EXPECT_GT(key, keys.keyOfRecord({id, Platform::sortUnknownFirst}, {})) << kind;
        }
    }
}

TEST(SortKeys, RecordsKeyIsItsPropertys) {
    const SortKeys keys("");
    const Writing writing = Writing().set(property(2, 3), 9).set(property(1, 31), TEXT("b"));
    std::string packed;
    ASSERT_EQ(Platform::applyEdits({}, writing.edits(), packed), ERROR_SUCCESS);

    EXPECT_EQ(keys.keyOfRecord(byText, packed), keyOf(keys, byText, bytesOf(TEXT("b"))));
    EXPECT_EQ(keys.keyOfRecord({property(2, 3), 0}, packed), keyOf(keys, {property(2, 3), 0}, bytesOf(9)));
    EXPECT_EQ(keys.keyOfRecord({0, 0}, packed), "");
}

TEST(SortKeys, ThereIsNoKeyForABlobOrAValueOfAWrongWidth) {
    const SortKeys keys("");

    EXPECT_EQ(keys.keyOf({property(1, 65), 0}, "abc"), std::nullopt);
    EXPECT_EQ(keys.keyOf({property(1, 3), 0}, "abc"), std::nullopt);
    EXPECT_EQ(keys.keyOf({property(1, 31), 0}, "abc"), std::nullopt);
    EXPECT_EQ(keys.keyOf({0, 0}, "abc"), std::nullopt);
}

TEST(SortKeys, VersionIsTheSameForTheSameCollation) {
    EXPECT_EQ(SortKeys("ko_KR").version(), SortKeys("ko_KR").version());
    EXPECT_FALSE(SortKeys("ko_KR").version().empty());
}

}  // namespace
}  // namespace engine_testing
