#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "tessera/platform/engine/RecordEngine.h"

// A store's file as a whole: examined, copied, saved from damage. Calls answer a platform error, ERROR_SUCCESS when all
// went well; whoever fails also leaves a sentence with setStoreError.

namespace Platform {

enum class CheckDepth { quick, full };

/// Examines a store and leaves it as it is. A sentence for each thing that is wrong.
[[nodiscard]] DWORD checkSqliteStore(const std::filesystem::path& file, const StoreOptions& options, CheckDepth depth,
                                     std::vector<std::string>& findings);

/// Copies a store, as it is at one moment, into a new file.
[[nodiscard]] DWORD backUpSqliteStore(const std::filesystem::path& file, const StoreOptions& options,
                                      const std::filesystem::path& to);

/// What became of a damaged store.
struct StoreRecovery {
    std::uint64_t databases = 0;
    std::uint64_t records = 0;
    std::vector<std::string> losses;  ///< A sentence each.
};

/// Reads whatever can be read of a damaged store and makes a new one of it, every record under its own identifier.
/// A collation that cannot be read anymore becomes that of `locale`.
[[nodiscard]] DWORD recoverSqliteStore(const std::filesystem::path& damaged, const StoreOptions& options,
                                       const std::filesystem::path& to, const std::string& locale,
                                       StoreRecovery& recovery);

}  // namespace Platform
