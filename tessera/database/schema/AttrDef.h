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
    AttrDef(const WCHAR* name, CCeDBProp& prop);
    AttrDef(const AttrDef&) = default;
    AttrDef& operator=(const AttrDef&) = default;
    virtual ~AttrDef();

    CString& getName() { return name_; }
    const CString& getName() const { return name_; }
    CCeDBProp& getProp() { return prop_; }
    const CCeDBProp& getProp() const { return prop_; }
    CCeDBProp::enType getType() const { return prop_.getType(); }
    WORD getIdent() const { return prop_.getIdent(); }
    WORD getSortFlags() const { return prop_.getFlags(); }

private:
    CString name_;
    CCeDBProp prop_;
};

}  // namespace Database
