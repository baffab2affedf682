#include "tessera/platform/port/WindowsAccess.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tessera/platform/port/Descriptor.h"
#include "tessera/platform/port/WindowsMemory.h"

namespace Platform::port {
namespace {

/// What the token of this process says of its user; it points into itself. Empty when it cannot be had.
std::vector<std::uint8_t> askForUser() {
    SystemHandle token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) return {};
    const Descriptor owned(descriptorOf(token));
    SystemDword size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    std::vector<std::uint8_t> user(size);
    if (GetTokenInformation(token, TokenUser, user.data(), size, &size) == 0) user.clear();
    return user;
}

/// The identifier of the process's user; null when it cannot be had.
PSID userOfProcess() {
    static std::vector<std::uint8_t> user = askForUser();
    return user.empty() ? nullptr : reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid;
}

LocalPointer<void> makePrivateDescriptor() {
    WCHAR* spelled = nullptr;
    if (userOfProcess() == nullptr || ConvertSidToStringSidW(userOfProcess(), &spelled) == 0) return nullptr;
    const LocalPointer<WCHAR> owned(spelled);
    const WString rules = WString(L"D:P(A;OICI;FA;;;") + spelled + L")(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)";
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(rules.c_str(), SDDL_REVISION_1, &descriptor, nullptr);
    return LocalPointer<void>(descriptor);
}

/// Whom a folder's rules may name without its being shared: the user, the system and its administrators. An owner or
/// creator is whoever makes a file, and stands for no one else.
bool isTrusted(PSID who) {
    constexpr std::array known = {WinLocalSystemSid, WinBuiltinAdministratorsSid, WinCreatorOwnerSid,
                                  WinCreatorOwnerRightsSid};
    if (userOfProcess() != nullptr && EqualSid(who, userOfProcess()) != 0) return true;
    for (const WELL_KNOWN_SID_TYPE type : known) {
        if (IsWellKnownSid(who, type) != 0) return true;
    }
    return false;
}

/// The folder itself, or the files that are made in it: a store's log, which SQLite makes, has the rules that it
/// inherits.
bool concernsFiles(const ACE_HEADER& header) {
    return (header.AceFlags & INHERIT_ONLY_ACE) == 0 || (header.AceFlags & OBJECT_INHERIT_ACE) != 0;
}

bool letsWrite(const ACCESS_ALLOWED_ACE& rule) {
    constexpr SystemDword writing = FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY | FILE_DELETE_CHILD | DELETE | WRITE_DAC |
                                    WRITE_OWNER | GENERIC_WRITE | GENERIC_ALL;
    // One that allows under a condition is laid out alike; whether the condition holds is not asked.
    const bool allows =
        rule.Header.AceType == ACCESS_ALLOWED_ACE_TYPE || rule.Header.AceType == ACCESS_ALLOWED_CALLBACK_ACE_TYPE;
    return allows && concernsFiles(rule.Header) && (rule.Mask & writing) != 0;
}

/// An owner may change the rules.
bool isOwnedByOthers(PSECURITY_DESCRIPTOR descriptor) {
    PSID owner = nullptr;
    int isDefault = 0;
    return GetSecurityDescriptorOwner(descriptor, &owner, &isDefault) == 0 || owner == nullptr || !isTrusted(owner);
}

}  // namespace

SECURITY_ATTRIBUTES* privateAttributes() {
    static const LocalPointer<void> descriptor = makePrivateDescriptor();
    static SECURITY_ATTRIBUTES attributes = {sizeof(SECURITY_ATTRIBUTES), descriptor.get(), FALSE};
    return descriptor != nullptr ? &attributes : nullptr;
}

bool letsOthersWrite(PSECURITY_DESCRIPTOR descriptor) {
    if (isOwnedByOthers(descriptor)) return true;
    PACL rules = nullptr;
    int isThere = 0;
    int isDefault = 0;
    if (GetSecurityDescriptorDacl(descriptor, &isThere, &rules, &isDefault) == 0) return true;
    if (isThere == 0 || rules == nullptr) return true;  // without rules everybody may do everything

    for (SystemDword i = 0; i < rules->AceCount; ++i) {
        void* entry = nullptr;
        if (GetAce(rules, i, &entry) == 0) return true;
        auto& rule = *static_cast<ACCESS_ALLOWED_ACE*>(entry);
        if (letsWrite(rule) && !isTrusted(&rule.SidStart)) return true;
    }
    return false;
}

}  // namespace Platform::port
