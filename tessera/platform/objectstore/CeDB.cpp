#include "tessera/platform/objectstore/CeDB.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <span>
#include <string_view>
#include <vector>

#include "tessera/platform/objectstore/Boundary.h"
#include "tessera/platform/objectstore/DatabaseHandle.h"
#include "tessera/platform/objectstore/HandleTable.h"
#include "tessera/platform/objectstore/Notifications.h"
#include "tessera/platform/objectstore/PropertyValues.h"
#include "tessera/platform/objectstore/Session.h"

using namespace Platform;

namespace {

template <class Answer>
Answer answerOr(DWORD error, Answer success, Answer failure) {
    return error == ERROR_SUCCESS ? success : failWith(error, failure);
}

/// Runs `body` with the calling thread's session; without one the last error is set already.
template <class Answer, class Body>
Answer withSession(Answer failure, Body&& body) noexcept {
    return guarded(failure, [&] {
        Session* session = Session::current();
        return session == nullptr ? failure : body(*session);
    });
}

/// The same for a call on an open handle.
template <class Answer, class Body>
Answer withHandle(HANDLE handle, Answer failure, Body&& body) noexcept {
    return withSession(failure, [&](Session& session) {
        const auto opened = HandleTable::find(handle);
        return opened == nullptr ? failWith(ERROR_INVALID_HANDLE, failure) : body(session, *opened);
    });
}

DWORD resolveDatabase(Session& session, const WCHAR* name, CEOID* database, CEOID& resolved) {
    resolved = database == nullptr ? 0 : *database;
    if (resolved != 0) return ERROR_SUCCESS;
    if (name == nullptr) return ERROR_INVALID_PARAMETER;
    return session.engine().findDatabase(name, resolved);
}

/// Makes the buffer as large as `bytes` where the caller allows it.
DWORD provideBuffer(DWORD flags, std::size_t bytes, BYTE** buffer, DWORD* size) {
    const auto given = *buffer == nullptr ? 0 : *size;
    if (*buffer != nullptr && given >= bytes) return ERROR_SUCCESS;
    *size = static_cast<DWORD>(bytes);
    if ((flags & CEDB_ALLOWREALLOC) == 0) return ERROR_INSUFFICIENT_BUFFER;
    auto* const larger = static_cast<BYTE*>(std::realloc(*buffer, std::max<std::size_t>(bytes, 1)));
    if (larger == nullptr) return ERROR_NOT_ENOUGH_MEMORY;
    *buffer = larger;
    return ERROR_SUCCESS;
}

DWORD readInto(std::string_view packed, DWORD flags, WORD* numProps, BYTE** buffer, DWORD* size) {
    BufferNeed need;
    if (const DWORD error = measureRecord(packed, need); error != ERROR_SUCCESS) return error;
    if (const DWORD error = provideBuffer(flags, need.bytes, buffer, size); error != ERROR_SUCCESS) return error;
    unpackRecord(packed, need, *buffer);
    *size = static_cast<DWORD>(need.bytes);
    if (numProps != nullptr) *numProps = static_cast<WORD>(need.props);
    return ERROR_SUCCESS;
}

void fillInfo(const DatabaseInfo& known, CEOIDINFOEX& info) {
    info = {};
    std::copy_n(known.name.begin(), std::min<std::size_t>(known.name.size(), CEDB_MAXDBASENAMELEN - 1),
                info.szDbaseName);
    info.dwDbaseType = known.type;
    info.dwNumRecords = known.records;
    info.dwSize = static_cast<DWORD>(std::min<std::uint64_t>(known.bytes, std::numeric_limits<DWORD>::max()));
    info.ftLastModified = fileTimeOf(known.modified);
    for (const SortOrder& order : known.declaredOrders) {
        info.rgSortSpecs[info.wNumSortOrder++] = {order.property, order.flags};
    }
}

}  // namespace

CEOID CeCreateDatabaseEx2(const WCHAR* name, DWORD type, WORD numOrders, const SORTORDERSPEC* orders) {
    return withSession(CEOID{0}, [&](Session& session) {
        const bool told = name != nullptr && (numOrders == 0 || orders != nullptr);
        if (!told || numOrders > CEDB_MAXSORTORDER) return failWith(ERROR_INVALID_PARAMETER, CEOID{0});
        std::vector<SortOrder> declared;
        for (const SORTORDERSPEC& order : std::span(orders, numOrders)) {
            declared.push_back({order.propid, order.dwFlags});
        }
        CEOID database = 0;
        const DWORD error = session.createDatabase(name, type, declared, database);
        return answerOr(error, database, CEOID{0});
    });
}

