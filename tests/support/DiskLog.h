#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

/// What becomes of the writes that nobody had asked to be written through when the power went.
enum class Unsynced {
    lost,       ///< All are lost, but for a piece from the start of the very last one.
    scattered,  ///< Many or few of their sectors are there, or all, or none; whatever came first.
};

/// What a disk is told to do with some files, and so what it may hold once the power has gone.
///
/// A file that is made is there for certain after its first sync, with which its folder is written through. One that
/// is removed may come back, as it was last synced, until its folder is written through. A file may have grown
/// without having got what it grew by: there is anything then. A sector is written whole or not at all, except that
/// the very last write may end anywhere.
class DiskLog {
public:
    using Path = std::filesystem::path;

    /// A file is used from now on; one that was there before is taken for written through.
    void open(const Path& path, bool isMade);
    void write(const Path& path, std::uint64_t offset, std::string_view bytes);
    void truncate(const Path& path, std::uint64_t size);
    void sync(const Path& path);
    void remove(const Path& path, bool folderIsSynced);

    /// Puts into a folder what the disk may hold, each file under its name.
    void leaveIn(const Path& folder, Unsynced unsynced, std::mt19937& random) const;

private:
    /// A write, or a truncation to that offset.
    struct Change {
        std::uint64_t offset = 0;
        std::optional<std::string> bytes;

        std::uint64_t end() const { return offset + (bytes ? bytes->size() : 0); }
    };
    struct File {
        std::optional<std::string> synced;   ///< Nothing while the file may not be there.
        std::vector<Change> unsynced;        ///< Since then.
        std::optional<std::string> removed;  ///< What may come back under the name.
        bool isNew = false;                  ///< Made, and not yet synced.
    };

    void forgetRemovedIn(const Path& folder);
    static void apply(const Change& change, std::string& content, char filler);
    static void addSectors(const Change& change, std::vector<Change>& sectors);
    static std::vector<Change> anySectorsOf(const std::vector<Change>& changes, std::mt19937& random);
    static std::optional<std::string> anyContentOf(File file, bool isLast, Unsynced unsynced, std::mt19937& random);

    std::map<Path, File> files_;
    Path lastWritten_;
};

}  // namespace testing_support
