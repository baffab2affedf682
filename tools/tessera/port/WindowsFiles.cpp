#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <io.h>
#include <memory>
#include <random>
#include <vector>

#include "Files.h"
#include "WindowsErrors.h"
#include "WindowsSystem.h"
#include "WindowsText.h"

namespace Tool::port {

namespace {

struct LocalFreeing {
    void operator()(void* memory) const { LocalFree(memory); }
};
template <typename T>
using LocalPointer = std::unique_ptr<T, LocalFreeing>;

/// The user of this process as rules of access name it; empty when that cannot be told.
std::wstring userName() {
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) return {};
    DWORD size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    std::vector<std::uint8_t> user(size);
    const bool isTold = GetTokenInformation(token, TokenUser, user.data(), size, &size) != 0;
    CloseHandle(token);
    wchar_t* spelled = nullptr;
    if (!isTold || ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid, &spelled) == 0)
        return {};
    return LocalPointer<wchar_t>(spelled).get();
}

/// For the user, the system and its administrators only.
LocalPointer<void> privateDescriptor() {
    const std::wstring user = userName();
    const std::wstring rules = L"D:P(A;;FA;;;" + user + L")(A;;FA;;;SY)(A;;FA;;;BA)";
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!user.empty())
        ConvertStringSecurityDescriptorToSecurityDescriptorW(rules.c_str(), SDDL_REVISION_1, &descriptor, nullptr);
    return LocalPointer<void>(descriptor);
}

std::wstring randomLetters() {
    constexpr std::wstring_view letters = L"abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    std::wstring name;
    for (int i = 0; i < 12; ++i)
        name += letters[random() % letters.size()];
    return name;
}

NewFile makeFile(const std::filesystem::path& beginning, DWORD access, DWORD sharing, DWORD flags) {
    const LocalPointer<void> descriptor = privateDescriptor();
    SECURITY_ATTRIBUTES attributes = {sizeof(SECURITY_ATTRIBUTES), descriptor.get(), FALSE};
    HANDLE opened = INVALID_HANDLE_VALUE;
    std::filesystem::path path;
    if (descriptor == nullptr) {
        errno = EACCES;
        return {};
    }
    for (int attempt = 0; attempt < 100 && opened == INVALID_HANDLE_VALUE; ++attempt) {
        path = beginning.native() + randomLetters();
        opened = CreateFileW(path.c_str(), access, sharing, &attributes, CREATE_NEW, flags, nullptr);
        if (opened == INVALID_HANDLE_VALUE && GetLastError() != ERROR_FILE_EXISTS) break;
    }
    if (opened == INVALID_HANDLE_VALUE) {
        errno = errnoOf(GetLastError());
        return {};
    }
    const int file = _open_osfhandle(reinterpret_cast<std::intptr_t>(opened), _O_BINARY);
    if (file < 0) {
        CloseHandle(opened);
        DeleteFileW(path.c_str());
        errno = EMFILE;
    }
    return {path, file};
}

/// Longer than any path.
constexpr DWORD roomForPath = 1 << 15;

/// The usual spelling of a path that the system spells so that it is taken as it is: of one on a drive, or on another
/// machine.
std::filesystem::path plainlySpelled(std::wstring_view path) {
    constexpr std::wstring_view asItIs = LR"(\\?\)";
    constexpr std::wstring_view elsewhere = LR"(\\?\UNC\)";
    if (path.starts_with(elsewhere)) return std::wstring(LR"(\\)").append(path.substr(elsewhere.size()));
    const bool isOnDrive = path.starts_with(asItIs) && path.find(LR"(:\)") == asItIs.size() + 1;
    return isOnDrive ? path.substr(asItIs.size()) : path;
}

/// How much is written at once. A console may refuse more, and makes nothing of a part of a character.
std::size_t portionOf(std::string_view utf8) {
    constexpr std::size_t most = 1 << 15;
    std::size_t length = std::min(utf8.size(), most);
    while (length < utf8.size() && length > most - 4 && (utf8[length] & 0xC0) == 0x80)
        --length;
    return length;
}

}  // namespace

const char* const temporaryFolderVariable = "TMP";

std::string messageOf(const std::error_code& error) {
    if (error.category() != std::system_category()) return error.message();
    wchar_t* spelled = nullptr;
    constexpr DWORD kind = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    const DWORD length = FormatMessageW(kind, nullptr, static_cast<DWORD>(error.value()), 0,
                                        reinterpret_cast<wchar_t*>(&spelled), 0, nullptr);
    const LocalPointer<wchar_t> owned(spelled);
    if (length == 0) return "error " + std::to_string(error.value());
    const std::wstring_view sentence(spelled, length);
    return narrowed(sentence.substr(0, sentence.find_last_not_of(L"\r\n .") + 1));
}

std::filesystem::file_type typeOf(const std::filesystem::path& path, std::error_code& error) {
    constexpr std::wstring_view devices = LR"(\\.\)";
    std::wstring full(roomForPath, L'\0');
    full.resize(GetFullPathNameW(path.c_str(), roomForPath, full.data(), nullptr));
    error.clear();
    if (full.starts_with(devices)) return std::filesystem::file_type::character;
    return std::filesystem::status(path, error).type();
}

/// The standard library knows neither links nor other machines here.
std::filesystem::path realPath(const std::filesystem::path& path, std::error_code& error) {
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE opened =
        CreateFileW(path.c_str(), 0, shareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        error.assign(static_cast<int>(GetLastError()), std::system_category());
        return {};
    }
    error.clear();
    std::wstring name(roomForPath, L'\0');
    name.resize(GetFinalPathNameByHandleW(opened, name.data(), roomForPath, FILE_NAME_NORMALIZED));
    CloseHandle(opened);
    return name.empty() ? path : plainlySpelled(name);  // not every file system tells it
}

NewFile makePrivateFile(const std::filesystem::path& beginning) {
    return makeFile(beginning, GENERIC_WRITE, 0, FILE_ATTRIBUTE_NORMAL);
}

/// The system removes it, also when the process is killed. Who opens it meanwhile has to allow for that.
NewFile makeTemporaryFile(const std::filesystem::path& beginning) {
    return makeFile(beginning, GENERIC_WRITE | DELETE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                    FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE);
}

void closeTemporaryFile(const NewFile& file) {
    _close(file.descriptor);
}

std::ptrdiff_t readSome(int descriptor, char* buffer, std::size_t count) {
    constexpr std::size_t most = 1 << 30;
    _setmode(descriptor, _O_BINARY);
    return _read(descriptor, buffer, static_cast<unsigned>(std::min(count, most)));
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const int written = _write(descriptor, bytes.data(), static_cast<unsigned>(portionOf(bytes)));
        if (written < 0) {
            if (_doserrno != 0) errno = errnoOf(_doserrno);
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool flushToDisk(int descriptor) {
    return _commit(descriptor) == 0;
}

bool closeFile(int descriptor) {
    return _close(descriptor) == 0;
}

bool replaceBy(const std::filesystem::path& target, const std::filesystem::path& made) {
    if (MoveFileExW(made.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0) return true;
    errno = errnoOf(GetLastError());
    return false;
}

}  // namespace Tool::port
