#pragma once

#include "tessera/Export.h"
#include "tessera/platform/base/Bstr.h"
#include "tessera/platform/base/ComPtr.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Types.h"

/// @file
/// The contacts object model: an application gives folders, a folder gives its items, an item is a contact.
///
/// An object belongs to the thread that obtained it. It lives while somebody holds a reference to it, on its
/// own: a collection does not need its folder, nor a contact its collection, nor any of them the application.
/// What is handed out through a pointer is a new reference, or a new text, that the caller releases or frees;
/// when an operation does not succeed the pointer is set to null. A null `out` is E_POINTER everywhere.
/// E_FAIL stands for every failure of the store; GetLastError then says which. A text parameter is borrowed;
/// null is the empty text, and a text ends at its first zero character.

/// @{
/// The name of the interface.
inline constexpr IID IID_IDispatch = {0x00020400, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IPOutlookApp = {0x05058F22, 0x20BE, 0x11D2, {0x8F, 0x18, 0x00, 0x00, 0xF8, 0x7A, 0x43, 0x35}};
inline constexpr IID IID_IFolder = {0xC1B6F3A4, 0x5D0E, 0x4B7C, {0x9A, 0x21, 0x7E, 0x44, 0x0B, 0x93, 0xD6, 0x01}};
inline constexpr IID IID_IPOutlookItemCollection = {
    0xC1B6F3A4, 0x5D0E, 0x4B7C, {0x9A, 0x21, 0x7E, 0x44, 0x0B, 0x93, 0xD6, 0x02}};
inline constexpr IID IID_IPOutlookItemCollection2 = {
    0x6E3DBE90, 0x5411, 0x11D3, {0x8F, 0x39, 0x00, 0x00, 0xF8, 0x7A, 0x43, 0x35}};
inline constexpr IID IID_IContact = {0xC1B6F3A4, 0x5D0E, 0x4B7C, {0x9A, 0x21, 0x7E, 0x44, 0x0B, 0x93, 0xD6, 0x03}};
/// @}

/// The class whose objects are applications.
inline constexpr CLSID CLSID_Application = {
    0x05058F23, 0x20BE, 0x11D2, {0x8F, 0x18, 0x00, 0x00, 0xF8, 0x7A, 0x43, 0x35}};

/// The default folder of contacts.
inline constexpr int olFolderContacts = 10;

/// The birthday of a contact that has none: 1 January 4501.
inline constexpr DATE noBirthday = 949998.0;

/// One contact. `put_` changes the object only; `Save` writes. An emptied text is removed from the contact
/// and, like one never put, reads as an empty text.
class IContact : public IDispatch {
public:
    /// @{
    /// The display name, and what it is made of.
    virtual HRESULT get_FileAs(BSTR* out) = 0;
    virtual HRESULT put_FileAs(BSTR text) = 0;
    virtual HRESULT get_FirstName(BSTR* out) = 0;
    virtual HRESULT put_FirstName(BSTR text) = 0;
    virtual HRESULT get_LastName(BSTR* out) = 0;
    virtual HRESULT put_LastName(BSTR text) = 0;
    /// @}
    /// @{
    /// Kept exactly as put; by custom separated by commas.
    virtual HRESULT get_Categories(BSTR* out) = 0;
    virtual HRESULT put_Categories(BSTR text) = 0;
    /// @}
    /// @{
    /// A text of the contact, as it was put.
    virtual HRESULT get_MobileTelephoneNumber(BSTR* out) = 0;
    virtual HRESULT put_MobileTelephoneNumber(BSTR text) = 0;
    virtual HRESULT get_HomeTelephoneNumber(BSTR* out) = 0;
    virtual HRESULT put_HomeTelephoneNumber(BSTR text) = 0;
    virtual HRESULT get_BusinessTelephoneNumber(BSTR* out) = 0;
    virtual HRESULT put_BusinessTelephoneNumber(BSTR text) = 0;
    virtual HRESULT get_Email1Address(BSTR* out) = 0;
    virtual HRESULT put_Email1Address(BSTR text) = 0;
    virtual HRESULT get_PagerNumber(BSTR* out) = 0;
    virtual HRESULT put_PagerNumber(BSTR text) = 0;
    virtual HRESULT get_BusinessFaxNumber(BSTR* out) = 0;
    virtual HRESULT put_BusinessFaxNumber(BSTR text) = 0;
    /// @}
    /// @{
    /// The notes.
    virtual HRESULT get_Body(BSTR* out) = 0;
    virtual HRESULT put_Body(BSTR text) = 0;
    /// @}

    /// `noBirthday` when the contact has none.
    virtual HRESULT get_Birthday(DATE* out) = 0;
    /// `noBirthday` removes it. E_INVALIDARG, and nothing changed, for a date that a FILETIME cannot
    /// hold: one before 1601, or not a number.
    virtual HRESULT put_Birthday(DATE date) = 0;

    /// Writes a new contact, which then has its identifier, or what was changed in an existing one.
    /// @return S_OK; E_INVALIDARG when a text is over 65,471 bytes, or all of them over 131,072, and
    ///         E_FAIL when the contact was deleted meanwhile or the store failed: nothing was written.
    [[nodiscard]] virtual HRESULT Save() = 0;
    /// Deletes the contact from the store. The object can still be read; saving it fails.
    /// @return S_OK; E_FAIL when it was never saved, or is deleted already.
    virtual HRESULT Delete() = 0;
    /// The contact's identifier in the store; 0 before the first `Save`.
    virtual HRESULT get_Oid(LONG* out) = 0;

protected:
    ~IContact() = default;
};

/// The contacts of a folder, or those of them that a restriction lets through, in an order.
///
/// Live: each call answers for the store as it is at that time; as long as nobody writes, calls cost no
/// more than a look whether anybody did. Ordered by "FileAs" in the store's collation, then by identifier,
/// until sorted otherwise. Indexes start at 1.
///
/// Every item is an IContact, which an IDispatch handed out can be cast to with static_cast or asked for
/// with QueryInterface and IID_IContact. An item is read when it is handed out and does not follow what
/// others write later.
///
/// A restriction is a comparison `[Property] op "value"`, op one of < <= > >= = <>, or several of them
/// joined by `and` and `or`, taken from left to right with equal weight, and by parentheses. Property
/// names, `and` and `or` are in any case. The value is whatever stands between two double quotes. Texts
/// compare by code units in upper case, birthdays as dates. A contact without the property does not match,
/// whatever the operator. E_INVALIDARG, and nothing changed, for anything else: an empty text, a birthday
/// compared with what is no date, more than 64 parentheses in each other.
class IPOutlookItemCollection : public IUnknown {
public:
    /// A new contact, in memory until it is saved.
    [[nodiscard]] virtual HRESULT Add(IDispatch** out) = 0;
    /// How many items there are now.
    [[nodiscard]] virtual HRESULT get_Count(int* out) = 0;
    /// @return S_OK; E_INVALIDARG outside 1 to the count; E_FAIL.
    [[nodiscard]] virtual HRESULT Item(int index, IDispatch** out) = 0;
    /// The first item that the restriction lets through.
    /// @return S_OK; S_FALSE, and a null `*out`, when there is none; E_INVALIDARG; E_FAIL.
    [[nodiscard]] virtual HRESULT Find(BSTR restriction, IDispatch** out) = 0;
    /// A collection of its own, in this one's order, of those items that the restriction lets through.
    /// @return S_OK, also when there are none; E_INVALIDARG.
    [[nodiscard]] virtual HRESULT Restrict(BSTR restriction, IPOutlookItemCollection** out) = 0;
    /// Deletes the contact at `index` from the store.
    /// @return S_OK; E_INVALIDARG outside 1 to the count; E_FAIL.
    [[nodiscard]] virtual HRESULT Remove(int index) = 0;
    /// Orders by one property, its name with or without brackets: texts in the store's collation,
    /// contacts without the property last, equal ones by identifier. `descending` reverses all of it.
    /// @return S_OK; E_INVALIDARG for a name that is no property's; E_FAIL.
    [[nodiscard]] virtual HRESULT Sort(BSTR property, BOOL descending) = 0;

protected:
    ~IPOutlookItemCollection() = default;
};

/// Every collection has this interface too.
class IPOutlookItemCollection2 : public IPOutlookItemCollection {
public:
    /// Tells which properties, separated by commas, the items will be asked for, so that they can be
    /// fetched many items at a time. A hint: it changes no result, and names of no property are passed
    /// over. An empty list takes it back. Collections made by `Restrict` inherit it.
    /// @return S_OK.
    virtual HRESULT SetColumns(BSTR columns) = 0;

protected:
    ~IPOutlookItemCollection2() = default;
};

/// A folder of items.
class IFolder : public IDispatch {
public:
    /// A collection of all its items; a new one at each call.
    [[nodiscard]] virtual HRESULT get_Items(IPOutlookItemCollection** out) = 0;

protected:
    ~IFolder() = default;
};

/// The way into the contacts model; made by CoCreateInstance.
class IPOutlookApp : public IDispatch {
public:
    /// Starts a session with the object store that is mounted now; where there is none, operations start
    /// one by themselves. Once another store is mounted, whatever came from this session fails with E_FAIL
    /// until the next Logon. No window is needed: 0 does.
    /// @return S_OK; E_FAIL when the object store cannot be used.
    [[nodiscard]] virtual HRESULT Logon(LONG hwnd) = 0;
    /// Ends a session. Objects handed out before stay usable.
    /// @return S_OK.
    virtual HRESULT Logoff() = 0;
    /// @return S_OK; E_FAIL for a folder other than `olFolderContacts`.
    virtual HRESULT GetDefaultFolder(int id, IFolder** out) = 0;
    /// The contact of that identifier.
    /// @return S_OK; E_FAIL when there is none.
    [[nodiscard]] virtual HRESULT GetItemFromOid(LONG oid, IDispatch** out) = 0;

protected:
    ~IPOutlookApp() = default;
};

/// The one context in which an object can be made: this process.
inline constexpr DWORD CLSCTX_INPROC_SERVER = 1;

/// Makes an object of a class; the one class there is is CLSID_Application.
/// @param outer must be null: nothing here is part of another object.
/// @return S_OK and a reference in `*out`; E_NOINTERFACE when the object has no such interface;
///         E_INVALIDARG for another class, a context without CLSCTX_INPROC_SERVER, or an `outer`;
///         E_POINTER; E_OUTOFMEMORY.
[[nodiscard]] TESSERA_API HRESULT CoCreateInstance(const CLSID& classId, IUnknown* outer, DWORD context, const IID& iid,
                                                   void** out);
