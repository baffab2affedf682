#pragma once

#include <filesystem>
#include <string>

namespace benchmarks {

/// A folder for stores and files, which goes with the process. It is made where TMPDIR says, else where
/// the system has temporary files.
const std::filesystem::path& scratchFolder();
/// A file there that was not there before.
std::filesystem::path newFile(const std::string& name);
/// The kind of file system that the folder is on; empty when it is none of those that are known.
std::string fileSystem();
/// Whether what is written there never reaches a disk, so that durability costs nothing.
bool isInMemory();

/// A copy, written through to the disk, so that writing it back does not burden what is measured next.
std::filesystem::path settledCopy(const std::filesystem::path& file);
/// The copy of a file that may be changed; made when first asked for.
std::filesystem::path copyToChange(const std::filesystem::path& file);
void settle(const std::filesystem::path& file);
/// Removes a database of SQLite's with all that lies beside it.
void removeDatabase(const std::filesystem::path& file);

}  // namespace benchmarks
