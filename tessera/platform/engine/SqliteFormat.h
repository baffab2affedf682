#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "tessera/platform/engine/RecordEngine.h"
#include "tessera/platform/engine/SqliteConnection.h"

// The format of a store's file.

namespace Platform {

/// A number of SQLite's, of `width` bytes, high byte first; 0 beyond the end.
std::uint64_t bigEndian(std::string_view bytes, std::size_t at, std::size_t width);

/// Throws when the file is not a store, is damaged or of a newer format, judged by its first bytes
/// and its size alone: nothing is written, not even a file beside it.
void checkStoreFile(SqliteConnection& connection);

/// Makes the tables and the single rows of a new store in an empty file.
void createTables(SqliteConnection& connection, const SortKeys& keys, const std::string& locale);

/// Whether the store has the table of telephone numbers: one of format version 1 does not.
bool hasNumberTable(SqliteConnection& connection);

/// Gives a store of an earlier format the tables of this one, within the caller's transaction; answers whether there
/// were any to give. They are empty then.
bool upgradeTables(SqliteConnection& connection);

/// Sets what belongs to a connection, not to the file.
void configure(SqliteConnection& connection, const StoreOptions& options);
/// The same for a connection that leaves the store as it is, a log that a killed program left included.
void configureToLook(SqliteConnection& connection);

}  // namespace Platform
