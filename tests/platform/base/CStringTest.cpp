#include <algorithm>
#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/platform/base/CString.h"
#include "tests/platform/base/Printing.h"

TEST(CString, ANullTextIsTheEmptyText) {
    CString text(static_cast<const WCHAR*>(nullptr));
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_TRUE(CString(nullptr, 5).IsEmpty());

    text = TEXT("a");
    text = static_cast<const WCHAR*>(nullptr);
    text += static_cast<const WCHAR*>(nullptr);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.Compare(nullptr), 0);
    EXPECT_EQ(text.Insert(0, static_cast<const WCHAR*>(nullptr)), 0);
}

TEST(CString, IsMadeOfAPartOrOfARepeatedCharacter) {
    EXPECT_EQ(CString(TEXT("abcd"), 2), CString(TEXT("ab")));
    EXPECT_EQ(CString(TEXT("abcd"), 1), CString(TEXT("a")));
    EXPECT_EQ(CString(TEXT("abcd"), -1), CString());
    EXPECT_EQ(CString(u'x', 3), CString(TEXT("xxx")));
    EXPECT_EQ(CString(u'x', 0), CString());
    EXPECT_EQ(CString(u'x', -1), CString());
}

TEST(CString, MayHoldZeroCharacters) {
    const CString text(WStringView(TEXT("a\0b"), 3));

    EXPECT_EQ(text.GetLength(), 3);
    EXPECT_EQ(WString(static_cast<const WCHAR*>(text)), TEXT("a"));
    EXPECT_EQ(text.Find(u'b'), 2);
}

TEST(CString, CharactersAreReadAndSetByPosition) {
    CString text(TEXT("abc"));

    text.SetAt(1, u'X');

    EXPECT_EQ(text.GetAt(1), u'X');
    EXPECT_EQ(text[2], u'c');
}

TEST(CString, ComparesCodeUnits) {
    EXPECT_LT(CString(TEXT("Z")).Compare(TEXT("a")), 0);
    EXPECT_GT(CString(TEXT("\uFFFF")).Compare(TEXT("\u0001")), 0);
    EXPECT_LT(CString(TEXT("a")).Compare(TEXT("aa")), 0);
    EXPECT_EQ(CString(TEXT("a")).Compare(TEXT("a")), 0);
    EXPECT_TRUE(CString(TEXT("a")) == TEXT("a"));
    EXPECT_TRUE(CString(TEXT("a")) < CString(TEXT("b")));
}

TEST(CString, SortsByItsCharactersAndNotByItsAddress) {
    std::vector<CString> texts{TEXT("c"), TEXT("b"), TEXT("a")};
    std::ranges::sort(texts);
    EXPECT_EQ(texts, (std::vector<CString>{TEXT("a"), TEXT("b"), TEXT("c")}));
    EXPECT_TRUE(std::less<>()(texts[0], texts[1]));
    EXPECT_FALSE(std::less<>()(texts[1], texts[0]));
}

TEST(CString, FindLooksFromAPosition) {
    const CString text(TEXT("abcabc"));

    EXPECT_EQ(text.Find(u'b'), 1);
    EXPECT_EQ(text.Find(u'b', 2), 4);
    EXPECT_EQ(text.Find(u'b', 5), -1);
    EXPECT_EQ(text.Find(u'b', 99), -1);
    EXPECT_EQ(text.Find(u'b', -7), 1);
    EXPECT_EQ(text.Find(TEXT("ca")), 2);
    EXPECT_EQ(text.Find(TEXT("ab"), 1), 3);
    EXPECT_EQ(text.Find(TEXT("abd")), -1);
    EXPECT_EQ(text.ReverseFind(u'a'), 3);
    EXPECT_EQ(text.ReverseFind(u'x'), -1);
}

