#include "tessera/database/PBGroupIterator.h"

#include <utility>

#include "tessera/database/ContactsImage.h"
#include "tessera/database/POlDBTable.h"

namespace Database {

PBGroupIterator::PBGroupIterator(Table* contacts, Table* extension, int attr, const CString& group)
    : ScanIterator(contacts, nullptr, attr, group, false), extension_(extension) {
    init(group);
}

PBGroupIterator::~PBGroupIterator() = default;

HRESULT PBGroupIterator::init() {
    return S_OK;
}

HRESULT PBGroupIterator::init(const CString& group) {
    auto* contacts = static_cast<POlDBTable*>(getTable());
    if (contacts == nullptr || extension_ == nullptr) return E_FAIL;
    if (getItemCol() == nullptr) {
        ComPtr<IPOutlookItemCollection> items;
        if (SUCCEEDED(contacts->getItems(items.out()))) setItems(std::move(items));
    }
    setKey(group);
    if (!contacts->isOpen()) return E_FAIL;
    extension_->open(nullptr);
    return scan(getItemCol(), group);  // NOLINT(clang-analyzer-optin.cplusplus.VirtualCall): this class's own
}

HRESULT PBGroupIterator::scan(IPOutlookItemCollection* items, const CString& group) {
    if (items == nullptr) return E_POINTER;
    if (group.IsEmpty()) return scanNoCategories(items, group);
    return takeMatches([&](const ContactsImage& image) { return image.withCategories(group); });
}

HRESULT PBGroupIterator::scanNoCategories(IPOutlookItemCollection* items, const CString& /*group*/) {
    if (items == nullptr) return E_POINTER;
    // A contact that carries the property belongs to some category, even when its text is empty.
    return takeMatches([](const ContactsImage& image) { return image.withoutCategories(); });
}

HRESULT PBGroupIterator::scanTelNo(IPOutlookItemCollection* /*items*/, const CString& /*key*/) {
    return E_NOTIMPL;
}

bool PBGroupIterator::isOpened() {
    return getTable() != nullptr && extension_ != nullptr && getNumItems() > 0;
}

}  // namespace Database
