#include "tessera/database/CeDBIterator.h"

#include "tessera/database/CeDBTable.h"
#include "tessera/database/Guarded.h"
#include "tessera/database/schema/PropText.h"
#include "tessera/platform/objectstore/CCeDBDatabase.h"
#include "tessera/platform/objectstore/ObjectStore.h"

namespace Database {

CeDBIterator::CeDBIterator(Table* owner, CCeDBProp* minValue, CCeDBProp* maxValue)
    : CeDBIterator(owner, 0, minValue, maxValue) {}

CeDBIterator::CeDBIterator(Table* owner, int sortAttr, CCeDBProp* minValue, CCeDBProp* maxValue)
    : Iterator(owner, sortAttr, minValue, maxValue) {
    static_cast<void>(CeDBIterator::init());  // a table that is not open shows as nothing to walk
}

HRESULT CeDBIterator::init() {
    if (table == nullptr) return E_ACCESSDENIED;
    numItems = static_cast<int>(table->getNumRecords());
    CCeDBDatabase* const records = database();
    if (records == nullptr) return E_ACCESSDENIED;
    records->seekToIndex(0);
    return S_OK;
}

// Null when the table is not open.
CCeDBDatabase* CeDBIterator::database() {
    return table != nullptr && table->isOpen() ? static_cast<CeDBTable*>(table)->getDB() : nullptr;
}

bool CeDBIterator::isOpened() {
    return table != nullptr && getNumItems() > 0;
}

DWORD CeDBIterator::getCur() {
    if (!isOpened()) curOid = 0;
    return curOid;
}

HRESULT CeDBIterator::getRecord(CCeDBRecord* rec) {
    if (rec == nullptr) return E_POINTER;
    CCeDBDatabase* const records = database();
    if (records == nullptr) return E_ACCESSDENIED;
    const ObjectStoreGlance glance;
    if (curOid == 0 || records->seekToRecord(curOid) != curOid) return S_OK;  // no failure: meant so
    return records->readCurrent(*rec) ? S_OK : E_FAIL;
}

CCeDBProp CeDBIterator::getProp(int attrIdx) {
    return guarded(CCeDBProp(), [&]() -> CCeDBProp {
        CCeDBRecord record;
        if (!isAttribute(attrIdx) || !readRecord(curOid, record)) return {};
        return propOf(record, attrIdx);
    });
}

CString CeDBIterator::getString(int attrIdx) {
    return guarded(CString(), [&] { return renderText(getProp(attrIdx)); });
}

HRESULT CeDBIterator::last() {
    if (!isOpened()) return E_ACCESSDENIED;
    CCeDBDatabase* const records = database();
    if (records == nullptr) return E_ACCESSDENIED;
    return moved(records->seekToEnd(), -1);  // counted as one step back, not set to the end: meant so
}

HRESULT CeDBIterator::next() {
    if (!isOpened()) return E_ACCESSDENIED;
    CCeDBDatabase* const records = database();
    if (records == nullptr) return E_ACCESSDENIED;
    const bool isFirst = curIdx == nInvalidItemIdx_;
    if (minRange == nullptr) return moved(isFirst ? records->seekToIndex(0) : records->seekNext(), +1);
    if (!isFirst) return moved(records->seekNextEqual(*minRange), +1);
    records->seekToIndex(0);
    return moved(records->seekFirstEqual(*minRange), +1);
}

HRESULT CeDBIterator::prev() {
    if (!isOpened()) return E_ACCESSDENIED;
    CCeDBDatabase* const records = database();
    if (records == nullptr) return E_ACCESSDENIED;
    const bool isFirst = curIdx == nInvalidItemIdx_;
    return moved(isFirst ? records->seekToEnd() : records->seekPrev(), -1);  // a first step back leaves -2: meant so
}

DWORD CeDBIterator::getAt(int idx) {
    if (!isIndex(idx)) return 0;
    CCeDBDatabase* const records = database();
    if (records == nullptr) return 0;
    const CEOID reached = records->seekToIndex(idx);
    if (reached != 0) setPosition(idx, reached);
    return reached;
}

HRESULT CeDBIterator::getRecordAt(int idx, CCeDBRecord* rec) {
    if (rec == nullptr) return E_POINTER;
    if (!isOpened()) return E_ACCESSDENIED;
    if (!isIndex(idx)) return E_FAIL;
    CCeDBDatabase* const records = database();
    if (records == nullptr) return E_ACCESSDENIED;
    const ObjectStoreGlance glance;
    const CEOID reached = records->seekToIndex(idx);
    if (reached == 0 || !records->readCurrent(*rec)) return E_FAIL;
    setPosition(idx, reached);
    return S_OK;
}

CCeDBProp CeDBIterator::getPropAt(int idx, int attrIdx) {
    return guarded(CCeDBProp(), [&]() -> CCeDBProp {
        CCeDBRecord record;
        if (getRecordAt(idx, &record) != S_OK || !isAttribute(attrIdx)) return {};
        return propOf(record, attrIdx);
    });
}

CString CeDBIterator::getStringAt(int idx, int attrIdx) {
    return guarded(CString(), [&]() -> CString {
        if (!isIndex(idx) || database() == nullptr || !isAttribute(attrIdx)) return {};
        CCeDBRecord record;
        const auto oid = static_cast<DWORD>(idx);  // an object identifier here, not an index: meant so
        if (!readRecord(oid, record)) return {};
        const CCeDBProp* prop = record.findProp(table->getAttrIdent(attrIdx));
        if (prop == nullptr) return {};
        setPosition(idx, oid);
        return renderText(*prop);
    });
}

// What a move answers after its seek: the index counts the moves, it is not where the record stands.
HRESULT CeDBIterator::moved(DWORD reached, int steps) {
    if (reached == 0) return database()->isEof() ? S_FALSE : E_FAIL;
    setPosition(curIdx + steps, reached);
    return S_OK;
}

void CeDBIterator::setPosition(int idx, DWORD oid) {
    curIdx = idx;
    curOid = oid;
}

// One past the last is let through, to be answered by the seek: meant so.
bool CeDBIterator::isIndex(int idx) {
    return isOpened() && idx >= 0 && idx <= getNumItems();
}

bool CeDBIterator::isAttribute(int attrIdx) {
    return table != nullptr && attrIdx >= 0 && attrIdx < table->getNumAttrs();
}

bool CeDBIterator::readRecord(DWORD oid, CCeDBRecord& record) {
    CCeDBDatabase* const records = database();
    if (records == nullptr || oid == 0) return false;
    const ObjectStoreGlance glance;
    if (records->seekToRecord(oid) != oid) return false;
    return records->readCurrent(record) != FALSE;
}

CCeDBProp CeDBIterator::propOf(const CCeDBRecord& record, int attrIdx) {
    if (attrIdx >= record.getNumProps()) return {};  // a record with fewer properties has none there: meant so
    return record.getProp(table->getAttrIdent(attrIdx));
}

}  // namespace Database
