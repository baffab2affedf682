#include <random>
#include <string>
#include <system_error>

#include "tessera/platform/port/Descriptor.h"
#include "tessera/platform/port/Paths.h"
#include "tessera/platform/port/WindowsAccess.h"
#include "tessera/platform/port/WindowsErrors.h"
#include "tessera/platform/port/WindowsMemory.h"
#include "tessera/platform/port/WindowsSystem.h"

namespace Platform::port {
namespace {

namespace fs = std::filesystem;

WString widened(const char* utf8) {
    return fs::path(reinterpret_cast<const char8_t*>(utf8)).native();
}

std::string narrowed(const WString& text) {
    const std::u8string utf8 = fs::path(text).u8string();
    return {utf8.begin(), utf8.end()};
}

/// What a call of the system writes, which answers the length, or the room that it wants, or 0 when it fails.
template <class Call>
WString textFrom(Call&& call) {
    WString text(MAX_PATH, L'\0');
    while (true) {
        const SystemDword length = call(text.data(), static_cast<SystemDword>(text.size()));
        const bool isWhole = length < text.size();
        text.resize(length);
        if (isWhole) return text;
    }
}

/// The usual spelling of a path that the system spells so that it is taken as it is: of one on a drive, or on another
/// machine.
fs::path plainlySpelled(WStringView path) {
    constexpr WStringView asItIs = LR"(\\?\)";
    constexpr WStringView elsewhere = LR"(\\?\UNC\)";
    if (path.starts_with(elsewhere)) return WString(LR"(\\)").append(path.substr(elsewhere.size()));
    const bool isOnDrive = path.starts_with(asItIs) && path.find(LR"(:\)") == asItIs.size() + 1;
    return isOnDrive ? path.substr(asItIs.size()) : path;
}

bool isFolder(const fs::path& path) {
    const SystemDword attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
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

}  // namespace

fs::path defaultStorePath() {
    const fs::path data = widened(environmentValue("LOCALAPPDATA").c_str());
    std::error_code ignored;
    const bool isPlace = !data.empty() && absolutePath(data, ignored) == data;
    return isPlace ? data / "Tessera" / "store.db" : fs::path();
}

std::string environmentValue(const char* name) {
    const WString wideName = widened(name);
    return narrowed(
        textFrom([&](WCHAR* text, SystemDword room) { return GetEnvironmentVariableW(wideName.c_str(), text, room); }));
}

fs::path absolutePath(const fs::path& file, std::error_code& error) {
    // The standard library takes a path to another machine for one on this.
    const WString name =
        textFrom([&](WCHAR* text, SystemDword room) { return GetFullPathNameW(file.c_str(), room, text, nullptr); });
    error.assign(name.empty() ? ERROR_INVALID_NAME : ERROR_SUCCESS, std::system_category());
    return plainlySpelled(name);
}

fs::path realPath(const fs::path& file, std::error_code& error) {
    error.clear();
    constexpr SystemDword shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const Descriptor opened(descriptorOf(
        CreateFileW(file.c_str(), 0, shareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr)));
    if (!opened.isOpen()) {
        const fs::path folder = file.parent_path();
        const bool isTop = folder == file || folder == folder.root_directory();  // of a drive, or another machine
        return isTop ? file : realPath(folder, error) / file.filename();
    }
    const WString name = textFrom([&](WCHAR* text, SystemDword room) {
        return GetFinalPathNameByHandleW(handleOf(opened.get()), text, room, FILE_NAME_NORMALIZED);
    });
    return name.empty() ? file : plainlySpelled(name);  // not every file system tells it
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
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const SystemDword error =
        GetNamedSecurityInfoW(name.c_str(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION,
                              nullptr, nullptr, nullptr, nullptr, &descriptor);
    const LocalPointer<void> owned(descriptor);
    return error != ERROR_SUCCESS || letsOthersWrite(descriptor);
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
