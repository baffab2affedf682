#include <numeric>

#include <gtest/gtest.h>

#include "tessera/platform/base/Collections.h"
#include "tests/platform/base/Printing.h"

TEST(CArray, KeepsElementsInTheOrderOfAdding) {
    CStringArray names;

    EXPECT_EQ(names.Add(TEXT("a")), 0);
    EXPECT_EQ(names.Add(TEXT("b")), 1);
    EXPECT_EQ(names.Add(TEXT("c")), 2);
    names.SetAt(1, TEXT("B"));
    names.RemoveAt(0);

    EXPECT_EQ(names.GetSize(), 2);
    EXPECT_EQ(names.GetAt(0), CString(TEXT("B")));
    EXPECT_EQ(names[1], CString(TEXT("c")));
    names.RemoveAll();
    EXPECT_TRUE(names.IsEmpty());
}

TEST(CArray, IsWalkedLikeARange) {
    CArray<int> numbers;
    for (const int number : {1, 2, 3})
        numbers.Add(number);
    numbers[0] = 10;

    EXPECT_EQ(std::accumulate(numbers.begin(), numbers.end(), 0), 15);
}

TEST(CMap, FindsWhatWasSetLast) {
    CMap<DWORD, DWORD, CString, const CString&> names(32);
    CString found;
    names.InitHashTable(101);

    names.SetAt(7, TEXT("old"));
    names.SetAt(7, TEXT("new"));
    names[8] = TEXT("eight");

    EXPECT_EQ(names.GetCount(), 2);
    EXPECT_TRUE(names.Lookup(7, found));
    EXPECT_EQ(found, CString(TEXT("new")));
    EXPECT_FALSE(names.Lookup(9, found));
    EXPECT_EQ(found, CString(TEXT("new")));
}

TEST(CMap, RemovingAnswersWhetherThereWasOne) {
    CMap<DWORD, DWORD, DWORD, DWORD> numbers;
    numbers.SetAt(1, 10);
    numbers.SetAt(2, 20);

    EXPECT_TRUE(numbers.RemoveKey(1));
    EXPECT_FALSE(numbers.RemoveKey(1));
    numbers.RemoveAll();

    EXPECT_EQ(numbers.GetCount(), 0);
}
