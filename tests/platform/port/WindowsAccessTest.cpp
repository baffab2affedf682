#include <string>

#include <gtest/gtest.h>

#include "tessera/platform/port/WindowsAccess.h"
#include "tessera/platform/port/WindowsMemory.h"

using namespace Platform::port;

namespace {

/// Of a folder whose owner and rules are spelled as the system does.
bool isShared(const std::wstring& spelled) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    EXPECT_NE(
        ConvertStringSecurityDescriptorToSecurityDescriptorW(spelled.c_str(), SDDL_REVISION_1, &descriptor, nullptr),
        0);
    const LocalPointer<void> owned(descriptor);
    return letsOthersWrite(descriptor);
}

}  // namespace

TEST(LetsOthersWrite, TheSystemAndItsAdministratorsAreNobodyElse) {
    EXPECT_FALSE(isShared(L"O:BAD:(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICIIO;GA;;;CO)"));
    EXPECT_FALSE(isShared(L"O:SYD:(A;OICI;FA;;;SY)"));
}

TEST(LetsOthersWrite, ToReadIsNotToWrite) {
    EXPECT_FALSE(isShared(L"O:BAD:(A;OICI;FA;;;BA)(A;OICI;FR;;;WD)(A;OICI;0x1200a9;;;BU)"));
}

TEST(LetsOthersWrite, EveryRightToChangeSomethingCounts) {
    for (const wchar_t* right : {L"FW", L"FA", L"GW", L"GA", L"SD", L"WD", L"WO", L"DC", L"LC", L"DT"})
        EXPECT_TRUE(isShared(std::wstring(L"O:BAD:(A;;") + right + L";;;BU)")) << std::wstring(right);
}

TEST(LetsOthersWrite, AFolderWithoutRulesIsEverybodys) {
    EXPECT_TRUE(isShared(L"O:BA"));
}

TEST(LetsOthersWrite, AnotherOwnerMayChangeTheRules) {
    EXPECT_TRUE(isShared(L"O:BUD:(A;OICI;FA;;;BA)"));
    EXPECT_TRUE(isShared(L"O:S-1-5-21-1-2-3-4567D:(A;OICI;FA;;;BA)"));
    EXPECT_TRUE(isShared(L"D:(A;OICI;FA;;;BA)"));
}

TEST(LetsOthersWrite, WhatFilesInheritCountsAndWhatFoldersInheritDoesNot) {
    EXPECT_TRUE(isShared(L"O:BAD:(A;OICI;FA;;;BA)(A;OIIO;FW;;;BU)"));
    EXPECT_FALSE(isShared(L"O:BAD:(A;OICI;FA;;;BA)(A;CIIO;FW;;;BU)"));
}

TEST(LetsOthersWrite, ARuleUnderAConditionIsTakenToHold) {
    constexpr BYTE underCondition = ACCESS_ALLOWED_CALLBACK_ACE_TYPE;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ASSERT_NE(ConvertStringSecurityDescriptorToSecurityDescriptorW(L"O:BAD:(A;;FA;;;BU)", SDDL_REVISION_1, &descriptor,
                                                                   nullptr),
              0);
    const LocalPointer<void> owned(descriptor);
    PACL rules = nullptr;
    void* rule = nullptr;
    int isThere = 0;
    int isDefault = 0;
    ASSERT_NE(GetSecurityDescriptorDacl(descriptor, &isThere, &rules, &isDefault), 0);
    ASSERT_NE(GetAce(rules, 0, &rule), 0);
    static_cast<ACE_HEADER*>(rule)->AceType = underCondition;

    EXPECT_TRUE(letsOthersWrite(descriptor));
}
