#pragma once

#include <array>
#include <functional>
#include <memory>
#include <optional>

#include "tessera/Export.h"
#include "tessera/database/CeDBTable.h"
#include "tessera/database/Iterator.h"
#include "tessera/database/POlDBIterator.h"
#include "tessera/database/POlDBTable.h"
#include "tessera/database/Table.h"
#include "tessera/database/schema/RecordDef.h"
#include "tessera/phonebook/ImportListener.h"
#include "tessera/phonebook/PBGroupInfo.h"
#include "tessera/phonebook/model/CallEntry.h"
#include "tessera/phonebook/model/PBAttributes.h"
#include "tessera/phonebook/model/PBRecord.h"
#include "tessera/phonebook/model/Schemas.h"
#include "tessera/phonebook/model/SpeedDialInfo.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Collections.h"
#include "tessera/platform/contacts/OutlookInterfaces.h"
#include "tessera/platform/objectstore/CeDB.h"
#include "tessera/platform/windows/CWnd.h"

/// The phone book: its manager, and the records that it takes and gives.
namespace PhoneBook {

/// The phone book: every operation on contacts, their extension rows, groups and callers.
///
/// A client makes one, sets the store up once with `initDB`, opens it with `openDB`, and works, on the store
/// that the environment names or that it mounted before (ObjectStore::mount). All calls come on one thread; a
/// program with several threads gives each a manager of its own. `Create` makes the hidden window through
/// which the object store tells of changes; a client that does not pump messages does without. Every operation
/// that writes is one unit: after a crash it is there whole or not at all, and other programs never see half
/// of it. An import is a row of such units.
///
/// Results: S_OK; S_FALSE for "nothing found" or "only in part"; E_FAIL for a table that is not open, a
/// missing row, and most failures; E_POINTER for a null output; E_INVALIDARG for an empty number;
/// E_OUTOFMEMORY when memory is short.
class TESSERA_API PhoneBookDBMgr : public CWnd {
public:
    /// Holds nothing yet: no table is made, no store mounted.
    PhoneBookDBMgr();
    /// Ends the window, if there is one, and frees the tables.
    ~PhoneBookDBMgr() override;

    // --- Lifecycle -------------------------------------------------------------------------------------

    /// Makes the hidden window "PBDBMgrWnd" and asks for the change notifications of contacts and
    /// categories. The argument is not used. Non-zero on success.
    BOOL Create(UINT unused = 0);

    /// Creates the phone book's databases and fills the groups from the platform's categories; with
    /// `createWindow` also calls `Create`. Existing databases stay as they are. Opens nothing for use, and leaves
    /// the groups and the categories closed: call it before `openDB`.
    /// @return the result of filling the groups
    [[nodiscard]] HRESULT initDB(bool createWindow);
    /// Creates the four databases of the phone book. E_FAIL when any could not be made; one that exists
    /// cannot be made again.
    [[nodiscard]] HRESULT createDB();
    /// Opens the five tables; `notifyWnd` (null: nobody) receives the notifications of the four databases.
    /// E_FAIL when any table could not be opened; the others are open all the same.
    [[nodiscard]] HRESULT openDB(CWnd* notifyWnd);
    /// Closes the five tables. E_FAIL when any was not open.
    HRESULT closeDB();
    /// Drops the four databases with all they hold; never the contacts.
    [[nodiscard]] HRESULT destroyDB();

    /// The table object of an ID, null when it was not made yet. No range test. Borrowed.
    Database::Table* getTable(UINT tableId) { return tables_[tableId]; }
    /// How many tables are managed: five.
    int getNumTables() const { return nNumTables_; }
    /// The name of the phone book.
    static const WCHAR* getDBName() { return PhoneBook::szPBDBName_; }

    /// An iterator over a table in the order of one of its attributes, between two bounds that the caller
    /// keeps alive. The caller deletes the iterator. Null when the table gives none.
    Database::Iterator* getIterator(UINT tableId, int sortIdx, CCeDBProp* from, CCeDBProp* to);
    /// The same by phone book attribute: its table, in its order.
    Database::Iterator* getIterator(UINT pbAttrId, CCeDBProp* from, CCeDBProp* to);

