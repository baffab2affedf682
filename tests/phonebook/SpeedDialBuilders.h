#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <vector>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tests/support/Builders.h"
#include "tests/support/Values.h"

namespace speed_dial {

inline constexpr DWORD mobileType = 0x4;
inline constexpr DWORD homeType = 0x8;
inline constexpr DWORD businessType = 0x10;
inline constexpr DWORD dirtyMark = 0x10;

/// Builds an entry: a slot, whose it is, and one number of theirs.
class dial {
public:
    explicit dial(DWORD slot) { info_.dwSDialID = slot; }
    dial& of(DWORD contactOid) {
        info_.dwOID = contactOid;
        return *this;
    }
    dial& name(WStringView text) {
        info_.strName = CString(text);
        return *this;
    }
    dial& mobile(WStringView number) { return set(mobileType, number); }
    dial& home(WStringView number) { return set(homeType, number); }
    dial& business(WStringView number) { return set(businessType, number); }
    dial& set(DWORD telType, WStringView number) {
        info_.dwTelType = telType;
        info_.strTelNo = CString(number);
        return *this;
    }
    dial& flags(DWORD word) {
        info_.dwFlags = word;
        return *this;
    }

    operator PhoneBook::SpeedDialInfo() const { return info_; }

private:
    PhoneBook::SpeedDialInfo info_;
};

/// A row of the speed-dial table.
struct Row {
    int slot = 0;
    DWORD telType = 0;
    WString number;
    WORD flags = 7;

    friend bool operator==(const Row&, const Row&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Row& row) {
        return out << row.slot << ": " << CString(row.number) << " of type " << row.telType << ", flags " << row.flags;
    }
};

struct StoredRow {
    DWORD oid = 0;
    Row row;
};

/// What the store holds, in the order of the rows' identifiers, read past the manager.
inline std::vector<StoredRow> storedRows() {
    using namespace PhoneBook;
    Database::CeDBTable table(aszTableName_[PBDBTBL_SPEEDDIALNO], &aRecDef_[PBDBTBL_SPEEDDIALNO]);
    std::vector<StoredRow> rows;
    if (!table.open(nullptr)) return rows;
    const std::unique_ptr<Database::Iterator> each(table.getIterator(nullptr, nullptr));
    while (each->next() == S_OK) {
        rows.push_back({each->getCur(),
                        {each->getProp(0).getI2(), each->getProp(1).getUI4(),
                         WString(each->getProp(2).getText().view()), each->getProp(3).getUI2()}});
    }
    std::ranges::sort(rows, {}, &StoredRow::oid);
    return rows;
}

inline std::vector<Row> rows() {
    std::vector<Row> found;
    for (const StoredRow& stored : storedRows())
        found.push_back(stored.row);
    return found;
}

/// Adds a row past the manager, so that no contact and no cache entry knows of it.
inline void addRow(const Row& row) {
    using namespace PhoneBook;
    Database::CeDBTable table(aszTableName_[PBDBTBL_SPEEDDIALNO], &aRecDef_[PBDBTBL_SPEEDDIALNO]);
    CCeDBProp props[] = {CCeDBProp::ofI2(512, static_cast<std::int16_t>(row.slot)), CCeDBProp::ofUI4(513, row.telType),
                         CCeDBProp::ofText(514, CString(row.number)), CCeDBProp::ofUI2(515, row.flags)};
    DWORD oid = 0;
    if (!table.open(nullptr) || table.insertRecord(props, oid) != S_OK) throw std::runtime_error("no row was added");
}

/// A contact's slot word; 0 also when it has no extension row.
inline DWORD wordOf(PhoneBook::PhoneBookDBMgr& manager, DWORD contactOid) {
    PhoneBook::PBRecord record;
    record.dwCITypeMask = PhoneBook::dwPrivateFlag_;
    static_cast<void>(manager.queryCallerInfo(contactOid, &record));
    return record.dwPrivate;
}

}  // namespace speed_dial

namespace PhoneBook {

inline bool operator==(const SpeedDialInfo& left, const SpeedDialInfo& right) {
    return left.dwSDialID == right.dwSDialID && left.dwOID == right.dwOID && left.strName == right.strName &&
           left.dwTelType == right.dwTelType && left.strTelNo == right.strTelNo && left.dwFlags == right.dwFlags;
}

inline std::ostream& operator<<(std::ostream& out, const SpeedDialInfo& info) {
    return out << "slot " << info.dwSDialID << ", contact " << info.dwOID << ' ' << info.strName << ", type "
               << info.dwTelType << ' ' << info.strTelNo << ", flags " << info.dwFlags;
}

}  // namespace PhoneBook
