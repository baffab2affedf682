#pragma once

#include "tessera/phonebook/model/PBAttributes.h"
#include "tessera/phonebook/model/Schemas.h"
#include "tessera/platform/objectstore/CCeDBRecord.h"

namespace PhoneBook {

/// The extension table's attributes that are told apart; the others are fields of a record and nothing else.
enum ExtensionAttr : WORD { extPodbOid = 0, extName = 1, extTelNo = 2, extGroup = 3, extSlots = 8, extFlags = 10 };
static_assert(aPBAttribute_[PBDBATTR_GROUP].place.nAttrIdx == extGroup);
static_assert(aPBAttribute_[PBDBATTR_PRIVATE].place.nAttrIdx == extSlots);

inline WORD identOfExtension(ExtensionAttr attr) {
    return aRecDef_[PBDBTBL_PHONEBOOKEXT].getAttrIdent(attr);
}

/// A contact as its row names it.
inline CCeDBProp contactProp(DWORD contactOid) {
    return CCeDBProp::ofUI4(identOfExtension(extPodbOid), contactOid);
}

/// Calls with each slot of a slot word, and the telephone-number flag that it is the slot of. The last byte is
/// never read.
template <class Visit>
void forEachSlot(DWORD word, Visit visit) {
    for (std::size_t i = 0; i < 3; ++i) {
        DWORD slot = (word >> (8 * i)) & 0xFF;
        if (slot != 0) visit(slot, adwTelNoAttrFlagMap_[i]);
    }
}

}  // namespace PhoneBook
