#include "tests/platform/objectstore/StoreTest.h"

namespace objectstore_test {
namespace {

class Order : public StoreTest {
protected:
    Order() { makeDatabase(TEXT("Rows")); }
};
INSTANTIATE_TEST_SUITE_P(BothStores, Order, bothStores, nameOfKind);

Oids walkIn(CEPROPID sort, DWORD flags = 0) {
    OpenDatabase rows(TEXT("Rows"), sort, flags);
    return rows.walk();
}

TEST_P(Order, NoneGivenAndNoneDeclaredIsTheOrderOfCreation) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID a = rows.add(Row().number(9));
    const CEOID b = rows.add(Row().number(1));
    const CEOID c = rows.add(Row().number(5));
    rows.write(a, Row().number(100));
    EXPECT_EQ(rows.walk(), (Oids{a, b, c}));
}

TEST_P(Order, NoneGivenTakesTheFirstDeclared) {
    makeDatabase(TEXT("Calls"), {{timeId, CEDB_SORT_DESCENDING}, {numberId, 0}});
    OpenDatabase calls(TEXT("Calls"));
    const CEOID early = calls.add(Row().time(10).number(1));
    const CEOID late = calls.add(Row().time(30).number(2));
    const CEOID middle = calls.add(Row().time(20).number(3));
    EXPECT_EQ(calls.walk(), (Oids{late, middle, early}));
    OpenDatabase byNumber(TEXT("Calls"), numberId);
    EXPECT_EQ(byNumber.walk(), (Oids{early, late, middle}));
}

TEST_P(Order, GivenFlagsCountAndNotTheDeclaredOnes) {
    makeDatabase(TEXT("Calls"), {{timeId, CEDB_SORT_DESCENDING}});
    OpenDatabase calls(TEXT("Calls"));
    const CEOID early = calls.add(Row().time(10));
    const CEOID late = calls.add(Row().time(30));
    OpenDatabase ascending(TEXT("Calls"), timeId);
    EXPECT_EQ(ascending.walk(), (Oids{early, late}));
}

TEST_P(Order, UndeclaredOrderIsBuiltFromWhatIsThereAndKeptUpToDate) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID a = rows.add(Row().number(3));
    const CEOID b = rows.add(Row().number(1));
    EXPECT_EQ(walkIn(numberId), (Oids{b, a}));
    const CEOID c = rows.add(Row().number(2));
    EXPECT_EQ(walkIn(numberId), (Oids{b, c, a}));
    rows.write(b, Row().number(4));
    EXPECT_EQ(walkIn(numberId), (Oids{c, a, b}));
    rows.erase(a);
    EXPECT_EQ(walkIn(numberId), (Oids{c, b}));
}

TEST_P(Order, NumbersGoByValue) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID a = rows.add(Row().i2(1).number(-5).ui2(40000).ui4(3000000000u).real(-1.5).boolean(TRUE));
    const CEOID b = rows.add(Row().i2(-3).number(70000).ui2(2).ui4(7).real(2.5e10).boolean(FALSE));
    EXPECT_EQ(walkIn(shortId), (Oids{b, a}));
    EXPECT_EQ(walkIn(numberId), (Oids{a, b}));
    EXPECT_EQ(walkIn(wordId), (Oids{b, a}));
    EXPECT_EQ(walkIn(dwordId), (Oids{b, a}));
    EXPECT_EQ(walkIn(realId), (Oids{a, b}));
    EXPECT_EQ(walkIn(boolId), (Oids{b, a}));
}

TEST_P(Order, TimesGoByValue) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID late = rows.add(Row().time(0x0000000200000000));
    const CEOID early = rows.add(Row().time(0x00000001FFFFFFFF));
    EXPECT_EQ(walkIn(timeId), (Oids{early, late}));
}

TEST_P(Order, TextsGoByCollationAndNotByCodeUnit) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID b = rows.add(Row().name(TEXT("b")));
    const CEOID upper = rows.add(Row().name(TEXT("Z")));
    const CEOID a = rows.add(Row().name(TEXT("a")));
    const CEOID umlaut = rows.add(Row().name(TEXT("ä")));
    EXPECT_EQ(walkIn(nameId), (Oids{a, umlaut, b, upper}));
}