BOOL CeDeleteDatabaseEx(CEOID database) {
    return withSession(FALSE, [&](Session& session) { return answerOr(session.dropDatabase(database), TRUE, FALSE); });
}

HANDLE CeOpenDatabaseEx2(CEOID* database, const WCHAR* name, CEPROPID sortProperty, DWORD sortFlags, DWORD flags,
                         const CENOTIFYREQUEST* request) {
    return withSession(INVALID_HANDLE_VALUE, [&](Session& session) {
        DatabaseHandle::Opening opening;
        DWORD error = resolveDatabase(session, name, database, opening.database);
        if (error != ERROR_SUCCESS) return failWith(error, INVALID_HANDLE_VALUE);
        opening.order = {sortProperty, sortFlags};
        opening.autoIncrement = (flags & CEDB_AUTOINCREMENT) != 0;
        if (request != nullptr) opening.request = *request;

        auto opened = DatabaseHandle::open(session, opening, error);
        if (opened == nullptr) return failWith(error, INVALID_HANDLE_VALUE);
        if (request != nullptr) error = Notifications::subscribe(session, opened);
        if (error != ERROR_SUCCESS) return failWith(error, INVALID_HANDLE_VALUE);
        if (database != nullptr) *database = opening.database;
        return HandleTable::add(std::move(opened));
    });
}

BOOL CloseHandle(HANDLE handle) {
    return guarded(FALSE, [&] { return HandleTable::remove(handle) ? TRUE : failWith(ERROR_INVALID_HANDLE, FALSE); });
}

CEOID CeSeekDatabaseEx(HANDLE handle, DWORD seekType, std::uintptr_t value, DWORD* index) {
    return withHandle(handle, CEOID{0}, [&](Session& session, DatabaseHandle& opened) {
        const DWORD error = opened.seek(session, seekType, value, index);
        return answerOr(error, opened.record(), CEOID{0});
    });
}

CEOID CeReadRecordPropsEx(HANDLE handle, DWORD flags, WORD* numProps, BYTE** buffer, DWORD* size) {
    return withHandle(handle, CEOID{0}, [&](Session& session, DatabaseHandle& opened) {
        if (buffer == nullptr || size == nullptr) return failWith(ERROR_INVALID_PARAMETER, CEOID{0});
        std::string_view packed;
        DWORD error = opened.read(session, packed);
        if (error == ERROR_SUCCESS) error = readInto(packed, flags, numProps, buffer, size);
        const CEOID record = opened.record();
        // A record that is gone is passed as well: a loop of reads shall not stand still at it.
        if (error == ERROR_SUCCESS || error == ERROR_KEY_DELETED) opened.moveOn(session);
        return answerOr(error, record, CEOID{0});
    });
}

void CeFreeBuffer(BYTE* buffer) {
    std::free(buffer);
}

CEOID CeWriteRecordProps(HANDLE handle, CEOID record, WORD numProps, const CEPROPVAL* props) {
    return withHandle(handle, CEOID{0}, [&](Session& session, DatabaseHandle& opened) {
        if (props == nullptr && numProps != 0) return failWith(ERROR_INVALID_PARAMETER, CEOID{0});
        StoredEdits stored;
        DWORD error = stored.set(std::span(props, numProps));
        CEOID written = record;
        if (error == ERROR_SUCCESS) error = opened.write(session, written, stored.edits());
        return answerOr(error, written, CEOID{0});
    });
}

BOOL CeDeleteRecord(HANDLE handle, CEOID record) {
    return withHandle(handle, FALSE, [&](Session& session, DatabaseHandle& opened) {
        return answerOr(opened.erase(session, record), TRUE, FALSE);
    });
}

BOOL CeOidGetInfoEx2(CEOID database, CEOIDINFOEX* info) {
    return withSession(FALSE, [&](Session& session) {
        if (info == nullptr) return failWith(ERROR_INVALID_PARAMETER, FALSE);
        DatabaseInfo known;
        const DWORD error = session.engine().databaseInfo(database, known);
        if (error == ERROR_SUCCESS) fillInfo(known, *info);
        return answerOr(error, TRUE, FALSE);
    });
}

BOOL CeFreeNotification(const CENOTIFYREQUEST* request, CENOTIFICATION* notification) {
    if (request == nullptr || notification == nullptr) return failWith(ERROR_INVALID_PARAMETER, FALSE);
    delete notification;
    return TRUE;
}
