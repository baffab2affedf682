#include "tessera/database/schema/AttrDef.h"

namespace Database {

AttrDef::AttrDef(const WCHAR* name, CCeDBProp::enType type, WORD ident, WORD sortFlags)
    : name_(name), prop_(type, ident, sortFlags) {}

AttrDef::AttrDef(const WCHAR* name, CCeDBProp& prop) : name_(name), prop_(prop) {}

AttrDef::~AttrDef() = default;

}  // namespace Database
