#include "tessera/database/CallerLookup.h"

#include <algorithm>
#include <string>

#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/StoreChanges.h"

namespace Database {

DWORD contactWithNumber(const CString& number) {
    static const DatabaseReader contacts(szContactsDatabase, ContactProperty::fileAs);
    const std::u16string_view characters = number.view();
    if (!std::ranges::all_of(characters, [](WCHAR ch) { return ch < 0x80; })) return 0;  // a reduced number is ASCII
    CEOID oid = 0;
    return contacts.findNumber(std::string(characters.begin(), characters.end()), oid) ? oid : 0;
}

}  // namespace Database
