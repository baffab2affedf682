#include "tessera/database/ScanIterator.h"

#include <iterator>
#include <vector>

#include "tessera/database/ContactItem.h"
#include "tessera/database/Guarded.h"
#include "tessera/database/POlDBTable.h"
#include "tessera/database/SharedContactsImage.h"

namespace Database {

ScanIterator::ScanIterator(Table* owner, IPOutlookItemCollection* items, int attr, const CString& key, bool run)
    : Iterator(owner, attr, nullptr, nullptr), items_(ComPtr<IPOutlookItemCollection>::adopt(items)) {
    if (run) init(key);
}

ScanIterator::~ScanIterator() = default;

HRESULT ScanIterator::init() {
    return S_OK;
}

HRESULT ScanIterator::init(const CString& key) {
    if (!items_) return S_OK;
    key_ = key;
    const bool byNumber = sortIdx == SCANATTR_TELNO;
    void* hinted = nullptr;
    if (const HRESULT result = items_->QueryInterface(IID_IPOutlookItemCollection2, &hinted); FAILED(result)) {
        return result;
    }
    auto columns = ComPtr<IPOutlookItemCollection2>::adopt(static_cast<IPOutlookItemCollection2*>(hinted));
    const HRESULT result = columns->SetColumns(
        Bstr(CString(byNumber ? TEXT("FileAs,MobileTelephoneNumber,HomeTelephoneNumber,BusinessTelephoneNumber,")
                                    TEXT("PagerNumber,BusinessFaxNumber")
                              : TEXT("FileAs")))
            .get());
    if (FAILED(result)) return result;

    // A scan that fails leaves no matches, and the cursor then reports itself not opened. The constructor
    // runs this class's own scan: a derived cursor asks for none there and runs its own.
    if (byNumber) {
        static_cast<void>(scanTelNo(columns.get(), key_));
    } else {
        static_cast<void>(scan(columns.get(), key_));  // NOLINT(clang-analyzer-optin.cplusplus.VirtualCall)
    }
    items_ = ComPtr<IPOutlookItemCollection>::adopt(columns.detach());
    if (!matches_.empty()) curIdx = nInvalidItemIdx_;
    return S_OK;
}

HRESULT ScanIterator::takeMatches(const std::function<std::vector<ScanMatch>(const ContactsImage&)>& search) {
    const auto take = [&](const ContactsImage& image) {
        std::vector<ScanMatch> found = search(image);
        matches_.assign(std::make_move_iterator(found.begin()), std::make_move_iterator(found.end()));
    };
    return withContactsImage(take) ? S_OK : E_FAIL;
}

HRESULT ScanIterator::scan(IPOutlookItemCollection* /*items*/, const CString& key) {
    return takeMatches([&](const ContactsImage& image) { return image.matchingName(key); });
}

HRESULT ScanIterator::scanTelNo(IPOutlookItemCollection* /*items*/, const CString& key) {
    return takeMatches([&](const ContactsImage& image) { return image.matchingNumber(key); });
}

int ScanIterator::getNumItems() {
    return static_cast<int>(matches_.size());
}

bool ScanIterator::isOpened() {
    return getTable() != nullptr && items_ && !matches_.empty();
}

const ScanMatch* ScanIterator::currentMatch() const {
    if (curIdx < 0 || curIdx >= static_cast<int>(matches_.size())) return nullptr;
    return &matches_[static_cast<std::size_t>(curIdx)];
}

DWORD ScanIterator::getCur() {
    if (!isOpened()) return 0;
    const ScanMatch* match = currentMatch();
    curOid = match == nullptr ? 0 : match->oid;
    return curOid;
}

HRESULT ScanIterator::next() {
    if (!isOpened()) return E_FAIL;
    if (curIdx + 1 >= getNumItems()) return S_FALSE;
    ++curIdx;
    getCur();
    return S_OK;
}

HRESULT ScanIterator::prev() {
    if (!isOpened()) return E_ACCESSDENIED;
    if (curIdx <= 0) {
        curIdx = nInvalidItemIdx_;
        return S_FALSE;
    }
    --curIdx;
    getCur();
    return S_OK;
}

HRESULT ScanIterator::last() {
    if (!isOpened()) return E_ACCESSDENIED;
    curIdx = getNumItems() - 1;
    getCur();
    return S_OK;
}

bool ScanIterator::moveToIndex(int idx) {
    if (idx < 0 || idx > getNumItems()) return false;
    curIdx = idx;
    return true;
}

DWORD ScanIterator::getAt(int idx) {
    return moveToIndex(idx) ? getCur() : 0;
}

CCeDBProp ScanIterator::getProp(int /*attrIdx*/) {
    return {};
}

CCeDBProp ScanIterator::getPropAt(int idx, int attrIdx) {
    return moveToIndex(idx) ? getProp(attrIdx) : CCeDBProp();
}

CString ScanIterator::getString(int attrIdx) {
    return guarded(CString(), [&] {
        if (attrIdx == 0) {
            const ScanMatch* match = currentMatch();
            return match == nullptr ? CString() : match->name;
        }
        const DWORD oid = getCur();
        auto* contacts = static_cast<POlDBTable*>(getTable());
        ComPtr<IDispatch> item;
        if (oid == 0 || FAILED(contacts->getItemFromOid(oid, item.out()))) return CString();
        return readAttr(*contacts, contactOf(item.get()), attrIdx);
    });
}

CString ScanIterator::getStringAt(int idx, int attrIdx) {
    return moveToIndex(idx) ? getString(attrIdx) : CString();
}

HRESULT ScanIterator::deleteCur() {
    if (!isOpened() || curOid == 0) return S_OK;
    ComPtr<IDispatch> item;
    const HRESULT result = static_cast<POlDBTable*>(getTable())->getItemFromOid(curOid, item.out());
    if (SUCCEEDED(result)) contactOf(item.get())->Delete();
    return result;
}

HRESULT ScanIterator::deleteAt(int idx, bool positionOnly) {
    if (!isOpened()) return E_ACCESSDENIED;
    if (!moveToIndex(idx)) return E_FAIL;
    getCur();
    const HRESULT result = positionOnly ? S_OK : deleteCur();
    if (idx < getNumItems()) matches_.erase(matches_.begin() + idx);
    curOid = 0;  // no later deletion is meant for the contact whose match is gone
    return result;
}

HRESULT ScanIterator::append(const ScanIterator* /*other*/) {
    return E_NOTIMPL;
}

}  // namespace Database
