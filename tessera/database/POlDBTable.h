#pragma once

#include "tessera/Export.h"
#include "tessera/database/Table.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/contacts/OutlookInterfaces.h"

namespace PhoneBook {
struct PBRecord;
}

namespace Database {

class POlDBIterator;

/// The contacts store as a table: one row a contact item, in the attribute order of its record definition
/// (name, categories, mobile, home and business number, e-mail, body, birthday, pager, fax).
///
/// Holds the contacts application from its construction to its destruction, and the folder while open.
/// Rows are written by position; the body is read and never written. When memory is short an operation
/// answers E_OUTOFMEMORY, or null or 0 where it answers no result code. One thread.
class TESSERA_API POlDBTable : public Table {
public:
    /// The contacts folder under the name "POlContacts", without a record definition.
    POlDBTable();
    /// The folder of that kind (olFolderContacts) under another name, with a schema, which is borrowed.
    POlDBTable(const WCHAR* tableName, const RecordDef* def, int folderId);
    /// Copies the pointers as they are. Its destructor gives back a reference that a copy never took:
    /// whoever copies calls getApp()->AddRef() for it first, and leaves one of the two closed.
    POlDBTable(const POlDBTable& other) = default;
    POlDBTable& operator=(const POlDBTable& other) = default;
    ~POlDBTable() override;

    /// Answers 0: the contacts store is not this library's to make.
    DWORD create() override;
    /// Logs on and takes the folder; a table that is logged on stays so. FALSE when there is no application
    /// object or it refuses.
    BOOL open(CWnd* owner) override;
    /// Logs off and gives the folder back. Always TRUE.
    BOOL close() override;
    /// Closes; the contacts store is never deleted.
    BOOL drop() override;
    /// True between a successful open and close.
    bool isOpen() override;
    /// Bytes in the contacts database; 0 when it cannot be opened.
    DWORD getSize() override;
    /// How many contacts there are; 0 when the table is not open.
    DWORD getNumRecords() override;
    /// Answers 0: the contacts store is no database of the phone book's.
    DWORD getCEOID() override;

    /// @{
    /// Contacts between two bounds of an attribute (0: the file-as name), in name order. The caller deletes
    /// the iterator. Null when the table is not open, nothing lies between the bounds, or the table has no
    /// record definition that would name the attribute.
    Iterator* getIterator(int sortAttr, CCeDBProp* from, CCeDBProp* to) override;
    Iterator* getIterator(CCeDBProp* from, CCeDBProp* to) override;
    /// @}
    /// The same within an earlier result; null without one.
    Iterator* getIterator(POlDBIterator* within, int sortAttr, CCeDBProp* from, CCeDBProp* to);
    /// Contacts that a restriction lets through, within an earlier result or among all when it is null.
    Iterator* getIterator(POlDBIterator* within, const CString& restriction);
    /// Contacts that a scan for `key` finds: by number when `attr` is SCANATTR_TELNO, else by name. The
    /// scan reads all contacts, whatever `within` holds. Null when it finds none.
    Iterator* getScanIterator(POlDBIterator* within, int attr, const CString& key);

    /// Also the forms that do not tell the identifier.
    using Table::insertRecord;
    /// Adds and saves a contact of the values in a record, by their places.
    /// @return S_OK and the new contact's identifier; E_FAIL when not open, `record` is null or empty, or the
    ///         table has no record definition; else what the contacts store answered
    [[nodiscard]] HRESULT insertRecord(CCeDBRecord* record, DWORD& newOid) override;
    /// The same from as many properties as the table has attributes. E_FAIL when `props` is null.
    [[nodiscard]] HRESULT insertRecord(CCeDBProp props[], DWORD& newOid) override;
    /// E_NOTIMPL: no sample contact is ever made.
    [[nodiscard]] HRESULT insertRecord() override;

    using Table::deleteRecord;
    /// @return the look-up's result; whether the deletion itself went through is not reported
    [[nodiscard]] HRESULT deleteRecord(DWORD& oid) override;
    /// Removes every contact of the folder, as one unit of the store, stopping at the first that cannot be.
    /// @return the last removal's result, S_OK when there was none; E_FAIL when not open or the unit could
    ///         not be made durable
    [[nodiscard]] HRESULT deleteAllRecords() override;
    /// Writes all attributes of the contact `oid`. The last two arguments are not used.
    [[nodiscard]] HRESULT updateRecord(DWORD oid, CCeDBRecord* record, int attrIdx, CCeDBProp* prop) override;

    /// The application object, no reference added; null when it could not be made.
    IPOutlookApp* getApp() { return application_; }
    /// @return S_OK; E_POINTER for a null `out`; E_ACCESSDENIED when not open
    [[nodiscard]] HRESULT getItems(IPOutlookItemCollection** out);
    /// @return S_OK and a new reference; E_FAIL when not open or there is no such contact
    [[nodiscard]] HRESULT getItemFromOid(DWORD oid, IDispatch** out);
    /// The first contact that the restriction lets through.
    [[nodiscard]] HRESULT find(const WCHAR* restriction, IDispatch** out);

    /// Fills the contact fields that the record's mask asks for.
    /// @param found receives the bits of the fields that had a value; may be null
    /// @return S_OK when at least one had; else E_FAIL
    [[nodiscard]] HRESULT getCallerInfo(IContact* contact, PhoneBook::PBRecord* record, DWORD* found);
    /// Puts a row's values into a contact without saving it. E_FAIL when not open or an argument is null.
    HRESULT setContactItem(IContact* contact, CCeDBRecord* record);

protected:
    /// "Doe, John", "John Doe" and, family name first, "김 민수". S_OK.
    HRESULT splitName(const CString& fullName, CString& first, CString& last);

private:
    BOOL makeApplication();
    ComPtr<IPOutlookItemCollection> itemsWithin(POlDBIterator* within);

    IPOutlookApp* application_ = nullptr;  ///< One reference from construction on, a second while logged on.
    int folderId_;
    IFolder* folder_ = nullptr;
    bool loggedOn_ = false;
};

}  // namespace Database
