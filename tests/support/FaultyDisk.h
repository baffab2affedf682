#pragma once

#include <filesystem>
#include <memory>
#include <random>
#include <string>

#include "tests/support/DiskLog.h"

namespace testing_support {

/// The disk under SQLite while this lives: the real one, with failures that a test asks for.
///
/// It is what SQLite opens files with by default, so the library comes to it without knowing. Only files that are
/// opened while it lives are on it, and all of them must be closed before its end: make the store first, mount it
/// with this under it, and unmount it again. Nothing is really written through to the disk, which makes it quick.
/// One at a time; one thread.
class FaultyDisk {
public:
    FaultyDisk();
    ~FaultyDisk();
    FaultyDisk(const FaultyDisk&) = delete;
    FaultyDisk& operator=(const FaultyDisk&) = delete;

    enum class Trouble {
        error,  ///< The call fails. A write may have put a part of it there.
        full,   ///< Only calls that take new room are counted and fail, as they do on a full disk.
    };
    enum class Lasting { once, fromThenOn };

    /// Makes a call fail, the next one being the first: a file opened, read, written, truncated, synced, removed,
    /// looked for or asked for its size, or the index of the log mapped. Locks are not among the calls: they are no
    /// matter of the disk, and SQLite makes "busy" of whatever goes wrong with one.
    void failAt(long call, Trouble trouble, Lasting lasting);
    /// Between these no call is counted, and none fails.
    void pause();
    void resume();
    /// Whether a call has failed since failAt.
    bool hasFailed() const;

    /// Makes the power go in the middle of a change, the next one being the first: a write, a truncation, a sync or a
    /// removal. From then on every call fails.
    /// @param fileName counts the changes to files of that name alone, unless it is empty
    void cutPowerAt(long change, const std::string& fileName = {});
    bool hasPower() const;
    /// The file whose change the power went in; empty before.
    const std::filesystem::path& changedAtTheCut() const;
    /// How many changes there have been.
    long changes() const;
    /// What the disk may hold now, if the power goes: puts it into a folder. The index of a log is not part of it,
    /// as nobody reads that one of another run of the machine.
    void leaveIn(const std::filesystem::path& folder, Unsynced unsynced, std::mt19937& random) const;

private:
    class Disk;
    std::unique_ptr<Disk> disk_;
};

}  // namespace testing_support
