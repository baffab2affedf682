#include "tessera/platform/contacts/Contact.h"

#include <cmath>

#include "tessera/platform/base/COleDateTime.h"
#include "tessera/platform/contacts/InterfaceBoundary.h"
#include "tessera/platform/contacts/PackedValues.h"

namespace Platform {

namespace {

/// The first day that is no date any more: 1 January of the year 10000.
constexpr DATE endOfDates = 2958466.0;

std::optional<ContactField> fieldOf(CEPROPID property) {
    for (const ContactFieldDef& definition : contactFields) {
        if (definition.property == property) return definition.field;
    }
    return std::nullopt;
}

}  // namespace

Contact::Contact(std::shared_ptr<ContactStore> store, CEOID oid, std::string_view packed)
    : store_(std::move(store)), oid_(oid) {
    RecordReader reader(packed);
    while (const std::optional<PropertyView> property = reader.next()) {
        const std::optional<ContactField> field = fieldOf(property->id);
        if (!field) continue;
        if (*field == ContactField::birthday) {
            birthday_ = fileTimeOfPacked(property->bytes);
        } else {
            heldText(*field) = CString(unpackedText(property->bytes));
        }
    }
}

HRESULT Contact::QueryInterface(const IID& iid, void** out) {
    return answerInterface<IContact>(this, iid, {IID_IUnknown, IID_IDispatch, IID_IContact}, out);
}

HRESULT Contact::getText(ContactField field, BSTR* out) const {
    if (out == nullptr) return E_POINTER;
    const WStringView value = heldText(field).view();
    *out = SysAllocStringLen(value.data(), static_cast<UINT>(value.size()));
    return *out != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT Contact::putText(ContactField field, BSTR text) {
    return withinBoundary([&] {
        CString value(text);
        if (value == heldText(field)) return S_OK;
        heldText(field) = std::move(value);
        markChanged(field);
        return S_OK;
    });
}

HRESULT Contact::get_Birthday(DATE* out) {
    if (out == nullptr) return E_POINTER;
    *out = birthday_ ? dateOfFileTime(*birthday_) : noBirthday;
    return S_OK;
}

HRESULT Contact::put_Birthday(DATE date) {
    std::optional<FILETIME> value;
    if (date != noBirthday) {
        if (!std::isfinite(date) || date >= endOfDates || !fileTimeOfDate(date, value.emplace())) return E_INVALIDARG;
    }
    if (value == birthday_) return S_OK;
    birthday_ = value;
    markChanged(ContactField::birthday);
    return S_OK;
}

HRESULT Contact::Save() {
    return withinBoundary([&] {
        const std::string birthday = birthday_ ? packedFileTime(*birthday_) : std::string();
        std::vector<Edit> edits;
        edits.reserve(changed_.count());
        for (const auto& [field, name, property] : contactFields) {
            if (!isChanged(field)) continue;
            const std::string_view bytes =
                field == ContactField::birthday ? std::string_view(birthday) : packedText(heldText(field).view());
            if (!bytes.empty() || oid_ != 0) edits.push_back({property, bytes, bytes.empty()});
        }
        const HRESULT result = store_->write(oid_, edits);
        if (SUCCEEDED(result)) changed_.reset();
        return result;
    });
}

HRESULT Contact::Delete() {
    return withinBoundary([&] { return oid_ != 0 ? store_->erase(oid_) : E_FAIL; });
}

HRESULT Contact::get_Oid(LONG* out) {
    if (out == nullptr) return E_POINTER;
    *out = static_cast<LONG>(oid_);
    return S_OK;
}

}  // namespace Platform