    /// The window that hears (message 0x8778) when the set of groups has changed; null: nobody.
    void registerNotificationReceiver(CWnd* receiver) { receiver_ = receiver; }

    // --- Attributes and schemas ------------------------------------------------------------------------
    // None of the lookups tests its argument for range.

    /// @{
    /// The tables of the model by the names that a client knows: see there.
    static constexpr const auto& aszTableName_ = PhoneBook::aszTableName_;
    static constexpr const auto& atmDBAttrMap_ = PhoneBook::atmDBAttrMap_;
    static constexpr const auto& adwCITypeMaskMap_ = PhoneBook::adwCITypeMaskMap_;
    static constexpr const auto& adwTelNoAttrFlagMap_ = PhoneBook::adwTelNoAttrFlagMap_;
    static constexpr const auto& aszDefPBGroupName_ = PhoneBook::aszDefPBGroupName_;
    /// @}
    /// The schema of each table, by table ID.
    static const Database::RecordDef (&aRecDef_)[nNumTableSchemas_];
    /// What the contacts database calls the contacts table's attributes, index for index.
    static const Database::RecordDef& recdefPOlCRaw_;
    /// The empty speed-dial entry.
    static const SpeedDialInfo nullSDialInfo;

    /// How many attributes there are, PBDBATTR_NONE included.
    static int getNumPBAttrs() { return nNumPBAttrs_; }
    /// @{
    /// Where an attribute is stored: the table, and its index there.
    static int getTableID(int pbAttrId) { return PhoneBook::getTableID(pbAttrId); }
    static int getAttrIDInTable(int pbAttrId) { return PhoneBook::getAttrIDInTable(pbAttrId); }
    /// @}
    /// 18 when no phone book attribute is (tableId, attrIdx).
    static int getPBDBAttrID(int tableId, int attrIdx) { return PhoneBook::getPBDBAttrID(tableId, attrIdx); }
    /// The bit of an attribute in PBRecord::dwCITypeMask.
    static DWORD getCITypeMaskFromPBDBAttrID(int pbAttrId) { return PhoneBook::getCITypeMaskFromPBDBAttrID(pbAttrId); }
    /// The first attribute whose mask is exactly `flag`; 18 when none is.
    static int getPBDBAttrIDFromCITypeFlag(DWORD flag) { return PhoneBook::getPBDBAttrIDFromCITypeFlag(flag); }
    /// The mask bit of the telephone number at that place, 0 to 4, in the order in which they are preferred.
    static DWORD getTelNoAttrFlag(int index) { return PhoneBook::getTelNoAttrFlag(index); }
    /// 5 when `flag` is none of the five telephone-number flags.
    static int getTelNoAttrIdx(DWORD flag) { return PhoneBook::getTelNoAttrIdx(flag); }
    /// The flag of the record's primary number, 0 when it has no number.
    static DWORD getPrimaryTelNoFlag(const PBRecord& record) { return PhoneBook::getPrimaryTelNoFlag(record); }
    /// The attribute's name, asked of its table. Not for PBDBATTR_NONE, nor before the table was made.
    CString& getDBAttrName(int pbAttrId);
    /// @{
    /// Whether an attribute is hidden from people, can have a speed-dial slot, is a telephone number, or can be
    /// sent messages to. What is no attribute is none of these.
    static bool isHiddenAttr(int pbAttrId) { return PhoneBook::isHiddenAttr(pbAttrId); }
    static bool isSDialNoAttr(int pbAttrId) { return PhoneBook::isSDialNoAttr(pbAttrId); }
    static bool isTelNoAttr(int pbAttrId) { return PhoneBook::isTelNoAttr(pbAttrId); }
    static bool isSMSReceiverAttr(int pbAttrId) { return PhoneBook::isSMSReceiverAttr(pbAttrId); }
    /// @}

    // --- Records ---------------------------------------------------------------------------------------

