#include "tessera/database/PBGroupIterator.h"

#include <optional>
#include <string_view>
#include <utility>

#include "tessera/database/Guarded.h"
#include "tessera/database/POlDBTable.h"
#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/StoreChanges.h"

namespace Database {

namespace {

/// Shows each contact in name order its categories (nothing when it has none at all) and its name.
template <class Visit>
HRESULT readContacts(Visit visit) {
    DatabaseReader reader(szContactsDatabase, ContactProperty::fileAs);
    std::uint64_t sequence = 0;
    const bool read = reader.readAll(sequence, [&](const RecordView& record) {
        visit(record.oid(), record.text(ContactProperty::categories),
              record.text(ContactProperty::fileAs).value_or(std::u16string_view()));
    });
    return read ? S_OK : E_FAIL;
}

}  // namespace

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
    return readContacts([&](DWORD oid, std::optional<std::u16string_view> categories, std::u16string_view name) {
        if (categories == group.view()) addMatch(oid, name);
    });
}

HRESULT PBGroupIterator::scanNoCategories(IPOutlookItemCollection* items, const CString& /*group*/) {
    if (items == nullptr) return E_POINTER;
    // A contact that carries the property belongs to some category, even when its text is empty.
    return readContacts([&](DWORD oid, std::optional<std::u16string_view> categories, std::u16string_view name) {
        if (!categories.has_value()) addMatch(oid, name);
    });
}

HRESULT PBGroupIterator::scanTelNo(IPOutlookItemCollection* /*items*/, const CString& /*key*/) {
    return E_NOTIMPL;
}

bool PBGroupIterator::isOpened() {
    return getTable() != nullptr && extension_ != nullptr && getNumItems() > 0;
}

}  // namespace Database
