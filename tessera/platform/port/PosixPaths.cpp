#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
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

/// The home that the user database names, for a process started without HOME.
fs::path homeOfUser() {
    std::vector<char> buffer(16'384);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) return {};
    return found->pw_dir != nullptr ? fs::path(found->pw_dir) : fs::path();
}

fs::path dataHome() {
    // A relative path is to be ignored, says the XDG base directory convention.
    if (fs::path data = environmentValue("XDG_DATA_HOME"); data.is_absolute()) return data;
    fs::path home = environmentValue("HOME");
    if (!home.is_absolute()) home = homeOfUser();
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
    // The umask may have taken something away from the owner.
    if (::chmod(folder.c_str(), ownerFolder_) != 0) return platformErrorOf(errno);
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

DWORD publishFile(const fs::path& made, const fs::path& file) {
    const DWORD linked = syncAndLink(made, file);
    const DWORD unlinked = ::unlink(made.c_str()) == 0 ? ERROR_SUCCESS : platformErrorOf(errno);
    if (linked != ERROR_SUCCESS) return linked;
    if (unlinked != ERROR_SUCCESS) return unlinked;
    return syncFolder(folderOf(file));
}

}  // namespace Platform::port