    /// Adds one newly allocated CCeDBProp per attribute of the table to `props`, in attribute order; a field
    /// that the record's mask lacks gets the zero value of its type. The caller frees them: clearObArray.
    /// The record's categories are replaced by its group in front of the categories that contact `oid` has.
    /// @return S_OK, also when an element could not be made and is null; E_OUTOFMEMORY when `props` is not complete
    HRESULT getTableAttrsFromPBRecord(int tableId, DWORD oid, PBRecord& record, CObArray& props);
    /// Deletes what the array holds, last first, and empties it.
    HRESULT clearObArray(CObArray& props);

    /// Adds a contact and, when the record has any extension field, its extension row. The categories
    /// become the group. Sets the categories bit in the record's mask.
    /// @param oid receives the contact's identifier, 0 when there is none; may be null
    /// @return the result of the last insert; E_FAIL when the contacts table is not open, or what was written
    ///         could not be made durable
    [[nodiscard]] HRESULT insertPBRecord(PBRecord& record, DWORD* oid);
    /// Writes the whole of a contact: a field that the record's mask lacks is emptied. The categories become the
    /// group in front of those that the contact has. The extension row is written, or made, only when the record
    /// has any extension field.
    /// @return the result of the last table written to; E_FAIL when the contacts table is not open, or what was
    ///         written could not be made durable
    [[nodiscard]] HRESULT updatePBRecord(DWORD oid, PBRecord& record);
    /// Deletes a contact's extension row if it has one, the contact, and those of its speed-dial slots that still
    /// hold its numbers.
    /// @return the result of the last step done: a slot that cannot be looked up counts. E_FAIL when the extension
    ///         table is not open.
    [[nodiscard]] HRESULT deletePBRecord(DWORD oid);
    /// Deletes one row of a table. E_FAIL when it was not made or is not open.
    [[nodiscard]] HRESULT deleteRecord(int tableId, DWORD& oid);
    /// Deletes all extension rows, all contacts and all speed-dial slots. E_FAIL when the extension table is
    /// not open; else the result of the last deletion.
    [[nodiscard]] HRESULT deleteAllPBRecords();
    /// How many contacts there are, 0 before the contacts table was made.
    DWORD getNumRecords();
    /// Adds a row of sample values to the extension table.
    [[nodiscard]] HRESULT insertRecord();

    /// Contacts whose name holds the text, or begins with it when it is of initial consonants. The search is by
    /// name whatever the attribute is. The caller deletes the iterator. Null when there is no match.
    Database::Iterator* searchPBRecord(int pbAttrId, const CString& text);
    /// Contacts that a restriction such as [FileAs] >= "A" admits.
    Database::Iterator* searchPBRecord(const CString& restriction);
    /// Contacts within an earlier result, between two bounds of one attribute.
    Database::Iterator* searchPBRecord(Database::POlDBIterator* outer, int attrIdx, CCeDBProp* from, CCeDBProp* to);
    /// Contacts one of whose reduced numbers holds `telNo`, which is taken as it is: reduce it first (makeCNIP).
    /// The outer iterator is not consulted: meant so.
    Database::Iterator* searchPBRecordOfTelNo(Database::POlDBIterator* outer, const CString& telNo);
    /// Contacts whose categories are exactly the group; for the empty group those without categories.
    Database::Iterator* searchPBRecordOfPBGroup(const CString& group);
    /// Contacts whose name begins with `prefix` in any case, whatever the attribute; all for an empty prefix.
    Database::Iterator* qSearchPBRecord(int pbAttrId, const CString& prefix);

    // --- Callers ---------------------------------------------------------------------------------------

    /// Who has this number? The record's mask says which fields are wanted, and afterwards which were found.
    /// @param telNo a reduced number (makeCNIP), compared exactly
    /// @param oid receives the contact's identifier, or 0 unless an extension field was wanted; may be null
    /// @return S_OK; S_FALSE when found only in part, as without an extension row when extension fields were
    ///         wanted; E_INVALIDARG for an empty number; E_FAIL when nothing was wanted, or when no
    ///         contact holds the number in any of its own, the record then being reset. When contacts hold
    ///         it within a longer number only: S_OK, with the record untouched.
    [[nodiscard]] HRESULT queryCallerInfo(const CString& telNo, PBRecord* record, DWORD* oid);
    /// The wanted fields of one contact.
    [[nodiscard]] HRESULT queryCallerInfo(const DWORD& oid, PBRecord* record);
    /// The reduced number in a speed-dial slot. S_FALSE when the slot is empty.
    [[nodiscard]] HRESULT queryCID(DWORD speedDialId, CString* telNo);

