#include <algorithm>
#include <functional>
#include <memory>
#include <span>
#include <utility>

#include "tessera/phonebook/ExtensionRow.h"
#include "tessera/phonebook/Operation.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/phonebook/SpeedDialRow.h"
#include "tessera/phonebook/TableRows.h"

namespace PhoneBook {

using Database::CeDBTable;
using Database::Iterator;
using Database::Table;

namespace {

constexpr DWORD dirtyMark = 0x10;

/// Where flags are read from a row. A speed-dial row has them elsewhere, and so never brings them along: meant so.
constexpr int flagsNotOfASlot = 6;
static_assert(flagsNotOfASlot != sdialFlags);

const CCeDBProp& propOf(const CCeDBRecord& row, ExtensionAttr attr) {
    return row.getProp(identOfExtension(attr));
}

bool isOccupied(const SpeedDialInfo& entry) {
    return entry.dwSDialID != 0;
}

bool isDirty(const SpeedDialInfo& entry) {
    return (entry.dwFlags & dirtyMark) != 0;
}

bool isSlot(DWORD id) {
    return id >= 1 && id < PhoneBookDBMgr::nSDialCacheSize_;
}

}  // namespace

void PhoneBookDBMgr::RecordToSDialInfo(Table* table, const CCeDBRecord& record, SpeedDialInfo* info, DWORD /*mask*/) {
    if (table == nullptr || info == nullptr) return;
    static_cast<void>(operation([&] {
        for (int i = 0; i < table->getNumAttrs(); ++i) {
            const CCeDBProp* prop = record.findProp(table->getAttrIdent(i));
            if (prop == nullptr) continue;
            if (i == sdialId) info->dwSDialID = static_cast<DWORD>(prop->getI2());
            if (i == sdialTelType) info->dwTelType = prop->getUI4();
            if (i == sdialTelNo) info->strTelNo = prop->getText();
            if (i == flagsNotOfASlot) info->dwFlags = prop->getUI2();
        }
        return S_OK;
    }));
}

/// Puts an entry into the cache, if it has one for that slot.
void PhoneBookDBMgr::setCacheEntry(DWORD id, SpeedDialInfo info) {
    if (id < nSDialCacheSize_) speedDialCache_[id] = std::move(info);
}

/// Reads every extension row, in the order of their contacts.
/// @return the result of the last read; `whenEmpty` when there is no row; E_ACCESSDENIED when the table is not open
HRESULT PhoneBookDBMgr::forEachExtensionRow(HRESULT whenEmpty,
                                            const std::function<void(DWORD rowOid, CCeDBRecord& row)>& visit) {
    if (!isTableOpen(PBDBTBL_PHONEBOOKEXT)) return E_ACCESSDENIED;
    CeDBTable* extension = reopenSortedBy(PBDBTBL_PHONEBOOKEXT, extPodbOid);
    const std::unique_ptr<Iterator> rows(extension == nullptr ? nullptr
                                                              : extension->getIterator(extPodbOid, nullptr, nullptr));
    if (extension == nullptr || FAILED(anyRows(*extension, rows.get()))) return E_FAIL;
    HRESULT result = whenEmpty;
    CCeDBRecord row;
    for (int i = 0; i < rows->getNumItems(); ++i) {
        result = rows->getRecordAt(i, &row);
        if (SUCCEEDED(result)) visit(rows->getCur(), row);
    }
    return result;
}

HRESULT PhoneBookDBMgr::fillSDialInfoCache() {
    return fillSDialInfoCache(speedDialCache_.data());
}

HRESULT PhoneBookDBMgr::fillSDialInfoCache(SpeedDialInfo* cache) {
    return operation([&]() -> HRESULT {
        if (!isTableOpen(PBDBTBL_SPEEDDIALNO)) return E_ACCESSDENIED;
        if (cache == nullptr) return E_POINTER;
        CeDBTable* slots = reopenSortedBy(PBDBTBL_SPEEDDIALNO, sdialId);
        if (slots == nullptr) return E_FAIL;
        clearSDialInfoCache(cache);
        const std::unique_ptr<Iterator> rows(slots->getIterator(sdialId, nullptr, nullptr));
        if (rows == nullptr) return S_OK;
        if (FAILED(anyRows(*slots, rows.get()))) return E_FAIL;
        CCeDBRecord row;
        for (int i = 0; i < rows->getNumItems(); ++i) {
            if (FAILED(rows->getRecordAt(i, &row))) continue;
            SpeedDialInfo info;
            RecordToSDialInfo(slots, row, &info, 0);
            info.dwTelType = 0;  // the contact says it; a slot without one has none: meant so
            if (info.dwSDialID < nSDialCacheSize_) cache[info.dwSDialID] = info;
        }
        // The manager's own, whichever array was loaded: meant so.
        return fillSDialInfoCacheInPBExt(speedDialCache_.data());
    });
}

HRESULT PhoneBookDBMgr::fillSDialInfoCacheInPBExt(SpeedDialInfo* cache) {
    return operation([&]() -> HRESULT {
        if (cache == nullptr) return E_POINTER;
        return forEachExtensionRow(S_OK, [&](DWORD, const CCeDBRecord& row) {
            forEachSlot(propOf(row, extSlots).getUI4(), [&](DWORD slot, DWORD telType) {
                if (slot >= nSDialCacheSize_ || cache[slot].dwSDialID != slot) return;
                cache[slot].dwOID = propOf(row, extPodbOid).getUI4();
                cache[slot].strName = propOf(row, extName).getText();
                cache[slot].dwTelType = telType;
            });
        });
    });
}

HRESULT PhoneBookDBMgr::fillSDialInfoCache(CMap<DWORD, DWORD&, CString, CString&>& names) {
    return operation([&]() -> HRESULT {
        return forEachExtensionRow(S_OK, [&](DWORD, const CCeDBRecord& row) {
            forEachSlot(propOf(row, extSlots).getUI4(),
                        [&](DWORD& slot, DWORD) { names[slot] = propOf(row, extName).getText(); });
        });
    });
}

HRESULT PhoneBookDBMgr::clearSDialInfoCache() {
    return clearSDialInfoCache(speedDialCache_.data());
}

HRESULT PhoneBookDBMgr::clearSDialInfoCache(SpeedDialInfo* cache) {
    if (cache == nullptr) return E_POINTER;
    std::ranges::fill(std::span(cache, nSDialCacheSize_), nullSDialInfo);
    return S_OK;
}

HRESULT PhoneBookDBMgr::writeSDialInfoCache(DWORD id, SpeedDialInfo* info) {
    return operation([&]() -> HRESULT {
        if (info == nullptr) return E_POINTER;
        if (!isSlot(id)) return E_FAIL;
        SpeedDialInfo entry = *info;  // with the slot that it says itself
        entry.dwFlags |= dirtyMark;
        setCacheEntry(id, std::move(entry));
        return S_OK;
    });
}

HRESULT PhoneBookDBMgr::deleteSDialInfoCache(DWORD id, SpeedDialInfo* /*info*/) {
    if (!isSlot(id)) return E_FAIL;
    speedDialCache_[id].dwSDialID = 0;
    speedDialCache_[id].dwFlags |= dirtyMark;
    return S_OK;
}

HRESULT PhoneBookDBMgr::moveSDialInfoCache(DWORD fromId, DWORD toId) {
    return operation([&]() -> HRESULT {
        if (fromId >= nSDialCacheSize_) return S_OK;
        SpeedDialInfo moved = speedDialCache_[fromId];
        moved.dwSDialID = toId;
        setCacheEntry(toId, std::move(moved));
        setCacheEntry(fromId, nullSDialInfo);  // last: an entry that is moved onto itself is emptied
        return S_OK;
    });
}

HRESULT PhoneBookDBMgr::querySDialInfoCache(const CString& telNo, SpeedDialInfo* info) {
    return operation([&]() -> HRESULT {
        const auto found = std::ranges::find_if(
            speedDialCache_, [&](const SpeedDialInfo& entry) { return isOccupied(entry) && entry.strTelNo == telNo; });
        if (found == speedDialCache_.end()) return E_FAIL;
        if (info != nullptr) *info = *found;
        return S_OK;
    });
}

HRESULT PhoneBookDBMgr::flushSDialInfoCache() {
    if (std::ranges::none_of(speedDialCache_, isDirty)) return S_OK;
    return writingOperationOn(speedDialCache_, [&]() -> HRESULT {
        for (DWORD slot = 0; slot < nSDialCacheSize_; ++slot) {
            SpeedDialInfo& entry = speedDialCache_[slot];
            if (!isDirty(entry)) continue;
            entry.dwFlags &= ~dirtyMark;
            static_cast<void>(isOccupied(entry) ? writeSpeedDialInfo(slot, &entry) : deleteSpeedDialInfo(slot, &entry));
        }
        return S_OK;
    });
}

}  // namespace PhoneBook