TEST(CString, PartsAreCutToTheText) {
    const CString text(TEXT("abcd"));

    EXPECT_EQ(text.Left(2), CString(TEXT("ab")));
    EXPECT_EQ(text.Left(9), text);
    EXPECT_EQ(text.Left(-1), CString());
    EXPECT_EQ(text.Mid(1), CString(TEXT("bcd")));
    EXPECT_EQ(text.Mid(1, 2), CString(TEXT("bc")));
    EXPECT_EQ(text.Mid(-1, 2), CString(TEXT("ab")));
    EXPECT_EQ(text.Mid(4), CString());
    EXPECT_EQ(text.Mid(9, 1), CString());
    EXPECT_EQ(text.Mid(1, -1), CString());
    EXPECT_EQ(text.Right(2), CString(TEXT("cd")));
    EXPECT_EQ(text.Right(9), text);
    EXPECT_EQ(text.Right(-1), CString());
}

TEST(CString, InsertAndDeleteAnswerTheNewLength) {
    CString text(TEXT("ad"));

    EXPECT_EQ(text.Insert(1, TEXT("bc")), 4);
    EXPECT_EQ(text.Insert(99, u'e'), 5);
    EXPECT_EQ(text.Insert(-1, u'_'), 6);
    EXPECT_EQ(text, CString(TEXT("_abcde")));
    EXPECT_EQ(text.Delete(0), 5);
    EXPECT_EQ(text.Delete(3, 99), 3);
    EXPECT_EQ(text.Delete(3), 3);
    EXPECT_EQ(text.Delete(0, -1), 3);
    EXPECT_EQ(text, CString(TEXT("abc")));
}

TEST(CString, ReplaceCountsWhatItReplaced) {
    CString text(TEXT("a;b;c"));

    EXPECT_EQ(text.Replace(u';', u','), 2);
    EXPECT_EQ(text.Replace(u';', u','), 0);

    EXPECT_EQ(text, CString(TEXT("a,b,c")));
}

TEST(CString, TrimsAtOneEndOnly) {
    CString left(TEXT("  a "));
    left.TrimLeft(u' ');
    EXPECT_EQ(left, CString(TEXT("a ")));

    CString right(TEXT(" a\r\n \n"));
    right.TrimRight(TEXT("\n\r "));
    EXPECT_EQ(right, CString(TEXT(" a")));

    CString all(TEXT("\r\n"));
    all.TrimRight(TEXT("\n\r"));
    EXPECT_TRUE(all.IsEmpty());
    CString blanks(TEXT("   "));
    blanks.TrimLeft(u' ');
    EXPECT_TRUE(blanks.IsEmpty());
    CString untouched(TEXT(" a "));
    untouched.TrimRight(TEXT(""));
    untouched.TrimRight(nullptr);
    EXPECT_EQ(untouched, CString(TEXT(" a ")));
}

TEST(CString, CaseIsMappedUnitByUnit) {
    CString text(TEXT("aZ@[`{1 \u00C9\u00E9\u00DF\uAC00\U0001F4DE"));
    CString upper = text;
    const int length = text.GetLength();

    text.MakeLower();
    upper.MakeUpper();

    EXPECT_EQ(text, CString(TEXT("az@[`{1 \u00E9\u00E9\u00DF\uAC00\U0001F4DE")));
    EXPECT_EQ(upper, CString(TEXT("AZ@[`{1 \u00C9\u00C9\u00DF\uAC00\U0001F4DE")));
    EXPECT_EQ(text.GetLength(), length);
}

TEST(CString, Concatenates) {
    CString text = CString(TEXT("a")) + TEXT("b") + CString(TEXT("c"));
    text += u'd';
    text += CString(TEXT("e"));
    text += TEXT("f");

    EXPECT_EQ(TEXT(">") + text, CString(TEXT(">abcdef")));
}

TEST(CString, MayBeAddedToAndAssignedFromItself) {
    CString text(TEXT("ab"));

    text += text;
    text += static_cast<const WCHAR*>(text);
    text.Insert(1, text);
    EXPECT_EQ(text.GetLength(), 16);

    text = static_cast<const WCHAR*>(text) + 14;
    EXPECT_EQ(text, CString(TEXT("ab")));
}