    /// The reduced form of a number: digits, P, T, * and #, at most 32; a '+', the country code and the
    /// space or '-' behind it become one '0'. A '+' number without either is "0": where its country code ends
    /// cannot be told.
    /// @param out receives at most 32 characters and a terminator
    static void makeCNIP(const WCHAR* in, WCHAR* out);
    /// The same as a text of its own.
    static CString makeCNIP(const WCHAR* in);
    /// A reduced number with dashes, by the domestic numbering plan: 010-1234-5678.
    static CString makeTelNoStrFromCID(const WCHAR* cid);

    // --- Speed dial ------------------------------------------------------------------------------------
    // A slot is a row of the speed-dial table, a byte of its contact's slot word (PBRecord::dwPrivate), and an
    // entry of the cache. The table operations keep the three in step and want the speed-dial table open; they
    // leave it open in an order of their own, without a notification window. The cache operations touch the
    // cache alone. Slots are 1 to 99; a table operation does not refuse others, and those from 100 on just have no
    // cache entry.
    // Where `info` may not be null, E_POINTER; where the table is not open, E_FAIL unless said otherwise.

    /// What is in a slot. With `withContact` also whose number it is: the text as the contact has it and the
    /// name; `dwOID` becomes 0, since the lookup wants no extension field.
    /// @return S_OK; S_FALSE when a contact was asked for and none was found; E_FAIL for an empty slot
    [[nodiscard]] HRESULT querySpeedDialInfo(DWORD id, SpeedDialInfo* info, bool withContact);
    /// The slot that holds a number, in any spelling. `info` may be null; its name stays as it is.
    /// @param rowOid receives the row's object identifier, 0 when there is none
    /// @return S_OK; E_FAIL when no slot holds it, or the table is not to be had
    [[nodiscard]] HRESULT querySpeedDialInfo(const CString& telNo, DWORD& rowOid, SpeedDialInfo* info);
    /// Adds a row for slot `id`, whether or not there is one, and the contact's link. The flags become 7.
    /// @return the result of writing the link; E_FAIL, with nothing changed, when the row could not be added
    [[nodiscard]] HRESULT insertSpeedDialInfo(DWORD id, SpeedDialInfo* info);
    /// Rewrites the row `rowOid` (not a slot) as slot `info->dwSDialID`. The flags become 7.
    /// @return S_OK, whatever became of the link; E_FAIL when the row could not be written
    [[nodiscard]] HRESULT updateSpeedDialInfo(DWORD rowOid, SpeedDialInfo* info);
    /// Inserts or updates slot `id`.
    [[nodiscard]] HRESULT writeSpeedDialInfo(DWORD id, SpeedDialInfo* info);
    /// Empties slot `id`, also in the cache when no row had it. The link cleared is that of `info->dwOID` (none
    /// when that is 0), or, with a null `info`, that of the row's number.
    /// @return the result of the last step done; S_FALSE when there was no such row and no link to clear;
    ///         E_ACCESSDENIED when the table is not open
    [[nodiscard]] HRESULT deleteSpeedDialInfo(DWORD id, SpeedDialInfo* info);
    /// Gives what is in slot `fromId` another slot. What is in `toId` is not looked at: its row stays beside the
    /// moved one, so clear it first. `info`, unless it is null, says by `dwOID` whose link to write, and receives
    /// the slot as querySpeedDialInfo shows it.
    /// @return the result of writing the link; E_FAIL when slot `fromId` is empty
    [[nodiscard]] HRESULT moveSpeedDialInfo(DWORD fromId, DWORD toId, SpeedDialInfo* info);
    /// Empties the table, the cache, and the slot word of every extension row.
    /// @return the result of the last row read; E_ACCESSDENIED when either table is not open
    [[nodiscard]] HRESULT deleteAllSpeedDialInfos();
    /// Proposes a slot: `startId` when it is free, else 1, free or not.
    [[nodiscard]] HRESULT findFirstEmptySDialID(DWORD startId, DWORD* id);
    /// @{
    /// Writes one byte of a contact's slot word, the one of that telephone type; 0 clears it. The contact is found
    /// by its reduced number or by its identifier.
    /// @return the lookup's failure, else the result of updating the contact
    [[nodiscard]] HRESULT setSDialIDInPBExt(DWORD id, const CString& telNo, DWORD telType);
    [[nodiscard]] HRESULT setSDialIDInPBExt(DWORD id, DWORD& contactOid, DWORD telType);
    /// @}
    /// Copies a row's slot, type and number into `info`; its flags are never brought along.
    void RecordToSDialInfo(Database::Table* table, const CCeDBRecord& record, SpeedDialInfo* info, DWORD mask);