TEST_P(Order, TiesGoByIdentifier) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID a = rows.add(Row().number(1));
    const CEOID b = rows.add(Row().number(1));
    const CEOID c = rows.add(Row().number(1));
    rows.write(a, Row().ui4(1));
    EXPECT_EQ(walkIn(numberId), (Oids{a, b, c}));
}

TEST_P(Order, DescendingReversesTheTiesToo) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID old1 = rows.add(Row().time(10));
    const CEOID new1 = rows.add(Row().time(20));
    const CEOID new2 = rows.add(Row().time(20));
    EXPECT_EQ(walkIn(timeId, CEDB_SORT_DESCENDING), (Oids{new2, new1, old1}));
}

TEST_P(Order, RecordsWithoutThePropertyComeLast) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID lacking = rows.add(Row().name(TEXT("none")));
    const CEOID large = rows.add(Row().number(0x7FFFFFFF));
    EXPECT_EQ(walkIn(numberId), (Oids{large, lacking}));
}

TEST_P(Order, UnknownFirstPutsThemFirst) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID small = rows.add(Row().number(-0x7FFFFFFF));
    const CEOID lacking = rows.add(Row().name(TEXT("none")));
    EXPECT_EQ(walkIn(numberId, CEDB_SORT_UNKNOWNFIRST), (Oids{lacking, small}));
}

TEST_P(Order, DescendingReversesWhereUnknownOnesStand) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID a = rows.add(Row().number(1));
    const CEOID lacking = rows.add(Row().name(TEXT("none")));
    EXPECT_EQ(walkIn(numberId, CEDB_SORT_DESCENDING), (Oids{lacking, a}));
    EXPECT_EQ(walkIn(numberId, CEDB_SORT_DESCENDING | CEDB_SORT_UNKNOWNFIRST), (Oids{a, lacking}));
}

TEST_P(Order, CaselessOrderMixesCasesOfALetter) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID bLow = rows.add(Row().name(TEXT("b")));
    const CEOID aUp2 = rows.add(Row().name(TEXT("A2")));
    const CEOID aLow1 = rows.add(Row().name(TEXT("a1")));
    const CEOID bUp = rows.add(Row().name(TEXT("B")));
    const Oids walked = walkIn(nameId, CEDB_SORT_CASEINSENSITIVE);
    EXPECT_EQ(walked, (Oids{aLow1, aUp2, bUp, bLow})) << "texts that differ in case alone go by code unit";
}

TEST_P(Order, EqualityIsExactInACaselessOrderToo) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID lower = rows.add(Row().name(TEXT("kim")));
    const CEOID upper = rows.add(Row().name(TEXT("KIM")));
    for (const DWORD flags : {DWORD{0}, CEDB_SORT_CASEINSENSITIVE}) {
        OpenDatabase sorted(TEXT("Rows"), nameId, flags);
        EXPECT_EQ(sorted.firstEqual(Row().name(TEXT("kim"))), lower);
        EXPECT_EQ(sorted.firstEqual(Row().name(TEXT("KIM"))), upper);
        EXPECT_EQ(sorted.firstEqual(Row().name(TEXT("Kim"))), 0u);
    }
}

TEST_P(Order, WalkBackwardsMeetsTheSameRecordsReversed) {
    OpenDatabase rows(TEXT("Rows"));
    for (int i = 0; i < 700; ++i) {
        rows.add(Row().number(i * 7919 % 700));
    }
    for (const DWORD flags : {DWORD{0}, CEDB_SORT_DESCENDING}) {
        OpenDatabase sorted(TEXT("Rows"), numberId, flags);
        Oids forward = sorted.walk();
        Oids backward;
        for (CEOID oid = sorted.toLast(); oid != 0; oid = sorted.previous()) {
            backward.push_back(oid);
        }
        EXPECT_EQ(forward.size(), 700u);
        EXPECT_EQ(forward, Oids(backward.rbegin(), backward.rend()));
    }
}

}  // namespace
}  // namespace objectstore_test
