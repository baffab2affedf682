#pragma once

#include <chrono>
#include <string>

#include "tessera/Export.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Types.h"

/// The store that the process works on: which file it is, and how it is written.
///
/// A process uses one store at a time. It is mounted by the first use (TESSERA_STORE, else
/// $XDG_DATA_HOME/tessera/store.db, else ~/.local/share/tessera/store.db), or by `mount` before that.
/// A store that does not exist is made, with the system databases "Contacts Database" and
/// "\Categories Database". Every thread works through a connection of its own, made when it first needs it.
class TESSERA_API ObjectStore {
public:
    /// How a store is used.
    struct Options {
        /// How long a writer waits for another one before its call fails with ERROR_LOCK_VIOLATION.
        std::chrono::milliseconds writerWait{10'000};
        /// True: what a call wrote survives a power cut once the call has returned. False: a power cut
        /// may take the last moments, never consistency. The death of a process takes nothing in either.
        bool fullDurability = true;
        /// False: a store in a folder that others may write to (users, or a group other than the user's own) is
        /// refused, since they could slip it records that the user never wrote.
        bool sharedFolder = false;
    };

    /// The options that the environment asks for: TESSERA_DURABILITY=normal gives up full durability,
    /// TESSERA_SHARED_FOLDER=allow uses a store wherever it is.
    static Options environmentOptions();
    /// The file that the environment asks for, as UTF-8.
    static std::string environmentPath();

    /// Mounts the store in `path` (UTF-8), making it when there is none. Replaces the store mounted so
    /// far; its open handles become invalid.
    /// @return TRUE; FALSE with the last error set and `errorText` saying why: the file is no store, is
    ///         damaged, is of a newer format, is in a folder that others may write to (all of these leave it
    ///         untouched), or cannot be used.
    static BOOL mount(const std::string& path, const Options& options = environmentOptions());
    /// Mounts an empty store that lives in memory until it is unmounted.
    static BOOL mountMemory();
    /// Closes the store. No thread may be using it.
    static void unmount();

    /// A sentence for people about the calling thread's last store error, with the file's name in it.
    static std::string errorText();
};

/// Makes the calling thread's calls one unit while it lives: what they write becomes durable, and
/// visible to others, together, when the outermost batch of the thread ends. Nothing is undone by a call
/// that fails within; a crash before the end leaves nothing of it. Other writers wait meanwhile, so a
/// batch is short. If storage itself fails inside (a full disk), or memory is short, the whole unit is given up.
class TESSERA_API ObjectStoreBatch {
public:
    /// Waits for the writer at work, if any; see `begun`.
    ObjectStoreBatch();
    /// Ends the batch if `end` was not called.
    ~ObjectStoreBatch();
    ObjectStoreBatch(const ObjectStoreBatch&) = delete;
    ObjectStoreBatch& operator=(const ObjectStoreBatch&) = delete;

    /// False when the store could not be had for writing; the last error says why.
    bool begun() const { return begun_; }
    /// Ends the batch. False when the unit could not be made durable: nothing of it was kept.
    [[nodiscard]] bool end();

    /// Gives up the unit that the calling thread is in, as failing storage does: nothing of it is kept, its later
    /// writes fail, and so does its end. Outside of a batch nothing happens.
    static void giveUp() noexcept;

private:
    bool begun_ = false;
    bool ended_ = false;
};

/// While it lives, the calling thread does not look anew, at each call, for what others have committed: for
/// the few reads that make up one operation. What it reads may be as old as the glance; what it writes itself
/// it sees. Glances nest.
class TESSERA_API ObjectStoreGlance {
public:
    ObjectStoreGlance();
    ~ObjectStoreGlance();
    ObjectStoreGlance(const ObjectStoreGlance&) = delete;
    ObjectStoreGlance& operator=(const ObjectStoreGlance&) = delete;

private:
    bool begun_;
};