    /// How many entries the cache has, 0 included, which is no slot.
    static constexpr DWORD nSDialCacheSize_ = 100;

    /// @{
    /// Loads the table into the manager's cache, or into an array of 100 entries, and completes the manager's
    /// (always the manager's) from the extension table.
    /// @return the completion's result; E_ACCESSDENIED when a table is not open
    HRESULT fillSDialInfoCache();
    HRESULT fillSDialInfoCache(SpeedDialInfo* cache);
    /// @}
    /// The name of each slot's contact, by the contacts' slot words alone.
    HRESULT fillSDialInfoCache(CMap<DWORD, DWORD&, CString, CString&>& names);
    /// Gives loaded entries the contact, the name and the type that the contacts' slot words say.
    HRESULT fillSDialInfoCacheInPBExt(SpeedDialInfo* cache);
    /// @{
    /// Empties the manager's cache, or an array of 100 entries. Marks are lost.
    /// @return S_OK; E_POINTER for a null array
    HRESULT clearSDialInfoCache();
    HRESULT clearSDialInfoCache(SpeedDialInfo* cache);
    /// @}
    /// @{
    /// Changes the cache alone and marks the entry, for flushSDialInfoCache to write. E_FAIL outside 1 to 99.
    [[nodiscard]] HRESULT writeSDialInfoCache(DWORD id, SpeedDialInfo* info);
    [[nodiscard]] HRESULT deleteSDialInfoCache(DWORD id, SpeedDialInfo* info);
    /// @}
    /// Neither tests the slots nor marks anything.
    HRESULT moveSDialInfoCache(DWORD fromId, DWORD toId);
    /// The lowest slot whose number is spelt just so. E_FAIL when there is none. `info` may be null.
    [[nodiscard]] HRESULT querySDialInfoCache(const CString& telNo, SpeedDialInfo* info);
    /// Writes what is marked into the table. S_OK whatever became of each; E_FAIL, with all marks kept, when
    /// the store could not be had for writing or could not keep what was written.
    HRESULT flushSDialInfoCache();
    /// An entry of the cache, below 100: not checked. Valid while the manager is.
    SpeedDialInfo& getSDialInfoCache(DWORD id) { return speedDialCache_[id]; }
    /// Does nothing.
    void TRACE_SDIAL_CACHE() {}

    // --- Groups ----------------------------------------------------------------------------------------
    // E_FAIL when a table that is needed is not open; E_POINTER for a null output. What looks a group up leaves
    // the groups table open in the order that it looked along.

