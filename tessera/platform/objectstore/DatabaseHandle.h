#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tessera/platform/objectstore/CeDB.h"
#include "tessera/platform/objectstore/OrderCursor.h"

namespace Platform {

/// One open handle: a database, the order that it was opened in, and a position in it.
class DatabaseHandle {
public:
    struct Opening {
        CEOID database = 0;
        SortOrder order;  ///< Property 0 takes the database's own order.
        bool autoIncrement = false;
        std::optional<CENOTIFYREQUEST> request;
    };

    /// Null when there is no such database or order; `error` says which.
    static std::shared_ptr<DatabaseHandle> open(Session& session, const Opening& opening, DWORD& error);

    CEOID database() const { return database_; }
    /// Whom to tell of changes to the database.
    const std::optional<CENOTIFYREQUEST>& request() const { return request_; }

    /// Moves the position as CeSeekDatabaseEx says. `index`, when it is not null, receives the index
    /// reached by a seek from the beginning or the end, and 0 from any other.
    [[nodiscard]] DWORD seek(Session& session, DWORD seekType, std::uintptr_t value, DWORD* index);
    /// The record last reached; 0 when there is none.
    CEOID record() const { return cursor_.record(); }

    /// The record at the position, valid until the handle is next used.
    [[nodiscard]] DWORD read(Session& session, std::string_view& packed);
    /// What follows a read: an autoincrementing handle moves on by one, onto the end if need be.
    void moveOn(Session& session);

    [[nodiscard]] DWORD write(Session& session, CEOID& record, std::span<const Edit> edits);
    [[nodiscard]] DWORD erase(Session& session, CEOID record);

private:
    using Value = std::uintptr_t;
    struct Seek;
    static const Seek seeks[];

    DatabaseHandle(const Opening& opening, const SortOrder& order);

    [[nodiscard]] DWORD seekRecord(Session& session, Value value);
    [[nodiscard]] DWORD seekBeginning(Session& session, Value value);
    [[nodiscard]] DWORD seekEnd(Session& session, Value value);
    [[nodiscard]] DWORD seekCurrent(Session& session, Value value);
    [[nodiscard]] DWORD seekSmaller(Session& session, Value value);
    [[nodiscard]] DWORD seekFirstEqual(Session& session, Value value);
    [[nodiscard]] DWORD seekGreater(Session& session, Value value);
    [[nodiscard]] DWORD seekNextEqual(Session& session, Value value);

    [[nodiscard]] DWORD firstEqualAlong(Session& session, const std::string& key);
    [[nodiscard]] DWORD firstEqualAcross(Session& session, CEPROPID property, const std::string& key);
    /// To the record next to where such a key stands, going up or down in value.
    [[nodiscard]] DWORD seekBeside(Session& session, const std::string& key, Direction engineDirection);
    [[nodiscard]] DWORD orderOf(Session& session, CEPROPID property, OrderId& order);
    [[nodiscard]] DWORD indexFromEnd(Session& session, std::uint64_t fromEnd, DWORD& index);
    /// The error itself, unless the database is gone: then the handle is not valid any more.
    DWORD orGone(Session& session, DWORD error);

    CEOID database_;
    bool autoIncrement_;
    std::optional<CENOTIFYREQUEST> request_;
    OrderCursor cursor_;
    std::vector<std::pair<CEPROPID, OrderId>> otherOrders_;  // asked for by value seeks
    std::uint64_t otherOrdersAsOf_ = 0;
};

}  // namespace Platform
