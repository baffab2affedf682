#pragma once

#include "tessera/Export.h"
#include "tessera/database/schema/AttrDef.h"

namespace Database {

/// The schema of a table: its columns in order. A column's attribute index is its position here, from 0.
///
/// It borrows the array, which outlives it; copies share the array. Indexes are not checked.
class TESSERA_API RecordDef {
public:
    /// The schema of that many attributes, which are borrowed.
    constexpr RecordDef(int numAttrs, AttrDef* attrs) : numAttrs_(numAttrs), attrs_(attrs) {}
    RecordDef(const RecordDef&) = default;
    RecordDef& operator=(const RecordDef&) = default;
    virtual ~RecordDef();

    int getNumAttrs() const { return numAttrs_; }  ///< How many columns there are.
    /// @{
    /// The column at an index, its name, and the ident of its property.
    AttrDef* getAttrDef(int i) const { return attrs_ + i; }
    CString& getAttrName(int i) const { return attrs_[i].getName(); }
    WORD getAttrIdent(int i) const { return attrs_[i].getIdent(); }
    /// @}

private:
    int numAttrs_;
    AttrDef* attrs_;
    DWORD reserved_ = 0;  // part of the class's layout: zero, and copied with the rest
};

}  // namespace Database
