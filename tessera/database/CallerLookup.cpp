#include "tessera/database/CallerLookup.h"

#include <algorithm>
#include <string>

#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/StoreChanges.h"

namespace Database {

HRESULT contactWithNumber(const CString& number, DWORD& oid) {
    static const DatabaseReader contacts(szContactsDatabase, ContactProperty::fileAs);
    const WStringView characters = number.view();
    if (!std::ranges::all_of(characters, [](WCHAR ch) { return ch < 0x80; }))
        return S_FALSE;  // a reduced number is ASCII
    if (contacts.findNumber(std::string(characters.begin(), characters.end()), oid)) return S_OK;
    return GetLastError() == ERROR_NO_MORE_ITEMS ? S_FALSE : E_FAIL;
}

}  // namespace Database
