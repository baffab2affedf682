#pragma once

#include "tessera/Export.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Types.h"

/// @file
/// The record databases of the object store. A failing call sets the thread's last error.
///
/// A handle has a position: a place in its order, the one last reached. Writing or deleting the record
/// there leaves the position where it was. A fresh handle stands on the first record.

/// @{
/// The kinds of values.
inline constexpr WORD CEVT_I2 = 2;
inline constexpr WORD CEVT_I4 = 3;
inline constexpr WORD CEVT_R8 = 5;
inline constexpr WORD CEVT_BOOL = 11;
inline constexpr WORD CEVT_UI2 = 18;
inline constexpr WORD CEVT_UI4 = 19;
inline constexpr WORD CEVT_LPWSTR = 31;
inline constexpr WORD CEVT_FILETIME = 64;
inline constexpr WORD CEVT_BLOB = 65;
/// @}

/// The property of that ident and CEVT kind.
constexpr CEPROPID makePropId(WORD ident, WORD kind) {
    return static_cast<CEPROPID>(ident) << 16 | kind;
}
/// The ident of a property.
constexpr WORD identOf(CEPROPID id) {
    return static_cast<WORD>(id >> 16);
}

inline constexpr DWORD CEDB_SORT_DESCENDING = 1;       ///< The whole order reversed, equal ones too.
inline constexpr DWORD CEDB_SORT_CASEINSENSITIVE = 2;  ///< Letters of both cases are equal.
inline constexpr DWORD CEDB_SORT_UNKNOWNFIRST = 4;     ///< Records without the property come first.
inline constexpr DWORD CEDB_MAXSORTORDER = 4;          ///< The most orders that a database declares.
inline constexpr int CEDB_MAXDBASENAMELEN = 32;        ///< A name's characters, with the terminator.

inline constexpr DWORD CEDB_AUTOINCREMENT = 1;   ///< Open: each read moves on by one.
inline constexpr DWORD CEDB_EXNOTIFICATION = 1;  ///< Request: notifications carry a CENOTIFICATION.
inline constexpr DWORD CEDB_ALLOWREALLOC = 1;    ///< Read: the buffer may be made anew, larger.
inline constexpr WORD CEDB_PROPDELETE = 0x200;   ///< Write: take this property away.

inline constexpr DWORD CEDB_SEEK_CEOID = 0x01;            ///< To a record by its identifier.
inline constexpr DWORD CEDB_SEEK_BEGINNING = 0x02;        ///< To an index, from 0.
inline constexpr DWORD CEDB_SEEK_END = 0x04;              ///< To an index from the end, 0 being the last record.
inline constexpr DWORD CEDB_SEEK_CURRENT = 0x08;          ///< By a signed count from the position.
inline constexpr DWORD CEDB_SEEK_VALUESMALLER = 0x10;     ///< To the largest smaller value.
inline constexpr DWORD CEDB_SEEK_VALUEFIRSTEQUAL = 0x20;  ///< To the first equal value.
inline constexpr DWORD CEDB_SEEK_VALUEGREATER = 0x40;     ///< To the first value as large or larger.
inline constexpr DWORD CEDB_SEEK_VALUENEXTEQUAL = 0x80;   ///< One step to an equal value.

/// Bytes, borrowed.
struct CEBLOB {
    DWORD dwCount;  ///< How many.
    BYTE* lpb;      ///< Where.
};

/// A value; which member holds it, the CEVT kind of its property says.
union CEVALUNION {
    std::int16_t iVal;    ///< CEVT_I2
    std::uint16_t uiVal;  ///< CEVT_UI2
    std::int32_t lVal;    ///< CEVT_I4
    std::uint32_t ulVal;  ///< CEVT_UI4
    FILETIME filetime;    ///< CEVT_FILETIME
    WCHAR* lpwstr;        ///< CEVT_LPWSTR: borrowed, zero-terminated.
    CEBLOB blob;          ///< CEVT_BLOB
    BOOL boolVal;         ///< CEVT_BOOL
    double dblVal;        ///< CEVT_R8

    /// Holds no bytes.
    CEVALUNION() : blob{0, nullptr} {}
};

/// A property and its value.
struct CEPROPVAL {
    CEPROPID propid = 0;  ///< Which, and of what kind.
    WORD wLenData = 0;    ///< Not used.
    WORD wFlags = 0;      ///< CEDB_PROPDELETE, or 0.
    CEVALUNION val;       ///< Its value.
};

/// An order that a database declares.
struct SORTORDERSPEC {
    CEPROPID propid;  ///< By which property.
    DWORD dwFlags;    ///< CEDB_SORT_*.
};

/// Asks for the notifications of a database, by the window that they go to.
struct CENOTIFYREQUEST {
    DWORD dwSize;   ///< 20, the size of this.
    HWND hwnd;      ///< Receives WM_DBNOTIFICATION with a CENOTIFICATION.
    DWORD dwFlags;  ///< CEDB_EXNOTIFICATION
    HANDLE hHeap;   ///< 0
    DWORD dwParam;  ///< Comes back with each notification.
};
static_assert(sizeof(CENOTIFYREQUEST) == 20);

