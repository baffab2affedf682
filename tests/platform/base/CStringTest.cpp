#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/platform/base/CString.h"
#include "tests/platform/base/Printing.h"

TEST(CString, ANullTextIsTheEmptyText) {
    CString text(static_cast<const WCHAR*>(nullptr));
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_TRUE(CString(nullptr, 5).IsEmpty());

    text = u"a";
    text = static_cast<const WCHAR*>(nullptr);
    text += static_cast<const WCHAR*>(nullptr);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.Compare(nullptr), 0);
    EXPECT_EQ(text.Insert(0, static_cast<const WCHAR*>(nullptr)), 0);
}

TEST(CString, IsMadeOfAPartOrOfARepeatedCharacter) {
    EXPECT_EQ(CString(u"abcd", 2), CString(u"ab"));
    EXPECT_EQ(CString(u"abcd", 1), CString(u"a"));
    EXPECT_EQ(CString(u"abcd", -1), CString());
    EXPECT_EQ(CString(u'x', 3), CString(u"xxx"));
    EXPECT_EQ(CString(u'x', 0), CString());
    EXPECT_EQ(CString(u'x', -1), CString());
}

TEST(CString, MayHoldZeroCharacters) {
    const CString text(std::u16string_view(u"a\0b", 3));

    EXPECT_EQ(text.GetLength(), 3);
    EXPECT_EQ(std::u16string(static_cast<const WCHAR*>(text)), u"a");
    EXPECT_EQ(text.Find(u'b'), 2);
}

TEST(CString, CharactersAreReadAndSetByPosition) {
    CString text(u"abc");

    text.SetAt(1, u'X');

    EXPECT_EQ(text.GetAt(1), u'X');
    EXPECT_EQ(text[2], u'c');
}

TEST(CString, ComparesCodeUnits) {
    EXPECT_LT(CString(u"Z").Compare(u"a"), 0);
    EXPECT_GT(CString(u"\uFFFF").Compare(u"\u0001"), 0);
    EXPECT_LT(CString(u"a").Compare(u"aa"), 0);
    EXPECT_EQ(CString(u"a").Compare(u"a"), 0);
    EXPECT_TRUE(CString(u"a") == u"a");
    EXPECT_TRUE(CString(u"a") < CString(u"b"));
}

TEST(CString, SortsByItsCharactersAndNotByItsAddress) {
    std::vector<CString> texts{u"c", u"b", u"a"};
    std::ranges::sort(texts);
    EXPECT_EQ(texts, (std::vector<CString>{u"a", u"b", u"c"}));
    EXPECT_TRUE(std::less<>()(texts[0], texts[1]));
    EXPECT_FALSE(std::less<>()(texts[1], texts[0]));
}

TEST(CString, FindLooksFromAPosition) {
    const CString text(u"abcabc");

    EXPECT_EQ(text.Find(u'b'), 1);
    EXPECT_EQ(text.Find(u'b', 2), 4);
    EXPECT_EQ(text.Find(u'b', 5), -1);
    EXPECT_EQ(text.Find(u'b', 99), -1);
    EXPECT_EQ(text.Find(u'b', -7), 1);
    EXPECT_EQ(text.Find(u"ca"), 2);
    EXPECT_EQ(text.Find(u"ab", 1), 3);
    EXPECT_EQ(text.Find(u"abd"), -1);
    EXPECT_EQ(text.ReverseFind(u'a'), 3);
    EXPECT_EQ(text.ReverseFind(u'x'), -1);
}

TEST(CString, PartsAreCutToTheText) {
    const CString text(u"abcd");

    EXPECT_EQ(text.Left(2), CString(u"ab"));
    EXPECT_EQ(text.Left(9), text);
    EXPECT_EQ(text.Left(-1), CString());
    EXPECT_EQ(text.Mid(1), CString(u"bcd"));
    EXPECT_EQ(text.Mid(1, 2), CString(u"bc"));
    EXPECT_EQ(text.Mid(-1, 2), CString(u"ab"));
    EXPECT_EQ(text.Mid(4), CString());
    EXPECT_EQ(text.Mid(9, 1), CString());
    EXPECT_EQ(text.Mid(1, -1), CString());
    EXPECT_EQ(text.Right(2), CString(u"cd"));
    EXPECT_EQ(text.Right(9), text);
    EXPECT_EQ(text.Right(-1), CString());
}

TEST(CString, InsertAndDeleteAnswerTheNewLength) {
    CString text(u"ad");

    EXPECT_EQ(text.Insert(1, u"bc"), 4);
    EXPECT_EQ(text.Insert(99, u'e'), 5);
    EXPECT_EQ(text.Insert(-1, u'_'), 6);
    EXPECT_EQ(text, CString(u"_abcde"));
    EXPECT_EQ(text.Delete(0), 5);
    EXPECT_EQ(text.Delete(3, 99), 3);
    EXPECT_EQ(text.Delete(3), 3);
    EXPECT_EQ(text.Delete(0, -1), 3);
    EXPECT_EQ(text, CString(u"abc"));
}

TEST(CString, ReplaceCountsWhatItReplaced) {
    CString text(u"a;b;c");

    EXPECT_EQ(text.Replace(u';', u','), 2);
    EXPECT_EQ(text.Replace(u';', u','), 0);

    EXPECT_EQ(text, CString(u"a,b,c"));
}

TEST(CString, TrimsAtOneEndOnly) {
    CString left(u"  a ");
    left.TrimLeft(u' ');
    EXPECT_EQ(left, CString(u"a "));

    CString right(u" a\r\n \n");
    right.TrimRight(u"\n\r ");
    EXPECT_EQ(right, CString(u" a"));

    CString all(u"\r\n");
    all.TrimRight(u"\n\r");
    EXPECT_TRUE(all.IsEmpty());
    CString blanks(u"   ");
    blanks.TrimLeft(u' ');
    EXPECT_TRUE(blanks.IsEmpty());
    CString untouched(u" a ");
    untouched.TrimRight(u"");
    untouched.TrimRight(nullptr);
    EXPECT_EQ(untouched, CString(u" a "));
}

TEST(CString, CaseIsMappedUnitByUnit) {
    CString text(u"aZ@[`{1 \u00C9\u00E9\u00DF\u0130\uAC00\U0001F4DE");
    CString upper = text;
    const int length = text.GetLength();

    text.MakeLower();
    upper.MakeUpper();

    EXPECT_EQ(text, CString(u"az@[`{1 \u00E9\u00E9\u00DFi\uAC00\U0001F4DE"));
    EXPECT_EQ(upper, CString(u"AZ@[`{1 \u00C9\u00C9\u00DF\u0130\uAC00\U0001F4DE"));
    EXPECT_EQ(text.GetLength(), length);
}

TEST(CString, Concatenates) {
    CString text = CString(u"a") + u"b" + CString(u"c");
    text += u'd';
    text += CString(u"e");
    text += u"f";

    EXPECT_EQ(u">" + text, CString(u">abcdef"));
}

TEST(CString, MayBeAddedToAndAssignedFromItself) {
    CString text(u"ab");

    text += text;
    text += static_cast<const WCHAR*>(text);
    text.Insert(1, text);
    EXPECT_EQ(text.GetLength(), 16);

    text = static_cast<const WCHAR*>(text) + 14;
    EXPECT_EQ(text, CString(u"ab"));
}
