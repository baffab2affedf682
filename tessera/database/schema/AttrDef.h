#pragma once

#include "tessera/Export.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/objectstore/CCeDBProp.h"

namespace Database {

/// One column of a table: its name, as shown and as used in import files, and a property template that
/// carries its type, its ident and its sort flags. The template's value plays no role. Value semantics.
class TESSERA_API AttrDef {
public:
    /// A null name is the empty name.
    AttrDef(const WCHAR* name = nullptr, CCeDBProp::enType type = CCeDBProp::typeUI4, WORD ident = 0,
            WORD sortFlags = 0);
    /// Copies the property, which is the template then.
    AttrDef(const WCHAR* name, CCeDBProp& prop);
    AttrDef(const AttrDef&) = default;
    AttrDef& operator=(const AttrDef&) = default;
    virtual ~AttrDef();

    /// @{
    /// The name, as shown and as used in import files.
    CString& getName() { return name_; }
    const CString& getName() const { return name_; }
    /// @}
    /// @{
    /// The template.
    CCeDBProp& getProp() { return prop_; }
    const CCeDBProp& getProp() const { return prop_; }
    /// @}
    /// @{
    /// What the template says: the type, the ident, and the flags CEDB_SORT_*, 0 for an attribute without an
    /// order.
    CCeDBProp::enType getType() const { return prop_.getType(); }
    WORD getIdent() const { return prop_.getIdent(); }
    WORD getSortFlags() const { return prop_.getFlags(); }
    /// @}

private:
    CString name_;
    CCeDBProp prop_;
};

}  // namespace Database
