#pragma once

#include "tessera/phonebook/model/PBAttributes.h"
#include "tessera/phonebook/model/Schemas.h"
#include "tessera/platform/objectstore/CCeDBRecord.h"

namespace PhoneBook {

/// The speed-dial table's attributes.
enum SpeedDialAttr : WORD { sdialId = 0, sdialTelType = 1, sdialTelNo = 2, sdialFlags = 3 };

inline WORD identOfSpeedDial(SpeedDialAttr attr) {
    return aRecDef_[PBDBTBL_SPEEDDIALNO].getAttrIdent(attr);
}

/// A slot number as rows have it and as it is looked for: its low 16 bits.
inline CCeDBProp slotProp(DWORD id) {
    return CCeDBProp::ofI2(identOfSpeedDial(sdialId), static_cast<std::int16_t>(id));
}

}  // namespace PhoneBook
