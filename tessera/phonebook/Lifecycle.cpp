#include <algorithm>

#include "tessera/database/Guarded.h"
#include "tessera/phonebook/Operation.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/platform/contacts/ContactProperties.h"

namespace PhoneBook {

using Database::CeDBTable;
using Database::Iterator;
using Database::POlDBTable;

namespace {

constexpr UINT firstBucketCount = 61;
constexpr DWORD notifyRequestSize = 20;

/// Applies a step to each managed table, never stopping early; E_FAIL when any failed.
template <class Step>
HRESULT forEachTable(Step step) {
    int failures = 0;
    for (UINT id = 0; id < nNumTables_; ++id) {
        if (!step(id)) ++failures;
    }
    return failures == 0 ? S_OK : E_FAIL;
}

HANDLE openForNotifications(const WCHAR* database, const CENOTIFYREQUEST& request) {
    CEOID oid = 0;
    return CeOpenDatabaseEx2(&oid, database, 0, 0, CEDB_AUTOINCREMENT, &request);
}

}  // namespace

const MessageEntry PhoneBookDBMgr::_messageEntries[] = {
    {WM_CREATE,
     [](CWnd& window, WPARAM, LPARAM create) -> LRESULT {
         return static_cast<PhoneBookDBMgr&>(window).OnCreate(reinterpret_cast<LPCREATESTRUCT>(create));
     }},
    {WM_DESTROY,
     [](CWnd& window, WPARAM, LPARAM) -> LRESULT {
         static_cast<PhoneBookDBMgr&>(window).OnDestroy();
         return 0;
     }},
    {WM_DBNOTIFICATION,
     [](CWnd& window, WPARAM wParam, LPARAM lParam) -> LRESULT {
         return static_cast<PhoneBookDBMgr&>(window).onDBNotification(wParam, lParam);
     }},
};

PhoneBookDBMgr::PhoneBookDBMgr() {
    categories_.InitHashTable(firstBucketCount);
}

PhoneBookDBMgr::~PhoneBookDBMgr() {
    DestroyWindow();
    finishTableObj();
}

BOOL PhoneBookDBMgr::Create(UINT /*unused*/) {
    return CreateEx(WS_EX_NOACTIVATE, AfxRegisterWndClass(0), TEXT("PBDBMgrWnd"), 0, CW_USEDEFAULT, CW_USEDEFAULT,
                    CW_USEDEFAULT, CW_USEDEFAULT, 0, 0, nullptr);
}

const MessageEntry* PhoneBookDBMgr::findHandler(UINT message) const {
    const auto* found = std::ranges::find(_messageEntries, message, &MessageEntry::message);
    return found != std::end(_messageEntries) ? found : CWnd::findHandler(message);
}

int PhoneBookDBMgr::OnCreate(LPCREATESTRUCT create) {
    if (CWnd::OnCreate(create) == -1) return -1;
    initCeNotifyRequest();
    notifyRequest_.dwParam = PBDBTBL_POLCONTACTS;
    databaseHandles_[0] = openForNotifications(szContactsDatabase, notifyRequest_);
    // Over the first handle, which stays open: both databases go on notifying. Meant so.
    notifyRequest_.dwParam = PBDBTBL_CATEGORIES;
    databaseHandles_[0] = openForNotifications(aszTableName_[PBDBTBL_CATEGORIES], notifyRequest_);
    addSHNotification();
    return 0;
}

void PhoneBookDBMgr::OnDestroy() {
    CWnd::OnDestroy();
    closeDB();
    for (const HANDLE handle : databaseHandles_)
        CloseHandle(handle);
}

void PhoneBookDBMgr::initCeNotifyRequest() {
    notifyRequest_ = {.dwSize = notifyRequestSize,
                      .hwnd = GetSafeHwnd(),
                      .dwFlags = CEDB_EXNOTIFICATION,
                      .hHeap = 0,
                      // As much of the address as the word holds; each request then says its own.
                      .dwParam = static_cast<DWORD>(reinterpret_cast<std::uintptr_t>(this))};
}

HRESULT PhoneBookDBMgr::addSHNotification() {
    return S_OK;
}

BOOL PhoneBookDBMgr::initTableObj(UINT tableId) {
    if (tables_[tableId] != nullptr) return TRUE;
    if (tableId == PBDBTBL_POLCONTACTS) {
        tables_[tableId] =
            Database::newOrNull<POlDBTable>(aszTableName_[tableId], &aRecDef_[tableId], olFolderContacts);
    } else {
        tables_[tableId] = Database::newOrNull<CeDBTable>(aszTableName_[tableId], &aRecDef_[tableId]);
    }
    if (tableId == PBDBTBL_CATEGORIES) categoriesTable_.reset(tables_[tableId]);
    return tables_[tableId] != nullptr ? TRUE : FALSE;
}

void PhoneBookDBMgr::finishTableObj() {
    // The categories' slot is not visited, and no slot is cleared: this runs last of all.
    for (UINT id = 0; id < nNumTables_; ++id)
        delete tables_[id];
}

BOOL PhoneBookDBMgr::createTable(UINT tableId) {
    if (!initTableObj(tableId)) return FALSE;
    if (tableId == PBDBTBL_POLCONTACTS) return TRUE;
    return tables_[tableId]->create() != 0 ? TRUE : FALSE;
}

BOOL PhoneBookDBMgr::openTable(UINT tableId, CWnd* notifyWnd) {
    if (!initTableObj(tableId)) return FALSE;
    return tables_[tableId]->open(notifyWnd) ? TRUE : FALSE;
}

BOOL PhoneBookDBMgr::closeTable(UINT tableId) {
    if (tables_[tableId] == nullptr) return FALSE;
    return tables_[tableId]->close() ? TRUE : FALSE;
}

BOOL PhoneBookDBMgr::dropTable(UINT tableId) {
    if (!initTableObj(tableId)) return FALSE;
    if (tableId == PBDBTBL_POLCONTACTS) return TRUE;
    return tables_[tableId]->drop() ? TRUE : FALSE;
}

HRESULT PhoneBookDBMgr::createDB() {
    return writingOperation([&] { return forEachTable([&](UINT id) { return createTable(id); }); });
}

HRESULT PhoneBookDBMgr::openDB(CWnd* notifyWnd) {
    return operation([&] { return forEachTable([&](UINT id) { return openTable(id, notifyWnd); }); });
}

HRESULT PhoneBookDBMgr::closeDB() {
    return operation([&] { return forEachTable([&](UINT id) { return closeTable(id); }); });
}

HRESULT PhoneBookDBMgr::destroyDB() {
    closeDB();
    return writingOperation([&] { return forEachTable([&](UINT id) { return dropTable(id); }); });
}

HRESULT PhoneBookDBMgr::initDB(bool createWindow) {
    const HRESULT result = writingOperation([&] {
        static_cast<void>(createDB());  // what exists stays
        createTable(PBDBTBL_CATEGORIES);
        openTable(PBDBTBL_AVAILABLEPBGROUP, nullptr);
        openTable(PBDBTBL_CATEGORIES, nullptr);
        const HRESULT filled = initAvailablePBGroup();
        closeTable(PBDBTBL_CATEGORIES);
        closeTable(PBDBTBL_AVAILABLEPBGROUP);
        return filled;
    });
    if (createWindow) Create(0);
    return result;
}

Iterator* PhoneBookDBMgr::getIterator(UINT tableId, int sortIdx, CCeDBProp* from, CCeDBProp* to) {
    return tables_[tableId] == nullptr ? nullptr : tables_[tableId]->getIterator(sortIdx, from, to);
}

Iterator* PhoneBookDBMgr::getIterator(UINT pbAttrId, CCeDBProp* from, CCeDBProp* to) {
    const TupleMapEntry& place = atmDBAttrMap_[pbAttrId];
    if (place.nTableID < 0) return nullptr;
    return getIterator(static_cast<UINT>(place.nTableID), place.nAttrIdx, from, to);
}

POlDBTable* PhoneBookDBMgr::contactsTable() {
    return static_cast<POlDBTable*>(tables_[PBDBTBL_POLCONTACTS]);
}

CeDBTable* PhoneBookDBMgr::cedbTable(UINT tableId) {
    return static_cast<CeDBTable*>(tables_[tableId]);
}

bool PhoneBookDBMgr::isTableOpen(UINT tableId) {
    return tables_[tableId] != nullptr && tables_[tableId]->isOpen();
}

CeDBTable* PhoneBookDBMgr::reopenSortedBy(UINT tableId, WORD attrIdx) {
    CeDBTable* table = cedbTable(tableId);
    return table->reopen(attrIdx) ? table : nullptr;
}

}  // namespace PhoneBook
