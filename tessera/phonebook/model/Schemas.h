#pragma once

#include <array>

#include "tessera/database/schema/RecordDef.h"
#include "tessera/phonebook/model/PBAttributes.h"

namespace PhoneBook {

/// The name of the phone book.
inline constexpr const WCHAR* szPBDBName_ = u"PhoneBookDB";

/// The name of each table's database, by table ID.
inline constexpr std::array<const WCHAR*, nNumTableSchemas_> aszTableName_ = {
    u"QZ_POlContacts",      u"QZ_PhoneBookExt", u"QZ_SpeedDialNo",
    u"QZ_AvailablePBGroup", u"QZ_CallHistory",  u"\\Categories Database",
};

/// The schema of each table, by table ID. Their attributes are made when the library is loaded.
extern const Database::RecordDef aRecDef_[nNumTableSchemas_];

/// The properties of the platform's contacts database that correspond to the contacts table's attributes,
/// index for index.
extern const Database::RecordDef recdefPOlCRaw_;

}  // namespace PhoneBook
