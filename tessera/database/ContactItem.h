#pragma once

#include <functional>

#include "tessera/phonebook/model/PBRecord.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/contacts/OutlookInterfaces.h"
#include "tessera/platform/objectstore/CCeDBProp.h"

// A contact item of the contacts model, read and written as a row of the contacts table. Memory that is
// short is thrown here, and answered at the exported boundary.

namespace Database {

class POlDBTable;

/// The items of a contacts collection are contacts.
inline IContact* contactOf(IDispatch* item) {
    return static_cast<IContact*>(item);
}

/// 0 when the contact was never saved.
DWORD oidOf(IContact* contact);

/// The collection with the hint that those columns, separated by commas, will be read; without it when
/// the collection takes no hints.
ComPtr<IPOutlookItemCollection> withColumns(IPOutlookItemCollection* items, const WCHAR* columns);

/// Puts a row's values into a contact, without saving it. Every attribute is put but the body.
void putRow(IContact* contact, const std::function<const CCeDBProp&(int attr)>& valueOf);

/// Fills the contact fields that the record's mask asks for; answers the bits of those that had a value.
DWORD readFields(IContact* contact, PhoneBook::PBRecord& record);

/// One attribute of a contact, as text; empty for an attribute that is no phone book field.
CString readAttr(POlDBTable& table, IContact* contact, int attr);

/// "Doe, John", "John Doe" and, family name first, "김 민수". Only the first comma or space counts.
void splitFullName(const CString& name, CString& first, CString& last);

}  // namespace Database
