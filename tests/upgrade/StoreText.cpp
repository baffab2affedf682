#include "tests/upgrade/StoreText.h"

#include <iomanip>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/platform/base/Unicode.h"
#include "tessera/platform/contacts/ContactProperties.h"
#include "tests/phonebook/Calls.h"
#include "tests/phonebook/GroupRows.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreContents.h"

namespace upgrade_test {

namespace {

using namespace PhoneBook;

struct Order {
    const char* called;
    const WCHAR* database;
    CEPROPID property;
    DWORD flags;
};

constexpr CEPROPID names = ContactProperty::fileAs;
constexpr CEPROPID birthdays = ContactProperty::birthday;

/// Every kind of order that a store can keep, in both directions.
const Order orders[] = {
    {"names", szContactsDatabase, names, 0},
    {"names, descending", szContactsDatabase, names, CEDB_SORT_DESCENDING},
    {"names in any case", szContactsDatabase, names, CEDB_SORT_CASEINSENSITIVE},
    {"names in any case, descending", szContactsDatabase, names, CEDB_SORT_CASEINSENSITIVE | CEDB_SORT_DESCENDING},
    {"birthdays", szContactsDatabase, birthdays, 0},
    {"birthdays, none first", szContactsDatabase, birthdays, CEDB_SORT_UNKNOWNFIRST},
    {"slots", aszTableName_[PBDBTBL_SPEEDDIALNO], makePropId(0x200, CEVT_I2), 0},
    {"slots of numbers", aszTableName_[PBDBTBL_SPEEDDIALNO], makePropId(0x202, CEVT_LPWSTR), 0},
    {"calls, newest first", aszTableName_[PBDBTBL_CALLHISTORY], makePropId(0x400, CEVT_FILETIME), CEDB_SORT_DESCENDING},
};

void writeOrder(std::ostream& out, const Order& order) {
    out << order.called << ':';
    CEOID database = 0;
    const HANDLE handle = CeOpenDatabaseEx2(&database, order.database, order.property, order.flags, 0, nullptr);
    if (handle == INVALID_HANDLE_VALUE) throw std::runtime_error("an order cannot be had");
    for (CEOID oid = CeSeekDatabaseEx(handle, CEDB_SEEK_BEGINNING, 0, nullptr); oid != 0;
         oid = CeSeekDatabaseEx(handle, CEDB_SEEK_CURRENT, 1, nullptr))
        out << ' ' << oid;
    CloseHandle(handle);
    out << '\n';
}

void writeContact(std::ostream& out, PhoneBookDBMgr& manager, DWORD oid) {
    PBRecord record;
    for (const PBAttribute& attribute : aPBAttribute_)
        record.dwCITypeMask |= attribute.mask;
    if (FAILED(manager.queryCallerInfo(oid, &record))) throw std::runtime_error("a contact cannot be read");
    out << "contact " << oid << ':';
    for (const PBAttribute& attribute : aPBAttribute_) {
        if ((record.dwCITypeMask & attribute.mask) == 0) continue;
        out << ' ' << std::hex << attribute.mask << std::dec << '=';
        if (attribute.text != nullptr) out << record.*attribute.text;
        if (attribute.number != nullptr) out << record.*attribute.number;
        if (attribute.date != nullptr) out << record.*attribute.date;
    }
    out << '\n';
}

void writeContacts(std::ostream& out, PhoneBookDBMgr& manager) {
    const std::unique_ptr<Database::Iterator> all(manager.getIterator(UINT{PBDBATTR_NAME}, nullptr, nullptr));
    if (all == nullptr) throw std::runtime_error("the contacts cannot be walked");
    while (all->next() == S_OK)
        writeContact(out, manager, all->getCur());
}

void writeSlots(std::ostream& out, PhoneBookDBMgr& manager) {
    for (DWORD id = 1; id < PhoneBookDBMgr::nSDialCacheSize_; ++id) {
        SpeedDialInfo slot;
        if (FAILED(manager.querySpeedDialInfo(id, &slot, true))) continue;
        out << "slot " << slot.dwSDialID << ": " << slot.strTelNo << ' ' << slot.strName << ", number "
            << slot.dwTelType << ", flags " << slot.dwFlags << '\n';
    }
}

}  // namespace

std::string textOfStore() {
    std::ostringstream out;
    out << std::setprecision(17) << testing_support::contentsOfStore();
    for (const Order& order : orders)
        writeOrder(out, order);

    testing_support::OpenPhoneBook book;
    writeContacts(out, book.manager());
    for (const auto& [oid, group] : groups_test::storedGroups(book.manager()))
        out << "group " << oid << ": " << group << '\n';
    writeSlots(out, book.manager());
    for (const auto& [oid, call] : calls_test::loggedCalls(book.manager()))
        out << "call " << oid << ": " << call << '\n';
    return out.str();
}

}  // namespace upgrade_test
