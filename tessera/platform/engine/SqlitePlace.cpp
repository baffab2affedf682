#include "tessera/platform/engine/SqlitePlace.h"

#include <system_error>

#include "tessera/platform/engine/SqliteConnection.h"
#include "tessera/platform/engine/StoreError.h"
#include "tessera/platform/port/ErrorText.h"
#include "tessera/platform/port/Paths.h"

namespace Platform {
namespace {

namespace fs = std::filesystem;

[[nodiscard]] DWORD refuseSharedFolder(const fs::path& folder) {
    if (!port::othersMayWrite(folder)) return ERROR_SUCCESS;
    return setStoreError(ERROR_ACCESS_DENIED, nameOf(folder) +
                                                  ": others may write to this folder, and so to a store in it; use a "
                                                  "folder of your own, or set TESSERA_SHARED_FOLDER=allow");
}

[[nodiscard]] DWORD makeFolder(const fs::path& folder) {
    const DWORD error = port::makePrivateFolder(folder);
    if (error == ERROR_SUCCESS) return ERROR_SUCCESS;
    return setStoreError(error, nameOf(folder) + ": the folder cannot be made");
}

/// The write-ahead log that stays when the file of a store in use, or of one whose program was killed, is
/// taken away. SQLite would read it as part of whatever store has that name next.
[[nodiscard]] DWORD refuseForeignLog(const fs::path& file) {
    const fs::path log = file.string() + "-wal";
    std::error_code none;
    const auto size = fs::file_size(log, none);
    // A store that another process has just made may have a log by now.
    if (none || size == 0 || fs::exists(file, none)) return ERROR_SUCCESS;
    return setStoreError(ERROR_ALREADY_EXISTS, nameOf(log) + ": it is part of a store that was here; put that store " +
                                                   "back, or remove this file to make a new one");
}

[[nodiscard]] DWORD nameIsTaken(const fs::path& file) {
    return setStoreError(ERROR_ALREADY_EXISTS, nameOf(file) + ": there is a file of this name");
}

[[nodiscard]] DWORD refuseTakenName(const fs::path& file) {
    std::error_code error;
    const fs::file_type type = fs::symlink_status(file, error).type();
    if (type == fs::file_type::not_found) return ERROR_SUCCESS;
    if (type == fs::file_type::none)
        return setStoreError(ERROR_ACCESS_DENIED, nameOf(file) + ": " + port::messageOf(error));
    return nameIsTaken(file);
}

/// What a store cannot be made for, behind a sentence that says so; "" where no more is known.
std::string reasonOf(DWORD error) {
    switch (error) {
        case ERROR_FILE_NOT_FOUND:
            return ": there is no such folder";
        case ERROR_ACCESS_DENIED:
            return ": its folder may not be written";
        case ERROR_DISK_FULL:
            return ": the disk is full";
        default:
            return "";
    }
}

/// What was said of the file that a store is made in, said of the name that the store is to have.
std::string saidOf(const fs::path& file, const fs::path& made, std::string text) {
    const std::string name = nameOf(made);
    if (text.starts_with(name)) text.replace(0, name.size(), nameOf(file));
    return text;
}

/// Whether a closed store has a part of it in a log still: SQLite says nothing when the disk has no room for what it
/// brings into the file at the end, and the file alone would be a damaged store.
bool keepsLog(const fs::path& file) {
    std::error_code none;
    return fs::exists(file.string() + "-wal", none);
}

/// Removes a store that was not finished, and what SQLite left beside it.
void removeStore(const fs::path& file) {
    std::error_code ignored;
    for (const char* suffix : {"", "-wal", "-shm", "-journal"})
        fs::remove(file.string() + suffix, ignored);
}

}  // namespace

std::string nameOf(const fs::path& file) {
    const std::u8string name = file.u8string();
    return std::string(name.begin(), name.end());
}

DWORD findStorePlace(const fs::path& file, const StoreOptions& options, WhenMissing whenMissing, StorePlace& place) {
    std::error_code error;
    const fs::path named = port::absolutePath(file, error);
    const fs::file_type type = fs::status(named, error).type();
    if (type == fs::file_type::none)
        return setStoreError(ERROR_ACCESS_DENIED, nameOf(named) + ": " + port::messageOf(error));
    if (type == fs::file_type::directory) return setStoreError(ERROR_BAD_FORMAT, nameOf(named) + ": it is a folder");
    place.there = type != fs::file_type::not_found;
    if (place.there && type != fs::file_type::regular)
        return setStoreError(ERROR_BAD_FORMAT, nameOf(named) + ": it is no file");
    if (!place.there) {
        if (whenMissing == WhenMissing::fail)
            return setStoreError(ERROR_FILE_NOT_FOUND, nameOf(named) + ": there is no such file");
        if (const DWORD failed = makeFolder(named.parent_path())) return failed;
    }
    place.file = port::realPath(named, error);
    if (error) return setStoreError(ERROR_ACCESS_DENIED, nameOf(named) + ": " + port::messageOf(error));
    if (options.sharedFolder) return ERROR_SUCCESS;
    // A link is as good as the folder that it is in.
    if (const DWORD refused = refuseSharedFolder(named.parent_path())) return refused;
    return refuseSharedFolder(place.file.parent_path());
}

DWORD makeStoreFile(const fs::path& file, const std::function<void(const fs::path& made)>& fill) {
    if (const DWORD error = refuseTakenName(file)) return error;
    if (const DWORD error = refuseForeignLog(file)) return error;
    fs::path made;
    if (const DWORD error = port::makePrivateFileBeside(file, made))
        return setStoreError(error, nameOf(file) + ": the store cannot be made" + reasonOf(error));
    try {
        fill(made);
    } catch (const SqliteFailure& failure) {
        removeStore(made);
        return setStoreError(failure.error, saidOf(file, made, failure.text));
    } catch (...) {
        removeStore(made);
        throw;
    }
    if (keepsLog(made)) {
        removeStore(made);
        return setStoreError(ERROR_DISK_FULL, nameOf(file) + ": the store cannot be made" + reasonOf(ERROR_DISK_FULL));
    }
    const DWORD error = port::publishFile(made, file);
    if (error == ERROR_ALREADY_EXISTS) return nameIsTaken(file);
    return error == ERROR_SUCCESS ? error
                                  : setStoreError(error, nameOf(file) + ": the store cannot be made" + reasonOf(error));
}

}  // namespace Platform
