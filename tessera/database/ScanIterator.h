#pragma once

#include <deque>
#include <functional>
#include <utility>
#include <vector>

#include "tessera/Export.h"
#include "tessera/database/Iterator.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/contacts/OutlookInterfaces.h"

namespace Database {

class ContactsImage;

/// The attribute that asks for a search by telephone number.
inline constexpr int SCANATTR_TELNO = 100;

/// One contact that a scan found.
struct ScanMatch {
    DWORD oid = 0;       ///< The contact.
    DWORD reserved = 0;  ///< Always 0.
    CString name;        ///< The display name as stored.
};

/// A cursor over the contacts that a search key finds, in name order.
///
/// By name, the key is a part of the name in any case; a key that begins with a Hangul consonant is the
/// initial consonants of the name's beginning instead. By number (SCANATTR_TELNO) the key is a part of one
/// of the reduced numbers. The result is a snapshot taken when the cursor is made. Positions count from 0;
/// -1 stands before the first match. Made by POlDBTable::getScanIterator and owned by the caller, who
/// deletes it before the table. One thread.
class TESSERA_API ScanIterator : public Iterator {
public:
    /// Takes over the caller's reference to `items`; searches at once when `run`.
    ScanIterator(Table* owner, IPOutlookItemCollection* items, int attr, const CString& key, bool run);
    ScanIterator(const ScanIterator&) = delete;
    ScanIterator& operator=(const ScanIterator&) = delete;
    ~ScanIterator() override;

    /// The match at the position; 0 when there is none.
    DWORD getCur() override;
    /// An empty property: contacts are read as text only.
    CCeDBProp getProp(int attrIdx) override;
    /// The name comes from the result itself, any other attribute from the contacts store.
    CString getString(int attrIdx) override;
    /// @return S_OK; E_ACCESSDENIED when not opened
    HRESULT last() override;
    /// @return S_OK; S_FALSE past the last match, the position unchanged; E_FAIL when not opened
    HRESULT next() override;
    /// @return S_OK; S_FALSE before the first match, where the position then stands; E_ACCESSDENIED when
    ///         not opened
    HRESULT prev() override;
    /// Deletes the contact that was last moved to or asked for; its match stays. The look-up's result.
    HRESULT deleteCur() override;
    /// The count itself is accepted, and answers 0.
    DWORD getAt(int idx) override;
    /// @{
    /// As getProp and getString at that index, to which the cursor moves.
    CCeDBProp getPropAt(int idx, int attrIdx) override;
    CString getStringAt(int idx, int attrIdx) override;
    /// @}
    /// Takes the match out of the result and, unless `positionOnly`, deletes its contact first. There is no
    /// current contact then until the next move.
    /// @return the deletion's result; S_OK when `positionOnly`; E_ACCESSDENIED when not opened; E_FAIL for
    ///         an index outside 0 to the count
    HRESULT deleteAt(int idx, bool positionOnly) override;
    /// How many matches there are.
    int getNumItems() override;
    /// True with at least one match.
    bool isOpened() override;

    /// E_NOTIMPL: results are not joined.
    [[nodiscard]] HRESULT append(const ScanIterator* other);
    /// The collection, no reference added.
    IPOutlookItemCollection* getItemCol() { return items_.get(); }

protected:
    /// @{
    /// Finds the matches for the key; without one, nothing. S_OK, or why the collection could not be used.
    HRESULT init() override;
    HRESULT init(const CString& key);
    /// @}
    /// Finds the matches; a derived cursor finds its own.
    virtual HRESULT scan(IPOutlookItemCollection* items, const CString& key);
    /// Finds the contacts one of whose reduced numbers holds the key.
    HRESULT scanTelNo(IPOutlookItemCollection* items, const CString& key);

    // What a derived cursor builds its result with.
    /// The collection that the cursor hands out; it takes the reference.
    void setItems(ComPtr<IPOutlookItemCollection> items) { items_ = std::move(items); }
    /// The key that was searched for.
    void setKey(const CString& key) { key_ = key; }
    /// E_FAIL when the contacts cannot be read.
    HRESULT takeMatches(const std::function<std::vector<ScanMatch>(const ContactsImage&)>& search);

private:
    bool moveToIndex(int idx);
    const ScanMatch* currentMatch() const;

    ComPtr<IPOutlookItemCollection> items_;
    CString key_;
    std::deque<ScanMatch> matches_;  ///< A result is often emptied from its front.
};

}  // namespace Database
