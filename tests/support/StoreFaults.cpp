#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <sstream>

#include "tessera/phonebook/model/CallEntry.h"
#include "tessera/phonebook/model/Schemas.h"
#include "tessera/phonebook/model/TelNo.h"
#include "tessera/platform/base/Unicode.h"
#include "tessera/platform/contacts/ContactProperties.h"
#include "tests/support/StoreContents.h"

namespace testing_support {

namespace {

using PhoneBook::aszTableName_;

constexpr WORD rowFlags = 7;

/// What the rows of the phone book's own tables are looked at by.
enum Ident : WORD {
    extContact = 0x100,
    extNumber = 0x102,
    extFlags = 0x10A,
    slotNumber = 0x202,
    slotFlags = 0x203,
    groupId = 0x300,
    groupFlags = 0x306,
    callTime = 0x400,
    callFlags = 0x409,
};

constexpr std::array<CEPROPID, 12> contactProperties = {
    ContactProperty::fileAs,
    ContactProperty::firstName,
    ContactProperty::lastName,
    ContactProperty::categories,
    ContactProperty::mobileTelephoneNumber,
    ContactProperty::homeTelephoneNumber,
    ContactProperty::businessTelephoneNumber,
    ContactProperty::email1Address,
    ContactProperty::body,
    ContactProperty::birthday,
    ContactProperty::pagerNumber,
    ContactProperty::businessFaxNumber,
};

std::size_t valueBytes(const CCeDBProp& prop) {
    switch (prop.getType()) {
        case CCeDBProp::typeI2:
        case CCeDBProp::typeUI2:
        case CCeDBProp::typeBool:
            return 2;
        case CCeDBProp::typeI4:
        case CCeDBProp::typeUI4:
            return 4;
        case CCeDBProp::typeR8:
        case CCeDBProp::typeFileTime:
            return 8;
        case CCeDBProp::typeText:
            return prop.getText().view().size() * sizeof(WCHAR);
        case CCeDBProp::typeBlob:
            return prop.getBlob().size();
    }
    return 0;
}

/// As it lies in the store: what says what each value is, and the values.
std::size_t packedBytes(const CCeDBRecord& record) {
    constexpr std::size_t headOfProperty = 6;
    std::size_t bytes = 0;
    for (int i = 0; i < record.getNumProps(); ++i)
        bytes += headOfProperty + valueBytes(record.getPropAt(i));
    return bytes;
}

bool isReduced(const CString& number) {
    return PhoneBook::makeCNIP(number) == number;
}

class Inspection {
public:
    explicit Inspection(const StoreContents& contents) : contents_(contents) {}

    std::vector<std::string> faults() {
        identifiers();
        for (const StoredDatabase& database : contents_.databases)
            sums(database);
        contacts();
        for (const int table : {PhoneBook::PBDBTBL_PHONEBOOKEXT, PhoneBook::PBDBTBL_SPEEDDIALNO,
                                PhoneBook::PBDBTBL_AVAILABLEPBGROUP, PhoneBook::PBDBTBL_CALLHISTORY})
            schema(table);
        extensionRows();
        slots();
        groups();
        calls();
        return std::move(faults_);
    }

private:
    template <class... Parts>
    void requireThat(bool holds, const Parts&... sentence) {
        if (holds) return;
        std::ostringstream out;
        (out << ... << sentence);
        faults_.push_back(out.str());
    }

    const StoredDatabase& table(int tableId) {
        return contents_.database(aszTableName_[static_cast<std::size_t>(tableId)]);
    }

    void identifiers() {
        std::set<CEOID> given;
        for (const StoredDatabase& database : contents_.databases) {
            requireThat(database.oid != 0, utf8Of(database.name), " is missing");
            requireThat(given.insert(database.oid).second, utf8Of(database.name), " has the identifier of another");
            for (const StoredRecord& record : database.records)
                requireThat(given.insert(record.oid).second, "the identifier ", record.oid, " was given twice");
        }
    }

    void sums(const StoredDatabase& database) {
        const std::string name = utf8Of(database.name);
        std::size_t bytes = 0;
        for (const StoredRecord& record : database.records)
            bytes += packedBytes(record.properties);
        requireThat(database.byteCount == bytes, name, " says that it has ", database.byteCount, " bytes, not ", bytes);
        requireThat(database.recordCount == database.records.size(), name, " says that it has ", database.recordCount,
                    " records, not ", database.records.size());
    }

