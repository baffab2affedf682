#include "tessera/phonebook/model/FieldText.h"

#include "tessera/database/schema/PropText.h"
#include "tessera/phonebook/model/NumberText.h"
#include "tessera/phonebook/model/PBAttributes.h"
#include "tessera/platform/base/COleDateTime.h"

namespace PhoneBook {
namespace {

constexpr DWORD settableMask = 0x007F0FFF;  // 0x40 and 0x80 lie within it and mark no field: meant so

// Null when the bit is of no field.
const PBAttribute* attributeOf(DWORD mask) {
    const int pbAttrID = getPBDBAttrIDFromCITypeFlag(mask);
    const bool isField = pbAttrID != PBDBATTR_NONE && pbAttrID != nNumPBAttrs_;
    return isField ? &aPBAttribute_[static_cast<std::size_t>(pbAttrID)] : nullptr;
}

DATE dateOf(const CString& text) {
    COleDateTime date;
    return date.ParseDateTime(text, VAR_DATEVALUEONLY, LOCALE_USER_DEFAULT) ? date.date() : 0.0;
}

void setField(PBRecord& record, const PBAttribute& attribute, const CString& text) {
    if (attribute.text != nullptr) record.*attribute.text = text;
    if (attribute.number != nullptr) record.*attribute.number = static_cast<DWORD>(wcstolText(text));
    if (attribute.date != nullptr) record.*attribute.date = dateOf(text);
}

}  // namespace

CString getPBRecordFieldStr(const PBRecord& record, DWORD mask) {
    const PBAttribute* attribute = attributeOf(mask);
    if (attribute == nullptr || (record.dwCITypeMask & mask) == 0) return {};
    if (attribute->text != nullptr) return record.*attribute->text;
    if (attribute->number != nullptr) return Database::renderText(CCeDBProp::ofUI4(0, record.*attribute->number));
    return COleDateTime(record.*attribute->date).Format(0, LOCALE_USER_DEFAULT);
}

int setPBRecordFieldStr(PBRecord& record, DWORD mask, const CString& text) {
    if (mask == 0 || (mask & ~settableMask) != 0) return 0;
    record.dwCITypeMask |= mask;
    if (const PBAttribute* attribute = attributeOf(mask); attribute != nullptr) setField(record, *attribute, text);
    if (text.IsEmpty()) record.dwCITypeMask &= ~mask;
    return 1;
}

}  // namespace PhoneBook
