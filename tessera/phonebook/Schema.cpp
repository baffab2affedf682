#include "tessera/phonebook/PhoneBookDBMgr.h"

namespace PhoneBook {

const Database::RecordDef (&PhoneBookDBMgr::aRecDef_)[nNumTableSchemas_] = PhoneBook::aRecDef_;
const Database::RecordDef& PhoneBookDBMgr::recdefPOlCRaw_ = PhoneBook::recdefPOlCRaw_;
const SpeedDialInfo PhoneBookDBMgr::nullSDialInfo;

CString& PhoneBookDBMgr::getDBAttrName(int pbAttrId) {
    const TupleMapEntry& place = atmDBAttrMap_[static_cast<std::size_t>(pbAttrId)];
    return tables_[static_cast<std::size_t>(place.nTableID)]->getAttrName(place.nAttrIdx);
}

}  // namespace PhoneBook
