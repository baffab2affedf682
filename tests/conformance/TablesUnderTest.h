#pragma once

#include <memory>
#include <ostream>

#include "tessera/database/CeDBTable.h"
#include "tessera/database/POlDBTable.h"
#include "tessera/phonebook/model/Schemas.h"
#include "tests/support/TemporaryStore.h"

namespace conformance {

/// A new table in a new store, and not open yet. Its attributes are those of the contacts table, index for
/// index, and once open its order is that of attribute 0.
class TableUnderTest {
public:
    virtual ~TableUnderTest() = default;
    virtual Database::Table& table() = 0;
    virtual BOOL open() = 0;
};

/// A kind of table that the suite is run over.
struct TableKind {
    const char* name;
    std::unique_ptr<TableUnderTest> (*make)();

    friend std::ostream& operator<<(std::ostream& out, const TableKind& kind) { return out << kind.name; }
};

template <class Store>
class PropertyTableUnderTest : public TableUnderTest {
public:
    PropertyTableUnderTest() { static_cast<void>(table_.create()); }
    Database::Table& table() override { return table_; }
    BOOL open() override { return table_.open(0, 0, nullptr); }

private:
    Store store_;
    Database::CeDBTable table_{TEXT("QZ_Conformance"), &PhoneBook::recdefPOlCRaw_};
};

template <class Store>
class ContactsTableUnderTest : public TableUnderTest {
public:
    Database::Table& table() override { return table_; }
    BOOL open() override { return table_.open(nullptr); }

private:
    Store store_;
    Database::POlDBTable table_{TEXT("QZ_POlContacts"), &PhoneBook::aRecDef_[PhoneBook::PBDBTBL_POLCONTACTS], 10};
};

template <class Kind>
std::unique_ptr<TableUnderTest> makeTable() {
    return std::make_unique<Kind>();
}

inline constexpr TableKind tableKinds[] = {
    {"CeDBTableInMemory", makeTable<PropertyTableUnderTest<testing_support::MemoryStoreMount>>},
    {"CeDBTableOnDisk", makeTable<PropertyTableUnderTest<testing_support::TemporaryStore>>},
    {"POlDBTableInMemory", makeTable<ContactsTableUnderTest<testing_support::MemoryStoreMount>>},
    {"POlDBTableOnDisk", makeTable<ContactsTableUnderTest<testing_support::TemporaryStore>>},
};

}  // namespace conformance
