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
bool lets(const PackedContact& contact, std::u16string_view text) {
    const auto restriction = Restriction::parse(text);
    EXPECT_TRUE(restriction.has_value());
    return restriction && restriction->matches(contact.packed());
}

bool malformed(std::u16string_view text) {
    return !Restriction::parse(text).has_value();
}

PackedContact named(std::u16string_view name) {
    return PackedContact().with(ContactField::fileAs, name);
}

}  // namespace

TEST(Restriction, EachOperatorComparesAsItSays) {
    const PackedContact contact = named(u"M");

    EXPECT_TRUE(lets(contact, u"[FileAs] = \"M\""));
    EXPECT_FALSE(lets(contact, u"[FileAs] = \"N\""));
    EXPECT_TRUE(lets(contact, u"[FileAs] <> \"N\""));
    EXPECT_FALSE(lets(contact, u"[FileAs] <> \"M\""));
    EXPECT_TRUE(lets(contact, u"[FileAs] < \"N\""));
    EXPECT_FALSE(lets(contact, u"[FileAs] < \"M\""));
    EXPECT_TRUE(lets(contact, u"[FileAs] <= \"M\""));
    EXPECT_FALSE(lets(contact, u"[FileAs] <= \"L\""));
    EXPECT_TRUE(lets(contact, u"[FileAs] > \"L\""));
    EXPECT_FALSE(lets(contact, u"[FileAs] > \"M\""));
    EXPECT_TRUE(lets(contact, u"[FileAs] >= \"M\""));
    EXPECT_FALSE(lets(contact, u"[FileAs] >= \"N\""));
}

TEST(Restriction, TextsCompareInUpperCaseByCodeUnit) {
    EXPECT_TRUE(lets(named(u"kim"), u"[FileAs] = \"KIM\""));
    EXPECT_TRUE(lets(named(u"KIM"), u"[FileAs] = \"kIm\""));
    EXPECT_TRUE(lets(named(u"\u00e9"), u"[FileAs] = \"\u00c9\""));
    EXPECT_TRUE(lets(named(u"_"), u"[FileAs] > \"a\"")) << "'_' stands after 'A', though before 'a'";
    EXPECT_TRUE(lets(named(u"\u00e9a"), u"[FileAs] > \"z\"")) << "no collation has a say";
    EXPECT_TRUE(lets(named(u"Kim"), u"[FileAs] < \"Kim \"")) << "a prefix stands first";
}

TEST(Restriction, AnUpperBoundOfLastCharacterPlusOneTakesInAllWithThePrefix) {
    EXPECT_TRUE(lets(named(u"Kiz"), u"[FileAs] >= \"ki\" and [FileAs] < \"kj\""));
    EXPECT_TRUE(lets(named(u"Zoe"), u"[FileAs] >= \"z\" and [FileAs] < \"{\""));
    EXPECT_TRUE(lets(named(u"\uae40\ubbfc\uc218"), u"[FileAs] >= \"\uae40\" and [FileAs] < \"\uae41\""));
    const PackedContact nine = PackedContact().with(ContactField::mobileTelephoneNumber, u"9123");
    EXPECT_TRUE(lets(nine, u"[MobileTelephoneNumber] >= \"9\" and [MobileTelephoneNumber] < \":\""));
    EXPECT_FALSE(lets(named(u"{x"), u"[FileAs] >= \"z\" and [FileAs] < \"{\""));
}

TEST(Restriction, EveryPropertyIsKnownByItsNameInAnyCase) {
    for (const auto& definition : Platform::contactFields) {
        if (definition.field == ContactField::birthday) continue;
        const PackedContact contact = PackedContact().with(definition.field, u"x");
        std::u16string name(definition.name);
        EXPECT_TRUE(lets(contact, u"[" + name + u"] = \"x\""));
        std::ranges::transform(name, name.begin(), Platform::asciiUpper);
        EXPECT_TRUE(lets(contact, u"[" + name + u"] = \"x\""));
    }
}

TEST(Restriction, AnAbsentPropertyMatchesNothingWhateverTheOperator) {
    const PackedContact contact = named(u"Kim");

    for (const std::u16string op : {u"<", u"<=", u">", u">=", u"=", u"<>"}) {
        EXPECT_FALSE(lets(contact, u"[Email1Address] " + op + u" \"x\""));
        EXPECT_FALSE(lets(contact, u"[Email1Address] " + op + u" \"\""));
        EXPECT_FALSE(lets(contact, u"[Birthday] " + op + u" \"1990-03-05\""));
    }
}

TEST(Restriction, JoinedTermsAreTakenFromLeftToRight) {
    const PackedContact contact = named(u"Kim");
    const std::u16string yes = u"[FileAs] = \"Kim\"";
    const std::u16string no = u"[FileAs] = \"Lee\"";

    EXPECT_FALSE(lets(contact, yes + u" or " + yes + u" and " + no));
    EXPECT_TRUE(lets(contact, yes + u" or (" + yes + u" and " + no + u")"));
    EXPECT_TRUE(lets(contact, no + u" and " + no + u" or " + yes));
    EXPECT_FALSE(lets(contact, no + u" and (" + no + u" or " + yes + u")"));
}

