#include <aclapi.h>
#include <array>
#include <windows.h>

#include "tests/support/Privacy.h"

namespace testing_support {
namespace {

/// Those by whom a file is usually shared.
bool isMany(PSID who) {
    constexpr std::array many = {WinWorldSid, WinAuthenticatedUserSid, WinBuiltinUsersSid, WinInteractiveSid};
    for (const WELL_KNOWN_SID_TYPE type : many) {
        if (IsWellKnownSid(who, type) != 0) return true;
    }
    return false;
}

bool allowsMany(PACL rules) {
    for (DWORD i = 0; i < rules->AceCount; ++i) {
        void* entry = nullptr;
        if (GetAce(rules, i, &entry) == 0) return true;
        auto& rule = *static_cast<ACCESS_ALLOWED_ACE*>(entry);
        if (rule.Header.AceType == ACCESS_ALLOWED_ACE_TYPE && rule.Mask != 0 && isMany(&rule.SidStart)) return true;
    }
    return false;
}

}  // namespace

bool isPrivate(const std::filesystem::path& path) {
    std::wstring name = path.wstring();
    PACL rules = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &rules, nullptr,
                              &descriptor) != ERROR_SUCCESS)
        return false;
    const bool answer = rules != nullptr && !allowsMany(rules);
    LocalFree(descriptor);
    return answer;
}

}  // namespace testing_support
