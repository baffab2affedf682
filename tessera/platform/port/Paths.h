#pragma once

#include <filesystem>
#include <string>
#include <system_error>

#include "tessera/platform/base/Types.h"

// Files, folders and who may use them.

namespace Platform::port {

/// The store's place when nothing names one: $XDG_DATA_HOME/tessera/store.db, or ~/.local/share/... .
std::filesystem::path defaultStorePath();

/// The value of an environment variable, "" when it is not set.
std::string environmentValue(const char* name);

/// The path from the root on; whether anything is there is not asked.
std::filesystem::path absolutePath(const std::filesystem::path& file, std::error_code& error);

/// The same file by its real name, without symbolic links. Of an absolute path whose end is not there yet, what is
/// there gets its real name.
std::filesystem::path realPath(const std::filesystem::path& file, std::error_code& error);

/// Makes the folder and what is missing above it, each for the owner only.
/// Answers a platform error.
[[nodiscard]] DWORD makePrivateFolder(const std::filesystem::path& folder);

/// Makes an empty file beside `file` that only the owner may use, under a name nobody else has.
[[nodiscard]] DWORD makePrivateFileBeside(const std::filesystem::path& file, std::filesystem::path& made);

/// Whether anybody but the process's user, and the system's own administrator, may make, rename or remove files in
/// the folder; true as well when that cannot be told. A group that is the user's alone is nobody else.
[[nodiscard]] bool othersMayWrite(const std::filesystem::path& folder);

/// Gives a finished file its final name, durably, unless something already has that name
/// (ERROR_ALREADY_EXISTS). The name it had until then is gone either way.
[[nodiscard]] DWORD publishFile(const std::filesystem::path& made, const std::filesystem::path& file);

}  // namespace Platform::port