    /// One past the largest group ID, 1 when there is no group.
    [[nodiscard]] HRESULT getNextAvailablePBGroupID(DWORD* id);
    /// Adds the name of every group to the array, in name order.
    [[nodiscard]] HRESULT getAvailablePBGroups(CStringArray& names);
    /// Makes a group of each category, or renames the one with its ID. E_FAIL when the categories are not open.
    [[nodiscard]] HRESULT initAvailablePBGroup();
    /// @{
    /// The group with that ID, or of that name. E_FAIL when there is none.
    [[nodiscard]] HRESULT getAvailablePBGroup(DWORD id, PBGroupInfo* info);
    [[nodiscard]] HRESULT queryAvailablePBGroup(const CString& name, PBGroupInfo* info);
    /// @}
    /// Adds a group under its own ID, or under the next one when `newId`. Its flags become 7.
    [[nodiscard]] HRESULT insertAvailablePBGroup(PBGroupInfo* info, bool newId);
    /// @{
    /// Deletes a group; its members then have none.
    /// @return S_OK; E_FAIL for an ID that no group has, S_FALSE for a name that none has
    [[nodiscard]] HRESULT deleteAvailablePBGroup(DWORD id);
    [[nodiscard]] HRESULT deleteAvailablePBGroup(const CString& name);
    /// @}
    /// Adds the group or writes over the one with that ID. With bit 1 of `flags` a group that exists keeps
    /// all but its name, and `info` receives what it kept.
    [[nodiscard]] HRESULT writeAvailablePBGroup(DWORD id, PBGroupInfo* info, DWORD flags);
    /// Adds the group, under the next ID, or writes all of `info`, its ID too, over the one called `name`; its
    /// members follow it to the name that `info` says.
    [[nodiscard]] HRESULT writeAvailablePBGroup(CString& name, PBGroupInfo* info);
    /// Writes all of `info` into the row `oid`, 0 being the row last reached. Its flags become 7.
    [[nodiscard]] HRESULT updateAvailablePBGroup(DWORD oid, PBGroupInfo* info);
    /// Moves every extension row of one group to another, or to none when `newName` is empty.
    [[nodiscard]] HRESULT modifyPBGroupInPBRecord(const CString& oldName, const CString& newName);
    /// Says whether calls from members of a group are to be rejected.
    [[nodiscard]] HRESULT rejectPBGroup(const CString& name, bool reject);
    /// Copies a row into `info`; with bit 1 of `flags` without ID and name.
    void RecordToPBGroupInfo(Database::Table* table, const CCeDBRecord& record, PBGroupInfo* info, DWORD flags);

    // --- Call history ----------------------------------------------------------------------------------
    // The newest nMaxCallEntries_ calls. E_FAIL when the history is not open; E_POINTER for a null output.

    /// Logs a call, the oldest one making room when the history is full. Fills `strName`, and `dwTelType` when one
    /// of the contact's numbers is the caller's, from the phone book; the flags become 7.
    /// @return S_OK; E_FAIL when it was not logged, or `entry` is null
    [[nodiscard]] HRESULT insertCallEntry(CallEntry* entry);
    /// A call by the row's object identifier. A row that is not there reads as an empty call whose flags are left as
    /// they were: set them to 0 before, and 7 tells that there is one.
    /// @return S_OK; E_FAIL when the row cannot be read
    [[nodiscard]] HRESULT queryCallEntry(DWORD oid, CallEntry* entry);
    /// @{
    /// E_NOTIMPL.
    [[nodiscard]] HRESULT queryCallEntry(const FILETIME& time, CallEntry* entry);
    [[nodiscard]] HRESULT queryCallEntry(const CString& telNo, CallEntry* entry);
    /// @}
    /// The newest call. S_FALSE when there is none.
    [[nodiscard]] HRESULT getMRUCallEntry(CallEntry* entry);
    /// The oldest call's row and, unless `entry` is null, what it holds. S_FALSE when there is none.
    [[nodiscard]] HRESULT getLRUCallEntry(DWORD* oid, CallEntry* entry);
    /// @return S_OK; E_INVALIDARG for 0; E_FAIL when there is no such row
    [[nodiscard]] HRESULT deleteCallEntry(DWORD oid);
    /// E_NOTIMPL.
    [[nodiscard]] HRESULT deleteCallEntry(const FILETIME& time);
    /// Empties the history. S_OK when there was nothing to delete.
    [[nodiscard]] HRESULT deleteAllCallEntries();

