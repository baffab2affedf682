#pragma once

#include "tessera/database/schema/AttrDef.h"
#include "tessera/platform/objectstore/CCeDBProp.h"

namespace PhoneBook {

/// What every row that the manager writes has as its "Flags".
inline constexpr DWORD dwRowFlags_ = 7;

/// The member of a structure that holds an attribute's value: one pointer is set, or none when no member does.
/// An array of these, in the order of a table's attributes, says how the structure is stored and read.
template <class Structure>
struct RowField {
    CString Structure::*text = nullptr;
    DWORD Structure::*number = nullptr;
    BOOL Structure::*truth = nullptr;
    FILETIME Structure::*time = nullptr;
};

/// The member as the attribute's property; the zero value of its type when no member holds it.
template <class Structure>
CCeDBProp propOfField(const Database::AttrDef& attr, const Structure& from, const RowField<Structure>& field) {
    const WORD ident = attr.getIdent();
    if (field.text != nullptr) return CCeDBProp::ofText(ident, from.*field.text);
    if (field.truth != nullptr) return CCeDBProp::ofBool(ident, from.*field.truth != FALSE);
    if (field.time != nullptr) return CCeDBProp::ofFileTime(ident, from.*field.time);
    if (field.number == nullptr) return CCeDBProp(attr.getType(), ident);
    const DWORD number = from.*field.number;
    if (attr.getType() == CCeDBProp::typeUI2) return CCeDBProp::ofUI2(ident, static_cast<WORD>(number));
    return CCeDBProp::ofUI4(ident, number);
}

/// Takes a property into its member, if any; an empty one empties it.
template <class Structure>
void takeProp(const CCeDBProp& prop, Structure& into, const RowField<Structure>& field) {
    if (field.text != nullptr) into.*field.text = prop.getText();
    if (field.truth != nullptr) into.*field.truth = prop.getBool() ? TRUE : FALSE;
    if (field.time != nullptr) into.*field.time = prop.getFileTime();
    if (field.number == nullptr) return;
    into.*field.number = prop.getType() == CCeDBProp::typeUI2 ? prop.getUI2() : prop.getUI4();
}

}  // namespace PhoneBook