TEST(Restriction, KeywordsAreInAnyCaseAndBlanksAreFree) {
    const PackedContact contact = named(u"Kim");

    EXPECT_TRUE(lets(contact, u"[FileAs]=\"Kim\"AND[FileAs]<>\"Lee\""));
    EXPECT_TRUE(lets(contact, u"\t( [FileAs] \r\n= \"Lee\" ) Or  [FileAs] = \"kim\"  "));
}

TEST(Restriction, WhatStandsInAValueNeverChangesTheMeaning) {
    const std::u16string value = u"a and b] or [FileAs <> ( %s %n ) 'x' =";

    EXPECT_TRUE(lets(named(value), u"[FileAs] = \"" + value + u"\""));
    EXPECT_FALSE(lets(named(u"other"), u"[FileAs] = \"" + value + u"\""));
    EXPECT_FALSE(lets(named(u"other"), u"[FileAs] = \"x or 1 = 1\""));
}

TEST(Restriction, MalformedTextsAreRefused) {
    for (const std::u16string_view text : {u"",
                                           u"   ",
                                           u"x",
                                           u"FileAs = \"x\"",
                                           u"[FileAs",
                                           u"[FileAs]",
                                           u"[FileAs] =",
                                           u"[FileAs] = x",
                                           u"[FileAs] = 'x'",
                                           u"[FileAs] = \"x",
                                           u"[FileAs] = x\"",
                                           u"[FileAs] == \"x\"",
                                           u"[FileAs] != \"x\"",
                                           u"[FileAs] > = \"x\"",
                                           u"[FileAs] like \"x\"",
                                           u"[] = \"x\"",
                                           u"[Unknown] = \"x\"",
                                           u"[ FileAs ] = \"x\"",
                                           u"\"x\" = [FileAs]",
                                           u"[FileAs] = \"x\" and",
                                           u"and [FileAs] = \"x\"",
                                           u"[FileAs] = \"x\" [FileAs] = \"x\"",
                                           u"[FileAs] = \"x\" andor [FileAs] = \"x\"",
                                           u"[FileAs] = \"x\" xor [FileAs] = \"x\"",
                                           u"()",
                                           u"([FileAs] = \"x\"",
                                           u"[FileAs] = \"x\")",
                                           u"not [FileAs] = \"x\"",
                                           u"[FileAs] = \"x\";"}) {
        EXPECT_TRUE(malformed(text)) << std::string(text.begin(), text.end());
    }
}

TEST(Restriction, AStrayQuoteIsMalformed) {
    EXPECT_TRUE(malformed(u"[FileAs] = \"a\"b\""));
    EXPECT_TRUE(malformed(u"[FileAs] = \"a\" or \"b\""));
    EXPECT_TRUE(malformed(u"[FileAs] = \"a\"\"b\"")) << "two quotes are no way to write one";
    EXPECT_TRUE(malformed(u"[FileAs] = \"a\\\"b\"")) << "nor is a backslash";
}

TEST(Restriction, NestingIsBounded) {
    const auto nested = [](std::size_t depth) {
        return std::u16string(depth, u'(') + u"[FileAs] = \"Kim\"" + std::u16string(depth, u')');
    };

    EXPECT_TRUE(lets(named(u"Kim"), nested(Restriction::maxNesting)));
    EXPECT_TRUE(malformed(nested(Restriction::maxNesting + 1)));
    EXPECT_TRUE(malformed(std::u16string(5'000'000, u'(')));
}

TEST(Restriction, AVeryLongChainIsTakenInItsStride) {
    std::u16string text = u"[FileAs] = \"Kim\"";
    for (int i = 0; i < 100'000; ++i)
        text += u" and [FileAs] <> \"Lee\"";

    EXPECT_TRUE(lets(named(u"Kim"), text));
}

TEST(Restriction, TheBirthdayComparesAsADate) {
    const PackedContact contact = PackedContact().bornOn(1990, 3, 5);

    EXPECT_TRUE(lets(contact, u"[Birthday] = \"1990-03-05\""));
    EXPECT_TRUE(lets(contact, u"[birthday] < \"1990-11-01\""));
    EXPECT_TRUE(lets(contact, u"[Birthday] > \"1989-12-31\""));
    EXPECT_TRUE(lets(contact, u"[Birthday] > \"1500-01-01\"")) << "a day that no birthday can be before";
    EXPECT_FALSE(lets(contact, u"[Birthday] <> \"1990-03-05\""));
    EXPECT_FALSE(lets(PackedContact().bornOn(1601, 1, 1), u"[Birthday] <= \"1600-12-31\""));
}

TEST(Restriction, ABirthdayThatIsNoDateIsMalformed) {
    EXPECT_TRUE(malformed(u"[Birthday] = \"\""));
    EXPECT_TRUE(malformed(u"[Birthday] = \"soon\""));
    EXPECT_TRUE(malformed(u"[Birthday] = \"1990-02-30\""));
    EXPECT_FALSE(malformed(u"[FileAs] = \"1990-02-30\""));
}
