#include "tessera/platform/objectstore/CCeDBDatabase.h"

#include <span>
#include <utility>
#include <vector>

#include "tessera/platform/objectstore/Boundary.h"
#include "tessera/platform/objectstore/Session.h"
#include "tessera/platform/windows/CWnd.h"

using Platform::failWith;
using Platform::guarded;

namespace {

CENOTIFYREQUEST requestOf(const CWnd& window, DWORD param) {
    return {sizeof(CENOTIFYREQUEST), window.GetSafeHwnd(), CEDB_EXNOTIFICATION, 0, param};
}

/// The properties in the form in which the calls take them; valid while the record and `extra` are.
std::vector<CEPROPVAL> propValsOf(const CCeDBRecord& record, const CCeDBProp* extra) {
    std::vector<CEPROPVAL> values;
    values.reserve(static_cast<std::size_t>(record.getNumProps()) + 1);
    for (int i = 0; i < record.getNumProps(); ++i) {
        values.push_back(record.getPropAt(i).propVal());
    }
    if (extra != nullptr) values.push_back(extra->propVal());
    return values;
}

CEOID writeRecord(HANDLE handle, CEOID record, const CCeDBRecord& values, const CCeDBProp* extra) {
    return guarded(CEOID{0}, [&] {
        const std::vector<CEPROPVAL> props = propValsOf(values, extra);
        if (props.size() > 0xFFFF) return failWith(ERROR_INVALID_PARAMETER, CEOID{0});
        return CeWriteRecordProps(handle, record, static_cast<WORD>(props.size()), props.data());
    });
}

CEOIDINFOEX infoOf(CEOID database) {
    CEOIDINFOEX info = {};
    CeOidGetInfoEx2(database, &info);
    return info;
}

}  // namespace

CCeDBDatabase::~CCeDBDatabase() {
    close();
}

bool CCeDBDatabase::exists(const WCHAR* name) {
    return guarded(false, [&] {
        Platform::Session* session = Platform::Session::current();
        CEOID database = 0;
        return name != nullptr && session != nullptr && session->engine().findDatabase(name, database) == ERROR_SUCCESS;
    });
}

CEOID CCeDBDatabase::create(const WCHAR* name, DWORD type, WORD numOrders, const SORTORDERSPEC* orders) {
    const CEOID created = CeCreateDatabaseEx2(name, type, numOrders, orders);
    if (created != 0) {
        close();
        oid_ = created;
    }
    return created;
}

BOOL CCeDBDatabase::open(const WCHAR* name, const CCeDBProp* sort, const CWnd* notifyWnd, DWORD param) {
    close();
    const CEPROPID property = sort == nullptr ? 0 : sort->getPropId();
    const DWORD flags = sort == nullptr ? 0 : sort->getFlags();
    CENOTIFYREQUEST request = {};
    if (notifyWnd != nullptr) request = requestOf(*notifyWnd, param);
    CEOID database = 0;
    handle_ = CeOpenDatabaseEx2(&database, name, property, flags, 0, notifyWnd == nullptr ? nullptr : &request);
    if (!isOpen()) return FALSE;
    oid_ = database;
    return TRUE;
}

BOOL CCeDBDatabase::close() {
    if (!isOpen()) return FALSE;
    current_ = 0;
    eof_ = false;
    return CloseHandle(std::exchange(handle_, INVALID_HANDLE_VALUE));
}

BOOL CCeDBDatabase::remove() {
    close();
    if (CeDeleteDatabaseEx(oid_) == FALSE) return FALSE;
    oid_ = 0;
    return TRUE;
}

DWORD CCeDBDatabase::getSize() const {
    return infoOf(oid_).dwSize;
}

DWORD CCeDBDatabase::getNumRecords() const {
    return infoOf(oid_).dwNumRecords;
}

/// Keeps what a seek came to. An error leaves the position, and with it the current record.
CEOID CCeDBDatabase::reached(CEOID oid) {
    eof_ = oid == 0 && GetLastError() == ERROR_SEEK;
    if (oid != 0 || eof_) current_ = oid;
    return oid;
}

CEOID CCeDBDatabase::seekToIndex(int index) {
    return reached(CeSeekDatabaseEx(handle_, CEDB_SEEK_BEGINNING, static_cast<DWORD>(index), nullptr));
}

CEOID CCeDBDatabase::seekToEnd() {
    return reached(CeSeekDatabaseEx(handle_, CEDB_SEEK_END, 0, nullptr));
}

CEOID CCeDBDatabase::seekToRecord(CEOID oid) {
    return reached(CeSeekDatabaseEx(handle_, CEDB_SEEK_CEOID, oid, nullptr));
}

CEOID CCeDBDatabase::seekNext() {
    return reached(CeSeekDatabaseEx(handle_, CEDB_SEEK_CURRENT, 1, nullptr));
}

CEOID CCeDBDatabase::seekPrev() {
    return reached(CeSeekDatabaseEx(handle_, CEDB_SEEK_CURRENT, static_cast<DWORD>(-1), nullptr));
}

CEOID CCeDBDatabase::seekFirstEqual(const CCeDBProp& value) {
    const CEPROPVAL wanted = value.propVal();
    return reached(
        CeSeekDatabaseEx(handle_, CEDB_SEEK_VALUEFIRSTEQUAL, reinterpret_cast<std::uintptr_t>(&wanted), nullptr));
}

CEOID CCeDBDatabase::seekNextEqual(const CCeDBProp& value) {
    const CEPROPVAL wanted = value.propVal();
    return reached(
        CeSeekDatabaseEx(handle_, CEDB_SEEK_VALUENEXTEQUAL, reinterpret_cast<std::uintptr_t>(&wanted), nullptr));
}

void CCeDBDatabase::BufferRelease::operator()(BYTE* buffer) const {
    CeFreeBuffer(buffer);
}

BOOL CCeDBDatabase::readCurrent(CCeDBRecord& record) {
    bool isPart = false;
    const BOOL whole = guarded(FALSE, [&] {
        WORD count = 0;
        BYTE* buffer = buffer_.release();
        const CEOID found = CeReadRecordPropsEx(handle_, CEDB_ALLOWREALLOC, &count, &buffer, &bufferBytes_);
        buffer_.reset(buffer);
        if (found == 0) {
            buffer_.reset();  // a failure may have left its size unsaid
            bufferBytes_ = 0;
            return FALSE;
        }
        current_ = found;
        isPart = true;
        record.removeAll();
        record.reserve(count);
        for (const CEPROPVAL& value : std::span(reinterpret_cast<const CEPROPVAL*>(buffer), count))
            record.addProp(CCeDBProp::ofPropVal(value));
        isPart = false;
        return TRUE;
    });
    if (isPart) record.removeAll();
    return whole;
}

CEOID CCeDBDatabase::add(const CCeDBRecord& record) {
    return writeRecord(handle_, 0, record, nullptr);
}

BOOL CCeDBDatabase::writeCurrent(const CCeDBRecord& record, const CCeDBProp* extra) {
    if (current_ == 0) return failWith(ERROR_NO_MORE_ITEMS, FALSE);
    return writeRecord(handle_, current_, record, extra) != 0 ? TRUE : FALSE;
}
