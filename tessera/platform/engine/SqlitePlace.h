#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "tessera/platform/engine/RecordEngine.h"

// Where a store's file is, and whether it is safe there.

namespace Platform {

/// A path as a sentence for people has it, UTF-8.
std::string nameOf(const std::filesystem::path& file);

/// A store's file by its real name, without symbolic links, so that a link put into its path later changes nothing.
struct StorePlace {
    std::filesystem::path file;
    bool there = false;
};

enum class WhenMissing { fail, makeFolder };

/// Finds the file and judges its folder: one that others may write to is refused, since they could put a log of their
/// own beside the store, unless the options allow it. Answers a platform error, its sentence left with setStoreError.
[[nodiscard]] DWORD findStorePlace(const std::filesystem::path& file, const StoreOptions& options,
                                   WhenMissing whenMissing, StorePlace& place);

/// Lets `fill` make a store in a file of a private name beside `file` and gives it that name once it is whole and
/// durable: a process killed on the way leaves no half of a store. `fill` may throw SqliteFailure.
/// ERROR_ALREADY_EXISTS, nothing changed, when the name is taken; the sentence is left with setStoreError.
[[nodiscard]] DWORD makeStoreFile(const std::filesystem::path& file,
                                  const std::function<void(const std::filesystem::path& made)>& fill);

}  // namespace Platform
