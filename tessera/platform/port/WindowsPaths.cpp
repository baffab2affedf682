#include <array>
#include <cstdio>
#include <memory>
#include <random>
#include <vector>

#include "tessera/platform/port/Descriptor.h"
#include "tessera/platform/port/Paths.h"
#include "tessera/platform/port/WindowsErrors.h"
#include "tessera/platform/port/WindowsSystem.h"

namespace Platform::port {
namespace {

namespace fs = std::filesystem;

struct LocalFreeing {
    void operator()(void* memory) const { LocalFree(memory); }
};
template <typename T>
using LocalPointer = std::unique_ptr<T, LocalFreeing>;

WString widened(const char* utf8) {
    return fs::path(reinterpret_cast<const char8_t*>(utf8)).native();
}

std::string narrowed(const WString& text) {
    const std::u8string utf8 = fs::path(text).u8string();
    return {utf8.begin(), utf8.end()};
}

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

/// For the user, the system and its administrators only, and so for what is made inside. Null when that cannot be said.
SECURITY_ATTRIBUTES* privateAttributes() {
    static const LocalPointer<void> descriptor = makePrivateDescriptor();
    static SECURITY_ATTRIBUTES attributes = {sizeof(SECURITY_ATTRIBUTES), descriptor.get(), FALSE};
    return descriptor != nullptr ? &attributes : nullptr;
}

bool isFolder(const fs::path& path) {
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

DWORD makeOneFolder(const fs::path& folder) {
    if (privateAttributes() == nullptr) return ERROR_ACCESS_DENIED;
    if (CreateDirectoryW(folder.c_str(), privateAttributes()) != 0) return ERROR_SUCCESS;
    const DWORD error = lastPlatformError();
    // Somebody else may have been faster.
    return isFolder(folder) ? ERROR_SUCCESS : error;
}

/// A name that nobody guesses.
WString randomName() {
    constexpr WStringView letters = L"abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    WString name = L".tessera-";
    for (int i = 0; i < 12; ++i)
        name += letters[random() % letters.size()];
    return name;
}

DWORD syncFile(const fs::path& file) {
    const Descriptor opened(descriptorOf(CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                                     nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)));
    if (!opened.isOpen()) return lastPlatformError();
    return FlushFileBuffers(handleOf(opened.get())) != 0 ? ERROR_SUCCESS : lastPlatformError();
}

/// Whom a folder's rules may name without its being shared: the user, the system and its administrators. An owner or
/// creator is whoever makes a file, and stands for no one else.
bool isTrusted(PSID who, PSID user) {
    constexpr std::array known = {WinLocalSystemSid, WinBuiltinAdministratorsSid, WinCreatorOwnerSid,
                                  WinCreatorOwnerRightsSid};
    if (user != nullptr && EqualSid(who, user) != 0) return true;
    for (const WELL_KNOWN_SID_TYPE type : known) {
        if (IsWellKnownSid(who, type) != 0) return true;
    }
    return false;
}

bool letsWrite(const ACCESS_ALLOWED_ACE& rule) {
    constexpr SystemDword writing = FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY | FILE_DELETE_CHILD | DELETE | WRITE_DAC |
                                    WRITE_OWNER | GENERIC_WRITE | GENERIC_ALL;
    const bool concernsFolder = (rule.Header.AceFlags & INHERIT_ONLY_ACE) == 0;
    return rule.Header.AceType == ACCESS_ALLOWED_ACE_TYPE && concernsFolder && (rule.Mask & writing) != 0;
}

}  // namespace

fs::path defaultStorePath() {
    const fs::path data = widened(environmentValue("LOCALAPPDATA").c_str());
    return data.is_absolute() ? data / "Tessera" / "store.db" : fs::path();
}

std::string environmentValue(const char* name) {
    const WString wideName = widened(name);
    const SystemDword size = GetEnvironmentVariableW(wideName.c_str(), nullptr, 0);
    if (size == 0) return {};
    WString value(size, L'\0');
    value.resize(GetEnvironmentVariableW(wideName.c_str(), value.data(), size));
    return narrowed(value);
}

DWORD makePrivateFolder(const fs::path& folder) {
    const fs::path wanted = folder.has_filename() ? folder : folder.parent_path();
    if (wanted.empty() || isFolder(wanted)) return ERROR_SUCCESS;
    if (wanted == wanted.parent_path()) return ERROR_FILE_NOT_FOUND;  // a drive that is not there
    if (const DWORD error = makePrivateFolder(wanted.parent_path()); error != ERROR_SUCCESS) return error;
    return makeOneFolder(wanted);
}

DWORD makePrivateFileBeside(const fs::path& file, fs::path& made) {
    if (privateAttributes() == nullptr) return ERROR_ACCESS_DENIED;
    for (int attempt = 0; attempt < 100; ++attempt) {
        const fs::path tried = file.parent_path() / randomName();
        const Descriptor opened(descriptorOf(CreateFileW(tried.c_str(), GENERIC_WRITE, 0, privateAttributes(),
                                                         CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr)));
        if (opened.isOpen()) {
            made = tried;
            return ERROR_SUCCESS;
        }
        if (const DWORD error = lastPlatformError(); error != ERROR_ALREADY_EXISTS) return error;
    }
    return ERROR_ALREADY_EXISTS;
}

bool othersMayWrite(const fs::path& folder) {
    const WString name = folder.empty() ? L"." : folder.native();
    PACL rules = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const SystemDword error = GetNamedSecurityInfoW(name.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                                    nullptr, &rules, nullptr, &descriptor);
    if (error != ERROR_SUCCESS) return true;
    const LocalPointer<void> owned(descriptor);
    if (rules == nullptr) return true;  // without rules everybody may do everything

    for (SystemDword i = 0; i < rules->AceCount; ++i) {
        void* entry = nullptr;
        if (GetAce(rules, i, &entry) == 0) return true;
        auto& rule = *static_cast<ACCESS_ALLOWED_ACE*>(entry);
        if (letsWrite(rule) && !isTrusted(&rule.SidStart, userOfProcess())) return true;
    }
    return false;
}

DWORD publishFile(const fs::path& made, const fs::path& file) {
    DWORD error = syncFile(made);
    // Without leave to replace, it never takes a name that is in use.
    if (error == ERROR_SUCCESS && MoveFileExW(made.c_str(), file.c_str(), MOVEFILE_WRITE_THROUGH) == 0)
        error = lastPlatformError();
    if (error != ERROR_SUCCESS) DeleteFileW(made.c_str());
    return error;
}

}  // namespace Platform::port
