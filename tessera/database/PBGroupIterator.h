#pragma once

#include "tessera/database/ScanIterator.h"

namespace Database {

/// A cursor over the contacts of one phone book group, in name order: those whose categories are exactly its
/// name, or for the empty name those without categories. A contact of several categories is in none of their
/// groups: meant so.
///
/// Owned by the caller, who deletes it before the tables. Stepping, fields and deletion are those of a scan.
class TESSERA_API PBGroupIterator : public ScanIterator {
public:
    /// Finds the members at once. Opens `extension` for whoever walks the result; it is not read here.
    PBGroupIterator(Table* contacts, Table* extension, int attr, const CString& group);
    ~PBGroupIterator() override;

    /// True with at least one member and both tables; the collection is not required.
    bool isOpened() override;

protected:
    /// @{
    /// Finds the members of the group; without a name, nothing. E_FAIL without a table, or when contacts are not
    /// open.
    HRESULT init() override;
    HRESULT init(const CString& group);
    /// @}
    /// E_POINTER for a null collection; E_FAIL when the contacts cannot be read.
    HRESULT scan(IPOutlookItemCollection* items, const CString& group) override;
    /// Finds the contacts without categories. Results as for `scan`.
    HRESULT scanNoCategories(IPOutlookItemCollection* items, const CString& group);
    /// E_NOTIMPL: a group has no numbers.
    HRESULT scanTelNo(IPOutlookItemCollection* items, const CString& key);

private:
    Table* extension_;
};

}  // namespace Database
