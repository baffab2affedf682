#include <utility>

#include <gtest/gtest.h>

#include "tessera/platform/base/Bstr.h"
#include "tests/platform/base/Printing.h"

TEST(SysAllocString, CopiesTheTextWithItsLength) {
    const BSTR text = SysAllocString(TEXT("\uAE40 Kim"));

    EXPECT_EQ(SysStringLen(text), 5U);
    EXPECT_EQ(WString(text), TEXT("\uAE40 Kim"));
    SysFreeString(text);
}

TEST(SysAllocString, ANullTextGivesNull) {
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
}

TEST(SysAllocStringLen, KeepsZeroCharactersAndEndsWithOne) {
    const BSTR text = SysAllocStringLen(TEXT("a\0bc"), 3);

    EXPECT_EQ(SysStringLen(text), 3U);
    EXPECT_EQ(WString(text, 4), WString(TEXT("a\0b\0"), 4));
    SysFreeString(text);
}

TEST(SysAllocStringLen, ANullTextGivesRoomForOne) {
    const BSTR text = SysAllocStringLen(nullptr, 3);

    EXPECT_EQ(SysStringLen(text), 3U);
    EXPECT_EQ(text[3], u'\0');
    SysFreeString(text);
}

TEST(SysAllocStringLen, ALengthThatItsBytesCannotCountIsRefused) {
    EXPECT_EQ(SysAllocStringLen(TEXT("a"), 0x80000000U), nullptr);
    EXPECT_EQ(SysAllocStringLen(TEXT("a"), 0xFFFFFFFFU), nullptr);
}

TEST(SysStringLen, ANullTextIsEmpty) {
    EXPECT_EQ(SysStringLen(nullptr), 0U);
    SysFreeString(nullptr);
}

TEST(Bstr, OwnsACopyOfTheText) {
    const Bstr text{CString(TEXT("Kim"))};

    EXPECT_FALSE(text.isEmpty());
    EXPECT_EQ(text.text(), CString(TEXT("Kim")));
}

TEST(Bstr, WithoutATextIsEmpty) {
    const Bstr none;

    EXPECT_EQ(none.get(), nullptr);
    EXPECT_TRUE(none.isEmpty());
    EXPECT_EQ(none.text(), CString());
}

TEST(Bstr, MovingHandsTheTextOver) {
    Bstr first{CString(TEXT("Kim"))};

    Bstr second(std::move(first));
    Bstr third;
    third = std::move(second);

    EXPECT_EQ(third.text(), CString(TEXT("Kim")));
}

TEST(Bstr, OutTakesOverWhatIsPutThere) {
    Bstr text{CString(TEXT("old"))};

    *text.out() = SysAllocString(TEXT("new"));

    EXPECT_EQ(text.text(), CString(TEXT("new")));
}
