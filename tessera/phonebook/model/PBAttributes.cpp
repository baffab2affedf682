#include "tessera/phonebook/model/PBAttributes.h"

#include <algorithm>
#include <ranges>

namespace PhoneBook {
namespace {

const PBAttribute& attribute(int pbAttrID) {
    return aPBAttribute_[static_cast<std::size_t>(pbAttrID)];
}

// The position of the first element that fits; their number when none does.
template <class Range, class Condition>
int indexOf(const Range& range, Condition fits) {
    return static_cast<int>(std::ranges::find_if(range, fits) - std::ranges::begin(range));
}

bool belongsTo(int pbAttrID, PBAttributeClass attributeClass) {
    const bool known = pbAttrID >= 0 && pbAttrID < nNumPBAttrs_;
    return known && (attribute(pbAttrID).classes & attributeClass) != 0;
}

}  // namespace

int getTableID(int pbAttrID) {
    return attribute(pbAttrID).place.nTableID;
}

int getAttrIDInTable(int pbAttrID) {
    return attribute(pbAttrID).place.nAttrIdx;
}

int getPBDBAttrID(int tableID, int attrIdx) {
    return indexOf(atmDBAttrMap_,
                   [=](const TupleMapEntry& place) { return place.nTableID == tableID && place.nAttrIdx == attrIdx; });
}

DWORD getCITypeMaskFromPBDBAttrID(int pbAttrID) {
    return attribute(pbAttrID).mask;
}

int getPBDBAttrIDFromCITypeFlag(DWORD flag) {
    return indexOf(adwCITypeMaskMap_, [=](DWORD mask) { return mask == flag; });
}

DWORD getTelNoAttrFlag(int idx) {
    return adwTelNoAttrFlagMap_[static_cast<std::size_t>(idx)];
}

int getTelNoAttrIdx(DWORD flag) {
    return indexOf(adwTelNoAttrFlagMap_, [=](DWORD telNoFlag) { return telNoFlag == flag; });
}

DWORD getPrimaryTelNoFlag(const PBRecord& record) {
    const DWORD mask = record.dwCITypeMask;
    const DWORD stated = record.dwPrimaryTelephoneNumber;
    if ((mask & dwPrimaryTelNoFlag_) != 0 && (stated & dwTelNoMask_) != 0) return stated;  // every bit of it: meant so
    const auto first = std::ranges::find_if(adwTelNoAttrFlagMap_, [=](DWORD flag) { return (mask & flag) != 0; });
    return first == adwTelNoAttrFlagMap_.end() ? 0 : *first;
}

bool isHiddenAttr(int pbAttrID) {
    return belongsTo(pbAttrID, attrHidden);
}

bool isSDialNoAttr(int pbAttrID) {
    return belongsTo(pbAttrID, attrSpeedDial);
}

bool isTelNoAttr(int pbAttrID) {
    return belongsTo(pbAttrID, attrTelNo);
}

bool isSMSReceiverAttr(int pbAttrID) {
    return isTelNoAttr(pbAttrID);
}

}  // namespace PhoneBook
