#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "tessera/platform/contacts/Restriction.h"
#include "tests/platform/contacts/PackedContact.h"

using Platform::ContactField;
using Platform::Restriction;
using testing_support::PackedContact;

namespace {

/// Whether the restriction lets the contact through; a malformed one fails the test.
bool lets(const PackedContact& contact, WStringView text) {
    const auto restriction = Restriction::parse(text);
    EXPECT_TRUE(restriction.has_value());
    return restriction && restriction->matches(contact.packed());
}

bool malformed(WStringView text) {
    return !Restriction::parse(text).has_value();
}

PackedContact named(WStringView name) {
    return PackedContact().with(ContactField::fileAs, name);
}

}  // namespace

TEST(Restriction, EachOperatorComparesAsItSays) {
    const PackedContact contact = named(TEXT("M"));

    EXPECT_TRUE(lets(contact, TEXT("[FileAs] = \"M\"")));
    EXPECT_FALSE(lets(contact, TEXT("[FileAs] = \"N\"")));
    EXPECT_TRUE(lets(contact, TEXT("[FileAs] <> \"N\"")));
    EXPECT_FALSE(lets(contact, TEXT("[FileAs] <> \"M\"")));
    EXPECT_TRUE(lets(contact, TEXT("[FileAs] < \"N\"")));
    EXPECT_FALSE(lets(contact, TEXT("[FileAs] < \"M\"")));
    EXPECT_TRUE(lets(contact, TEXT("[FileAs] <= \"M\"")));
    EXPECT_FALSE(lets(contact, TEXT("[FileAs] <= \"L\"")));
    EXPECT_TRUE(lets(contact, TEXT("[FileAs] > \"L\"")));
    EXPECT_FALSE(lets(contact, TEXT("[FileAs] > \"M\"")));
    EXPECT_TRUE(lets(contact, TEXT("[FileAs] >= \"M\"")));
    EXPECT_FALSE(lets(contact, TEXT("[FileAs] >= \"N\"")));
}

TEST(Restriction, TextsCompareInUpperCaseByCodeUnit) {
    EXPECT_TRUE(lets(named(TEXT("kim")), TEXT("[FileAs] = \"KIM\"")));
    EXPECT_TRUE(lets(named(TEXT("KIM")), TEXT("[FileAs] = \"kIm\"")));
    EXPECT_TRUE(lets(named(TEXT("\u00e9")), TEXT("[FileAs] = \"\u00c9\"")));
    EXPECT_TRUE(lets(named(TEXT("_")), TEXT("[FileAs] > \"a\""))) << "'_' stands after 'A', though before 'a'";
    EXPECT_TRUE(lets(named(TEXT("\u00e9a")), TEXT("[FileAs] > \"z\""))) << "no collation has a say";
    EXPECT_TRUE(lets(named(TEXT("Kim")), TEXT("[FileAs] < \"Kim \""))) << "a prefix stands first";
}

TEST(Restriction, AnUpperBoundOfLastCharacterPlusOneTakesInAllWithThePrefix) {
    EXPECT_TRUE(lets(named(TEXT("Kiz")), TEXT("[FileAs] >= \"ki\" and [FileAs] < \"kj\"")));
    EXPECT_TRUE(lets(named(TEXT("Zoe")), TEXT("[FileAs] >= \"z\" and [FileAs] < \"{\"")));
    EXPECT_TRUE(lets(named(TEXT("\uae40\ubbfc\uc218")), TEXT("[FileAs] >= \"\uae40\" and [FileAs] < \"\uae41\"")));
    const PackedContact nine = PackedContact().with(ContactField::mobileTelephoneNumber, TEXT("9123"));
    EXPECT_TRUE(lets(nine, TEXT("[MobileTelephoneNumber] >= \"9\" and [MobileTelephoneNumber] < \":\"")));
    EXPECT_FALSE(lets(named(TEXT("{x")), TEXT("[FileAs] >= \"z\" and [FileAs] < \"{\"")));
}

TEST(Restriction, EveryPropertyIsKnownByItsNameInAnyCase) {
    for (const auto& definition : Platform::contactFields) {
        if (definition.field == ContactField::birthday) continue;
        const PackedContact contact = PackedContact().with(definition.field, TEXT("x"));
        WString name(definition.name);
        EXPECT_TRUE(lets(contact, TEXT("[") + name + TEXT("] = \"x\"")));
        std::ranges::transform(name, name.begin(), Platform::asciiUpper);
        EXPECT_TRUE(lets(contact, TEXT("[") + name + TEXT("] = \"x\"")));
    }
}

TEST(Restriction, AnAbsentPropertyMatchesNothingWhateverTheOperator) {
    const PackedContact contact = named(TEXT("Kim"));

    for (const WString op : {TEXT("<"), TEXT("<="), TEXT(">"), TEXT(">="), TEXT("="), TEXT("<>")}) {
        EXPECT_FALSE(lets(contact, TEXT("[Email1Address] ") + op + TEXT(" \"x\"")));
        EXPECT_FALSE(lets(contact, TEXT("[Email1Address] ") + op + TEXT(" \"\"")));
        EXPECT_FALSE(lets(contact, TEXT("[Birthday] ") + op + TEXT(" \"1990-03-05\"")));
    }
}

TEST(Restriction, JoinedTermsAreTakenFromLeftToRight) {
    const PackedContact contact = named(TEXT("Kim"));
    const WString yes = TEXT("[FileAs] = \"Kim\"");
    const WString no = TEXT("[FileAs] = \"Lee\"");

    EXPECT_FALSE(lets(contact, yes + TEXT(" or ") + yes + TEXT(" and ") + no));
    EXPECT_TRUE(lets(contact, yes + TEXT(" or (") + yes + TEXT(" and ") + no + TEXT(")")));
    EXPECT_TRUE(lets(contact, no + TEXT(" and ") + no + TEXT(" or ") + yes));
    EXPECT_FALSE(lets(contact, no + TEXT(" and (") + no + TEXT(" or ") + yes + TEXT(")")));
}

