#include "tessera/database/CeDBTable.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "tessera/database/CeDBIterator.h"
#include "tessera/database/Guarded.h"
#include "tessera/platform/base/COleDateTime.h"
#include "tessera/platform/objectstore/ObjectStore.h"

namespace Database {
namespace {

std::vector<SORTORDERSPEC> sortOrdersOf(const RecordDef& schema) {
    std::vector<SORTORDERSPEC> orders;
    for (int i = 0; i < schema.getNumAttrs() && orders.size() < CEDB_MAXSORTORDER; ++i) {
        const AttrDef& attribute = *schema.getAttrDef(i);
        if (attribute.getSortFlags() == 0) continue;
        orders.push_back({attribute.getProp().getPropId(), attribute.getSortFlags()});
    }
    return orders;
}

HRESULT okIf(bool succeeded) {
    return succeeded ? S_OK : E_FAIL;
}

}  // namespace

CeDBTable::CeDBTable(const WCHAR* tableName, const RecordDef* def) : Table(tableName, def) {}

CeDBTable::~CeDBTable() = default;

DWORD CeDBTable::create() {
    return guarded(DWORD{0}, [&]() -> DWORD {
        if (!isOpen()) db_ = std::make_unique<CCeDBDatabase>();
        const std::vector<SORTORDERSPEC> orders = sortOrdersOf(*getRecordDef());
        return db_->create(getName(), 0, static_cast<WORD>(orders.size()), orders.data());
    });
}

BOOL CeDBTable::open(CWnd* notifyWnd) {
    return openSortedBy(nullptr, notifyWnd);
}

BOOL CeDBTable::open(WORD attrIdx, WORD sortFlags, CWnd* notifyWnd) {
    const AttrDef& attribute = *getAttrDef(attrIdx);
    const CCeDBProp sort(attribute.getType(), attribute.getIdent(), sortFlags);
    return openSortedBy(&sort, notifyWnd);
}

BOOL CeDBTable::reopen(WORD attrIdx) {
    const AttrDef& attribute = *getAttrDef(attrIdx);
    const CCeDBProp sort(attribute.getType(), attribute.getIdent());
    std::unique_ptr<CCeDBDatabase> reopened(newOrNull<CCeDBDatabase>());
    if (!reopened) return FALSE;
    if (reopened->open(getName(), &sort, nullptr)) {
        db_ = std::move(reopened);
        return TRUE;
    }
    if (GetLastError() == ERROR_FILE_NOT_FOUND) db_.reset();
    return FALSE;
}

BOOL CeDBTable::openSortedBy(const CCeDBProp* sort, CWnd* notifyWnd) {
    if (!CCeDBDatabase::exists(getName())) {
        if (GetLastError() == ERROR_FILE_NOT_FOUND) db_.reset();  // else there is no telling, and it stays
        return FALSE;
    }
    if (isOpen()) return TRUE;
    if (!db_) db_.reset(newOrNull<CCeDBDatabase>());
    return db_ ? db_->open(getName(), sort, notifyWnd) : FALSE;
}

BOOL CeDBTable::close() {
    return db_ ? db_->close() : FALSE;
}

BOOL CeDBTable::drop() {
    const BOOL dropped = open(nullptr) ? db_->remove() : FALSE;
    db_.reset();
    return dropped;
}

bool CeDBTable::isOpen() {
    return db_ && db_->isOpen();
}

DWORD CeDBTable::getSize() {
    return isOpen() ? db_->getSize() : 0;
}

DWORD CeDBTable::getNumRecords() {
    return isOpen() ? static_cast<WORD>(db_->getNumRecords()) : 0;
}

DWORD CeDBTable::getCEOID() {
    return db_ ? db_->getOid() : 0;
}

Iterator* CeDBTable::getIterator(int sortIdx, CCeDBProp* p1, CCeDBProp* p2) {
    return newOrNull<CeDBIterator>(this, sortIdx, p1, p2);
}

Iterator* CeDBTable::getIterator(CCeDBProp* p1, CCeDBProp* p2) {
    return newOrNull<CeDBIterator>(this, p1, p2);
}

HRESULT CeDBTable::add(const CCeDBRecord& record, DWORD& newOid) {
    newOid = db_->add(record);
    return okIf(newOid != 0);
}

HRESULT CeDBTable::insertRecord(CCeDBRecord* rec, DWORD& newOid) {
    if (!isOpen() || rec == nullptr) return E_FAIL;
    return add(*rec, newOid);
}

HRESULT CeDBTable::insertRecord(CCeDBProp props[], DWORD& newOid) {
    if (!isOpen() || props == nullptr) return E_FAIL;
    return guarded(E_OUTOFMEMORY, [&] { return add(CCeDBRecord(props, getNumAttrs()), newOid); });
}

HRESULT CeDBTable::insertRecord(CObArray& props, DWORD& newOid) {
    if (!isOpen()) return E_FAIL;
    return guarded(E_OUTOFMEMORY, [&] {
        CCeDBRecord record;
        for (int i = 0; i < std::min(props.GetSize(), getNumAttrs()); ++i) {
            if (const auto* prop = dynamic_cast<const CCeDBProp*>(props[i]); prop != nullptr) record.addProp(*prop);
        }
        return add(record, newOid);
    });
}

CCeDBProp CeDBTable::sampleOf(const AttrDef& attribute) {
    const WORD ident = attribute.getIdent();
    switch (attribute.getType()) {
        case CCeDBProp::typeI2:
            return CCeDBProp::ofI2(ident, 11);
        case CCeDBProp::typeUI2:
            return CCeDBProp::ofUI2(ident, 0x123);
        case CCeDBProp::typeI4:
            return CCeDBProp::ofI4(ident, 11);
        case CCeDBProp::typeUI4:
            return CCeDBProp::ofUI4(ident, getCEOID());
        case CCeDBProp::typeFileTime:
            return CCeDBProp::ofFileTime(ident, currentFileTime());
        case CCeDBProp::typeText:
            return CCeDBProp::ofText(ident, TEXT("한글 테스트."));
        case CCeDBProp::typeBlob:
            return CCeDBProp::ofBlob(ident, TEXT("한글이다. 와~"), 12);
        case CCeDBProp::typeBool:
            return CCeDBProp::ofBool(ident, true);
        case CCeDBProp::typeR8:
            return CCeDBProp::ofR8(ident, 1.11);
    }
    return CCeDBProp(attribute.getType(), ident);
}

HRESULT CeDBTable::insertRecord() {
    return guarded(E_OUTOFMEMORY, [&] {
        std::vector<CCeDBProp> props;
        props.reserve(static_cast<std::size_t>(getNumAttrs()));
        for (int i = 0; i < getNumAttrs(); ++i)
            props.push_back(sampleOf(*getAttrDef(i)));
        DWORD newOid = 0;
        const HRESULT inserted = insertRecord(props.data(), newOid);
        return FAILED(inserted) ? inserted : S_OK;
    });
}

HRESULT CeDBTable::deleteRecord(CCeDBProp& key) {
    if (!isOpen()) return E_FAIL;
    DWORD found = 0;
    const HRESULT query = queryRecord(key, &found, nullptr);
    if (query != S_OK) return query;
    return deleteRecord(found);
}

HRESULT CeDBTable::deleteRecord(DWORD& oid) {
    if (!isOpen()) return E_FAIL;
    const CEOID doomed = oid != 0 ? oid : db_->getCurrent();
    if (doomed == 0) return E_FAIL;
    return okIf(CeDeleteRecord(db_->getHandle(), doomed) != FALSE);
}

HRESULT CeDBTable::deleteAllRecords() {
    if (!isOpen()) return E_FAIL;
    ObjectStoreBatch batch;
    if (!batch.begun()) return E_FAIL;
    if (db_->seekToIndex(0) == 0) return okIf(db_->isEof());  // there is none, or no telling
    const std::unique_ptr<Iterator> records(getIterator(0, nullptr, nullptr));
    if (!records) return E_FAIL;
    const HRESULT deleted = deleteEach(*records);
    return batch.end() ? deleted : E_FAIL;
}

HRESULT CeDBTable::deleteEach(Iterator& records) {
    HRESULT moved = records.next();
    HRESULT deleted = moved;
    while (moved == S_OK) {
        DWORD oid = records.getCur();
        deleted = deleteRecord(oid);
        if (deleted != S_OK) break;
        moved = records.next();
    }
    return deleted;
}

HRESULT CeDBTable::updateRecord(DWORD oid, CCeDBRecord* rec, int /*attrIdx*/, CCeDBProp* prop) {
    if (!isOpen() || rec == nullptr) return E_FAIL;
    if (oid != 0 && db_->seekToRecord(oid) != oid) return E_FAIL;
    if (db_->getCurrent() == 0) return E_FAIL;
    return okIf(db_->writeCurrent(*rec, prop) != FALSE);
}

HRESULT CeDBTable::getRecord(DWORD& oid, CCeDBRecord* rec) {
    if (!isOpen() || rec == nullptr) return E_FAIL;
    const ObjectStoreGlance glance;
    if (oid == 0 || db_->seekToRecord(oid) != oid) return S_OK;  // no such record is no failure: meant so
    return db_->readCurrent(*rec) ? S_OK : S_FALSE;
}

HRESULT CeDBTable::queryRecord(CCeDBProp& key, DWORD* oid, CCeDBRecord* rec) {
    if (!isOpen()) return E_FAIL;
    if (oid == nullptr) return E_POINTER;
    SetLastError(ERROR_SUCCESS);
    const ObjectStoreGlance glance;
    db_->seekToIndex(0);
    *oid = db_->seekFirstEqual(key);
    if (*oid == 0) return db_->isEof() ? S_FALSE : E_FAIL;
    if (rec != nullptr) db_->readCurrent(*rec);  // a failed read is not reported: meant so
    return S_OK;
}

HRESULT CeDBTable::queryRecord(CCeDBProp& key, CCeDBRecord* rec) {
    DWORD found = 0;
    return queryRecord(key, &found, rec);
}

}  // namespace Database