    /// A contact has what a contact can have, and nothing that is empty.
    void contacts() {
        for (const StoredRecord& contact : contents_.database(szContactsDatabase).records) {
            std::set<CEPROPID> seen;
            for (int i = 0; i < contact.properties.getNumProps(); ++i) {
                const CCeDBProp& prop = contact.properties.getPropAt(i);
                const bool isKnown = std::ranges::find(contactProperties, prop.getPropId()) != contactProperties.end();
                requireThat(isKnown && seen.insert(prop.getPropId()).second && valueBytes(prop) != 0,
                            "not a contact's property: ", prop.getPropId(), " of ", contact);
            }
        }
    }

    /// A row of the phone book's own has every attribute of its table.
    void schema(int tableId) {
        const Database::RecordDef& schema = PhoneBook::aRecDef_[tableId];
        for (const StoredRecord& row : table(tableId).records) {
            requireThat(row.properties.getNumProps() == schema.getNumAttrs(), "too few or too many in the row ", row);
            for (int i = 0; i < schema.getNumAttrs(); ++i) {
                const CCeDBProp& prop = row.properties.getProp(schema.getAttrIdent(i));
                requireThat(!prop.isEmpty() && prop.getType() == schema.getAttrDef(i)->getType(), "no ",
                            utf8Of(schema.getAttrName(i).view()), " in the row ", row);
            }
        }
    }

    void flags(const StoredRecord& row, Ident ident) {
        requireThat(row.properties.getProp(ident).getUI2() == rowFlags, "other flags than 7 in the row ", row);
    }

    void extensionRows() {
        std::set<CEOID> living;
        for (const StoredRecord& contact : contents_.database(szContactsDatabase).records)
            living.insert(contact.oid);
        const StoredDatabase& rows = table(PhoneBook::PBDBTBL_PHONEBOOKEXT);
        std::set<CEOID> owners;
        for (const StoredRecord& row : rows.records) {
            const CEOID owner = row.properties.getProp(extContact).getUI4();
            // A row of sample values names the table itself. The row of a contact that could not be added names 0.
            if (owner == rows.oid) continue;
            flags(row, extFlags);
            requireThat(isReduced(row.properties.getProp(extNumber).getText()), "a number not reduced in ", row);
            if (owner == 0) continue;
            requireThat(living.contains(owner), "an extension row without its contact: ", row);
            requireThat(owners.insert(owner).second, "a second extension row of a contact: ", row);
        }
    }

    void slots() {
        for (const StoredRecord& row : table(PhoneBook::PBDBTBL_SPEEDDIALNO).records) {
            flags(row, slotFlags);
            requireThat(isReduced(row.properties.getProp(slotNumber).getText()), "a number not reduced in ", row);
        }
    }

    void groups() {
        std::set<DWORD> ids;
        for (const StoredRecord& row : table(PhoneBook::PBDBTBL_AVAILABLEPBGROUP).records) {
            flags(row, groupFlags);
            requireThat(ids.insert(row.properties.getProp(groupId).getUI4()).second, "a second group of an ID: ", row);
        }
    }

    void calls() {
        const StoredDatabase& history = table(PhoneBook::PBDBTBL_CALLHISTORY);
        requireThat(history.records.size() <= PhoneBook::nMaxCallEntries_, "too many calls: ", history.records.size());
        std::map<CEOID, std::uint64_t> times;
        for (const StoredRecord& row : history.records) {
            flags(row, callFlags);
            times[row.oid] = ticksOf(row.properties.getProp(callTime).getFileTime());
        }
        requireThat(std::ranges::is_sorted(history.walk, std::ranges::greater(), [&](CEOID oid) { return times[oid]; }),
                    "the calls do not go from the newest to the oldest");
    }

    const StoreContents& contents_;
    std::vector<std::string> faults_;
};

}  // namespace

std::vector<std::string> faultsOf(const StoreContents& contents) {
    return Inspection(contents).faults();
}

}  // namespace testing_support
