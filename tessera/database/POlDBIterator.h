#pragma once

#include <memory>

#include "tessera/Export.h"
#include "tessera/database/Iterator.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/contacts/OutlookInterfaces.h"

namespace Database {

/// A cursor over contacts: all of a collection, those between two bounds of one attribute, or those that a
/// restriction lets through.
///
/// Made by POlDBTable::getIterator and owned by the caller, who deletes it before the table. Positions are
/// the collection's, from 1; 0 stands before the first. A lower bound alone and an upper bound alone are
/// inclusive; of two bounds the upper is exclusive; one property object given as both means equality. The
/// collection is live: what others write shows. One thread.
class TESSERA_API POlDBIterator : public Iterator {
public:
    /// @{
    /// Takes over the caller's reference to `items`. The bounds are borrowed and are not used after
    /// construction.
    POlDBIterator(Table* owner, IPOutlookItemCollection* items, CCeDBProp* from, CCeDBProp* to);
    POlDBIterator(Table* owner, IPOutlookItemCollection* items, int attr, CCeDBProp* from, CCeDBProp* to);
    POlDBIterator(Table* owner, IPOutlookItemCollection* items, const CString& restriction);
    /// @}
    /// Copies the collection pointer as it is. Both destructors give a reference back: whoever copies
    /// calls getItemCol()->AddRef() for the copy first.
    POlDBIterator(const POlDBIterator& other) = default;
    POlDBIterator& operator=(const POlDBIterator& other) = default;
    ~POlDBIterator() override;

    /// The contact at the position, read from the collection; 0 when there is none.
    DWORD getCur() override;
    /// An empty property: contacts are read as text only.
    CCeDBProp getProp(int attrIdx) override;
    /// A field of the contact at the position as text; empty when it lacks it, or there is no contact.
    CString getString(int attrIdx) override;
    /// @return S_OK; E_ACCESSDENIED when not opened
    HRESULT last() override;
    /// @return S_OK; S_FALSE beyond the last contact, where the position then stands; E_FAIL without a
    ///         collection
    HRESULT next() override;
    /// @return S_OK; S_FALSE before the first contact, where the position then stands; E_ACCESSDENIED when
    ///         not opened
    HRESULT prev() override;
    /// Deletes the contact at the position. Always S_OK.
    HRESULT deleteCur() override;
    /// By index from 0. The count itself is accepted, and answers 0.
    DWORD getAt(int idx) override;
    /// @{
    /// As getProp and getString at that index, to which the cursor moves.
    CCeDBProp getPropAt(int idx, int attrIdx) override;
    CString getStringAt(int idx, int attrIdx) override;
    /// @}
    /// The base's, after which the collection is restricted anew and the position is `idx`.
    HRESULT deleteAt(int idx, bool positionOnly) override;
    /// True with at least one contact.
    bool isOpened() override;

    /// Makes the bounds live as long as the cursor and its copies.
    void keepBounds(std::unique_ptr<CCeDBProp> from, std::unique_ptr<CCeDBProp> to);

    /// The collection, no reference added.
    IPOutlookItemCollection* getItemCol() { return items_; }

protected:
    /// @{
    /// Restricts the collection to what lies between the bounds, or to what the restriction lets through.
    /// @return S_OK; E_INVALIDARG for a bound with a quote in it; else what the collection answered
    HRESULT init() override;
    HRESULT init(const CString& restriction);
    /// @}

private:
    /// Looks at nothing yet. The others delegate to it: if one of them then throws, the destructor runs all
    /// the same and gives the reference back.
    POlDBIterator(IPOutlookItemCollection* items, Table* owner, int attr, CCeDBProp* from, CCeDBProp* to);

    CString rangeRestriction() const;
    HRESULT countItems();
    bool moveToIndex(int idx);

    IPOutlookItemCollection* items_;
    CString restriction_;
    std::shared_ptr<const CCeDBProp> keptFrom_;
    std::shared_ptr<const CCeDBProp> keptTo_;
};

}  // namespace Database
