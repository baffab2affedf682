#pragma once

#include <memory>
#include <stdexcept>
#include <typeinfo>

#include "tessera/database/CeDBIterator.h"
#include "tessera/database/CeDBTable.h"
#include "tessera/database/PBGroupIterator.h"
#include "tessera/database/POlDBIterator.h"
#include "tessera/database/ScanIterator.h"
#include "tessera/phonebook/model/Schemas.h"
#include "tests/conformance/IteratorTraits.h"
#include "tests/conformance/TableRows.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"

namespace conformance {

/// What a row holds, by its place. The number differs in its last digit only.
struct RowContents {
    const WCHAR* name;
    const WCHAR* mobile;
};
inline constexpr RowContents contentsOf[] = {
    {TEXT(""), TEXT("")},
    {TEXT("aa kim"), TEXT("010-1")},
    {TEXT("ab kim"), TEXT("010-9")},
    {TEXT("bb kim"), TEXT("010-2")},
    {TEXT("cc kim"), TEXT("010-3")},
};
/// A row behind the others, which no iterator that selects is to show.
inline constexpr RowContents outsider{TEXT("zz lee"), TEXT("02-5")};

/// Three rows in a new store, and iterators over them.
class IteratorUnderTest {
public:
    virtual ~IteratorUnderTest() = default;

    virtual std::unique_ptr<Database::Iterator> iterator() = 0;
    virtual DWORD add(const RowContents& contents) = 0;
    /// A table over the same rows whose own place no iterator under test shares.
    virtual Database::Table& table() = 0;
};

class PropertyRows : public IteratorUnderTest {
public:
    PropertyRows() {
        if (table_.create() == 0 || !table_.open(nameIdx, 0, nullptr) || !other_.open(nullptr)) {
            throw std::runtime_error("the table cannot be opened");
        }
    }
    std::unique_ptr<Database::Iterator> iterator() override {
        return std::unique_ptr<Database::Iterator>(table_.getIterator(nullptr, nullptr));
    }
    DWORD add(const RowContents& contents) override {
        CCeDBRecord record = recordOf(other_, {contents.name, contents.mobile, TEXT("")});
        DWORD oid = 0;
        return other_.insertRecord(&record, oid) == S_OK ? oid : 0;
    }
    Database::Table& table() override { return other_; }

private:
    testing_support::MemoryStoreMount store_;
    Database::CeDBTable table_{TEXT("QZ_Conformance"), &PhoneBook::recdefPOlCRaw_};
    Database::CeDBTable other_{TEXT("QZ_Conformance"), &PhoneBook::recdefPOlCRaw_};
};

/// Contacts, looked for in one of the phone book's ways.
template <Database::Iterator* (*search)(PhoneBook::PhoneBookDBMgr&)>
class ContactRows : public IteratorUnderTest {
public:
    std::unique_ptr<Database::Iterator> iterator() override {
        return std::unique_ptr<Database::Iterator>(search(book_.manager()));
    }
    DWORD add(const RowContents& contents) override {
        const bool isMember = &contents != &outsider;
        return book_.add(testing_support::contact()
                             .name(contents.name)
                             .mobile(contents.mobile)
                             .group(isMember ? TEXT("Family") : TEXT("Work")));
    }
    Database::Table& table() override { return *book_->getTable(PhoneBook::PBDBTBL_POLCONTACTS); }

private:
    testing_support::MemoryStoreMount store_;
    testing_support::OpenPhoneBook book_;
};

inline Database::Iterator* allContacts(PhoneBook::PhoneBookDBMgr& book) {
    return book.getTable(PhoneBook::PBDBTBL_POLCONTACTS)->getIterator(nullptr, nullptr);
}
inline Database::Iterator* restrictedContacts(PhoneBook::PhoneBookDBMgr& book) {
    return book.searchPBRecord(CString(TEXT("[FileAs] < \"dd\"")));
}
inline Database::Iterator* contactsOfName(PhoneBook::PhoneBookDBMgr& book) {
    return book.searchPBRecord(PhoneBook::PBDBATTR_NAME, CString(TEXT("KIM")));
}
inline Database::Iterator* contactsOfNumber(PhoneBook::PhoneBookDBMgr& book) {
    return book.searchPBRecordOfTelNo(nullptr, CString(TEXT("010")));
}
inline Database::Iterator* contactsOfGroup(PhoneBook::PhoneBookDBMgr& book) {
    return book.searchPBRecordOfPBGroup(CString(TEXT("Family")));
}

/// A kind of iterator that the suite is run over.
struct IteratorKind {
    const char* name;
    std::unique_ptr<IteratorUnderTest> (*make)();
    bool (*isExactly)(const Database::Iterator&);
    bool selects;
    IteratorTraits traits;
};

template <class Rows>
std::unique_ptr<IteratorUnderTest> makeRows() {
    return std::make_unique<Rows>();
}

template <class Expected>
bool isExactly(const Database::Iterator& iterator) {
    return typeid(iterator) == typeid(Expected);
}

inline constexpr IteratorKind iteratorKinds[] = {
    {"CeDBIterator", makeRows<PropertyRows>, isExactly<Database::CeDBIterator>, false, propertyTraits},
    {"POlDBIterator", makeRows<ContactRows<allContacts>>, isExactly<Database::POlDBIterator>, false, contactTraits},
    {"POlDBIteratorWithinARestriction", makeRows<ContactRows<restrictedContacts>>, isExactly<Database::POlDBIterator>,
     true, contactTraits},
    {"ScanIteratorByName", makeRows<ContactRows<contactsOfName>>, isExactly<Database::ScanIterator>, true, scanTraits},
    {"ScanIteratorByNumber", makeRows<ContactRows<contactsOfNumber>>, isExactly<Database::ScanIterator>, true,
     scanTraits},
    {"PBGroupIterator", makeRows<ContactRows<contactsOfGroup>>, isExactly<Database::PBGroupIterator>, true, scanTraits},
};

}  // namespace conformance
