#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "tessera/platform/contacts/OutlookInterfaces.h"
#include "tessera/platform/objectstore/CCeDBRecord.h"
#include "tessera/platform/objectstore/CeDB.h"

namespace testing_support {

inline void require(HRESULT result) {
    if (result != S_OK) throw std::runtime_error("result code " + std::to_string(result));
}

inline Bstr bstr(WStringView text) {
    return Bstr(CString(text));
}

/// Reads one text of a contact: textOf(contact, &IContact::get_FileAs).
inline WString textOf(const ComPtr<IContact>& contact, HRESULT (IContact::*get)(BSTR*)) {
    Bstr text;
    require((contact.get()->*get)(text.out()));
    return WString(text.text().view());
}

inline WString nameOf(const ComPtr<IContact>& contact) {
    return textOf(contact, &IContact::get_FileAs);
}

inline CEOID oidOf(const ComPtr<IContact>& contact) {
    LONG oid = 0;
    require(contact->get_Oid(&oid));
    return static_cast<CEOID>(oid);
}

inline ComPtr<IContact> asContact(IDispatch* item) {
    return ComPtr<IContact>::adopt(static_cast<IContact*>(item));
}

/// A session with the contacts of the mounted store.
class ContactsSession {
public:
    ContactsSession() {
        void* made = nullptr;
        require(CoCreateInstance(CLSID_Application, nullptr, CLSCTX_INPROC_SERVER, IID_IPOutlookApp, &made));
        application_ = ComPtr<IPOutlookApp>::adopt(static_cast<IPOutlookApp*>(made));
        require(application_->Logon(0));
    }

    IPOutlookApp& application() const { return *application_.get(); }

    ComPtr<IPOutlookItemCollection> items() const {
        ComPtr<IFolder> folder;
        require(application_->GetDefaultFolder(olFolderContacts, folder.out()));
        ComPtr<IPOutlookItemCollection> items;
        require(folder->get_Items(items.out()));
        return items;
    }

    /// A contact that is not saved yet.
    ComPtr<IContact> newContact() const {
        IDispatch* item = nullptr;
        require(items()->Add(&item));
        return asContact(item);
    }

    /// Null when there is no such contact.
    ComPtr<IContact> contact(CEOID oid) const {
        IDispatch* item = nullptr;
        return application_->GetItemFromOid(static_cast<LONG>(oid), &item) == S_OK ? asContact(item)
                                                                                   : ComPtr<IContact>();
    }

    /// Saves a contact of that name and answers its identifier.
    CEOID add(WStringView name) const {
        const ComPtr<IContact> made = newContact();
        require(made->put_FileAs(bstr(name).get()));
        require(made->Save());
        return oidOf(made);
    }

    void rename(CEOID oid, WStringView name) const {
        const ComPtr<IContact> found = contact(oid);
        require(found->put_FileAs(bstr(name).get()));
        require(found->Save());
    }

    void remove(CEOID oid) const { require(contact(oid)->Delete()); }

private:
    ComPtr<IPOutlookApp> application_;
};

inline int countOf(const ComPtr<IPOutlookItemCollection>& items) {
    int count = 0;
    require(items->get_Count(&count));
    return count;
}

inline ComPtr<IContact> itemOf(const ComPtr<IPOutlookItemCollection>& items, int index) {
    IDispatch* item = nullptr;
    require(items->Item(index, &item));
    return asContact(item);
}

inline std::vector<WString> namesOf(const ComPtr<IPOutlookItemCollection>& items) {
    std::vector<WString> names;
    for (int i = 1; i <= countOf(items); ++i)
        names.push_back(nameOf(itemOf(items, i)));
    return names;
}

inline std::vector<CEOID> oidsOf(const ComPtr<IPOutlookItemCollection>& items) {
    std::vector<CEOID> oids;
    for (int i = 1; i <= countOf(items); ++i)
        oids.push_back(oidOf(itemOf(items, i)));
    return oids;
}

inline ComPtr<IPOutlookItemCollection> restricted(const ComPtr<IPOutlookItemCollection>& items,
                                                  WStringView restriction) {
    ComPtr<IPOutlookItemCollection> result;
    require(items->Restrict(bstr(restriction).get(), result.out()));
    return result;
}

inline ComPtr<IPOutlookItemCollection2> hinted(const ComPtr<IPOutlookItemCollection>& items, WStringView columns) {
    void* second = nullptr;
    require(items->QueryInterface(IID_IPOutlookItemCollection2, &second));
    auto result = ComPtr<IPOutlookItemCollection2>::adopt(static_cast<IPOutlookItemCollection2*>(second));
    require(result->SetColumns(bstr(columns).get()));
    return result;
}

/// The "Contacts Database" itself, as whoever reads it directly sees it.
class RawContacts {
public:
    explicit RawContacts(CEPROPID order = 0) {
        handle_ = CeOpenDatabaseEx2(&database_, TEXT("Contacts Database"), order, 0, 0, nullptr);
        if (handle_ == INVALID_HANDLE_VALUE) throw std::runtime_error("no contacts database");
    }
    ~RawContacts() { CloseHandle(handle_); }
    RawContacts(const RawContacts&) = delete;
    RawContacts& operator=(const RawContacts&) = delete;

    CCeDBRecord record(CEOID oid) const {
        return CeSeekDatabaseEx(handle_, CEDB_SEEK_CEOID, oid, nullptr) == oid ? current() : CCeDBRecord();
    }

    /// The identifiers along the order.
    std::vector<CEOID> oids() const {
        std::vector<CEOID> oids;
        DWORD move = CEDB_SEEK_BEGINNING;
        std::uintptr_t by = 0;
        while (const CEOID oid = CeSeekDatabaseEx(handle_, move, by, nullptr)) {
            oids.push_back(oid);
            move = CEDB_SEEK_CURRENT;
            by = 1;
        }
        return oids;
    }

    CEOIDINFOEX info() const {
        CEOIDINFOEX info;
        if (!CeOidGetInfoEx2(database_, &info)) throw std::runtime_error("no information");
        return info;
    }

    CEOID write(CEOID oid, const CCeDBProp& property) const {
        const CEPROPVAL value = property.propVal();
        return CeWriteRecordProps(handle_, oid, 1, &value);
    }

private:
    CCeDBRecord current() const {
        WORD count = 0;
        BYTE* buffer = nullptr;
        DWORD size = 0;
        CCeDBRecord record;
        if (CeReadRecordPropsEx(handle_, CEDB_ALLOWREALLOC, &count, &buffer, &size) == 0) return record;
        const auto* values = reinterpret_cast<const CEPROPVAL*>(buffer);
        for (WORD i = 0; i < count; ++i)
            record.addProp(CCeDBProp::ofPropVal(values[i]));
        CeFreeBuffer(buffer);
        return record;
    }

    CEOID database_ = 0;
    HANDLE handle_ = INVALID_HANDLE_VALUE;
};

}  // namespace testing_support
