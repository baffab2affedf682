#include "tessera/phonebook/PhoneBookTables.h"

#include <cstddef>
#include <cstdint>
#include <set>

#include "tessera/phonebook/ExtensionRow.h"
#include "tessera/phonebook/SpeedDialRow.h"
#include "tessera/phonebook/model/TelNo.h"
#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/CCeDBDatabase.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tessera/platform/objectstore/StoreChanges.h"

namespace PhoneBook {

namespace {

/// The numbers that can have a slot, in the order of a slot word's bytes.
constexpr std::array slotNumbers = {ContactProperty::mobileTelephoneNumber, ContactProperty::homeTelephoneNumber,
                                    ContactProperty::businessTelephoneNumber};

enum FirstAttrs : int { groupId = 0, groupName = 1, categoryName = 0, categoryId = 1 };

WORD identOf(PBDBTableID table, int attr) {
    return aRecDef_[table].getAttrIdent(attr);
}

/// Calls with each record of a table, in its own order, which is there already: to look must not build one. False
/// when it cannot be read to its end.
template <class Visit>
bool forEachRecord(PBDBTableID table, Visit visit) {
    CCeDBDatabase database;
    if (!database.open(aszTableName_[table], nullptr, nullptr)) return false;
    CCeDBRecord record;
    for (CEOID oid = database.seekToIndex(0); oid != 0; oid = database.seekNext()) {
        if (!database.readCurrent(record)) return false;
        visit(oid, record);
    }
    return database.isEof();
}

/// The number as a seek would find it: a property of another type is another property.
std::optional<DWORD> keyIn(const CCeDBRecord& record, WORD ident) {
    const CCeDBProp* prop = record.findProp(ident);
    if (prop == nullptr || prop->getType() != CCeDBProp::typeUI4) return std::nullopt;
    return prop->getUI4();
}

PhoneBookTables::Contact contactIn(const RecordView& record, bool hasSlots) {
    PhoneBookTables::Contact contact;
    if (const auto categories = record.text(ContactProperty::categories)) contact.categories = CString(*categories);
    for (std::size_t i = 0; hasSlots && i < slotNumbers.size(); ++i) {
        if (const auto number = record.text(slotNumbers[i])) contact.numbers[i] = makeCNIP(CString(*number));
    }
    return contact;
}

}  // namespace

HRESULT PhoneBookTables::read() {
    const ObjectStoreGlance glance;
    const bool done =
        readRows() && readContacts() && readSpeedDial() && readGroups() && readCategories() && countCalls();
    return done ? S_OK : E_FAIL;
}

bool PhoneBookTables::readRows() {
    return forEachRecord(PBDBTBL_PHONEBOOKEXT, [&](CEOID oid, const CCeDBRecord& row) {
        rows.push_back({oid, keyIn(row, identOfExtension(extPodbOid)),
                        row.getProp(identOfExtension(extGroup)).getText(),
                        row.getProp(identOfExtension(extSlots)).getUI4()});
    });
}

/// After the rows, which say whose numbers are wanted.
bool PhoneBookTables::readContacts() {
    std::set<DWORD> withSlots;
    for (const ExtensionRow& row : rows) {
        if (row.slots != 0 && row.contact) withSlots.insert(*row.contact);
    }
    DatabaseReader reader(szContactsDatabase, ContactProperty::fileAs);
    std::uint64_t unused = 0;
    return reader.readAll(unused, [&](const RecordView& record) {
        contacts.emplace(record.oid(), contactIn(record, withSlots.contains(record.oid())));
    });
}

bool PhoneBookTables::readSpeedDial() {
    return forEachRecord(PBDBTBL_SPEEDDIALNO, [&](CEOID, const CCeDBRecord& row) {
        speedDial.push_back(
            {row.getProp(identOfSpeedDial(sdialId)).getI2(), row.getProp(identOfSpeedDial(sdialTelNo)).getText()});
    });
}

bool PhoneBookTables::readGroups() {
    return forEachRecord(PBDBTBL_AVAILABLEPBGROUP, [&](CEOID, const CCeDBRecord& row) {
        groups.push_back({keyIn(row, identOf(PBDBTBL_AVAILABLEPBGROUP, groupId)),
                          row.getProp(identOf(PBDBTBL_AVAILABLEPBGROUP, groupName)).getText()});
    });
}

bool PhoneBookTables::readCategories() {
    return forEachRecord(PBDBTBL_CATEGORIES, [&](CEOID oid, const CCeDBRecord& record) {
        const std::int16_t id = record.getProp(identOf(PBDBTBL_CATEGORIES, categoryId)).getI2();
        categories.push_back(
            {oid, static_cast<DWORD>(id), record.getProp(identOf(PBDBTBL_CATEGORIES, categoryName)).getText()});
    });
}

bool PhoneBookTables::countCalls() {
    CCeDBDatabase history;
    if (!history.open(aszTableName_[PBDBTBL_CALLHISTORY], nullptr, nullptr)) return false;
    calls = history.getNumRecords();
    return true;
}

}  // namespace PhoneBook
