#pragma once

#include <stdexcept>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/phonebook/model/PBAttributes.h"
#include "tessera/phonebook/model/PBRecord.h"

namespace testing_support {

/// Builds a record whose mask names just the fields that were given.
class contact {
public:
    contact& name(WStringView text) { return set(PhoneBook::PBDBATTR_NAME, text); }
    contact& group(WStringView text) { return set(PhoneBook::PBDBATTR_GROUP, text); }
    contact& categories(WStringView text) { return set(PhoneBook::PBDBATTR_CATEGORIES, text); }
    contact& mobile(WStringView text) { return set(PhoneBook::PBDBATTR_MOBILETEL, text); }
    contact& home(WStringView text) { return set(PhoneBook::PBDBATTR_HOMETEL, text); }
    contact& business(WStringView text) { return set(PhoneBook::PBDBATTR_BUSINESSTEL, text); }
    contact& email(WStringView text) { return set(PhoneBook::PBDBATTR_EMAIL, text); }
    contact& pager(WStringView text) { return set(PhoneBook::PBDBATTR_PAGER, text); }
    contact& fax(WStringView text) { return set(PhoneBook::PBDBATTR_BUSINESSFAX, text); }
    contact& bell(WStringView text) { return set(PhoneBook::PBDBATTR_BELL, text); }
    contact& birthday(DATE date) {
        record_.dtBirthday = date;
        record_.dwCITypeMask |= PhoneBook::aPBAttribute_[PhoneBook::PBDBATTR_BIRTHDAY].mask;
        return *this;
    }
    contact& primary(DWORD flag) { return set(PhoneBook::PBDBATTR_PRIMARYTELNO, flag); }
    contact& slots(DWORD word) { return set(PhoneBook::PBDBATTR_PRIVATE, word); }

    PhoneBook::PBRecord record() const { return record_; }

private:
    contact& set(PhoneBook::PBDBAttrID attribute, WStringView text) {
        record_.*PhoneBook::aPBAttribute_[attribute].text = CString(text);
        record_.dwCITypeMask |= PhoneBook::aPBAttribute_[attribute].mask;
        return *this;
    }
    contact& set(PhoneBook::PBDBAttrID attribute, DWORD number) {
        record_.*PhoneBook::aPBAttribute_[attribute].number = number;
        record_.dwCITypeMask |= PhoneBook::aPBAttribute_[attribute].mask;
        return *this;
    }

    PhoneBook::PBRecord record_;
};

/// A manager over the mounted store, set up and open.
class OpenPhoneBook {
public:
    OpenPhoneBook() {
        if (FAILED(manager_.initDB(false)) || FAILED(manager_.openDB(nullptr))) {
            throw std::runtime_error("the phone book cannot be opened");
        }
    }
    ~OpenPhoneBook() { manager_.closeDB(); }
    OpenPhoneBook(const OpenPhoneBook&) = delete;
    OpenPhoneBook& operator=(const OpenPhoneBook&) = delete;

    PhoneBook::PhoneBookDBMgr* operator->() { return &manager_; }
    PhoneBook::PhoneBookDBMgr& manager() { return manager_; }

    /// Adds a contact; answers its identifier.
    DWORD add(const contact& builder) {
        PhoneBook::PBRecord record = builder.record();
        DWORD oid = 0;
        if (FAILED(manager_.insertPBRecord(record, &oid))) throw std::runtime_error("the contact was not inserted");
        return oid;
    }

private:
    PhoneBook::PhoneBookDBMgr manager_;
};

}  // namespace testing_support
