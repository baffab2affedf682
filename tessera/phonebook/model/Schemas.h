#pragma once

#include <array>

#include "tessera/database/schema/RecordDef.h"
#include "tessera/phonebook/model/PBAttributes.h"

namespace PhoneBook {

/// The name of the phone book.
inline constexpr const WCHAR* szPBDBName_ = TEXT("PhoneBookDB");

/// The name of each table's database, by table ID.
inline constexpr std::array<const WCHAR*, nNumTableSchemas_> aszTableName_ = {
    TEXT("QZ_POlContacts"),      TEXT("QZ_PhoneBookExt"), TEXT("QZ_SpeedDialNo"),
    TEXT("QZ_AvailablePBGroup"), TEXT("QZ_CallHistory"),  TEXT("\\Categories Database"),
};

/// The schema of each table, by table ID. Their attributes are made when the library is loaded.
extern const Database::RecordDef aRecDef_[nNumTableSchemas_];

/// The properties of the platform's contacts database that correspond to the contacts table's attributes,
/// index for index.
extern const Database::RecordDef recdefPOlCRaw_;

}  // namespace PhoneBook
