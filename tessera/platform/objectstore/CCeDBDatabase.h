#pragma once

#include <memory>

#include "tessera/Export.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/objectstore/CCeDBRecord.h"
#include "tessera/platform/objectstore/CeDB.h"

class CWnd;

/// One property database, known by its name once it was opened or created, and the position in it.
///
/// The seeks answer the identifier of the record reached, 0 on failure; after a failed seek `isEof` tells
/// running off an end from an error. Closes its handle when destroyed. One thread.
class TESSERA_API CCeDBDatabase {
public:
    CCeDBDatabase() = default;
    ~CCeDBDatabase();
    CCeDBDatabase(const CCeDBDatabase&) = delete;
    CCeDBDatabase& operator=(const CCeDBDatabase&) = delete;

    /// True when the store has a database of that name.
    static bool exists(const WCHAR* name);

    /// Answers the new database's identifier, 0 on failure.
    CEOID create(const WCHAR* name, DWORD type, WORD numOrders, const SORTORDERSPEC* orders);
    /// Opens in the order of `sort` (its identifier and flags), or in the database's own when it is null.
    /// The window, when one is given, receives the database's change notifications, with `param`.
    BOOL open(const WCHAR* name, const CCeDBProp* sort, const CWnd* notifyWnd, DWORD param = 0);
    /// FALSE when it was not open.
    BOOL close();
    /// Removes the database from the store; it must have been opened or created.
    BOOL remove();

    /// True between a successful open and close.
    bool isOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE getHandle() const { return handle_; }  ///< INVALID_HANDLE_VALUE when it is not open.
    CEOID getOid() const { return oid_; }  ///< The database's identifier; 0 when it was neither opened nor created.
    /// Bytes of all records; 0 when the database cannot be asked.
    DWORD getSize() const;
    /// How many records there are; 0 when the database cannot be asked.
    DWORD getNumRecords() const;

    /// To the record at an index of the order, from 0.
    CEOID seekToIndex(int index);
    /// To the last record.
    CEOID seekToEnd();
    /// To the record with that identifier.
    CEOID seekToRecord(CEOID oid);
    /// @{
    /// One step along the order.
    CEOID seekNext();
    CEOID seekPrev();
    /// @}
    /// To the first record with that property.
    CEOID seekFirstEqual(const CCeDBProp& value);
    /// One step, which fails when the record there has not that property.
    CEOID seekNextEqual(const CCeDBProp& value);
    /// Whether the last seek ran off an end, or found nothing.
    bool isEof() const { return eof_; }
    /// The record last reached; 0 when none was yet, or the last seek ran off an end.
    CEOID getCurrent() const { return current_; }

    /// Reads all properties of the record at the position.
    BOOL readCurrent(CCeDBRecord& record);
    /// Answers the new record's identifier, 0 on failure.
    CEOID add(const CCeDBRecord& record);
    /// Writes over the record last reached; `extra`, when it is not null, is written with it.
    BOOL writeCurrent(const CCeDBRecord& record, const CCeDBProp* extra = nullptr);

private:
    struct BufferRelease {
        void operator()(BYTE* buffer) const;
    };

    CEOID reached(CEOID oid);

    HANDLE handle_ = INVALID_HANDLE_VALUE;
    CEOID oid_ = 0;
    CEOID current_ = 0;
    bool eof_ = false;
    std::unique_ptr<BYTE, BufferRelease> buffer_;  ///< What records are read into.
    DWORD bufferBytes_ = 0;
};