TEST(Restriction, KeywordsAreInAnyCaseAndBlanksAreFree) {
    const PackedContact contact = named(TEXT("Kim"));

    EXPECT_TRUE(lets(contact, TEXT("[FileAs]=\"Kim\"AND[FileAs]<>\"Lee\"")));
    EXPECT_TRUE(lets(contact, TEXT("\t( [FileAs] \r\n= \"Lee\" ) Or  [FileAs] = \"kim\"  ")));
}

TEST(Restriction, WhatStandsInAValueNeverChangesTheMeaning) {
    const WString value = TEXT("a and b] or [FileAs <> ( %s %n ) 'x' =");

    EXPECT_TRUE(lets(named(value), TEXT("[FileAs] = \"") + value + TEXT("\"")));
    EXPECT_FALSE(lets(named(TEXT("other")), TEXT("[FileAs] = \"") + value + TEXT("\"")));
    EXPECT_FALSE(lets(named(TEXT("other")), TEXT("[FileAs] = \"x or 1 = 1\"")));
}

TEST(Restriction, MalformedTextsAreRefused) {
    for (const WStringView text : {TEXT(""),
                                   TEXT("   "),
                                   TEXT("x"),
                                   TEXT("FileAs = \"x\""),
                                   TEXT("[FileAs"),
                                   TEXT("[FileAs]"),
                                   TEXT("[FileAs] ="),
                                   TEXT("[FileAs] = x"),
                                   TEXT("[FileAs] = 'x'"),
                                   TEXT("[FileAs] = \"x"),
                                   TEXT("[FileAs] = x\""),
                                   TEXT("[FileAs] == \"x\""),
                                   TEXT("[FileAs] != \"x\""),
                                   TEXT("[FileAs] > = \"x\""),
                                   TEXT("[FileAs] like \"x\""),
                                   TEXT("[] = \"x\""),
                                   TEXT("[Unknown] = \"x\""),
                                   TEXT("[ FileAs ] = \"x\""),
                                   TEXT("\"x\" = [FileAs]"),
                                   TEXT("[FileAs] = \"x\" and"),
                                   TEXT("and [FileAs] = \"x\""),
                                   TEXT("[FileAs] = \"x\" [FileAs] = \"x\""),
                                   TEXT("[FileAs] = \"x\" andor [FileAs] = \"x\""),
                                   TEXT("[FileAs] = \"x\" xor [FileAs] = \"x\""),
                                   TEXT("()"),
                                   TEXT("([FileAs] = \"x\""),
                                   TEXT("[FileAs] = \"x\")"),
                                   TEXT("not [FileAs] = \"x\""),
                                   TEXT("[FileAs] = \"x\";")}) {
        EXPECT_TRUE(malformed(text)) << std::string(text.begin(), text.end());
    }
}

TEST(Restriction, AStrayQuoteIsMalformed) {
    EXPECT_TRUE(malformed(TEXT("[FileAs] = \"a\"b\"")));
    EXPECT_TRUE(malformed(TEXT("[FileAs] = \"a\" or \"b\"")));
    EXPECT_TRUE(malformed(TEXT("[FileAs] = \"a\"\"b\""))) << "two quotes are no way to write one";
    EXPECT_TRUE(malformed(TEXT("[FileAs] = \"a\\\"b\""))) << "nor is a backslash";
}

TEST(Restriction, NestingIsBounded) {
    const auto nested = [](std::size_t depth) {
        return WString(depth, u'(') + TEXT("[FileAs] = \"Kim\"") + WString(depth, u')');
    };

    EXPECT_TRUE(lets(named(TEXT("Kim")), nested(Restriction::maxNesting)));
    EXPECT_TRUE(malformed(nested(Restriction::maxNesting + 1)));
    EXPECT_TRUE(malformed(WString(5'000'000, u'(')));
}

TEST(Restriction, AVeryLongChainIsTakenInItsStride) {
    WString text = TEXT("[FileAs] = \"Kim\"");
    for (int i = 0; i < 100'000; ++i)
        text += TEXT(" and [FileAs] <> \"Lee\"");

    EXPECT_TRUE(lets(named(TEXT("Kim")), text));
}

TEST(Restriction, TheBirthdayComparesAsADate) {
    const PackedContact contact = PackedContact().bornOn(1990, 3, 5);

    EXPECT_TRUE(lets(contact, TEXT("[Birthday] = \"1990-03-05\"")));
    EXPECT_TRUE(lets(contact, TEXT("[birthday] < \"1990-11-01\"")));
    EXPECT_TRUE(lets(contact, TEXT("[Birthday] > \"1989-12-31\"")));
    EXPECT_TRUE(lets(contact, TEXT("[Birthday] > \"1500-01-01\""))) << "a day that no birthday can be before";
    EXPECT_FALSE(lets(contact, TEXT("[Birthday] <> \"1990-03-05\"")));
    EXPECT_FALSE(lets(PackedContact().bornOn(1601, 1, 1), TEXT("[Birthday] <= \"1600-12-31\"")));
}

TEST(Restriction, ABirthdayThatIsNoDateIsMalformed) {
    EXPECT_TRUE(malformed(TEXT("[Birthday] = \"\"")));
    EXPECT_TRUE(malformed(TEXT("[Birthday] = \"soon\"")));
    EXPECT_TRUE(malformed(TEXT("[Birthday] = \"1990-02-30\"")));
    EXPECT_FALSE(malformed(TEXT("[FileAs] = \"1990-02-30\"")));
}
