#include <array>
#include <optional>

#include "tessera/common/CommaSepValList.h"
#include "tessera/database/ContactItem.h"
#include "tessera/phonebook/ExtensionRow.h"
#include "tessera/phonebook/Operation.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/phonebook/model/FieldText.h"
#include "tessera/platform/windows/Messages.h"

namespace PhoneBook {

using Database::CeDBTable;

namespace {

/// What became of a record, as notifications say it.
enum RecordEvent : UINT { recordCreated = 0x401, recordDeleted = 0x403, recordChanged = 0x406 };

/// Sent to the registered receiver: the set of groups has changed.
constexpr UINT groupsChanged = WM_APP + 0x778;

constexpr DWORD contactFieldsMask = 0x00000FFF;
constexpr DWORD groupMask = adwCITypeMaskMap_[PBDBATTR_GROUP];
constexpr DWORD slotsOfNumbersMask = 0x00FFFFFF;

CString groupOf(const CCeDBRecord& extensionRow) {
    return extensionRow.getProp(identOfExtension(extGroup)).getText();
}

}  // namespace

/// A table that is open while this lives: one that was closed is closed again.
class PhoneBookDBMgr::TableInUse {
public:
    TableInUse(PhoneBookDBMgr& manager, UINT tableId)
        : manager_(manager), tableId_(tableId), wasOpen_(manager.isTableOpen(tableId)) {
        if (!wasOpen_) manager_.openTable(tableId_, nullptr);
    }
    ~TableInUse() {
        if (!wasOpen_) manager_.closeTable(tableId_);
    }
    TableInUse(const TableInUse&) = delete;
    TableInUse& operator=(const TableInUse&) = delete;

