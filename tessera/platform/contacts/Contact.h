#pragma once

#include <array>
#include <bitset>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "tessera/platform/contacts/ContactFields.h"
#include "tessera/platform/contacts/ContactStore.h"
#include "tessera/platform/contacts/OutlookInterfaces.h"
#include "tessera/platform/contacts/ReferenceCount.h"

namespace Platform {

/// One contact, held in memory: what its record said when it was read, and what was put since.
class Contact final : public IContact {
public:
    /// A contact that is not in the store yet.
    explicit Contact(std::shared_ptr<ContactStore> store) : store_(std::move(store)) {}
    /// The contact of a packed record.
    Contact(std::shared_ptr<ContactStore> store, CEOID oid, std::string_view packed);

    HRESULT QueryInterface(const IID& iid, void** out) override;
    ULONG AddRef() override { return references_.add(); }
    ULONG Release() override { return references_.release(this); }

    HRESULT get_FileAs(BSTR* out) override { return getText(ContactField::fileAs, out); }
    HRESULT put_FileAs(BSTR text) override { return putText(ContactField::fileAs, text); }
    HRESULT get_FirstName(BSTR* out) override { return getText(ContactField::firstName, out); }
    HRESULT put_FirstName(BSTR text) override { return putText(ContactField::firstName, text); }
    HRESULT get_LastName(BSTR* out) override { return getText(ContactField::lastName, out); }
    HRESULT put_LastName(BSTR text) override { return putText(ContactField::lastName, text); }
    HRESULT get_Categories(BSTR* out) override { return getText(ContactField::categories, out); }
    HRESULT put_Categories(BSTR text) override { return putText(ContactField::categories, text); }
    HRESULT get_MobileTelephoneNumber(BSTR* out) override { return getText(ContactField::mobileTelephoneNumber, out); }
    HRESULT put_MobileTelephoneNumber(BSTR text) override { return putText(ContactField::mobileTelephoneNumber, text); }
    HRESULT get_HomeTelephoneNumber(BSTR* out) override { return getText(ContactField::homeTelephoneNumber, out); }
    HRESULT put_HomeTelephoneNumber(BSTR text) override { return putText(ContactField::homeTelephoneNumber, text); }
    HRESULT get_BusinessTelephoneNumber(BSTR* out) override {
        return getText(ContactField::businessTelephoneNumber, out);
    }
    HRESULT put_BusinessTelephoneNumber(BSTR text) override {
        return putText(ContactField::businessTelephoneNumber, text);
    }
    HRESULT get_Email1Address(BSTR* out) override { return getText(ContactField::email1Address, out); }
    HRESULT put_Email1Address(BSTR text) override { return putText(ContactField::email1Address, text); }
    HRESULT get_PagerNumber(BSTR* out) override { return getText(ContactField::pagerNumber, out); }
    HRESULT put_PagerNumber(BSTR text) override { return putText(ContactField::pagerNumber, text); }
    HRESULT get_BusinessFaxNumber(BSTR* out) override { return getText(ContactField::businessFaxNumber, out); }
    HRESULT put_BusinessFaxNumber(BSTR text) override { return putText(ContactField::businessFaxNumber, text); }
    HRESULT get_Body(BSTR* out) override { return getText(ContactField::body, out); }
    HRESULT put_Body(BSTR text) override { return putText(ContactField::body, text); }
    HRESULT get_Birthday(DATE* out) override;
    HRESULT put_Birthday(DATE date) override;

    HRESULT Save() override;
    HRESULT Delete() override;
    HRESULT get_Oid(LONG* out) override;

private:
    friend class ReferenceCount;
    ~Contact() = default;

    HRESULT getText(ContactField field, BSTR* out) const;
    HRESULT putText(ContactField field, BSTR text);

    CString& heldText(ContactField field) { return texts_[static_cast<std::size_t>(field)]; }
    const CString& heldText(ContactField field) const { return texts_[static_cast<std::size_t>(field)]; }
    void markChanged(ContactField field) { changed_.set(static_cast<std::size_t>(field)); }
    bool isChanged(ContactField field) const { return changed_.test(static_cast<std::size_t>(field)); }

    ReferenceCount references_;
    std::shared_ptr<ContactStore> store_;
    CEOID oid_ = 0;
    std::array<CString, contactFields.size()> texts_;  ///< The birthday's place stays empty.
    std::optional<FILETIME> birthday_;
    std::bitset<contactFields.size()> changed_;
};

}  // namespace Platform
