#include "tessera/database/POlDBIterator.h"

#include <utility>

#include "tessera/database/ContactItem.h"
#include "tessera/database/Guarded.h"
#include "tessera/database/POlDBTable.h"

namespace Database {

POlDBIterator::POlDBIterator(Table* owner, IPOutlookItemCollection* items, CCeDBProp* from, CCeDBProp* to)
    : POlDBIterator(owner, items, 0, from, to) {}

POlDBIterator::POlDBIterator(Table* owner, IPOutlookItemCollection* items, int attr, CCeDBProp* from, CCeDBProp* to)
    : POlDBIterator(items, owner, attr, from, to) {
    POlDBIterator::init();
}

POlDBIterator::POlDBIterator(Table* owner, IPOutlookItemCollection* items, const CString& restriction)
    : POlDBIterator(items, owner, 0, nullptr, nullptr) {
    init(restriction);
}

POlDBIterator::POlDBIterator(IPOutlookItemCollection* items, Table* owner, int attr, CCeDBProp* from, CCeDBProp* to)
    : Iterator(owner, attr, from, to), items_(items) {}

POlDBIterator::~POlDBIterator() {
    if (items_ != nullptr) items_->Release();
}

void POlDBIterator::keepBounds(std::unique_ptr<CCeDBProp> from, std::unique_ptr<CCeDBProp> to) {
    keptFrom_ = std::move(from);
    keptTo_ = std::move(to);
}

HRESULT POlDBIterator::init() {
    if (items_ == nullptr) return S_OK;
    if (getMinRange() == nullptr && getMaxRange() == nullptr) return countItems();
    if (sortIdx != 0 && getTable()->getRecordDef() == nullptr) return E_FAIL;  // nothing names the attribute
    // A quote would end the bound early and let the rest of it be read as part of the restriction.
    for (const CCeDBProp* bound : {getMinRange(), getMaxRange()}) {
        if (bound != nullptr && bound->getText().Find(u'"') >= 0) return E_INVALIDARG;
    }
    return init(rangeRestriction());
}

HRESULT POlDBIterator::init(const CString& restriction) {
    restriction_ = restriction;
    if (items_ == nullptr) return E_FAIL;
    ComPtr<IPOutlookItemCollection> restricted;
    if (const HRESULT result = items_->Restrict(Bstr(restriction).get(), restricted.out()); FAILED(result)) {
        return result;
    }
    items_->Release();
    items_ = restricted.detach();
    return countItems();
}

HRESULT POlDBIterator::countItems() {
    int count = 0;
    if (const HRESULT result = items_->get_Count(&count); FAILED(result)) return result;
    numItems = count;
    if (numItems > 0) curIdx = 0;
    return S_OK;
}

CString POlDBIterator::rangeRestriction() const {
    CCeDBProp* from = getMinRange();
    CCeDBProp* to = getMaxRange();
    const CString property = sortIdx != 0 ? getTable()->getAttrName(sortIdx) : CString(TEXT("FileAs"));
    const auto comparison = [&property](const WCHAR* op, const CCeDBProp* bound) {
        return TEXT("[") + property + TEXT("] ") + op + TEXT(" \"") + bound->getText() + TEXT("\"");
    };
    if (to == nullptr) return comparison(TEXT(">="), from);
    if (from == nullptr) return comparison(TEXT("<="), to);  // inclusive, unlike the upper of two bounds: meant so
    // One object given twice means equality; two objects of equal value are an empty range: meant so.
    if (from == to) return comparison(TEXT("="), from);
    return comparison(TEXT(">="), from) + TEXT(" and ") + comparison(TEXT("<"), to);
}

bool POlDBIterator::isOpened() {
    return getTable() != nullptr && items_ != nullptr && numItems >= 1 && curIdx != nInvalidItemIdx_;
}

DWORD POlDBIterator::getCur() {
    curOid = 0;
    if (items_ == nullptr) return 0;
    ComPtr<IDispatch> item;
    if (SUCCEEDED(items_->Item(curIdx, item.out()))) curOid = oidOf(contactOf(item.get()));
    return curOid;
}

HRESULT POlDBIterator::next() {
    if (items_ == nullptr) return E_FAIL;
    ++curIdx;
    if (curIdx > numItems) return S_FALSE;
    getCur();
    return S_OK;
}

HRESULT POlDBIterator::prev() {
    if (!isOpened()) return E_ACCESSDENIED;
    --curIdx;
    if (curIdx < 1) return S_FALSE;
    getCur();
    return S_OK;
}

HRESULT POlDBIterator::last() {
    if (!isOpened()) return E_ACCESSDENIED;
    curIdx = numItems;
    getCur();
    return S_OK;
}

bool POlDBIterator::moveToIndex(int idx) {
    if (idx < 0 || idx > getNumItems()) return false;
    curIdx = idx + 1;
    return true;
}

DWORD POlDBIterator::getAt(int idx) {
    return moveToIndex(idx) ? getCur() : 0;
}

CCeDBProp POlDBIterator::getProp(int /*attrIdx*/) {
    return {};
}

CCeDBProp POlDBIterator::getPropAt(int idx, int attrIdx) {
    return moveToIndex(idx) ? getProp(attrIdx) : CCeDBProp();
}

CString POlDBIterator::getString(int attrIdx) {
    return guarded(CString(), [&] {
        ComPtr<IDispatch> item;
        if (items_ == nullptr || FAILED(items_->Item(curIdx, item.out()))) return CString();
        return readAttr(*static_cast<POlDBTable*>(getTable()), contactOf(item.get()), attrIdx);
    });
}

CString POlDBIterator::getStringAt(int idx, int attrIdx) {
    return moveToIndex(idx) ? getString(attrIdx) : CString();
}

HRESULT POlDBIterator::deleteCur() {
    ComPtr<IDispatch> item;
    if (!isOpened() || FAILED(items_->Item(curIdx, item.out()))) {
        curOid = 0;
        return S_OK;
    }
    contactOf(item.get())->Delete();
    static_cast<void>(items_->get_Count(&numItems));
    return S_OK;
}

HRESULT POlDBIterator::deleteAt(int idx, bool positionOnly) {
    if (const HRESULT result = Iterator::deleteAt(idx, positionOnly); FAILED(result)) return result;
    return guarded(E_OUTOFMEMORY, [&] {
        const HRESULT result = restriction_.IsEmpty() ? countItems() : init(restriction_);
        if (SUCCEEDED(result)) curIdx = idx;
        return result;
    });
}

}  // namespace Database