    bool isOpen() const { return manager_.isTableOpen(tableId_); }

private:
    PhoneBookDBMgr& manager_;
    UINT tableId_;
    bool wasOpen_;
};

LRESULT PhoneBookDBMgr::onDBNotification(WPARAM /*wParam*/, LPARAM lParam) {
    if (lParam == 0) return -1;
    auto* const notification = reinterpret_cast<CENOTIFICATION*>(lParam);
    static_cast<void>(follow(*notification));  // there is nobody to tell
    CeFreeNotification(&notifyRequest_, notification);
    return 0;
}

HRESULT PhoneBookDBMgr::follow(const CENOTIFICATION& notification) {
    struct Follower {
        DWORD database;
        UINT event;
        HRESULT (PhoneBookDBMgr::*follow)(const CENOTIFICATION*);
    };
    // A renamed category is not followed: meant so.
    static constexpr std::array<Follower, 5> followers = {{
        {PBDBTBL_POLCONTACTS, recordCreated, &PhoneBookDBMgr::onCEOIDCreatedContacts},
        {PBDBTBL_POLCONTACTS, recordChanged, &PhoneBookDBMgr::onCEOIDChangedContacts},
        {PBDBTBL_POLCONTACTS, recordDeleted, &PhoneBookDBMgr::onCEOIDRecordDeletedContacts},
        {PBDBTBL_CATEGORIES, recordCreated, &PhoneBookDBMgr::onCEOIDCreatedCategories},
        {PBDBTBL_CATEGORIES, recordDeleted, &PhoneBookDBMgr::onCEOIDRecordDeletedCategories},
    }};
    for (const Follower& follower : followers) {
        if (follower.database == notification.dwParam && follower.event == notification.uType)
            return (this->*follower.follow)(&notification);
    }
    return S_OK;
}

// Contacts

// Most changes leave nothing to do, as when whoever made a contact has made its row as well. That is seen without
// the store's turn for writing, which others may have for long; with it, it is looked at again.

HRESULT PhoneBookDBMgr::onCEOIDCreatedContacts(const CENOTIFICATION* notification) {
    if (notification == nullptr) return E_POINTER;
    const HRESULT looked = operation([&] { return makeExtensionRow(notification->oid, Pass::looking); });
    if (looked != S_FALSE) return looked;
    return writingOperation([&] { return makeExtensionRow(notification->oid, Pass::writing); });
}

/// S_FALSE when a pass that only looks finds the row missing.
HRESULT PhoneBookDBMgr::makeExtensionRow(DWORD contactOid, Pass pass) {
    const TableInUse contacts(*this, PBDBTBL_POLCONTACTS);
    if (!contacts.isOpen()) return E_FAIL;
    CString categories;
    if (const HRESULT result = readCategories(contactOid, categories); FAILED(result)) return result;
    CStringArray names;
    common::CommaSepValList(categories).getList(names);
    if (names.IsEmpty()) return S_OK;

    const TableInUse extension(*this, PBDBTBL_PHONEBOOKEXT);
    if (!extension.isOpen()) return E_FAIL;
    DWORD rowOid = 0;
    CCeDBRecord row;
    const HRESULT query = findExtensionRow(contactOid, rowOid, &row);
    if (query != S_FALSE || pass == Pass::looking) return query;
    PBRecord record;
    record.dwCITypeMask = contactFieldsMask;
    // Its mask says what was found, and a contact with categories has something.
    if (const HRESULT read = queryCallerInfo(contactOid, &record); FAILED(read)) return read;
    setPBRecordFieldStr(record, groupMask, names[0]);
    return insertExtensionRow(contactOid, record);
}

HRESULT PhoneBookDBMgr::onCEOIDChangedContacts(const CENOTIFICATION* notification) {
    if (notification == nullptr) return E_POINTER;
    const HRESULT looked = operation([&] { return clearLostGroup(notification->oid, Pass::looking); });
    if (looked != S_FALSE) return looked;
    return writingOperation([&] { return clearLostGroup(notification->oid, Pass::writing); });
}

/// S_FALSE when a pass that only looks finds the group lost.
HRESULT PhoneBookDBMgr::clearLostGroup(DWORD contactOid, Pass pass) {
    const TableInUse extension(*this, PBDBTBL_PHONEBOOKEXT);
    if (!extension.isOpen()) return E_FAIL;
    DWORD rowOid = 0;
    CCeDBRecord row;
    HRESULT result = findExtensionRow(contactOid, rowOid, &row);
    if (FAILED(result)) return result;
    const TableInUse contacts(*this, PBDBTBL_POLCONTACTS);
    if (!contacts.isOpen()) return E_FAIL;
    CString categories;
    if (result = readCategories(contactOid, categories); FAILED(result)) return result;
    const CString group = getPBGroupName(categories, groupOf(row));
    if (group == groupOf(row)) return result;
    if (pass == Pass::looking) return S_FALSE;
    row.replaceProp(CCeDBProp::ofText(identOfExtension(extGroup), group));
    return tables_[PBDBTBL_PHONEBOOKEXT]->updateRecord(rowOid, &row, 0, nullptr);
}

HRESULT PhoneBookDBMgr::onCEOIDRecordDeletedContacts(const CENOTIFICATION* notification) {
    if (notification == nullptr) return E_POINTER;
    return writingOperationOn(speedDialCache_, [&] { return dropExtensionRow(notification->oid); });
}

HRESULT PhoneBookDBMgr::dropExtensionRow(DWORD contactOid) {
    const TableInUse extension(*this, PBDBTBL_PHONEBOOKEXT);
    if (!extension.isOpen()) return E_FAIL;
    DWORD rowOid = 0;
    CCeDBRecord row;
    if (const HRESULT query = findExtensionRow(contactOid, rowOid, &row); query != S_OK)
        return FAILED(query) ? query : E_FAIL;
    const DWORD slots = row.getProp(identOfExtension(extSlots)).getUI4() & slotsOfNumbersMask;
    HRESULT result = tables_[PBDBTBL_PHONEBOOKEXT]->deleteRecord(rowOid);
    if (slots == 0) return result;

    const TableInUse speedDial(*this, PBDBTBL_SPEEDDIALNO);
    if (!speedDial.isOpen()) return E_FAIL;
    forEachSlot(slots, [&](DWORD slot, DWORD) {
        SpeedDialInfo held;  // by nobody: no link is left to clear
        result = querySpeedDialInfo(slot, &held, false);
        // Whatever number it holds by now: the contact is gone.
        if (SUCCEEDED(result)) result = deleteSpeedDialInfo(slot, &held);
    });
    return result;
}

HRESULT PhoneBookDBMgr::onContactsCategoriesChanged(const CENOTIFICATION* notification) {
    if (notification == nullptr) return E_POINTER;
    return writingOperation([&] { return renameLostGroup(notification->oid); });
}

HRESULT PhoneBookDBMgr::renameLostGroup(DWORD contactOid) {
    const TableInUse contacts(*this, PBDBTBL_POLCONTACTS);
    const TableInUse extension(*this, PBDBTBL_PHONEBOOKEXT);
    const TableInUse groups(*this, PBDBTBL_AVAILABLEPBGROUP);
    if (!contacts.isOpen()) return E_FAIL;
    CString categories;
    if (const HRESULT result = readCategories(contactOid, categories); FAILED(result)) return result;
    DWORD rowOid = 0;
    CCeDBRecord row;
    if (findExtensionRow(contactOid, rowOid, &row) != S_OK) return E_FAIL;
    if (row.findProp(identOfExtension(extGroup)) == nullptr) return E_FAIL;
    CString before = groupOf(row);
    const CString after = getPBGroupName(categories, before);
    if (after == before) return S_OK;
    row.replaceProp(CCeDBProp::ofText(identOfExtension(extGroup), after));
    static_cast<void>(tables_[PBDBTBL_PHONEBOOKEXT]->updateRecord(rowOid, &row, 0, nullptr));
    // The entry takes the name that is left to the contact, and with it all members: meant so.
    PBGroupInfo group;
    if (SUCCEEDED(queryAvailablePBGroup(before, &group))) {
        group.strName = after;
        static_cast<void>(writeAvailablePBGroup(before, &group));
    }
    return S_OK;
}

HRESULT PhoneBookDBMgr::readCategories(DWORD contactOid, CString& categories) {
    ComPtr<IDispatch> item;
    if (const HRESULT result = contactsTable()->getItemFromOid(contactOid, item.out()); FAILED(result)) return result;
    Bstr text;
    const HRESULT result = Database::contactOf(item.get())->get_Categories(text.out());
    if (SUCCEEDED(result)) categories = text.text();
    return result;
}

// Categories

HRESULT PhoneBookDBMgr::onCEOIDCreatedCategories(const CENOTIFICATION* notification) {
    if (notification == nullptr) return E_POINTER;
    std::optional<std::int16_t> groupId;
    const HRESULT result = writingOperationOn(categories_, [&] {
        const HRESULT made = makeGroupOf(notification->oid, groupId);
        if (groupId && SUCCEEDED(made)) categories_.SetAt(notification->oid, *groupId);
        return made;
    });
    if (groupId) tellReceiver();
    return result;
}

/// `groupId` receives the ID that the category has, nothing when there is no such category any more.
HRESULT PhoneBookDBMgr::makeGroupOf(DWORD categoryOid, std::optional<std::int16_t>& groupId) {
    const TableInUse categories(*this, PBDBTBL_CATEGORIES);
    if (!categories.isOpen()) return E_FAIL;
    CeDBTable& table = *cedbTable(PBDBTBL_CATEGORIES);
    CCeDBRecord category;
    const HRESULT read = table.getRecord(categoryOid, &category);
    if (read != S_OK || category.getNumProps() == 0) return read;

    groupId = category.getProp(table.getAttrIdent(1)).getI2();
    PBGroupInfo group;
    group.dwID = static_cast<DWORD>(*groupId);
    group.strName = category.getProp(table.getAttrIdent(0)).getText();
    const TableInUse groups(*this, PBDBTBL_AVAILABLEPBGROUP);
    return writeAvailablePBGroup(group.dwID, &group, dwKeepIdAndName_);
}

HRESULT PhoneBookDBMgr::onCEOIDRecordDeletedCategories(const CENOTIFICATION* notification) {
    if (notification == nullptr) return E_POINTER;
    bool hasGroup = false;
    const HRESULT result = operation([&] { return dropGroupOf(notification->oid, hasGroup); });
    if (hasGroup) tellReceiver();
    return result;
}

/// `hasGroup` receives whether this manager knows of a group that was made of the category.
HRESULT PhoneBookDBMgr::dropGroupOf(DWORD categoryOid, bool& hasGroup) {
    const TableInUse groups(*this, PBDBTBL_AVAILABLEPBGROUP);
    std::int16_t groupId = 0;
    hasGroup = groups.isOpen() && categories_.Lookup(categoryOid, groupId);
    if (!hasGroup) return E_FAIL;
    const HRESULT result = writingOperation([&] {
        const TableInUse extension(*this, PBDBTBL_PHONEBOOKEXT);
        return deleteAvailablePBGroup(static_cast<DWORD>(groupId));
    });
    if (SUCCEEDED(result)) categories_.RemoveKey(categoryOid);
    return result;
}

void PhoneBookDBMgr::tellReceiver() {
    if (receiver_ != nullptr && receiver_->GetSafeHwnd() != 0)
        SendNotifyMessageW(receiver_->GetSafeHwnd(), groupsChanged, 0, 0);
}

}  // namespace PhoneBook