    // --- Changes made by others ------------------------------------------------------------------------
    // What other threads and programs do to contacts and categories comes as messages to the manager's window
    // (`Create`), while its thread pumps, and is followed here: the phone book's own tables are brought into step.
    // Each takes the notification of one record (null: E_POINTER), is one unit of the store, and leaves every table
    // as it found it: one that was closed is opened for the work and closed behind it. A client calls them only to
    // follow changes that it has learnt of in another way. E_FAIL when a table that is needed cannot be opened.

    /// Gives a contact that came with categories an extension row, its group the first of them, unless it has a row.
    HRESULT onCEOIDCreatedContacts(const CENOTIFICATION* notification);
    /// Clears the group of a contact that no longer has it among its categories; no other takes its place.
    HRESULT onCEOIDChangedContacts(const CENOTIFICATION* notification);
    /// Deletes the extension row of a contact that is gone, and empties its speed-dial slots, whatever they hold.
    HRESULT onCEOIDRecordDeletedContacts(const CENOTIFICATION* notification);
    /// Makes a group of a new category, or renames the group with its ID. Tells the receiver in any case.
    HRESULT onCEOIDCreatedCategories(const CENOTIFICATION* notification);
    /// Deletes the group of a category that is gone, and tells the receiver. E_FAIL, and nobody is told, for a
    /// category that this manager has made no group of (initDB, initAvailablePBGroup or the above).
    HRESULT onCEOIDRecordDeletedCategories(const CENOTIFICATION* notification);
    /// Clears a contact's group as onCEOIDChangedContacts does, and renames the group's entry to what the contact
    /// then has. Nothing calls it of itself.
    /// @return S_OK; E_FAIL also when the contact has no extension row, or that has no group
    HRESULT onContactsCategoriesChanged(const CENOTIFICATION* notification);

    // --- Import ----------------------------------------------------------------------------------------

    /// Fills the databases from a comma-separated UTF-16LE file whose first line is a header: entries (every
    /// mode but 1), or rows of the table that the file is named for (mode 1; "QZ_SpeedDialNo.csv"). Any mode
    /// but 0 wants such a file name. A line that cannot be inserted is passed over.
    /// Commits every 1,000 lines and at least every 250 ms.
    /// @param listener learns what became of each line; may be null
    /// @return S_OK when the file was read; E_FAIL when it names no table or cannot be opened, or when
    ///         what was inserted could not be made durable
    [[nodiscard]] HRESULT buildDBFromFile(CString& path, int mode, ImportListener* listener = nullptr);

protected:
    /// The handlers of the manager's window.
    const MessageEntry* findHandler(UINT message) const override;
    /// Asks for the notifications of contacts and categories. 0.
    int OnCreate(LPCREATESTRUCT create);
    /// Closes the tables, and ends the notifications.
    void OnDestroy();
    /// Follows the change that `lParam`, a CENOTIFICATION, tells of, and frees it. 0; -1 for a null one.
    LRESULT onDBNotification(WPARAM wParam, LPARAM lParam);

    /// Makes the object of a table, unless it is made; FALSE when memory is short.
    BOOL initTableObj(UINT tableId);
    /// Frees the tables; the last thing that a manager does.
    void finishTableObj();
    /// @{
    /// One table, made first if need be: what createDB, openDB, closeDB and destroyDB do to each. Contacts are
    /// neither made nor dropped.
    BOOL createTable(UINT tableId);
    BOOL openTable(UINT tableId, CWnd* notifyWnd);
    BOOL closeTable(UINT tableId);
    BOOL dropTable(UINT tableId);
    /// @}
    /// Makes the request that the window's notifications are asked for with.
    void initCeNotifyRequest();
    /// Does nothing. S_OK.
    HRESULT addSHNotification();

