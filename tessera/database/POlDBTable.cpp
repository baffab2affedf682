#include "tessera/database/POlDBTable.h"

#include <array>
#include <memory>
#include <vector>

#include "tessera/database/ContactItem.h"
#include "tessera/database/Guarded.h"
#include "tessera/database/POlDBIterator.h"
#include "tessera/database/ScanIterator.h"
#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/CCeDBDatabase.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tessera/platform/windows/CWnd.h"

namespace Database {

namespace {

/// The cursor that `make` answers, or null (and no cursor) when it has nothing to show or memory is short.
/// A reference detached in the arguments of its `new` is not lost: memory is had before they are evaluated.
template <class Make>
Iterator* openedOrNull(Make&& make) noexcept {
    return guarded(static_cast<Iterator*>(nullptr), [&]() -> Iterator* {
        std::unique_ptr<Iterator> cursor(make());
        return cursor != nullptr && cursor->isOpened() ? cursor.release() : nullptr;
    });
}

/// Empties the collection, stopping at the first item that cannot be removed.
HRESULT removeAll(IPOutlookItemCollection& items) {
    int count = 0;
    HRESULT result = items.get_Count(&count);
    for (int i = 0; i < count && SUCCEEDED(result); ++i) {
        result = items.Remove(1);  // always the first: the collection closes up behind it
    }
    return result;
}

}  // namespace

POlDBTable::POlDBTable() : POlDBTable(TEXT("POlContacts"), nullptr, olFolderContacts) {}

POlDBTable::POlDBTable(const WCHAR* tableName, const RecordDef* def, int folderId)
    : Table(tableName, def), folderId_(folderId) {
    makeApplication();
}

POlDBTable::~POlDBTable() {
    POlDBTable::close();
    if (application_ != nullptr) application_->Release();
}

BOOL POlDBTable::makeApplication() {
    void* made = nullptr;
    const HRESULT result = CoCreateInstance(CLSID_Application, nullptr, CLSCTX_INPROC_SERVER, IID_IPOutlookApp, &made);
    application_ = static_cast<IPOutlookApp*>(made);
    return SUCCEEDED(result) ? TRUE : FALSE;
}

DWORD POlDBTable::create() {
    return 0;
}

BOOL POlDBTable::open(CWnd* owner) {
    if (loggedOn_) return TRUE;
    if (application_ == nullptr && !makeApplication()) return FALSE;
    const HWND window = owner == nullptr ? 0 : owner->GetSafeHwnd();
    if (FAILED(application_->Logon(static_cast<LONG>(window)))) return FALSE;
    application_->AddRef();
    loggedOn_ = true;
    application_->GetDefaultFolder(folderId_, &folder_);  // isOpen tells whether there was such a folder
    return TRUE;
}

BOOL POlDBTable::close() {
    if (!loggedOn_) return TRUE;
    if (folder_ != nullptr) folder_->Release();
    folder_ = nullptr;
    application_->Logoff();
    application_->Release();
    loggedOn_ = false;
    return TRUE;
}

BOOL POlDBTable::drop() {
    return close();
}

bool POlDBTable::isOpen() {
    return application_ != nullptr && folder_ != nullptr;
}

DWORD POlDBTable::getSize() {
    CCeDBDatabase contacts;
    return contacts.open(szContactsDatabase, nullptr, nullptr) ? contacts.getSize() : 0;
}

DWORD POlDBTable::getNumRecords() {
    ComPtr<IPOutlookItemCollection> items;
    int count = 0;
    if (FAILED(getItems(items.out())) || FAILED(items->get_Count(&count))) return 0;
    return static_cast<DWORD>(count);
}

DWORD POlDBTable::getCEOID() {
    return 0;
}

Iterator* POlDBTable::getIterator(CCeDBProp* from, CCeDBProp* to) {
    return getIterator(0, from, to);
}

Iterator* POlDBTable::getIterator(int sortAttr, CCeDBProp* from, CCeDBProp* to) {
    return openedOrNull([&]() -> Iterator* {
        ComPtr<IPOutlookItemCollection> items;
        if (FAILED(getItems(items.out()))) return nullptr;
        items = withColumns(items.get(), TEXT("FileAs"));
        return new POlDBIterator(this, items.detach(), sortAttr, from, to);
    });
}

Iterator* POlDBTable::getIterator(POlDBIterator* within, int sortAttr, CCeDBProp* from, CCeDBProp* to) {
    if (!isOpen() || within == nullptr) return nullptr;
    return openedOrNull([&] {
        auto items = ComPtr<IPOutlookItemCollection>::share(within->getItemCol());
        return new POlDBIterator(this, items.detach(), sortAttr, from, to);
    });
}

Iterator* POlDBTable::getIterator(POlDBIterator* within, const CString& restriction) {
    ComPtr<IPOutlookItemCollection> items = itemsWithin(within);
    if (!items) return nullptr;
    return openedOrNull([&] { return new POlDBIterator(this, items.detach(), restriction); });
}

Iterator* POlDBTable::getScanIterator(POlDBIterator* within, int attr, const CString& key) {
    ComPtr<IPOutlookItemCollection> items = itemsWithin(within);
    if (!items) return nullptr;
    return openedOrNull([&] { return new ScanIterator(this, items.detach(), attr, key, true); });
}

ComPtr<IPOutlookItemCollection> POlDBTable::itemsWithin(POlDBIterator* within) {
    ComPtr<IPOutlookItemCollection> items;
    if (!isOpen()) return items;
    if (within != nullptr) return ComPtr<IPOutlookItemCollection>::share(within->getItemCol());
    if (FAILED(getItems(items.out()))) items.reset();
    return items;
}

HRESULT POlDBTable::insertRecord(CCeDBRecord* record, DWORD& newOid) {
    if (!isOpen() || record == nullptr || record->getNumProps() == 0 || getRecordDef() == nullptr) return E_FAIL;
    return guarded(E_OUTOFMEMORY, [&] {
        std::vector<CCeDBProp> props(static_cast<std::size_t>(getNumAttrs()));
        for (int i = 0; i < getNumAttrs() && i < record->getNumProps(); ++i) {
            props[static_cast<std::size_t>(i)] = record->getPropAt(i);
        }
        return insertRecord(props.data(), newOid);
    });
}

HRESULT POlDBTable::insertRecord(CCeDBProp props[], DWORD& newOid) {
    if (!isOpen() || props == nullptr) return E_FAIL;
    return guarded(E_OUTOFMEMORY, [&] {
        ComPtr<IPOutlookItemCollection> items;
        if (const HRESULT result = getItems(items.out()); FAILED(result)) return result;
        ComPtr<IDispatch> item;
        if (const HRESULT result = items->Add(item.out()); FAILED(result) || !item) return result;

        IContact* contact = contactOf(item.get());
        putRow(contact, [&](int attr) -> const CCeDBProp& { return props[attr]; });
        if (const HRESULT result = contact->Save(); FAILED(result)) return result;
        newOid = oidOf(contact);
        return S_OK;
    });
}

HRESULT POlDBTable::insertRecord() {
    return E_NOTIMPL;
}

HRESULT POlDBTable::deleteRecord(DWORD& oid) {
    ComPtr<IDispatch> item;
    const HRESULT result = getItemFromOid(oid, item.out());
    if (SUCCEEDED(result)) contactOf(item.get())->Delete();
    return result;
}

HRESULT POlDBTable::deleteAllRecords() {
    if (!isOpen()) return E_FAIL;
    ComPtr<IPOutlookItemCollection> items;
    if (const HRESULT result = getItems(items.out()); FAILED(result)) return result;
    ObjectStoreBatch batch;
    if (!batch.begun()) return E_FAIL;
    const HRESULT result = removeAll(*items.get());
    return batch.end() ? result : E_FAIL;
}

HRESULT POlDBTable::updateRecord(DWORD oid, CCeDBRecord* record, int /*attrIdx*/, CCeDBProp* /*prop*/) {
    if (!isOpen() || record == nullptr) return E_FAIL;
    ComPtr<IDispatch> item;
    if (const HRESULT result = getItemFromOid(oid, item.out()); FAILED(result)) return result;
    IContact* contact = contactOf(item.get());
    if (const HRESULT result = setContactItem(contact, record); FAILED(result)) return result;
    const HRESULT result = contact->Save();
    return FAILED(result) ? result : S_OK;
}

HRESULT POlDBTable::getItems(IPOutlookItemCollection** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (!isOpen()) return E_ACCESSDENIED;
    return folder_->get_Items(out);
}

HRESULT POlDBTable::getItemFromOid(DWORD oid, IDispatch** out) {
    if (!isOpen()) return E_FAIL;
    return application_->GetItemFromOid(static_cast<LONG>(oid), out);
}

HRESULT POlDBTable::find(const WCHAR* restriction, IDispatch** out) {
    if (!isOpen()) return E_FAIL;
    return guarded(E_OUTOFMEMORY, [&] {
        ComPtr<IPOutlookItemCollection> items;
        if (const HRESULT result = getItems(items.out()); FAILED(result)) return result;
        return items->Find(Bstr(CString(restriction)).get(), out);
    });
}

HRESULT POlDBTable::getCallerInfo(IContact* contact, PhoneBook::PBRecord* record, DWORD* found) {
    if (!isOpen() || contact == nullptr || record == nullptr) return E_FAIL;
    return guarded(E_OUTOFMEMORY, [&] {
        const DWORD filled = readFields(contact, *record);
        if (found != nullptr) *found = filled;
        return filled != 0 ? S_OK : E_FAIL;
    });
}

HRESULT POlDBTable::setContactItem(IContact* contact, CCeDBRecord* record) {
    if (!isOpen() || contact == nullptr || record == nullptr) return E_FAIL;
    return guarded(E_OUTOFMEMORY, [&] {
        const CCeDBProp none;
        putRow(contact, [&](int attr) -> const CCeDBProp& {
            return attr < record->getNumProps() ? record->getPropAt(attr) : none;
        });
        return S_OK;
    });
}

HRESULT POlDBTable::splitName(const CString& fullName, CString& first, CString& last) {
    return guarded(E_OUTOFMEMORY, [&] {
        splitFullName(fullName, first, last);
        return S_OK;
    });
}

}  // namespace Database
