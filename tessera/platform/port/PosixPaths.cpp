#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <grp.h>
#include <optional>
#include <pwd.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/port/Descriptor.h"
#include "tessera/platform/port/Paths.h"
#include "tessera/platform/port/PosixErrors.h"

namespace Platform::port {
namespace {

namespace fs = std::filesystem;

constexpr mode_t ownerFolder_ = S_IRWXU;
constexpr mode_t ownerFile_ = S_IRUSR | S_IWUSR;

/// What the user database says of a user.
struct User {
    std::string name;
    fs::path home;
    gid_t group = 0;
};

std::optional<User> userOf(uid_t id) {
    std::vector<char> buffer(16'384);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(id, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) return std::nullopt;
    const char* home = found->pw_dir != nullptr ? found->pw_dir : "";
    return User{found->pw_name, home, found->pw_gid};
}

/// Whether it is the group that systems make for each user alone: of the user's name, with nobody else in it.
bool isUsersOwnGroup(gid_t id) {
    const std::optional<User> user = userOf(::geteuid());
    if (!user || user->group != id) return false;
    std::vector<char> buffer(65'536);
    group entry{};
    group* found = nullptr;
    if (::getgrgid_r(id, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) return false;
    if (user->name != found->gr_name) return false;
    for (char** member = found->gr_mem; *member != nullptr; ++member) {
        if (user->name != *member) return false;
    }
    return true;
}

fs::path dataHome() {
    // A relative path is to be ignored, says the XDG base directory convention.
    if (fs::path data = environmentValue("XDG_DATA_HOME"); data.is_absolute()) return data;
    fs::path home = environmentValue("HOME");
    if (!home.is_absolute()) home = userOf(::getuid()).value_or(User()).home;  // of a process started without HOME
    return home.is_absolute() ? home / ".local" / "share" : fs::path();
}

fs::path folderOf(const fs::path& file) {
    const fs::path folder = file.parent_path();
    return folder.empty() ? fs::path(".") : folder;
}

/// Makes what the folder holds survive a power cut: the names, that is, not the files.
DWORD syncFolder(const fs::path& folder) {
    const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened.isOpen()) return platformErrorOf(errno);
    return ::fsync(opened.get()) == 0 ? ERROR_SUCCESS : platformErrorOf(errno);
}

DWORD syncFile(const fs::path& file) {
    const Descriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (!opened.isOpen()) return platformErrorOf(errno);
    return ::fsync(opened.get()) == 0 ? ERROR_SUCCESS : platformErrorOf(errno);
}

bool isFolder(const fs::path& path) {
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

DWORD makeOneFolder(const fs::path& folder) {
    if (::mkdir(folder.c_str(), ownerFolder_) != 0) {
        // Another process may have been faster.
        return errno == EEXIST && isFolder(folder) ? ERROR_SUCCESS : platformErrorOf(errno);
    }
    // The umask may have taken something away from the owner. What another may have put in the folder's place
    // meanwhile is not to be changed.
    if (::fchmodat(AT_FDCWD, folder.c_str(), ownerFolder_, AT_SYMLINK_NOFOLLOW) != 0) return platformErrorOf(errno);
    return syncFolder(folderOf(folder));
}

DWORD syncAndLink(const fs::path& made, const fs::path& file) {
    if (const DWORD error = syncFile(made); error != ERROR_SUCCESS) return error;
    // Unlike a rename, a link never takes a name that is in use.
    return ::link(made.c_str(), file.c_str()) == 0 ? ERROR_SUCCESS : platformErrorOf(errno);
}

}  // namespace

fs::path defaultStorePath() {
    const fs::path data = dataHome();
    return data.empty() ? data : data / "tessera" / "store.db";
}

std::string environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

fs::path absolutePath(const fs::path& file, std::error_code& error) {
    return fs::absolute(file, error);
}

fs::path realPath(const fs::path& file, std::error_code& error) {
    return fs::weakly_canonical(file, error);
}

DWORD makePrivateFolder(const fs::path& folder) {
    const fs::path wanted = folder.has_filename() ? folder : folder.parent_path();
    if (wanted.empty() || isFolder(wanted)) return ERROR_SUCCESS;
    if (const DWORD error = makePrivateFolder(wanted.parent_path()); error != ERROR_SUCCESS) return error;
    return makeOneFolder(wanted);
}

DWORD makePrivateFileBeside(const fs::path& file, fs::path& made) {
    std::string name = (folderOf(file) / ".tessera-XXXXXX").string();
    const Descriptor opened(::mkostemp(name.data(), O_CLOEXEC));
    if (!opened.isOpen()) return platformErrorOf(errno);
    made = name;
    // The umask may have taken something away from the owner.
    return ::fchmod(opened.get(), ownerFile_) == 0 ? ERROR_SUCCESS : platformErrorOf(errno);
}

bool othersMayWrite(const fs::path& folder) {
    struct stat status {};
    if (::stat(folder.c_str(), &status) != 0) return true;
    if (status.st_uid != ::geteuid() && status.st_uid != 0) return true;
    if ((status.st_mode & S_IWOTH) != 0) return true;  // where only the owner may remove, all may still add
    return (status.st_mode & S_IWGRP) != 0 && !isUsersOwnGroup(status.st_gid);
}

DWORD publishFile(const fs::path& made, const fs::path& file) {
    const DWORD linked = syncAndLink(made, file);
    const DWORD unlinked = ::unlink(made.c_str()) == 0 ? ERROR_SUCCESS : platformErrorOf(errno);
    if (linked != ERROR_SUCCESS) return linked;
    if (unlinked != ERROR_SUCCESS) return unlinked;
    return syncFolder(folderOf(file));
}

}  // namespace Platform::port