    /// The group, and behind it the categories that contact `oid` has; the group alone for a contact that there
    /// is not.
    CString makeCategories(Database::POlDBTable* contacts, DWORD oid, const CString& group);
    /// The group when it is among the categories; else the empty text.
    CString getPBGroupName(const CString& categories, const CString& group);
    /// Fills a record from the values of a line, in the order of the attributes; an empty value is a field that
    /// it lacks.
    HRESULT getPBRecord(CStringArray& values, PBRecord& record);
    /// Fills the wanted fields of a contact. `found` receives the bits of those that it has, `oid` its identifier
    /// when an extension field was wanted, else 0; both may be null.
    /// @return as queryCallerInfo
    HRESULT getCallerInfo(IContact* contact, PBRecord* record, DWORD* found, DWORD* oid);
    /// The wanted extension fields of contact `oid`; the text is not used.
    /// @return S_OK; S_FALSE when only some were found, or none was wanted; E_FAIL when none was found
    HRESULT getCallerInfo(DWORD& oid, CString& text, PBRecord* record, DWORD* found);
    /// Fills in what the phone book knows of a call: the name and the kind of number. S_FALSE when it knows nothing.
    HRESULT getCallEntryData(CallEntry* entry);

private:
    static const MessageEntry _messageEntries[];

    Database::POlDBTable* contactsTable();
    Database::CeDBTable* cedbTable(UINT tableId);
    bool isTableOpen(UINT tableId);
    Database::CeDBTable* reopenSortedBy(UINT tableId, WORD attrIdx);

    class TableInUse;
    HRESULT follow(const CENOTIFICATION& notification);
    enum class Pass { looking, writing };
    HRESULT makeExtensionRow(DWORD contactOid, Pass pass);
    HRESULT clearLostGroup(DWORD contactOid, Pass pass);
    HRESULT dropExtensionRow(DWORD contactOid);
    HRESULT makeGroupOf(DWORD categoryOid, std::optional<std::int16_t>& groupId);
    HRESULT dropGroupOf(DWORD categoryOid, bool& hasGroup);
    HRESULT renameLostGroup(DWORD contactOid);
    HRESULT findExtensionRow(DWORD contactOid, DWORD& rowOid, CCeDBRecord* row);
    HRESULT readCategories(DWORD contactOid, CString& categories);
    void tellReceiver();

    HRESULT insertContact(PBRecord& record, DWORD& oid);
    HRESULT getContactRow(DWORD oid, PBRecord& record, CCeDBRecord& row);
    HRESULT getExtensionRow(DWORD contactOid, PBRecord& record, CCeDBRecord& row);
    HRESULT insertExtensionRow(DWORD contactOid, PBRecord& record);
    HRESULT writeExtensionRow(DWORD contactOid, PBRecord& record);
    HRESULT readContactOfSlot(SpeedDialInfo& info);
    HRESULT writeSlotOf(DWORD contactOid, PBRecord& contact, DWORD id, DWORD telType);
    void clearSlotWord(DWORD rowOid, CCeDBRecord& row);
    void setCacheEntry(DWORD id, SpeedDialInfo info);
    HRESULT forEachExtensionRow(HRESULT whenEmpty, const std::function<void(DWORD rowOid, CCeDBRecord& row)>& visit);
    HRESULT fillRecord(IContact* contact, PBRecord* record, DWORD* oid);
    std::unique_ptr<Database::Iterator> groupsBy(WORD attrIdx);
    HRESULT findGroup(WORD attrIdx, CCeDBProp key, DWORD& rowOid, CCeDBRecord* row);
    HRESULT readGroup(WORD attrIdx, const CCeDBProp& key, PBGroupInfo* info);
    HRESULT queryCallerNamed(const CString& name, PBRecord& caller);
    HRESULT reachCall(HRESULT (Database::Iterator::*move)(), std::unique_ptr<Database::Iterator>& calls);
    HRESULT importEntry(CStringArray& values, DWORD& oid);
    HRESULT importRow(UINT tableId, const CStringArray& values);

    CWnd* receiver_ = nullptr;
    std::array<Database::Table*, nNumTableSchemas_> tables_{};
    std::array<HANDLE, 2> databaseHandles_{};
    CENOTIFYREQUEST notifyRequest_{};
    CMap<DWORD, DWORD, std::int16_t, std::int16_t> categories_{8};  ///< Category record to the ID of its group.
    std::array<SpeedDialInfo, nSDialCacheSize_> speedDialCache_;
    std::unique_ptr<Database::Table> categoriesTable_;  ///< What slot 5 points at; finishTableObj passes it over.
};

}  // namespace PhoneBook
