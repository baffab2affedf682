#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "tessera/platform/engine/RecordEngine.h"
#include "tessera/platform/objectstore/Session.h"

namespace Platform {

/// Reads a database from its first record to its last in one order, a block at a time and each record's
/// bytes with it. For whoever wants all of it: no position, nothing kept. One thread.
class RecordCursor {
public:
    explicit RecordCursor(Session& session) : session_(session) {}

    /// ERROR_FILE_NOT_FOUND when there is no database of that name.
    [[nodiscard]] DWORD open(WStringView database, const SortOrder& order);
    CEOID database() const { return database_; }

    /// The next entries, none after the last; valid until the next call.
    [[nodiscard]] DWORD nextBlock(std::span<const Entry>& entries);

private:
    Session& session_;
    CEOID database_ = 0;
    OrderId order_ = 0;
    Direction direction_ = Direction::forward;
    Place last_;
    bool begun_ = false;
    std::size_t limit_ = 64;
    std::vector<Entry> block_;
};

}  // namespace Platform
