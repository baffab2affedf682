#include "Duplicates.h"

#include <memory>

#include "Records.h"
#include "tessera/platform/base/Results.h"

namespace Tool {

namespace {

using PhoneBook::PBRecord;
using PhoneBook::PhoneBookDBMgr;

bool holds(const PBRecord& record, const Field& field) {
    return (record.dwCITypeMask & field.mask()) != 0;
}

WString keyOf(const PBRecord& record, WStringView number) {
    WString key(record.strName.view());
    key += u'\0';
    return key += number;
}

struct NumberKey {
    WString key;
    CString number;
};

std::vector<NumberKey> numberKeysOf(const PBRecord& record) {
    std::vector<NumberKey> keys;
    for (const Field& field : fields) {
        if (!PhoneBookDBMgr::isTelNoAttr(field.attribute) || !holds(record, field)) continue;
        const CString& number = record.*field.model().text;
        const CString reduced = PhoneBookDBMgr::makeCNIP(number);
        if (!reduced.IsEmpty()) keys.push_back({keyOf(record, reduced.view()), number});
    }
    return keys;
}

/// Of somebody without a number. A reduced number holds no such sign.
WString keyWithoutNumber(const PBRecord& record) {
    return keyOf(record, TEXT("@") + WString(record.strEmail1Address.view()));
}

}  // namespace

void Duplicates::addContactsOf(PhoneBookDBMgr& manager) {
    const std::unique_ptr<Database::Iterator> all(
        manager.getIterator(UINT{PhoneBook::PBDBATTR_NAME}, nullptr, nullptr));
    while (all && all->next() == S_OK) {
        const DWORD oid = all->getCur();
        PBRecord record;
        for (const Field& field : fields) {
            const bool isWanted = field.attribute == PhoneBook::PBDBATTR_NAME ||
                                  field.attribute == PhoneBook::PBDBATTR_EMAIL ||
                                  PhoneBookDBMgr::isTelNoAttr(field.attribute);
            if (isWanted) record.dwCITypeMask |= field.mask();
        }
        if (SUCCEEDED(manager.queryCallerInfo(oid, &record))) add(record, {.oid = oid});
    }
}

void Duplicates::add(const PBRecord& record, const Known& from) {
    const std::vector<NumberKey> keys = numberKeysOf(record);
    for (const NumberKey& each : keys)
        known_.try_emplace(each.key, from);
    if (keys.empty()) known_.try_emplace(keyWithoutNumber(record), from);
}

std::optional<Duplicates::Known> Duplicates::find(const PBRecord& record) const {
    const std::vector<NumberKey> keys = numberKeysOf(record);
    if (keys.empty()) {
        const auto found = known_.find(keyWithoutNumber(record));
        return found != known_.end() ? std::optional(found->second) : std::nullopt;
    }
    std::optional<Known> known;
    std::vector<CString> newNumbers;
    for (const NumberKey& each : keys) {
        const auto found = known_.find(each.key);
        if (found == known_.end()) {
            newNumbers.push_back(each.number);
        } else if (!known) {
            known = found->second;
        }
    }
    if (known) known->newNumbers = std::move(newNumbers);
    return known;
}

}  // namespace Tool
