#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/engine/RecordEngine.h"

namespace Platform {

/// A moment in the life of the store, as one thread sees it: what was read stays true while it is equal.
struct StoreMoment {
    std::uint64_t session = 0;  ///< Which thread's connection, to which mounted store.
    std::uint64_t commits = 0;  ///< The engine's store version.
    std::uint64_t writes = 0;   ///< Counts the session's own writes, also those not yet committed.

    friend bool operator==(const StoreMoment&, const StoreMoment&) = default;
};

/// The calling thread's connection to the mounted store, and its batch.
///
/// Made when a thread first needs it, and made anew when another store was mounted since; that ends
/// whatever the thread still had open in the old one. All writes go through here, so that they are counted.
class Session {
public:
    /// Null when there is no store to be had; the last error and its sentence say why.
    static Session* current();
    /// Makes `store` the process's store, if the calling thread can connect to it.
    [[nodiscard]] static DWORD mount(std::shared_ptr<RecordStore> store);
    static void unmount();

    Session(std::shared_ptr<RecordStore> store, std::unique_ptr<RecordEngine> engine, std::uint64_t mountNumber);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// For everything but the writes below.
    RecordEngine& engine() { return *engine_; }
    StoreMoment moment();
    /// Null when the system has no watch left.
    std::unique_ptr<CommitWatch> watchCommits() { return store_->watchCommits(); }
    /// The number of the mounted store that this is a connection to.
    std::uint64_t mountNumber() const { return mountNumber_; }

    [[nodiscard]] DWORD createDatabase(WStringView name, DWORD type, std::span<const SortOrder> orders,
                                       CEOID& database);
    [[nodiscard]] DWORD dropDatabase(CEOID database);
    [[nodiscard]] DWORD put(CEOID database, CEOID& record, std::span<const Edit> edits);
    [[nodiscard]] DWORD erase(CEOID database, CEOID record);

    /// Enters a batch, the outermost one by taking the store for writing. If that fails the batch is
    /// entered all the same, and every write in it answers the same error without another wait.
    [[nodiscard]] DWORD enterBatch();
    /// Leaves a batch, the outermost one by making its work durable.
    [[nodiscard]] DWORD leaveBatch();
    bool inBatch() const { return batchDepth_ != 0; }
    /// Ends the batch of the calling thread, if it is in one, with nothing of it kept: its later writes and its end
    /// answer the error.
    static void giveUpBatch(DWORD error) noexcept;

    /// Between these, nothing asks again what others have committed.
    void beginGlance();
    void endGlance();

private:
    /// Makes one write; a failure of storage inside a batch gives the whole batch up.
    template <class Write>
    DWORD write(Write&& call);

    std::shared_ptr<RecordStore> store_;  // declared first: it outlives the engine
    std::unique_ptr<RecordEngine> engine_;
    std::uint64_t mountNumber_;
    std::uint64_t id_;
    std::uint64_t writes_ = 0;
    unsigned batchDepth_ = 0;
    DWORD batchError_ = ERROR_SUCCESS;
    unsigned glanceDepth_ = 0;
    std::optional<std::uint64_t> glancedVersion_;  ///< The store version that the glance found.
};

}  // namespace Platform
