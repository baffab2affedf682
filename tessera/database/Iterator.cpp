#include "tessera/database/Iterator.h"

namespace Database {

Iterator::Iterator(Table* owner, CCeDBProp* p1, CCeDBProp* p2) : Iterator(owner, 0, p1, p2) {}

Iterator::Iterator(Table* owner, int sortAttr, CCeDBProp* p1, CCeDBProp* p2)
    : table(owner), sortIdx(sortAttr), minRange(p1), maxRange(p2) {}

Iterator::~Iterator() = default;

DWORD Iterator::getCur() {
    return curOid;
}

HRESULT Iterator::getRecord(CCeDBRecord* /*rec*/) {
    return E_NOTIMPL;
}

HRESULT Iterator::last() {
    return E_NOTIMPL;
}

HRESULT Iterator::prev() {
    return E_NOTIMPL;
}

HRESULT Iterator::deleteCur() {
    if (isOpened()) --numItems;
    return S_OK;
}

DWORD Iterator::getAt(int /*idx*/) {
    return 0;
}

HRESULT Iterator::getRecordAt(int /*idx*/, CCeDBRecord* /*rec*/) {
    return E_NOTIMPL;
}

CCeDBProp Iterator::getPropAt(int /*idx*/, int /*attrIdx*/) {
    return {};
}

CString Iterator::getStringAt(int /*idx*/, int /*attrIdx*/) {
    return {};
}

HRESULT Iterator::deleteAt(int idx, bool positionOnly) {
    if (!isOpened()) return E_ACCESSDENIED;
    if (idx < 0 || idx > getNumItems()) return E_FAIL;  // one past the last is let through: meant so
    curIdx = idx;
    return positionOnly ? S_OK : deleteCur();
}

int Iterator::getNumItems() {
    return numItems;
}

HRESULT Iterator::init() {
    return E_NOTIMPL;
}

}  // namespace Database
