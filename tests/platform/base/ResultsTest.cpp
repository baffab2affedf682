#include <thread>

#include <gtest/gtest.h>

#include "tessera/platform/base/Results.h"

TEST(Results, FailureIsNegative) {
    EXPECT_TRUE(FAILED(E_FAIL));
    EXPECT_TRUE(FAILED(E_INVALIDARG));
    EXPECT_TRUE(SUCCEEDED(S_OK));
    EXPECT_TRUE(SUCCEEDED(S_FALSE));
    EXPECT_FALSE(FAILED(S_FALSE));
}

TEST(LastError, IsKeptUntilTheNext) {
    SetLastError(ERROR_SEEK);
    EXPECT_EQ(GetLastError(), ERROR_SEEK);
    EXPECT_EQ(GetLastError(), ERROR_SEEK);

    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
}

TEST(LastError, IsTheThreadsOwn) {
    SetLastError(ERROR_SEEK);
    DWORD ofOther = ERROR_SEEK;

    std::thread other([&] {
        ofOther = GetLastError();
        SetLastError(ERROR_DISK_FULL);
    });
    other.join();

    EXPECT_EQ(ofOther, ERROR_SUCCESS);
    EXPECT_EQ(GetLastError(), ERROR_SEEK);
}