/// What became of one record. Made by the platform, freed with CeFreeNotification.
struct CENOTIFICATION {
    DWORD dwSize;     ///< The size of this.
    DWORD dwParam;    ///< The request's dwParam.
    UINT uType;       ///< 0x401 created, 0x403 deleted, 0x406 changed.
    CEOID oid;        ///< The record.
    CEOID oidParent;  ///< The database.
};

/// What there is to know of a database.
struct CEOIDINFOEX {
    WCHAR szDbaseName[CEDB_MAXDBASENAMELEN];       ///< Its name.
    DWORD dwDbaseType;                             ///< What its maker called its type.
    DWORD dwNumRecords;                            ///< How many records it has.
    DWORD dwSize;                                  ///< Bytes of all records; 0xFFFFFFFF when there are more.
    FILETIME ftLastModified;                       ///< Grows strictly with every change to the database.
    WORD wNumSortOrder;                            ///< How many orders it declares.
    SORTORDERSPEC rgSortSpecs[CEDB_MAXSORTORDER];  ///< The orders that it declares.
};

/// @return the new database's identifier, or 0: ERROR_ALREADY_EXISTS, ERROR_INVALID_PARAMETER (no name,
///         more than four orders, an order on a blob), or a store error. A long name is cut to 31 characters.
TESSERA_API CEOID CeCreateDatabaseEx2(const WCHAR* name, DWORD type, WORD numOrders, const SORTORDERSPEC* orders);

/// Removes a database and all its records. Handles open on it turn invalid.
TESSERA_API BOOL CeDeleteDatabaseEx(CEOID database);

/// Opens by name when `*database` is 0, which then receives the identifier; else by identifier.
/// A sort property of 0 takes the first declared order, or the order of creation when there is none; any
/// other property gives its order, with `sortFlags`, declared or not. A request is copied.
/// @return INVALID_HANDLE_VALUE on failure: ERROR_FILE_NOT_FOUND, ERROR_INVALID_PARAMETER, or a store error.
TESSERA_API HANDLE CeOpenDatabaseEx2(CEOID* database, const WCHAR* name, CEPROPID sortProperty, DWORD sortFlags,
                                     DWORD flags, const CENOTIFYREQUEST* request);
/// Closes a handle; FALSE with ERROR_INVALID_HANDLE when it is none.
TESSERA_API BOOL CloseHandle(HANDLE handle);

/// Moves the position. `value` is an index or a signed count for BEGINNING, END (0 is the last record) and
/// CURRENT, a record's identifier for CEOID, and a pointer to a CEPROPVAL for the four value seeks.
/// First-equal looks from the start. Next-equal goes one step, and fails when that record is not equal.
/// A value of another property than the order's is found all the same: the first such record in the
/// handle's order. VALUESMALLER (the largest smaller value) and VALUEGREATER (the first equal record, else the
/// smallest greater value) want the order's own property, and go by value in a descending order too.
/// @param index receives the index reached by a seek from BEGINNING or END, else 0; may be null.
/// @return the identifier of the record reached, or 0. Running off either end, and finding no such value,
///         sets ERROR_SEEK and leaves the position at the end; any other failure leaves it where it was:
///         ERROR_KEY_DELETED (no such record), ERROR_INVALID_PARAMETER, ERROR_INVALID_HANDLE, a store error.
TESSERA_API CEOID CeSeekDatabaseEx(HANDLE handle, DWORD seekType, std::uintptr_t value, DWORD* index);

/// Reads all properties of the record at the position into a buffer of CEPROPVALs followed by what they
/// point to. With CEDB_ALLOWREALLOC `*buffer` may be null or too small and is then made anew; free it with
/// CeFreeBuffer. `*size` receives the bytes used. An autoincrementing handle then moves on by one, also past a
/// record that is gone.
/// @return the record's identifier, or 0: ERROR_NO_MORE_ITEMS at the end, ERROR_KEY_DELETED when the record
///         at the position is gone, ERROR_INSUFFICIENT_BUFFER (`*size` then says what is needed).
TESSERA_API CEOID CeReadRecordPropsEx(HANDLE handle, DWORD flags, WORD* numProps, BYTE** buffer, DWORD* size);
/// Frees what CeReadRecordPropsEx has made; null is nothing to free.
TESSERA_API void CeFreeBuffer(BYTE* buffer);

/// Writes the named properties into `record`, or makes a record of them when it is 0; the record's other
/// properties stay. The position does not move.
/// @return the record's identifier, or 0: ERROR_INVALID_PARAMETER (a property over 65,471 bytes, a record
///         over 131,072, a kind that does not exist), ERROR_KEY_DELETED, or a store error; then nothing
///         was written.
TESSERA_API CEOID CeWriteRecordProps(HANDLE handle, CEOID record, WORD numProps, const CEPROPVAL* props);

/// Deletes a record. FALSE with ERROR_KEY_DELETED when there is none, or with a store error.
TESSERA_API BOOL CeDeleteRecord(HANDLE handle, CEOID record);
/// Tells of a database, whether or not anybody has it open. FALSE when there is none, or with a store error.
TESSERA_API BOOL CeOidGetInfoEx2(CEOID database, CEOIDINFOEX* info);

/// Frees a notification; `request` is the one it came from, or any other: only that there is one is looked at.
/// FALSE with ERROR_INVALID_PARAMETER when either is null.
TESSERA_API BOOL CeFreeNotification(const CENOTIFYREQUEST* request, CENOTIFICATION* notification);
