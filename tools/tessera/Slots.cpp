#include "Slots.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Categories.h"
#include "Failure.h"
#include "tessera/database/Iterator.h"
#include "tessera/database/Table.h"
#include "tessera/platform/base/Results.h"

namespace Tool {

namespace {

using PhoneBook::PBDBTBL_PHONEBOOKEXT;
using PhoneBook::PhoneBookDBMgr;
using PhoneBook::SpeedDialInfo;

/// The attributes of an extension row that are looked at.
enum ExtensionAttribute : int {
    contactOid = 0,
    slotWord = PhoneBook::aPBAttribute_[PhoneBook::PBDBATTR_PRIVATE].place.nAttrIdx,
};

WORD identOfExtension(ExtensionAttribute attribute) {
    return PhoneBookDBMgr::aRecDef_[PBDBTBL_PHONEBOOKEXT].getAttrIdent(attribute);
}

DWORD numberIn(const CCeDBRecord& row, ExtensionAttribute attribute) {
    const CCeDBProp* number = row.findProp(identOfExtension(attribute));
    return number != nullptr ? number->getUI4() : 0;
}

/// The slot word without a slot, but where it is that of the number of `keptType`.
DWORD withoutSlot(DWORD word, DWORD slot, DWORD keptType) {
    for (int i = 0; i < 3; ++i) {
        const DWORD byte = DWORD{0xFF} << (8 * i);
        const bool isSlot = (word & byte) >> (8 * i) == slot;
        if (isSlot && PhoneBookDBMgr::getTelNoAttrFlag(i) != keptType) word &= ~byte;
    }
    return word;
}

/// Checked before anything is written: what was written already would stay.
void requireRoom(const Contact& contact) {
    if (!hasRoomForUpdate(contact.record, contact.record.strGroup))
        throw Failure("the categories of contact " + std::to_string(contact.oid) + " are too long to change it");
}

}  // namespace

Slots::Slots(Store& store) : store_(store) {
    reload();
}

void Slots::reload() {
    store_.require(SUCCEEDED(manager().fillSDialInfoCache()));
}

std::vector<SpeedDialInfo> Slots::taken() {
    std::vector<SpeedDialInfo> slots;
    for (DWORD slot = first; slot <= last; ++slot) {
        if (isTaken(slot)) slots.push_back(at(slot));
    }
    return slots;
}

void Slots::give(DWORD slot, const Contact& contact, const Field& number) {
    requireRoom(contact);
    const CString digits = PhoneBookDBMgr::makeCNIP(contact.record.*number.model().text);
    const auto isTheNumbers = [&](const SpeedDialInfo& entry) {
        if (entry.dwOID == 0) return entry.strTelNo == digits;
        return entry.dwOID == contact.oid && entry.dwTelType == number.mask();
    };
    clear(slot);
    for (const SpeedDialInfo& entry : taken()) {
        if (isTheNumbers(entry)) clear(entry.dwSDialID);
    }
    insert(slot, contact, number);
    keepOnlyLink(slot, contact.oid, number.mask());
}

void Slots::insert(DWORD slot, const Contact& contact, const Field& number) {
    SpeedDialInfo entry;
    entry.dwSDialID = slot;
    entry.dwOID = contact.oid;
    entry.strName = contact.record.strName;
    entry.dwTelType = number.mask();
    entry.strTelNo = contact.record.*number.model().text;
    store_.require(SUCCEEDED(manager().insertSpeedDialInfo(slot, &entry)) &&
                   restoreCategories(contact.oid, contact.record, contact.record.strGroup));
}

void Slots::move(DWORD from, DWORD to) {
    const auto owner = readContact(manager(), at(from).dwOID);
    if (owner) {
        const DWORD type = moveWithOwner(from, to, *owner);
        keepOnlyLink(to, owner->oid, type);
    } else {
        moveWithoutOwner(from, to);
        keepOnlyLink(to, 0, 0);
    }
}

/// Answers the type under which the contact then has the slot: the row's, which can be another than it was.
DWORD Slots::moveWithOwner(DWORD from, DWORD to, const Contact& owner) {
    requireRoom(owner);
    SpeedDialInfo entry = at(from);
    store_.require(SUCCEEDED(manager().moveSpeedDialInfo(from, to, &entry)) &&
                   restoreCategories(owner.oid, owner.record, owner.record.strGroup));
    return entry.dwTelType;
}

/// The phone book would give the slot to whoever has the number, or to nobody at all.
void Slots::moveWithoutOwner(DWORD from, DWORD to) {
    SpeedDialInfo entry;
    store_.require(SUCCEEDED(manager().querySpeedDialInfo(from, &entry, false)) &&
                   SUCCEEDED(manager().deleteSpeedDialInfo(from, &entry)));
    // It fails for want of a contact to write the slot to, once the row is there.
    static_cast<void>(manager().insertSpeedDialInfo(to, &entry));
    store_.require(SUCCEEDED(manager().querySpeedDialInfo(to, &entry, false)));
}

void Slots::clear(DWORD slot) {
    // A slot has two rows when another program moved one onto the other.
    for (; isTaken(slot); reload()) {
        SpeedDialInfo entry = at(slot);
        const auto owner = readContact(manager(), entry.dwOID);
        if (owner) requireRoom(*owner);
        if (!owner) entry.dwOID = 0;  // no contact, no slot word to write
        store_.require(SUCCEEDED(manager().deleteSpeedDialInfo(slot, &entry)) &&
                       (!owner || restoreCategories(owner->oid, owner->record, owner->record.strGroup)));
    }
}

std::size_t Slots::clearAll() {
    const std::size_t count = taken().size();
    store_.require(SUCCEEDED(manager().deleteAllSpeedDialInfos()));
    return count;
}

/// Slot words can name a slot that is another's, as those of an import do: who is read last would have the slot.
void Slots::keepOnlyLink(DWORD slot, DWORD owner, DWORD type) {
    std::vector<std::pair<DWORD, DWORD>> changes;  // rows and their new slot words
    const std::unique_ptr<Database::Iterator> rows(
        manager().getIterator(UINT{PBDBTBL_PHONEBOOKEXT}, contactOid, nullptr, nullptr));
    CCeDBRecord row;
    while (rows && rows->next() == S_OK) {
        if (rows->getRecord(&row) != S_OK) continue;
        const DWORD keptType = numberIn(row, contactOid) == owner ? type : 0;
        const DWORD word = numberIn(row, slotWord);
        const DWORD kept = withoutSlot(word, slot, keptType);
        if (kept != word) changes.emplace_back(rows->getCur(), kept);
    }
    for (const auto& [rowOid, word] : changes) {
        // The row alone is written: its contact may be gone.
        CCeDBRecord change;
        change.addProp(CCeDBProp::ofUI4(identOfExtension(slotWord), word));
        store_.require(manager().getTable(PBDBTBL_PHONEBOOKEXT)->updateRecord(rowOid, &change, 0, nullptr) == S_OK);
    }
    reload();
}

DWORD lowestFreeSlot(Store& store) {
    SpeedDialInfo unused;
    // What the phone book proposes for slot 1 is 1 in any case.
    if (FAILED(store.manager().querySpeedDialInfo(Slots::first, &unused, false))) return Slots::first;
    for (DWORD slot = Slots::first + 1; slot <= Slots::last; ++slot) {
        DWORD proposed = 0;
        store.require(SUCCEEDED(store.manager().findFirstEmptySDialID(slot, &proposed)));
        if (proposed == slot) return slot;
    }
    return 0;
}

}  // namespace Tool
